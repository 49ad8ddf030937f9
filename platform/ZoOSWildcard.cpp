// Wildcard matching of file names, the same on every system that does not match for the library.
#include "platform/ZoOS.h"

namespace ZoOS {

bool MatchesWildcard(const CString& name, const CString& pattern)
{
    // Greedy matching with one backtrack point: the last '*' seen and where the name stood then.
    // Linear in practice and never recursive, so a hostile pattern cannot exhaust the stack.
    const int nameLength = name.GetLength();
    const int patternLength = pattern.GetLength();
    int at = 0;
    int p = 0;
    int star = -1;
    int resumeAt = 0;
    while (at < nameLength) {
        if (p < patternLength && (pattern[p] == u'?' || pattern[p] == name[at])) {
            ++at;
            ++p;
        } else if (p < patternLength && pattern[p] == u'*') {
            star = p++;
            resumeAt = at;
        } else if (star >= 0) {
            p = star + 1;
            at = ++resumeAt;
        } else {
            return false;
        }
    }
    while (p < patternLength && pattern[p] == u'*')
        ++p;
    return p == patternLength;
}

} // namespace ZoOS
