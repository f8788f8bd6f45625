#pragma once

#include "engine/overlay_item.h"

namespace vellumcaster {

/// Rebuilding an item's planes. The caller holds the item lock where the item is in a list; what a call leaves undone
/// when it fails is not drawn.

/// Builds all planes of an item from its picture, or from the coverage of its text.
/// \param dwInput  format of the input pin's stream; 0 while it is not connected.
/// \return S_OK, with nothing done while the pin is not connected or the text was never drawn; E_UNEXPECTED for an
///         image without a picture; else the first failure of `PrepareImage2`.
[[nodiscard]] HRESULT PrepareImage(OverlayItem& item, std::uint32_t dwInput);

/// Builds the planes of a text in any format.
/// \param coverage  the text whose coverage pictures and size count.
/// \param item  receives the planes, in the colours and with the alpha of its own record; may be the same item.
/// \return S_OK; the first failure of `PrepareImage2`.
[[nodiscard]] HRESULT PrepareText(const OverlayItem& coverage, std::uint32_t dwFormat, OverlayItem& item);

/// Fills the colour planes of a text again, after a change of its colours; of an image it empties those that it does
/// not have. A layer whose colour has an alpha of 0 loses its plane, the outline also where there is none.
/// \param dwOutput  format of the output pin's stream.
/// \return S_OK; E_INVALIDARG for a format that nothing can be filled in; E_OUTOFMEMORY.
[[nodiscard]] HRESULT UpdateItemColors(OverlayItem& item, std::uint32_t dwOutput);

/// Scales the weights again, after a change of the item's alpha or of its colours'.
/// \param dwInput  format of the input pin's stream.
/// \return S_OK; E_INVALIDARG for a format that has no such planes; E_OUTOFMEMORY.
[[nodiscard]] HRESULT UpdateItemAlpha(OverlayItem& item, std::uint32_t dwInput);

} // namespace vellumcaster
