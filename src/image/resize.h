#pragma once

#include "image/picture_format.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

/// `nMode` of `Img_Resize`; any other value below 64 is handed to the scaling primitive as its interpolation, and a
/// value from 64 up names a kernel of the resampler.
enum ResizeMode : std::int32_t {
    resizeNearest = 32,
    resizeLinear = 33,
    resizeBest = 34,      ///< area average where neither side grows, else cubic
    resizeSmoothRows = 35 ///< resampled vertically, cubic horizontally
};

/// Scales a block of a picture into a block of another of the same format and row order; the sizes of the blocks
/// set the factors. Keeps no state: calls on different buffers may run at once.
///
/// Chroma has whole pixels only: of a block of odd size in 4:2:0 its last column or row may stay as it was, and one of
/// odd width in packed YUV goes without its last column.
///
/// \param pSrc, pDst  at least as large as their descriptors say; they do not overlap.
/// \param pfSrc, pfDst  of packed YUV with an `nStride` that is not 0.
/// \param prcSrc, prcDst  null for the whole picture; in YUV formats they begin at even places.
/// \param nMode  a `ResizeMode`, an interpolation of the primitives, or a kernel from 64 up, which RGB takes for cubic.
/// \param pWork  `GetScratchSize` bytes of the caller's; null: taken for the length of the call where needed.
/// \param nSharpen  0 none; up to 50 sharpens, down to -50 softens; the outermost pixels keep their values, and so do
///        all of a block below 3 x 3.
/// \return S_OK, also for RGB565 and RGB555, which are not scaled; S_FALSE when nothing is left after clipping;
///         E_INVALIDARG for a null pointer, different formats or row orders, a refused descriptor, a rectangle
///         without an inside or an unknown kernel; E_FAIL for a kernel over a height that shrinks some hundredfold;
///         E_OUTOFMEMORY; E_UNEXPECTED without primitives; else a primitive's status as a result. Blocks of one size
///         are copied, with the results of `CopyBlock`. After a failure the target is as far written as the work had
///         come.
[[nodiscard]] HRESULT Img_Resize(const void* pSrc, void* pDst, const PictureFormat* pfSrc, const PictureFormat* pfDst,
                                 const RECT* prcSrc, const RECT* prcDst, std::int32_t nMode, void* pWork,
                                 std::int32_t nSharpen);

} // namespace vellumcaster
