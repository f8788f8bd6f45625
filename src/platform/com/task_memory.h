#pragma once

#include <cstddef>

namespace vellumcaster {

/// Memory that one side of an interface allocates and the other frees.
/// \return null when there is none; the content is undefined.
[[nodiscard]] void* CoTaskMemAlloc(std::size_t cb);

/// Frees a block of `CoTaskMemAlloc`; null is allowed.
void CoTaskMemFree(void* pv);

} // namespace vellumcaster
