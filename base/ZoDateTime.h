/// @class ZoDateTime
/// ZoDateTime: a point in time, kept in UTC both as calendar fields (a SYSTEMTIME) and as 100-ns
/// ticks since 1 January 1601 UTC (the FILETIME count), so that comparison and arithmetic are integer
/// operations while display converts to the local time of the current time zone.
///
/// Invariant: the fields and the ticks always describe the same instant; every change of one
/// recomputes the other. A value the calendar cannot hold (fields out of range, ticks from 2^63 on)
/// becomes the first instant, 1601-01-01 00:00:00 UTC (tick 0), so the invariant survives bad input.
///
/// Only the text constructor throws. The file-time readers answer a missing file with 0.
/// @ingroup values
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"
#include "platform/ZoWindowsTypes.h"

#include <cstdint>

class ZO_API ZoDateTime
{
public:
    /// Display forms of ToString, each in local time. The type is fixed to 32 bits, so that values
    /// beyond the list (which give an empty text) are valid values of it.
    enum EFormat : uint32_t
    {
        /// Today's long date, a blank and the stored time "hh:mm:ss" (see ToString).
        eFormatLongDateTime = 0,
        /// Today's long date only.
        eFormatLongDate = 1,
        /// "DD.MM.YYYY"
        eFormatDate = 2,
        /// "DD.MM.YYYY hh:mm:ss"
        eFormatDateTime = 3,
        /// "DD.MM.YYYY hh:mm"
        eFormatDateTimeShort = 4,
        /// "YYYY-MM-DD hh:mm:ss", the form the text constructor reads back
        eFormatSortable = 5,
        /// "hh:mm:ss"
        eFormatTime = 6,
        /// "hh:mm"
        eFormatTimeShort = 7,
    };

    /// Now (UTC).
    ZoDateTime();
    /// Fields taken as UTC; the day of week is kept as given.
    ZoDateTime(const SYSTEMTIME& universal);
    /// 100-ns ticks since 1601 UTC; from 2^63 on the value becomes tick 0.
    ZoDateTime(const FILETIME& ticks);
    /// The same from a plain tick count.
    explicit ZoDateTime(uint64_t ticks);
    /// "YYYY-MM-DD hh:mm:ss" (see HasValidFormat) read as local time of the current time zone.
    /// Throws ZoException ("ZoDateTime", line 116) for any other text, and for fields no calendar
    /// holds (month 13, 30 February, hour 24 ...): those pass the form check but name no instant.
    explicit ZoDateTime(const CString& text);
    /// Copies fields and ticks.
    ZoDateTime(const ZoDateTime& other) = default;

    /// Copies fields and ticks.
    ZoDateTime& operator=(const ZoDateTime& other) = default;
    /// As the SYSTEMTIME constructor: fields taken as UTC, out-of-range fields give tick 0.
    ZoDateTime& operator=(const SYSTEMTIME& universal);
    /// As the FILETIME constructor.
    ZoDateTime& operator=(const FILETIME& ticks);
    /// As the tick-count constructor.
    ZoDateTime& operator=(uint64_t ticks);

    ///@{
    /// The UTC fields; GetSystemTime all of them at once (the day of week as the system computed it,
    /// or as given to the SYSTEMTIME constructor).
    uint32_t GetYear() const { return m_systemTime.wYear; }
    uint32_t GetMonth() const { return m_systemTime.wMonth; }
    uint32_t GetDay() const { return m_systemTime.wDay; }
    uint32_t GetHour() const { return m_systemTime.wHour; }
    uint32_t GetMinute() const { return m_systemTime.wMinute; }
    uint32_t GetSecond() const { return m_systemTime.wSecond; }
    uint32_t GetMillisecond() const { return m_systemTime.wMilliseconds; }
    const SYSTEMTIME& GetSystemTime() const { return m_systemTime; }
    ///@}

    /// The ticks as a FILETIME (low and high 32 bits).
    operator const FILETIME&() const { return m_fileTime; }
    /// The tick count.
    operator uint64_t() const { return getTicks(); }

    ///@{
    /// On the ticks only.
    bool operator<(const ZoDateTime& other) const { return getTicks() < other.getTicks(); }
    bool operator<=(const ZoDateTime& other) const { return getTicks() <= other.getTicks(); }
    bool operator>(const ZoDateTime& other) const { return getTicks() > other.getTicks(); }
    bool operator>=(const ZoDateTime& other) const { return getTicks() >= other.getTicks(); }
    bool operator==(const ZoDateTime& other) const { return getTicks() == other.getTicks(); }
    bool operator!=(const ZoDateTime& other) const { return getTicks() != other.getTicks(); }
    ///@}

    /// Whole seconds from `other` to this, truncated toward zero (1.5 s either way gives 1 or -1).
    int64_t GetDifference(const ZoDateTime& other) const;
    /// Moves the value by `seconds` (negative: back) and recomputes the fields.
    void AddTimeInterval(int64_t seconds);

    ///@{
    /// Take the file's (or folder's) creation or last-write time and return 1; return 0 and leave the
    /// value as it was when the path cannot be found. See ZoOS::ReadFileTimes for what "creation"
    /// means on POSIX file systems.
    int ReadFileCreationTime(const CString& path);
    int ReadFileModificationTime(const CString& path);
    ///@}

    /// The value in local time in one of the EFormat forms; 8 and above give an empty text.
    CString ToString(EFormat format) const;

    /// Nonzero when the text has the form YYYY-MM-DD hh:mm:ss: 19 characters, '-' first found at index
    /// 4 and next at 7, the first blank after it at 10, ':' at 13 and 16, and a "%d-%d-%d %d:%d:%d" scan
    /// that assigns at least one field. Field values are not checked here.
    static int HasValidFormat(const CString& text);

private:
    /// Reads the form; false when the text does not have it.
    static bool scan(const CString& text, int fields[6]);
    uint64_t getTicks() const;
    void setTicks(uint64_t ticks);
    void setUniversal(const SYSTEMTIME& universal);

    SYSTEMTIME m_systemTime;
    FILETIME m_fileTime;
};
