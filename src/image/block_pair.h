#pragma once

#include "image/plane_layout.h"

#include <vellumcaster/results.h>

namespace vellumcaster::CPictureFormats {

/// Where a block lies in one picture.
struct BlockPlace {
    PlaneLayout layout;
    LONG x = 0;                          ///< pixels from the left
    LONG y = 0;                          ///< rows from the start of the buffer
    std::array<std::size_t, 3> starts{}; ///< bytes from the start of the buffer to the block's first row, by slot
};

/// One block in two pictures, clipped to both.
struct BlockPair {
    BlockPlace a;
    BlockPlace b;
    SIZE size; ///< pixels
};

/// Resolves two descriptors and two rectangles to memory, without scaling.
/// \return S_OK; E_NOTIMPL for rectangles of different size; E_INVALIDARG for a refused descriptor or a rectangle
///         without an inside; S_FALSE when nothing is left.
[[nodiscard]] HRESULT LocateBlockPair(const PictureFormat& a, const PictureFormat& b, const RECT* inA, const RECT* inB,
                                      BlockPair& block);

} // namespace vellumcaster::CPictureFormats
