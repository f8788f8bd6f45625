#pragma once

#include "platform/text/placed_text.h"
#include "platform/text/text_format.h"

#include <vellumcaster/log_font.h>

namespace vellumcaster {

class CLogicalFont;

/// What a text is measured and placed with: a device context with a font in it, on Pango.
///
/// Text is UTF-8; bytes that are none become U+FFFD. CR, LF and CRLF break lines. Characters that the face lacks come
/// from others, right-to-left text runs to the left, and ampersands are ordinary characters. Outlines and widths are
/// those of the design, without hinting.
///
/// An object belongs to one thread at a time; any number of them may be at work. A call that fails leaves its reason as
/// the thread's last error. Memory that cannot be had is `std::bad_alloc`.
class CTextDC {
public:
    /// Selects the default font: sans serif, 16 pixels from cell top to cell bottom.
    /// \return false with ERROR_FILE_NOT_FOUND on a machine without fonts.
    [[nodiscard]] bool CreateCompatibleDC();

    /// Makes a font and selects it.
    /// \param logFont  `lfHeight` is the height of the cell (positive) or of the em square (negative) in pixels, 0 is 16
    ///        from top to bottom of the cell; `lfWeight`, `lfItalic`, `lfUnderline`, `lfStrikeOut`, `lfEscapement` for
    ///        the whole text, and an `lfQuality` of 3 for edges that are not smoothed. The rest does not count.
    /// \return false with ERROR_INVALID_PARAMETER for more than 32767 pixels or a face name without an end. For a face
    ///         that does not exist another is taken.
    [[nodiscard]] bool CreateFontIndirectA(const LOGFONT& logFont);

    /// Measures a text or places it on a canvas.
    /// \param prc  with DT_CALCRECT: keeps its left and top, gets the right and bottom of the box round all lines, and
    ///        sets the width of lines under DT_WORDBREAK; else the rectangle that the lines stand in, which does not cut
    ///        them off.
    /// \param format  bits of text_format.h.
    /// \param pPlaced  null where the text is only measured.
    /// \return the height of the text in pixels; 0 for an empty text, with no error, and for one longer than 65535 bytes
    ///         or so wide that no canvas holds it, with ERROR_INVALID_PARAMETER.
    [[nodiscard]] LONG DrawTextA(const char* pszText, RECT* prc, DWORD format, PlacedText* pPlaced);

    /// Of the selected font. \pre `CreateCompatibleDC` has succeeded.
    [[nodiscard]] bool IsSmooth() const;
    [[nodiscard]] double EmHeight() const; ///< pixels

private:
    std::shared_ptr<CLogicalFont> m_spFont;
};

} // namespace vellumcaster
