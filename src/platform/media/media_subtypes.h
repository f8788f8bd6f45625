#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// The subtype of a format that is named by its FOURCC.
constexpr GUID SubtypeOfFourCC(DWORD fcc) {
    return {fcc, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
}

/// Whether a subtype has the form in which a FOURCC, or a registered tag, stands in the first 32 bits.
constexpr bool HasFourCCTail(const GUID& subtype) { return subtype == SubtypeOfFourCC(subtype.Data1); }

inline constexpr GUID MEDIASUBTYPE_YV12 = SubtypeOfFourCC(0x32315659);
inline constexpr GUID MEDIASUBTYPE_I420 = SubtypeOfFourCC(0x30323449);
inline constexpr GUID MEDIASUBTYPE_YUY2 = SubtypeOfFourCC(0x32595559);
inline constexpr GUID MEDIASUBTYPE_UYVY = SubtypeOfFourCC(0x59565955);
inline constexpr GUID MEDIASUBTYPE_YVYU = SubtypeOfFourCC(0x55595659);
inline constexpr GUID MEDIASUBTYPE_IYU2 = SubtypeOfFourCC(0x32555949);

inline constexpr GUID MEDIASUBTYPE_RGB32{0xE436EB7E, 0x524F, 0x11CE, {0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
inline constexpr GUID MEDIASUBTYPE_RGB24{0xE436EB7D, 0x524F, 0x11CE, {0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
inline constexpr GUID MEDIASUBTYPE_RGB565{0xE436EB7B, 0x524F, 0x11CE, {0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
inline constexpr GUID MEDIASUBTYPE_RGB555{0xE436EB7C, 0x524F, 0x11CE, {0x9F, 0x53, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};
inline constexpr GUID MEDIASUBTYPE_ARGB32{0x773C9AC0, 0x3274, 0x11D0, {0xB7, 0x24, 0x00, 0xAA, 0x00, 0x6C, 0x1A, 0x01}};

} // namespace vellumcaster
