#pragma once

#include <cstdint>

/// The words that every record and every call is made of. Integers have fixed width on every machine, so a
/// record means the same to a caller built with any compiler.
namespace vellumcaster {

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using LONGLONG = std::int64_t;

/// 0 is false, anything else is true.
using BOOL = std::int32_t;

/// The result of a call: negative for a failure, else a success. The codes stand in results.h.
using HRESULT = std::int32_t;

/// One UTF-16 code unit.
using OLECHAR = char16_t;

/// An owned UTF-16 string. It points at the first code unit; the four bytes before it hold the length in bytes,
/// and a zero unit that the length leaves out stands behind it. Null counts as the empty string.
using BSTR = OLECHAR*;

/// A time or a duration in units of 100 ns.
using REFERENCE_TIME = std::int64_t;

/// Width and height in pixels.
struct SIZE {
    LONG cx = 0;
    LONG cy = 0;

    friend constexpr bool operator==(const SIZE& a, const SIZE& b) { return a.cx == b.cx && a.cy == b.cy; }
    friend constexpr bool operator!=(const SIZE& a, const SIZE& b) { return !(a == b); }
};

/// A rectangle in pixels. `right` and `bottom` are exclusive; y counts from the top row of the picture, whatever
/// the order of the rows in memory.
struct RECT {
    LONG left = 0;
    LONG top = 0;
    LONG right = 0;
    LONG bottom = 0;

    friend constexpr bool operator==(const RECT& a, const RECT& b) {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }
    friend constexpr bool operator!=(const RECT& a, const RECT& b) { return !(a == b); }
};

/// A 128-bit name of an interface, a class or a media type.
struct GUID {
    std::uint32_t Data1 = 0;
    std::uint16_t Data2 = 0;
    std::uint16_t Data3 = 0;
    std::uint8_t Data4[8] = {};

    friend constexpr bool operator==(const GUID& a, const GUID& b) {
        if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3) return false;
        for (int i = 0; i < 8; ++i)
            if (a.Data4[i] != b.Data4[i]) return false;
        return true;
    }
    friend constexpr bool operator!=(const GUID& a, const GUID& b) { return !(a == b); }
};
static_assert(sizeof(GUID) == 16);

} // namespace vellumcaster
