#pragma once

#include <vellumcaster/types.h>

#include <span>

namespace vellumcaster {

/// Bytes of the longest text of `FormatGuid`, with the closing zero.
inline constexpr std::size_t cchGuid = 41;

/// What a GUID is called: its published name; for one that carries a FOURCC or a registered tag, that; else its digits
/// in braces. The text ends in a zero and is cut where the buffer is too short for it.
/// \return the buffer; an empty text for an empty buffer.
const char* FormatGuid(const GUID& guid, std::span<char> buffer);

} // namespace vellumcaster
