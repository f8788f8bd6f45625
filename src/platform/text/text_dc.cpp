#include "platform/text/text_dc.h"

#include "platform/kernel/last_error.h"
#include "platform/text/logical_font.h"
#include "platform/text/text_layout.h"
#include "platform/text/text_string.h"

namespace vellumcaster {

namespace {

/// No canvas holds a line that is wider, and Pango's own numbers would not either.
constexpr double nMostEmsTimesPixels = 400000;

LONG Fail(DWORD error) {
    SetLastError(error);
    return 0;
}

} // namespace

bool CTextDC::CreateCompatibleDC() {
    if (!HasFonts()) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return false;
    }
    m_spFont = CLogicalFont::Find(LOGFONT{});
    return m_spFont != nullptr;
}

bool CTextDC::CreateFontIndirectA(const LOGFONT& logFont) {
    auto spFont = CLogicalFont::Find(logFont);
    if (!spFont) return false;
    m_spFont = std::move(spFont);
    return true;
}

bool CTextDC::IsSmooth() const { return m_spFont->IsSmooth(); }

double CTextDC::EmHeight() const { return m_spFont->Em(); }

LONG CTextDC::DrawTextA(const char* pszText, RECT* prc, DWORD format, PlacedText* pPlaced) {
    if (!m_spFont || !pszText || !prc) return Fail(ERROR_INVALID_PARAMETER);
    if (*pszText == '\0') return Fail(ERROR_SUCCESS);
    std::string text;
    if (!ReadText(pszText, format, text)) return Fail(ERROR_INVALID_PARAMETER);
    if (static_cast<double>(LongestLine(text)) * m_spFont->Em() > nMostEmsTimesPixels)
        return Fail(ERROR_INVALID_PARAMETER);

    const CAutoLock lock(TextLock());
    CTextLayout layout(*m_spFont, text, *prc, format);
    if ((format & DT_CALCRECT) != 0)
        layout.Measure(*prc);
    else if (pPlaced)
        layout.Place(*prc, format, *pPlaced);
    return layout.Height();
}

} // namespace vellumcaster
