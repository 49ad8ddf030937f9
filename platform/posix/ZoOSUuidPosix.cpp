// The POSIX implementation of the OS layer's unique identifiers. The library makes version-1
// identifiers itself rather than asking libuuid: its time-based mode without the uuidd daemon gives
// no promise of uniqueness, and a daemon is more than a foundation library may ask for.
#include "platform/ZoOS.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <sys/random.h>
#include <unistd.h>

namespace ZoOS {

namespace {

// 100-ns steps from the start of the Gregorian calendar (15 October 1582) to 1 January 1970.
const uint64_t sc_gregorianToUnix = 0x01B21DD213814000ULL;

struct UuidGenerator
{
    std::mutex mutex;
    pid_t owner = 0; // the process that chose node and clock sequence; 0 before the first call
    uint64_t node = 0;
    uint16_t clockSequence = 0;
    uint64_t lastTimestamp = 0;
};

UuidGenerator& generator()
{
    static UuidGenerator instance;
    return instance;
}

bool fillRandom(unsigned char* bytes, size_t count)
{
    while (count > 0) {
        const ssize_t got = getrandom(bytes, count, 0);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            SetLastErrorCode(static_cast<uint32_t>(errno));
            return false;
        }
        bytes += got;
        count -= static_cast<size_t>(got);
    }
    return true;
}

// Node and clock sequence are chosen per process: a child made by fork inherits the parent's
// memory, and with it the parent's node and last timestamp, so it must choose again or the two
// processes would hand out the same identifiers.
bool ensureChosen(UuidGenerator& state)
{
    const pid_t self = getpid();
    if (state.owner == self)
        return true;
    unsigned char random[8];
    if (!fillRandom(random, sizeof random))
        return false;
    uint64_t node = 0;
    for (int i = 0; i < 6; ++i)
        node = (node << 8) | random[i];
    // The multicast bit is the lowest bit of the first octet; a real network card never has it set.
    state.node = node | 0x010000000000ULL;
    state.clockSequence = static_cast<uint16_t>(((random[6] << 8) | random[7]) & 0x3FFF);
    state.lastTimestamp = 0;
    state.owner = self;
    return true;
}

} // namespace

bool CreateSequentialUuidText(CString& text)
{
    UuidGenerator& state = generator();
    uint64_t timestamp = 0;
    uint64_t node = 0;
    uint16_t clockSequence = 0;
    {
        std::lock_guard<std::mutex> guard(state.mutex);
        if (!ensureChosen(state))
            return false;
        timespec now;
        if (clock_gettime(CLOCK_REALTIME, &now) != 0) {
            SetLastErrorCode(static_cast<uint32_t>(errno));
            return false;
        }
        timestamp = sc_gregorianToUnix + static_cast<uint64_t>(now.tv_sec) * 10000000ULL +
                    static_cast<uint64_t>(now.tv_nsec) / 100;
        // Within the process every timestamp is larger than the one before, even when calls come
        // faster than the clock's resolution or the clock is set back; that alone makes the
        // process's identifiers distinct, as node and clock sequence stay the same.
        if (timestamp <= state.lastTimestamp)
            timestamp = state.lastTimestamp + 1;
        state.lastTimestamp = timestamp;
        node = state.node;
        clockSequence = state.clockSequence;
    }
    const uint32_t timeLow = static_cast<uint32_t>(timestamp);
    const uint32_t timeMid = static_cast<uint32_t>(timestamp >> 32) & 0xFFFF;
    const uint32_t timeHighAndVersion = (static_cast<uint32_t>(timestamp >> 48) & 0x0FFF) | 0x1000;
    const uint32_t clockSequenceAndVariant = clockSequence | 0x8000;
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%08x-%04x-%04x-%04x-%012llx", timeLow, timeMid, timeHighAndVersion,
                  clockSequenceAndVariant, static_cast<unsigned long long>(node));
    text = CString(buffer);
    SetLastErrorCode(0);
    return true;
}

} // namespace ZoOS
