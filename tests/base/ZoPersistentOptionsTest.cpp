#include "base/ZoPersistentOptions.h"
#include "platform/ZoOS.h"

#include "ZoTestChildProcess.h"
#include "ZoTestSupport.h"

#include <string>
#include <thread>
#include <vector>

#if !defined(_WIN32)
#include <csignal>
#include <unistd.h>
#endif

namespace {

typedef ZoPersistentOptions Options;
const Options::EPersistentOptionsCategory sc_user = Options::eCurrentUser;

// Options of one test: a fresh store in a scratch folder on POSIX, a key of its own in the
// registry (removed afterwards) on Windows. Children started by the test inherit the place.
class OptionsPlace
{
public:
    OptionsPlace()
    {
#if defined(_WIN32)
        m_key = CString("Software\\ZoTest-" + std::to_string(zotest::CurrentProcessId()));
#else
        if (const char* previous = std::getenv("XDG_CONFIG_HOME"))
            m_previous = previous;
        setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1);
        m_key = CString(u"Software\\Zo\\Test");
#endif
    }
    ~OptionsPlace()
    {
#if defined(_WIN32)
        ::RegDeleteTreeW(HKEY_CURRENT_USER, reinterpret_cast<const wchar_t*>(m_key.GetString()));
#else
        if (m_previous.empty())
            unsetenv("XDG_CONFIG_HOME");
        else
            setenv("XDG_CONFIG_HOME", m_previous.c_str(), 1);
#endif
    }
    const CString& Key() const { return m_key; }

private:
#if !defined(_WIN32)
    zotest::TempFolder m_folder;
    std::string m_previous;
#endif
    CString m_key;
};

// Children get "<parent's process id>|<folder for their notes>": the parent's OptionsPlace made
// their key path from its process id.
std::string childPart(int part)
{
    const std::string argument = zotest::ChildArgument();
    return part == 0 ? argument.substr(0, argument.find('|')) : argument.substr(argument.find('|') + 1);
}

std::vector<unsigned char> storedBytes(const CString& key, const CString& name)
{
    std::vector<unsigned char> bytes(64);
    uint32_t size = 64;
    EXPECT_TRUE(ZoOS::ReadOptionValue(0x80000001, key, name, bytes.data(), size));
    bytes.resize(size);
    return bytes;
}

