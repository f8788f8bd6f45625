#pragma once

#include "engine/overlay_item.h"

namespace vellumcaster {

/// Draws a text into an item, in its font, format and outline, and prepares its planes. The item grows with its text
/// and does not shrink again. After a failed drawing it shows what it showed before.
/// \param pszText  UTF-8.
/// \param dwInput  format of the input pin's stream; 0 while it is not connected.
/// \return S_OK; E_INVALIDARG for a null text; the rasteriser's failure, as for an empty text; `PrepareImage`'s.
[[nodiscard]] HRESULT UpdateTextItem(OverlayItem& item, const char* pszText, std::uint32_t dwInput);

} // namespace vellumcaster
