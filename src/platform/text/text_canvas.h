#pragma once

#include "platform/media/bitmap_info.h"
#include "platform/text/text_dc.h"

namespace vellumcaster {

/// A black canvas on which text is drawn in white. All channels of its pixels are equal.
///
/// A canvas may be averaged: it stands for one that is `nBlock` times as wide and as high, on which the text is
/// drawn in one bit, and keeps only the average of each block of that. This gives the bytes that drawing on the large
/// one would give, and needs hardly any time once the text's glyphs have been seen.
///
/// An object belongs to one thread at a time. A call that fails leaves its reason as the thread's last error. Memory
/// that cannot be had is `std::bad_alloc`.
class CTextCanvas {
public:
    /// Whether texts of the selected font can be drawn on an averaged canvas: it is not smoothed, and font and pen are
    /// not of unusual size.
    /// \param nPen  the widest that will be used, in pixels. \param nBlock  from 1; only 2 to 16 are possible.
    [[nodiscard]] static bool CanAverage(const CTextDC& dc, LONG nPen, LONG nBlock);

    /// \param cx, cy  pixels; multiples of `nBlock`. \param nBlock  1 for a canvas that is not averaged.
    /// \return false with ERROR_INVALID_PARAMETER below 1 or above 32767 pixels a side, and above 1 GiB in 32-bit
    ///         pixels.
    [[nodiscard]] bool CreateBitmap(std::int64_t cx, std::int64_t cy, LONG nBlock = 1);

    void FillBlack();

    /// Fills the glyphs of a text.
    void FillText(const PlacedText& text);

    /// Strokes the outlines of the glyphs with a solid round pen, half of it on each side, without smoothing.
    /// \param nPen  its width in pixels, from 1; of the canvas that an averaged one stands for.
    void StrokePath(const PlacedText& text, LONG nPen);

    /// Reads the canvas as a bitmap of 32-bit pixels with the same value in all four bytes.
    /// \param pPixels  null: only the record is filled, with the rows from the bottom up. Else `biSizeImage` bytes that
    ///        take all rows, in the order that the record's height says.
    /// \return false with ERROR_INVALID_PARAMETER for a canvas that has not been created.
    [[nodiscard]] bool GetDIBits(BYTE* pPixels, BITMAPINFOHEADER* pInfo) const;

private:
    void DrawInOneBit(const PlacedText& text, LONG nPen);

    SIZE m_Size; ///< pixels that are kept, those of an averaged canvas
    LONG m_nBlock = 1;
    std::vector<BYTE> m_Bytes;
};

} // namespace vellumcaster
