#include "engine/overlay_engine.h"
#include "platform/com/no_exceptions.h"
#include "platform/com/utf8.h"

#include <iterator>
#include <utility>

namespace vellumcaster {

namespace {

/// What a text is called and formatted by where the caller leaves it open; null where it has to be given.
const OLECHAR* DefaultName(ITEM_TYPE eType) {
    switch (eType) {
    case eDate: return u"yyyy/MM/dd";
    case eTime: return u"HH:mm:ss";
    case eFrameNumber: return u"Frame Number";
    case eSMPTETimeCode: return u"SMPTE timecode";
    default: return nullptr;
    }
}

/// \return E_INVALIDARG for a kind that has no text, and for a fixed text that is not there.
HRESULT Name(OverlayItem& item, ITEM_TYPE eType, BSTR bsText) {
    if (eType == eText) return bsText ? item.bsName.Assign(bsText) : E_INVALIDARG;
    const OLECHAR* pszDefault = DefaultName(eType);
    if (!pszDefault) return E_INVALIDARG;
    const bool bGiven = eType == eSMPTETimeCode ? bsText != nullptr : SysStringLen(bsText) != 0;
    return bGiven ? item.bsName.Assign(bsText) : item.bsName.Assign(std::u16string_view(pszDefault));
}

/// Bytes of the longest beginning of a UTF-8 text that has at most `cbMost` of them and splits no character.
std::size_t WholeCharacters(std::string_view text, std::size_t cbMost) {
    if (text.size() <= cbMost) return text.size();
    const auto continues = [](char c) { return (c & 0xC0) == 0x80; };
    while (cbMost > 0 && continues(text[cbMost]))
        --cbMost;
    return cbMost;
}

HRESULT Draw(IItemPainter& painter, OverlayItem& item) {
    switch (item.eType) {
    case eText: return painter.UpdateTextItem(item);
    case eDate: return painter.UpdateDate(item, true);
    case eTime: return painter.UpdateTime(item, true);
    default: return S_OK; // drawn on its first frame
    }
}

} // namespace

HRESULT COverlayEngine::AddOutlinedText(ITEM_TYPE eType, const LOGFONT* pLogFont, LONG nTextFormat,
                                        const OVERLAY_PROPS* pOvlProps, SIZE* pSize, Cookie* pnCookie) {
    if (!pOvlProps) return E_INVALIDARG;
    const unsigned nPreparation = m_nPreparation;
    OverlayItem item;
    item.eType = eType;
    item.nTextFormat = nTextFormat;
    item.props = *pOvlProps;
    item.props.bsTextString = nullptr;
    item.SnapToSetPosition();
    if (pSize) item.sizeItem = *pSize;
    if (pLogFont) item.logFont = *pLogFont;

    HRESULT hr = Name(item, eType, pOvlProps->bsTextString);
    if (FAILED(hr)) return hr;
    hr = Draw(m_Painter, item);
    if (FAILED(hr)) return hr;
    const SIZE size = item.sizeItem;
    hr = AddPrepared(std::move(item), nPreparation, pnCookie);
    if (SUCCEEDED(hr) && pSize) *pSize = size;
    return hr;
}

HRESULT COverlayEngine::AddOutlinedTextVB(ITEM_TYPE eType, BSTR bsFontFace, DWORD dwFontHeight, LONG nTextFormat,
                                          const OVERLAY_PROPS* pOvlProps, SIZE* pSize, Cookie* pnCookie) {
    LOGFONT font;
    font.lfHeight = static_cast<LONG>(dwFontHeight);
    font.lfWeight = 400;
    font.lfCharSet = 1;
    font.lfQuality = 7;
    const HRESULT hr = WithoutExceptions([&] {
        const std::string face = ToUtf8(CBstr::View(bsFontFace));
        face.copy(font.lfFaceName, WholeCharacters(face, std::size(font.lfFaceName) - 1));
        return S_OK;
    });
    return FAILED(hr) ? hr : AddOutlinedText(eType, &font, nTextFormat, pOvlProps, pSize, pnCookie);
}

HRESULT COverlayEngine::AddRoundRect(const SIZE* /*pSize*/, const SIZE* /*pEllipseSize*/,
                                     const OVERLAY_PROPS* /*pOvlProps*/, Cookie* /*pnCookie*/) {
    return E_NOTIMPL;
}

} // namespace vellumcaster
