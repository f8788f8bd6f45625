#pragma once

#include "platform/media/media_type.h"

namespace vellumcaster {

// Questions about media types. A record whose format block is shorter than it says gets an answer as well.

/// A type was given: there is a record, and it has a major type.
[[nodiscard]] bool MT_IsSet(const AM_MEDIA_TYPE* pmt);

/// The record says all that its major type needs for a connection, as far as that major type is known here.
[[nodiscard]] bool MT_IsComplete(const AM_MEDIA_TYPE* pmt);

/// The two records describe the same stream: major type, subtype as `MT_SubtypeEqual` sees it, and format. A null
/// equals nothing, and a format block that is not what its record says equals no other one.
[[nodiscard]] bool MT_IsEqual(const AM_MEDIA_TYPE* pmtA, const AM_MEDIA_TYPE* pmtB);

/// The two are equal, or differ only in the case of the letters of their printable FOURCCs.
[[nodiscard]] bool MT_SubtypeEqual(const GUID& a, const GUID& b);

/// The time from frame to frame of video under `FORMAT_VideoInfo` or `FORMAT_VideoInfo2`, in units of 100 ns.
/// \return 0 as well for null and for a record of any other kind, or whose format block is too short.
[[nodiscard]] REFERENCE_TIME MT_AvgTimePerFrame(const AM_MEDIA_TYPE* pmt);

} // namespace vellumcaster
