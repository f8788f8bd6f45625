#pragma once

namespace vellumcaster {

/// The gate before the first use of a pixel operation: whether the primitives stand ready. Every operation asks
/// it before it looks at its own arguments, and answers E_UNEXPECTED when it says no.
[[nodiscard]] bool Img_EnsurePrimitives();

} // namespace vellumcaster
