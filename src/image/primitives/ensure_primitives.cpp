#include "image/primitives/ensure_primitives.h"

namespace vellumcaster {

// The kernels of mixing, copying and filling are bound when they are compiled: there is nothing to make ready.
bool Img_EnsurePrimitives() { return true; }

} // namespace vellumcaster
