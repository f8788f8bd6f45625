#pragma once

#include <cstdint>

namespace vellumcaster::testing_support {

/// Bytes that this program has copied by the operations that move frames, since its start. The linker puts the count in
/// front of them; calls from within their own file are not seen twice.
[[nodiscard]] std::uint64_t CopiedBytes();

} // namespace vellumcaster::testing_support
