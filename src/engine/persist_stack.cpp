#include "engine/overlay_engine.h"
#include "engine/stack_stream.h"
#include "image/picture_format.h"
#include "platform/com/no_exceptions.h"

#include <algorithm>
#include <cstdlib>

namespace vellumcaster {

namespace {

/// A stored picture of more pixels than a frame of 8192 by 4096 is taken for a lie.
constexpr std::int64_t nLargestImage = std::int64_t{1} << 25;
/// And so is a text of more than 2048 by 2048: each of its pixels is kept in a dozen planes.
constexpr std::int64_t nLargestText = std::int64_t{1} << 22;
constexpr double widestOutline = 2048; ///< of a stored text, pixels

/// Letters that a text is about to show.
std::int64_t LettersOf(const StoredItem& item) {
    constexpr std::int64_t cchOfClock = 10; // as in yyyy/MM/dd
    const auto cch = static_cast<std::int64_t>(item.bsName.View().size());
    switch (item.eType) {
    case eText: return std::max(cch, std::int64_t{1});
    case eDate:
    case eTime: return std::max(cch, cchOfClock);
    case eFrameNumber:
    case eSMPTETimeCode: return cchOfClock; // the name is a label
    default: return 0;
    }
}

/// Pixels that a text takes at the least, if its font has the height that it asks for: a narrow letter is about a fifth
/// as wide as its line is high.
std::int64_t LeastPixels(const StoredItem& item) {
    const std::int64_t height = std::abs(std::int64_t{item.logFont.lfHeight});
    return height > nLargestSide ? nLargestText + 1 : height * height / 5 * LettersOf(item);
}

} // namespace

bool IsWorthMaking(const StoredItem& item) {
    if (std::max(item.size.cx, item.size.cy) > nLargestSide) return false;
    if (item.eType != eImage && std::abs(item.props.dblOutlineWidth) > widestOutline) return false;
    const bool bHasSize = item.size.cx > 0 && item.size.cy > 0;
    const std::int64_t nLargest = item.eType == eImage ? nLargestImage : nLargestText;
    return (!bHasSize || std::int64_t{item.size.cx} * item.size.cy <= nLargest) && LeastPixels(item) <= nLargestText;
}

HRESULT COverlayEngine::Save(ISequentialStream* pStm, bool bClearDirty) {
    if (!pStm) return E_INVALIDARG;
    return WithoutExceptions([&] {
        HRESULT hr = WriteHeader(*pStm);
        if (FAILED(hr)) return hr;
        CAutoLock lock(m_csItems);
        hr = WriteCount(*pStm, m_Items.Count());
        for (LONG i = 0; i < m_Items.Count() && SUCCEEDED(hr); ++i)
            hr = WriteItem(*pStm, m_Items.At(i));
        if (FAILED(hr)) return hr;
        if (bClearDirty) m_bDirty = false;
        return S_OK;
    });
}

HRESULT COverlayEngine::Load(ISequentialStream* pStm) {
    if (!pStm) return E_INVALIDARG;
    return WithoutExceptions([&] {
        StackHeader header;
        HRESULT hr = ReadHeader(*pStm, header);
        StoredItem item;
        for (DWORD i = 0; i < header.cItems && SUCCEEDED(hr); ++i) {
            hr = ReadItem(*pStm, item);
            if (SUCCEEDED(hr)) static_cast<void>(AddStored(item));
        }
        if (FAILED(hr)) return hr;
        m_bDirty = false;
        return S_OK;
    });
}

bool COverlayEngine::AddStored(StoredItem& item) {
    if (!IsWorthMaking(item)) return false;
    switch (item.eType) {
    case eImage: {
        Cookie cookie = 0;
        SIZE size = item.size;
        if (AddImage2(item.bsName.Get(), item.props.nColorKeyMin, item.props.nColorKeyMax, &size, &cookie) != S_OK)
            return false;
        return WithItem(cookie, [&item](OverlayItem& added) {
                   added.props = item.props;
                   return S_OK;
               }) == S_OK;
    }
    case eRect: {
        OVERLAY_PROPS props = item.props;
        props.bsTextString = item.bsName.Get();
        return SUCCEEDED(AddRoundRect(&item.size, &item.sizeEllipse, &props, nullptr));
    }
    case eText:
    case eDate:
    case eTime:
    case eFrameNumber:
    case eSMPTETimeCode: {
        OVERLAY_PROPS props = item.props;
        props.bsTextString = item.bsName.Get();
        SIZE size = item.size;
        return SUCCEEDED(AddOutlinedText(item.eType, &item.logFont, item.nTextFormat, &props, &size, nullptr));
    }
    }
    return false;
}

} // namespace vellumcaster
