#include "engine/overlay_engine.h"
#include "image/normalize_image.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

HRESULT COverlayEngine::AddImageFromMemory2(ImageInfoTag* pImageInfo, DWORD cbImage, const BYTE* pbImage,
                                            BSTR bsItemName, LONG nColorKeyMin, LONG nColorKeyMax, SIZE* pSize,
                                            Cookie* pnCookie) {
    SIZE size = pSize ? *pSize : SIZE{};
    if (!pImageInfo || !pbImage || cbImage < pImageInfo->biSizeImage) return E_INVALIDARG;

    OverlayItem item;
    HRESULT hr = NormalizeImage(pImageInfo, pbImage, &size, &item.blobImage);
    if (FAILED(hr)) return hr;
    item.eType = eImage;
    item.sizeItem = size;
    item.props.sAlphaValue = 255;
    item.props.nColorKeyMin = nColorKeyMin;
    item.props.nColorKeyMax = nColorKeyMax;
    hr = bsItemName ? item.bsName.Assign(bsItemName) : item.bsName.Assign(std::u16string_view(u"Memory Image"));
    if (FAILED(hr)) return hr;

    hr = m_Painter.PrepareImage(item);
    if (FAILED(hr)) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CCoVellumcaster::AddImageFromMemory2 - PrepareImage() FAILED hr = 0x%08X\n", hr);
        return hr;
    }
    hr = AddItem(item, pnCookie);
    if (SUCCEEDED(hr) && pSize) *pSize = item.sizeItem;
    return hr;
}

} // namespace vellumcaster
