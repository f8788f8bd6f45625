#pragma once

#include "image/picture_format.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

/// Copies a block from one picture into another and changes its pixel format on the way, row orders included.
/// Runs when overlays are prepared, never on a frame. Keeps no state: calls on different buffers may run at once.
///
/// \param pSrc  at least as large as its descriptor says; may be changed (bytes reordered, rows flipped) unless
///        `bKeepSource` is set.
/// \param prcSrc, prcDst  blocks of the same size; null for the whole picture.
/// \param pWork  `GetScratchSize` bytes of the caller's; null: taken for the length of the call where needed.
/// \return S_OK, also for RGB565 and RGB555 sources, from which there is no route and nothing is written; S_FALSE
///         when nothing is left after clipping; E_INVALIDARG for a null pointer, a refused descriptor or a rectangle
///         without an inside; E_NOTIMPL for blocks of different size; E_FAIL for a source that could not be
///         mirrored; E_OUTOFMEMORY; E_UNEXPECTED without primitives; else a primitive's status as a result. After a
///         failure the target is as far written as the work had come.
[[nodiscard]] HRESULT Img_Convert(void* pSrc, void* pDst, const PictureFormat* pfSrc, const PictureFormat* pfDst,
                                  const RECT* prcSrc, const RECT* prcDst, BYTE bKeepSource, void* pWork);

/// Whether the route between two formats needs a work block, row orders apart.
[[nodiscard]] bool NeedsWorkBuffer(bool bKeepSource, std::uint32_t dwSource, std::uint32_t dwTarget);

} // namespace vellumcaster
