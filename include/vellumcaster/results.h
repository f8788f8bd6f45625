#pragma once

#include <vellumcaster/types.h>

/// The result codes that calls answer. A call's own text says which of them it uses and what each means there.
namespace vellumcaster {

namespace detail {
constexpr HRESULT Result(std::uint32_t code) { return static_cast<HRESULT>(code); }
} // namespace detail

/// Done; for a question: yes.
inline constexpr HRESULT S_OK = 0;
/// Nothing to do; for a question: no; for a pixel operation: the block lies wholly outside.
inline constexpr HRESULT S_FALSE = 1;

inline constexpr HRESULT E_NOTIMPL = detail::Result(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = detail::Result(0x80004002);
/// A required out-pointer is null.
inline constexpr HRESULT E_POINTER = detail::Result(0x80004003);
inline constexpr HRESULT E_ABORT = detail::Result(0x80004004);
inline constexpr HRESULT E_FAIL = detail::Result(0x80004005);
/// A fault was caught, or an item's state does not allow the call.
inline constexpr HRESULT E_UNEXPECTED = detail::Result(0x8000FFFF);
inline constexpr HRESULT E_OUTOFMEMORY = detail::Result(0x8007000E);
/// A bad argument, or a cookie that is not in the list.
inline constexpr HRESULT E_INVALIDARG = detail::Result(0x80070057);

// What streams answer.

inline constexpr HRESULT STG_E_INVALIDFUNCTION = detail::Result(0x80030001);
inline constexpr HRESULT STG_E_ACCESSDENIED = detail::Result(0x80030005);
inline constexpr HRESULT STG_E_INVALIDPOINTER = detail::Result(0x80030009);
inline constexpr HRESULT STG_E_MEDIUMFULL = detail::Result(0x80030070);
/// The stream was ended before.
inline constexpr HRESULT STG_E_REVERTED = detail::Result(0x80030102);

// What the filters of a graph answer.

/// A sample has a start time and no stop time; a success.
inline constexpr HRESULT VFW_S_NO_STOP_TIME = detail::Result(0x00040270);
inline constexpr HRESULT VFW_E_NOT_COMMITTED = detail::Result(0x80040211);
inline constexpr HRESULT VFW_E_BUFFER_OVERFLOW = detail::Result(0x8004020D);
inline constexpr HRESULT VFW_E_NOT_STOPPED = detail::Result(0x80040224);
inline constexpr HRESULT VFW_E_WRONG_STATE = detail::Result(0x80040227);
/// The format is refused.
inline constexpr HRESULT VFW_E_TYPE_NOT_ACCEPTED = detail::Result(0x8004022A);
inline constexpr HRESULT VFW_E_SAMPLE_TIME_NOT_SET = detail::Result(0x80040249);
inline constexpr HRESULT VFW_E_MEDIA_TIME_NOT_SET = detail::Result(0x80040251);
/// The filter stands in no graph.
inline constexpr HRESULT VFW_E_NOT_IN_GRAPH = detail::Result(0x8004025F);
/// A frame was to be copied between buffers of different pixel formats.
inline constexpr HRESULT E_FRAME_FORMATS_DIFFER = detail::Result(0x80040248);

constexpr bool SUCCEEDED(HRESULT hr) { return hr >= 0; }
constexpr bool FAILED(HRESULT hr) { return hr < 0; }

} // namespace vellumcaster
