#pragma once

#include <vellumcaster/item.h>

#include <array>
#include <cstddef>
#include <span>

namespace vellumcaster {

/// Bytes of a stored property record.
inline constexpr std::size_t cbStoredProps = 80;

/// The stored form of a record: little-endian on every machine, doubles as IEEE 754. The gaps and the slot of the
/// string are zero, so nothing of the process gets into a file.
[[nodiscard]] std::array<BYTE, cbStoredProps> EncodeProps(const OVERLAY_PROPS& props);

/// The record of its stored form; the gaps and the slot of the string are not looked at, and the string is null.
[[nodiscard]] OVERLAY_PROPS DecodeProps(std::span<const BYTE, cbStoredProps> stored);

} // namespace vellumcaster
