#pragma once

#include <vellumcaster/results.h>

/// The result codes that only the filters of a graph tell each other.
namespace vellumcaster {

inline constexpr HRESULT VFW_E_INVALIDMEDIATYPE = detail::Result(0x80040200);
/// What an enumerator walks over has changed since it was made or reset.
inline constexpr HRESULT VFW_E_ENUM_OUT_OF_SYNC = detail::Result(0x80040203);
inline constexpr HRESULT VFW_E_ALREADY_CONNECTED = detail::Result(0x80040204);
inline constexpr HRESULT VFW_E_NO_ACCEPTABLE_TYPES = detail::Result(0x80040207);
inline constexpr HRESULT VFW_E_INVALID_DIRECTION = detail::Result(0x80040208);
inline constexpr HRESULT VFW_E_NOT_CONNECTED = detail::Result(0x80040209);
inline constexpr HRESULT VFW_E_NO_ALLOCATOR = detail::Result(0x8004020A);
inline constexpr HRESULT VFW_E_BUFFER_NOTSET = detail::Result(0x8004020C);
inline constexpr HRESULT VFW_E_BADALIGN = detail::Result(0x8004020E);
inline constexpr HRESULT VFW_E_ALREADY_COMMITTED = detail::Result(0x8004020F);
inline constexpr HRESULT VFW_E_BUFFERS_OUTSTANDING = detail::Result(0x80040210);
inline constexpr HRESULT VFW_E_SIZENOTSET = detail::Result(0x80040212);
inline constexpr HRESULT VFW_E_NOT_FOUND = detail::Result(0x80040216);
inline constexpr HRESULT VFW_E_TIMEOUT = detail::Result(0x8004022E);

/// A failure that a level answers in its own words where what it met was no failure code.
constexpr HRESULT FailureOf(HRESULT hr, HRESULT hrInstead) { return FAILED(hr) ? hr : hrInstead; }

} // namespace vellumcaster
