// The POSIX implementation of the OS layer's persistent options: one SQLite database per user in
// place of the registry, with one row per value holding the registry's root, key path, value name,
// value type and value bytes.
//
// Each call opens its own connection and closes it again, so no state is shared between threads
// or kept between calls. The database runs in write-ahead-log mode, so readers never wait for a
// writer, and writers wait for each other through SQLite's busy timeout. synchronous=NORMAL keeps
// every committed write through a crash of the process (the log is written before the commit
// returns); only a power loss may take the last writes back, as the registry's lazy flush does too.
#include "platform/ZoOS.h"

#include <sqlite3.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <pthread.h>
#include <pwd.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace ZoOS {

namespace {

const int sc_busyTimeoutMs = 10000;

bool fail(int error)
{
    SetLastErrorCode(static_cast<uint32_t>(error));
    return false;
}

// A thread terminated from outside is cancelled at its next cancellation point, and SQLite's
// file calls and busy waits are such points: cancelled there, the connection and its locks would
// be left behind. The call finishes first; the cancellation takes effect at the thread's next wait.
class CancellationHold
{
public:
    CancellationHold() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_previous); }
    ~CancellationHold() { pthread_setcancelstate(m_previous, nullptr); }
    CancellationHold(const CancellationHold&) = delete;
    CancellationHold& operator=(const CancellationHold&) = delete;

private:
    int m_previous = PTHREAD_CANCEL_ENABLE;
};

std::string configFolder()
{
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config != nullptr && config[0] == '/')
        return config;
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != 0)
        return std::string(home) + "/.config";
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr)
        return std::string(entry->pw_dir) + "/.config";
    return "/.config";
}

bool makeFolder(const std::string& path, mode_t mode)
{
    return mkdir(path.c_str(), mode) == 0 || errno == EEXIST;
}

int errorOf(sqlite3* database, int code)
{
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return EBUSY;
    case SQLITE_NOMEM:
        return ENOMEM;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return EACCES;
    case SQLITE_FULL:
        return ENOSPC;
    default: {
        const int system = database != nullptr ? sqlite3_system_errno(database) : 0;
        return system != 0 ? system : EIO;
    }
    }
}

// One connection for one call; closes itself and reports SQLite's failures as error numbers.
class Connection
{
public:
    ~Connection()
    {
        if (m_statement != nullptr)
            sqlite3_finalize(m_statement);
        if (m_database != nullptr)
            sqlite3_close(m_database);
    }

    // Reading never creates the store: a missing one is a missing value.
    bool Open(bool forWriting)
    {
        const std::string folder = configFolder() + "/zo";
        if (forWriting && !(makeFolder(configFolder(), 0700) && makeFolder(folder, 0700)))
            return fail(errno);
        const std::string path = folder + "/options.sqlite";
        if (!forWriting && access(path.c_str(), F_OK) != 0)
            return fail(ENOENT);
        const int flags = SQLITE_OPEN_READWRITE | (forWriting ? SQLITE_OPEN_CREATE : 0) | SQLITE_OPEN_NOMUTEX;
        const int code = sqlite3_open_v2(path.c_str(), &m_database, flags, nullptr);
        if (code != SQLITE_OK)
            return failed(code);
        sqlite3_busy_timeout(m_database, sc_busyTimeoutMs);
        return execute("PRAGMA synchronous=NORMAL") && (!forWriting || prepareStore());
    }

    bool Prepare(const char* sql)
    {
        const int code = sqlite3_prepare_v2(m_database, sql, -1, &m_statement, nullptr);
        return code == SQLITE_OK ? true : failed(code);
    }

    sqlite3_stmt* Statement() { return m_statement; }
    sqlite3* Database() { return m_database; }

    bool BindKey(uint32_t root, const CString& key, const CString& name)
    {
        const int code0 = sqlite3_bind_int64(m_statement, 1, root);
        const int code1 = sqlite3_bind_text16(m_statement, 2, key.GetString(), key.GetLength() * 2, SQLITE_STATIC);
        const int code2 = sqlite3_bind_text16(m_statement, 3, name.GetString(), name.GetLength() * 2, SQLITE_STATIC);
        for (int code : {code0, code1, code2})
            if (code != SQLITE_OK)
                return failed(code);
        return true;
    }

    int Step() { return sqlite3_step(m_statement); }

