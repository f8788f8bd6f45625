#pragma once

#include <cstddef>

/// What is kept of the glyphs that were drawn lately, by all threads together: at most 48 MiB, whatever texts come.
/// May be called on any thread.
namespace vellumcaster::CShapeCache {

/// Forgets all of it; the next texts take as long as the first ones.
void Clear();

/// Bytes that are kept.
[[nodiscard]] std::size_t Size();

} // namespace vellumcaster::CShapeCache
