#include "engine/overlay_engine.h"
#include "engine/stack_stream.h"
#include "platform/com/no_exceptions.h"

#include <algorithm>
#include <cstdlib>

namespace vellumcaster {

namespace {

/// Pixels that a text takes at the least, if its font has the height that it asks for: what nobody would draw is a lie.
std::int64_t LeastPixels(const StoredItem& item) {
    const std::u16string_view text = item.bsName.View();
    const std::int64_t height = std::abs(std::int64_t{item.logFont.lfHeight});
    const std::int64_t cLines = 1 + std::count(text.begin(), text.end(), u'\n');
    // A narrow letter is about a fifth as wide as its line is high.
    const auto cch = static_cast<std::int64_t>(text.size());
    return height > nLargestItem ? height : height * height / 5 * std::max(cch, cLines);
}

} // namespace

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
            if (SUCCEEDED(hr)) AddStored(item);
        }
        if (FAILED(hr)) return hr;
        m_bDirty = false;
        return S_OK;
    });
}

void COverlayEngine::AddStored(StoredItem& item) {
    switch (item.eType) {
    case eImage: {
        Cookie cookie = 0;
        SIZE size = item.size;
        if (AddImage2(item.bsName.Get(), item.props.nColorKeyMin, item.props.nColorKeyMax, &size, &cookie) != S_OK)
            return;
        WithItem(cookie, [&item](OverlayItem& added) {
            added.props = item.props;
            return S_OK;
        });
        return;
    }
    case eRect: {
        OVERLAY_PROPS props = item.props;
        props.bsTextString = item.bsName.Get();
        AddRoundRect(&item.size, &item.sizeEllipse, &props, nullptr);
        return;
    }
    case eText:
    case eDate:
    case eTime:
    case eFrameNumber:
    case eSMPTETimeCode: {
        if (LeastPixels(item) > nLargestItem) return;
        OVERLAY_PROPS props = item.props;
        props.bsTextString = item.bsName.Get();
        SIZE size = item.size;
        AddOutlinedText(item.eType, &item.logFont, item.nTextFormat, &props, &size, nullptr);
        return;
    }
    }
}

} // namespace vellumcaster
