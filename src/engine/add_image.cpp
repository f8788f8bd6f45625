#include "engine/overlay_engine.h"
#include "image/normalize_image.h"
#include "image/picture_persist.h"
#include "platform/com/no_exceptions.h"
#include "platform/com/utf8.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

HRESULT COverlayEngine::AddImage2(BSTR bsImageFileName, LONG nColorKeyMin, LONG nColorKeyMax, SIZE* pSize,
                                  Cookie* pnCookie) {
    if (!bsImageFileName) return E_INVALIDARG;
    return WithoutExceptions([&] {
        const std::string fileName = ToUtf8(CBstr::View(bsImageFileName));
        BITMAPINFOHEADER header;
        void* pPixels = nullptr;
        const HRESULT hr = CPicturePersist::LoadFromFile(fileName.c_str(), &header, &pPixels);
        if (FAILED(hr)) {
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                              "###Err### CCoVellumcaster::AddImage - CPicturePersist::LoadFromFile() "
                              "FAILED hr = 0x%08X\n",
                              hr);
            return hr;
        }
        CTaskBlob pixels;
        if (pPixels) pixels.TakeOver(static_cast<BYTE*>(pPixels), header.biSizeImage);
        if (pixels.IsEmpty()) return E_INVALIDARG;
        ImageInfoTag info{header.biWidth, header.biHeight, header.biBitCount, header.biCompression, header.biSizeImage};
        return AddImageFromMemory2(&info, header.biSizeImage, pixels.Data(), bsImageFileName, nColorKeyMin,
                                   nColorKeyMax, pSize, pnCookie);
    });
}

HRESULT COverlayEngine::AddImageFromMemory2(ImageInfoTag* pImageInfo, DWORD cbImage, const BYTE* pbImage,
                                            BSTR bsItemName, LONG nColorKeyMin, LONG nColorKeyMax, SIZE* pSize,
                                            Cookie* pnCookie) {
    SIZE size = pSize ? *pSize : SIZE{};
    if (!pImageInfo || !pbImage || cbImage < pImageInfo->biSizeImage) return E_INVALIDARG;

    const unsigned nPreparation = m_nPreparation;
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
    hr = AddPrepared(std::move(item), nPreparation, pnCookie);
    if (SUCCEEDED(hr) && pSize) *pSize = size;
    return hr;
}

} // namespace vellumcaster