TEST(ZoPersistentOptionsTest, ValuesTheirBytesAndEdgeCases)
{
    OptionsPlace place;
    const CString key = place.Key();
    int32_t number = 77;
    CString text(u"untouched");
    EXPECT_EQ(Options::ReadOption(key, u"Count", number, sc_user), 0) << "no store or key yet";
    EXPECT_EQ(number, 77);

    EXPECT_TRUE(Options::WriteOption(key, u"Count", int32_t(-2), sc_user) == 1 &&
                Options::WriteOption(key, u"Size", uint32_t(0xFFFFFFFE), sc_user) == 1 &&
                Options::WriteOption(key, u"On", true, sc_user) == 1 && Options::WriteOption(key, u"Two", uint32_t(2), sc_user) == 1 &&
                Options::WriteOption(key, u"Name", u"Zo \u00FC\u20AC", sc_user) == 1 &&
                Options::WriteOption(key, u"Empty", CString(), sc_user) == 1);
    EXPECT_EQ(storedBytes(key, u"Count"), zotest::Bytes({0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(storedBytes(key, u"On"), zotest::Bytes({1, 0, 0, 0}));
    EXPECT_EQ(storedBytes(key, u"Name"), zotest::Bytes({'Z', 0, 'o', 0, ' ', 0, 0xFC, 0, 0xAC, 0x20}));
    EXPECT_EQ(storedBytes(key, u"Empty").size(), 0u);

    uint32_t size = 0;
    bool flag = false;
    EXPECT_EQ(Options::ReadOption(key, u"Count", number, sc_user), 1);
    EXPECT_EQ(number, -2);
    EXPECT_EQ(Options::ReadOption(key, u"Size", size, sc_user), 1);
    EXPECT_EQ(size, 0xFFFFFFFEu);
    EXPECT_EQ(Options::ReadOption(key, u"On", flag, sc_user), 1);
    EXPECT_TRUE(flag);
    EXPECT_EQ(Options::ReadOption(key, u"Two", flag, sc_user), 1);
    EXPECT_FALSE(flag) << "only a stored 1 is true";
    EXPECT_EQ(Options::ReadOption(key, u"Empty", text, 10, sc_user), 1);
    EXPECT_EQ(text, CString());
    EXPECT_EQ(Options::ReadOption(key, u"Name", text, 5, sc_user), 1) << "exactly maxLength characters";
    EXPECT_EQ(text, CString(u"Zo \u00FC\u20AC"));
    text = u"untouched";
    EXPECT_EQ(Options::ReadOption(key, u"Name", text, 4, sc_user), 0) << "longer than maxLength";
    EXPECT_EQ(Options::ReadOption(key, u"Missing", text, 10, sc_user), 0);
    EXPECT_EQ(Options::ReadOption(key + u"\\Missing", u"Name", text, 10, sc_user), 0);
    EXPECT_EQ(text, CString(u"untouched"));

    // Key paths and value names ignore case, as in the registry; a write replaces any type.
    EXPECT_EQ(Options::ReadOption(CString(u"SOFTWARE") + key.Mid(8), u"count", number, sc_user), 1);
    EXPECT_EQ(Options::WriteOption(key, u"Count", u"now a text", sc_user), 1);
    EXPECT_EQ(Options::ReadOption(key, u"Count", text, 20, sc_user), 1);
    EXPECT_EQ(text, CString(u"now a text"));

    const auto unknown = static_cast<Options::EPersistentOptionsCategory>(5);
    EXPECT_EQ(Options::WriteOption(key, u"Count", int32_t(1), unknown) + Options::ReadOption(key, u"Count", number, unknown) +
                  Options::ReadOption(key, u"Count", text, 20, unknown) + Options::DeleteOption(key, u"Count", unknown), 0);

    // Deleting takes one value, whatever the case of its name, and leaves the others.
    EXPECT_EQ(Options::DeleteOption(key, u"COUNT", sc_user), 1);
    EXPECT_EQ(Options::ReadOption(key, u"Count", text, 20, sc_user), 0);
    EXPECT_EQ(Options::DeleteOption(key, u"Count", sc_user), 0) << "already gone";
    EXPECT_EQ(Options::DeleteOption(key + u"\\Missing", u"Name", sc_user), 0);
    EXPECT_EQ(Options::ReadOption(key, u"Size", size, sc_user), 1);
#if !defined(_WIN32)
    // Every root is a place of its own (the Windows roots other than the user's need rights).
    for (int category = 0; category <= 4; ++category)
        EXPECT_EQ(Options::WriteOption(u"K", u"Root", int32_t(category), Options::EPersistentOptionsCategory(category)), 1);
    for (int category = 0; category <= 4; ++category) {
        EXPECT_EQ(Options::ReadOption(u"K", u"Root", number, Options::EPersistentOptionsCategory(category)), 1);
        EXPECT_EQ(number, category);
    }
#endif
}

// Both children write 1,000 values of their own under one key and the same shared value each
// time, and read the shared value back after each write: it must always be one writer's whole text.
TEST(ZoPersistentOptionsTest, DISABLED_ChildWritesValues)
{
#if defined(_WIN32)
    const CString key("Software\\ZoTest-" + childPart(0));
#else
    const CString key(u"Software\\Zo\\Test");
#endif
    const std::string self = std::to_string(zotest::CurrentProcessId());
    zotest::WriteBytes(childPart(1) + "/pid-" + self, {});
    for (int i = 0; i < 1000; ++i) {
        const std::string mine = self + "-" + std::to_string(i);
        std::string shared;
        while (shared.size() < 600)
            shared += mine + ";";
        ASSERT_EQ(Options::WriteOption(key, CString("v" + mine), int32_t(i), sc_user), 1);
        ASSERT_EQ(Options::WriteOption(key, u"Shared", CString(shared), sc_user), 1);
        CString read;
        ASSERT_EQ(Options::ReadOption(key, u"Shared", read, 1000, sc_user), 1);
        const std::string seen = read.ToUtf8();
        const std::string first = seen.substr(0, seen.find(';') + 1);
        std::string whole;
        while (whole.size() < 600)
            whole += first;
        ASSERT_EQ(seen, whole) << "a torn value";
    }
}

TEST(ZoPersistentOptionsTest, TwoProcessesLoseNothingAndValuesOutliveThem)
{
    OptionsPlace place;
    zotest::TempFolder logs;
    zotest::SetChildArgument(std::to_string(zotest::CurrentProcessId()) + "|" + logs.Path());
    std::vector<int> results(2, -1);
    std::vector<std::thread> children;
    for (int i = 0; i < 2; ++i)
        children.emplace_back([&, i] {
            results[i] = zotest::RunChildTest("ZoPersistentOptionsTest.DISABLED_ChildWritesValues",
                                              logs.Path("child" + std::to_string(i)));
        });
    for (auto& child : children)
        child.join();
    const std::vector<unsigned char> log = zotest::ReadBytes(logs.Path(results[0] != 0 ? "child0.log" : "child1.log"));
    ASSERT_EQ(results, std::vector<int>({0, 0})) << std::string(log.begin(), log.end());
    int found = 0;
    for (const auto& entry : std::filesystem::directory_iterator(logs.Path())) {
        const std::string file = entry.path().filename().string();
        if (file.rfind("pid-", 0) != 0)
            continue;
        for (int i = 0; i < 1000; ++i) {
            int32_t value = -1;
            EXPECT_EQ(Options::ReadOption(place.Key(), CString("v" + file.substr(4) + "-" + std::to_string(i)), value,
                                          sc_user), 1);
            found += value == i;
        }
    }
    EXPECT_EQ(found, 2000) << "every value each child wrote is there after it ended";
}

#if !defined(_WIN32)
// A writer killed at any point of a write leaves the store readable, with every write that had
// returned before still there.
TEST(ZoPersistentOptionsTest, WriterKilledMidLoopLosesNoCompletedWrite)
{
    OptionsPlace place;
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        close(pipeEnds[0]);
        for (int32_t i = 0;; ++i) {
            if (Options::WriteOption(place.Key(), CString("v" + std::to_string(i)), i, sc_user) != 1 ||
                write(pipeEnds[1], &i, sizeof i) != sizeof i)
                _exit(1);
        }
    }
    close(pipeEnds[1]);
    std::vector<int32_t> completed;
    int32_t done = 0;
    while (completed.size() < 300 && read(pipeEnds[0], &done, sizeof done) == sizeof done)
        completed.push_back(done);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    while (read(pipeEnds[0], &done, sizeof done) == sizeof done)
        completed.push_back(done);
    close(pipeEnds[0]);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed on its own";
    ASSERT_GE(completed.size(), 300u);
    for (int32_t i : completed) {
        int32_t value = -1;
        EXPECT_EQ(Options::ReadOption(place.Key(), CString("v" + std::to_string(i)), value, sc_user), 1);
        EXPECT_EQ(value, i);
    }
    EXPECT_EQ(Options::WriteOption(place.Key(), u"After", true, sc_user), 1);
}
#endif

} // namespace