    bool failed(int code) { return fail(errorOf(m_database, code)); }

private:
    bool execute(const char* sql)
    {
        const int code = sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr);
        return code == SQLITE_OK ? true : failed(code);
    }

    // The first writer makes the table and switches the file to write-ahead logging, which the file
    // then keeps. Switching needs the database to itself: the busy timeout does not cover it, so
    // it is retried here while another process holds the file.
    bool prepareStore()
    {
        if (!execute("CREATE TABLE IF NOT EXISTS options(root INTEGER NOT NULL, key TEXT NOT NULL COLLATE NOCASE, "
                     "name TEXT NOT NULL COLLATE NOCASE, type INTEGER NOT NULL, data BLOB NOT NULL, "
                     "PRIMARY KEY(root, key, name)) WITHOUT ROWID"))
            return false;
        for (int attempt = 0;; ++attempt) {
            sqlite3_stmt* statement = nullptr;
            int code = sqlite3_prepare_v2(m_database, "PRAGMA journal_mode=WAL", -1, &statement, nullptr);
            bool isWal = false;
            if (code == SQLITE_OK) {
                code = sqlite3_step(statement);
                if (code == SQLITE_ROW) {
                    const unsigned char* mode = sqlite3_column_text(statement, 0);
                    isWal = mode != nullptr && std::strcmp(reinterpret_cast<const char*>(mode), "wal") == 0;
                    code = SQLITE_OK;
                }
            }
            sqlite3_finalize(statement);
            if (isWal)
                return true;
            if ((code & 0xFF) != SQLITE_BUSY && (code & 0xFF) != SQLITE_LOCKED && code != SQLITE_OK)
                return failed(code);
            if (attempt * 10 >= sc_busyTimeoutMs)
                return failed(SQLITE_BUSY);
            sqlite3_sleep(10);
        }
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_statement = nullptr;
};

} // namespace

bool ReadOptionValue(uint32_t root, const CString& key, const CString& name, void* data, uint32_t& size)
{
    if (root == 0)
        return fail(EBADF);
    CancellationHold hold;
    Connection connection;
    if (!connection.Open(false) ||
        !connection.Prepare("SELECT data FROM options WHERE root = ?1 AND key = ?2 AND name = ?3") ||
        !connection.BindKey(root, key, name))
        return false;
    const int code = connection.Step();
    if (code == SQLITE_DONE)
        return fail(ENOENT);
    if (code != SQLITE_ROW)
        return connection.failed(code);
    const void* stored = sqlite3_column_blob(connection.Statement(), 0);
    const int storedSize = sqlite3_column_bytes(connection.Statement(), 0);
    if (storedSize < 0 || static_cast<uint32_t>(storedSize) > size)
        return fail(EOVERFLOW);
    if (storedSize > 0)
        std::memcpy(data, stored, static_cast<size_t>(storedSize));
    size = static_cast<uint32_t>(storedSize);
    SetLastErrorCode(0);
    return true;
}

bool WriteOptionValue(uint32_t root, const CString& key, const CString& name, uint32_t type, const void* data,
                      uint32_t size)
{
    if (root == 0)
        return fail(EBADF);
    if (size > 0x7FFFFFFF)
        return fail(EINVAL);
    CancellationHold hold;
    Connection connection;
    // Replacing keeps the key path and value name as first written, as the registry keeps a key's
    // and a value's spelling when a write names them in another case.
    if (!connection.Open(true) ||
        !connection.Prepare("INSERT INTO options(root, key, name, type, data) VALUES(?1, ?2, ?3, ?4, ?5) "
                            "ON CONFLICT(root, key, name) DO UPDATE SET type = excluded.type, data = excluded.data") ||
        !connection.BindKey(root, key, name))
        return false;
    // A null pointer would store NULL, not an empty value.
    static const unsigned char empty = 0;
    int code = sqlite3_bind_int64(connection.Statement(), 4, type);
    if (code == SQLITE_OK)
        code = sqlite3_bind_blob(connection.Statement(), 5, size > 0 ? data : &empty, static_cast<int>(size),
                                 SQLITE_STATIC);
    if (code != SQLITE_OK)
        return connection.failed(code);
    code = connection.Step();
    if (code != SQLITE_DONE)
        return connection.failed(code);
    SetLastErrorCode(0);
    return true;
}

bool DeleteOptionValue(uint32_t root, const CString& key, const CString& name)
{
    if (root == 0)
        return fail(EBADF);
    CancellationHold hold;
    Connection connection;
    // Opened for reading: removing from a store that does not exist must not create it.
    if (!connection.Open(false) ||
        !connection.Prepare("DELETE FROM options WHERE root = ?1 AND key = ?2 AND name = ?3") ||
        !connection.BindKey(root, key, name))
        return false;
    const int code = connection.Step();
    if (code != SQLITE_DONE)
        return connection.failed(code);
    if (sqlite3_changes(connection.Database()) == 0)
        return fail(ENOENT);
    SetLastErrorCode(0);
    return true;
}

} // namespace ZoOS
