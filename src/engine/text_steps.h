#pragma once

#include "image/blob_holder.h"
#include "platform/text/text_canvas.h"
#include "platform/text/text_dc.h"

/// The steps that drawing a plain and an outlined text have in common, each with its line of diagnosis. All of them
/// answer S_OK or what the platform's call failed with; `std::bad_alloc` passes through.
namespace vellumcaster::CImageHelp {

/// \param pLogFont  null: the default font stays.
[[nodiscard]] HRESULT OpenContext(CTextDC& dc, const LOGFONT* pLogFont);

/// \param extent  gets width and height of all lines.
[[nodiscard]] HRESULT MeasureText(CTextDC& dc, const char* pszText, bool bDefaultFont, SIZE& extent);

/// \param cx, cy  pixels. \param nBlock  as `CTextCanvas::CreateBitmap` has it.
[[nodiscard]] HRESULT CreateCanvas(CTextCanvas& canvas, std::int64_t cx, std::int64_t cy, LONG nBlock);

/// Places a text in the canvas's rectangle inside the margin.
[[nodiscard]] HRESULT PlaceText(CTextDC& dc, const char* pszText, std::int64_t cx, std::int64_t cy, LONG nMargin,
                                LONG nTextFormat, PlacedText& text);

/// `Bitmap2Image` into a holder.
[[nodiscard]] HRESULT ReadCanvas(const CTextCanvas& canvas, CTaskBlob& picture, SIZE& size);

/// 255 less the coverage, for each byte. \return an empty holder where there is no memory for it.
[[nodiscard]] CTaskBlob ComplementOf(const CTaskBlob& picture);

/// Rounds up to the next multiple of `step`.
constexpr std::int64_t RoundUp(std::int64_t value, std::int64_t step) {
    const std::int64_t rest = value % step;
    return rest > 0 ? value + step - rest : value - rest;
}

/// Hands a picture to the caller, who did not have to ask for it.
inline void GiveOut(CTaskBlob& picture, BYTE** ppPicture) {
    if (ppPicture) *ppPicture = picture.Detach().data();
}

} // namespace vellumcaster::CImageHelp
