#pragma once

#include "engine/overlay_item.h"

namespace vellumcaster {

/// The coverage pictures of a text, all of one size.
struct TextCoverage {
    SIZE size; ///< in: the least size wanted; out: that of the pictures
    CTaskBlob fore;
    CTaskBlob back;
    CTaskBlob outline; ///< empty for a text without outline
};

/// Draws a text in an item's font and format.
/// \param pszText  UTF-8. \param dblOutlineWidth  pixels; 0 for a text without outline.
/// \return S_OK; the rasteriser's failure, as for an empty text.
[[nodiscard]] HRESULT DrawText(const OverlayItem& item, const char* pszText, double dblOutlineWidth,
                               TextCoverage& coverage);

/// Draws a text into an item, in its font, format and outline, and prepares its planes. The item grows with its text
/// and does not shrink again. After a failed drawing it shows what it showed before.
/// \param pszText  UTF-8.
/// \param dwInput  format of the input pin's stream; 0 while it is not connected.
/// \return S_OK; E_INVALIDARG for a null text; the rasteriser's failure, as for an empty text; `PrepareImage`'s.
[[nodiscard]] HRESULT UpdateTextItem(OverlayItem& item, const char* pszText, std::uint32_t dwInput);

} // namespace vellumcaster
