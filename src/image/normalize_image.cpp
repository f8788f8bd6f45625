#include "image/normalize_image.h"

#include "image/convert.h"
#include "image/layer_planes.h"
#include "image/plane_layout.h"
#include "image/resize.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

namespace {

constexpr LONG Even(LONG side) { return side & ~1; }

/// The bitmap as a picture: its even columns, read at its own row pitch.
PictureFormat DescribeBitmap(const ImageInfoTag& info) {
    const std::uint32_t code = info.biBitCount == 32 ? format_code::RGB32 : format_code::RGB24;
    return {code, Even(info.biWidth), info.biHeight, static_cast<std::uint32_t>(info.biWidth)};
}

/// Whether the record speaks of a bitmap that can be taken, and of no more pixels than there are.
bool IsUsable(const ImageInfoTag& info) {
    if (info.biCompression != 0 || (info.biBitCount != 32 && info.biBitCount != 24)) return false;
    if (info.biWidth < 2 || (info.biHeight > -2 && info.biHeight < 2)) return false;
    const std::size_t cb = CPictureFormats::GetBufferSize(DescribeBitmap(info));
    return cb != 0 && cb <= info.biSizeImage;
}

/// Scales the bitmap; record and block then are the scaled one's.
HRESULT Scale(ImageInfoTag& info, const BYTE* pPixels, const SIZE& wanted, CTaskBlob& block) {
    PictureFormat pfSource = DescribeBitmap(info);
    pfSource.nHeight = Even(pfSource.nHeight);
    const LONG cx = Even(wanted.cx);
    const PictureFormat pfScaled{pfSource.dwFormat, cx, Even(wanted.cy), static_cast<std::uint32_t>(cx)};
    const std::size_t cb = CPictureFormats::GetBufferSize(pfScaled);
    if (wanted.cx < 2 || wanted.cy < 2 || cb == 0) return E_INVALIDARG;
    HRESULT hr = block.Resize(cb);
    if (FAILED(hr)) return hr;

    hr = Img_Resize(pPixels, block.Data(), &pfSource, &pfScaled, nullptr, nullptr, resizeBest, nullptr, 0);
    if (FAILED(hr)) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CCoVellumcaster::AddImage - Img_Resize() FAILED hr = 0x%08X\n", hr);
        return hr;
    }
    info.biWidth = pfScaled.nWidth;
    info.biHeight = pfScaled.nHeight;
    info.biSizeImage = static_cast<DWORD>(cb);
    return S_OK;
}

HRESULT CopyPixels(const ImageInfoTag& info, const BYTE* pPixels, CTaskBlob& block) {
    const std::size_t cb = CPictureFormats::GetBufferSize(DescribeBitmap(info));
    const HRESULT hr = block.Resize(cb);
    if (SUCCEEDED(hr)) block.MemCopy(pPixels, cb, 0);
    return hr;
}

} // namespace

HRESULT NormalizeImage(ImageInfoTag* pInfo, const BYTE* pPixels, SIZE* pSize, CTaskBlob* pOut) {
    if (!pInfo || !pPixels || !pSize || !pOut || !IsUsable(*pInfo)) return E_INVALIDARG;
    CTaskBlob block;
    const bool bScaled = pSize->cx != 0 && pSize->cy != 0;
    HRESULT hr = bScaled ? Scale(*pInfo, pPixels, *pSize, block) : CopyPixels(*pInfo, pPixels, block);
    if (FAILED(hr)) return hr;

    const SIZE size{Even(pInfo->biWidth), static_cast<LONG>(RowCount(DescribeBitmap(*pInfo)))};
    const bool bIsInForm = pInfo->biBitCount == 32 && pInfo->biHeight < 0 && pInfo->biWidth % 2 == 0;
    if (bIsInForm) {
        *pOut = std::move(block);
    } else {
        const PictureFormat pfBlock = DescribeBitmap(*pInfo);
        const PictureFormat pfOut{format_code::RGB32, size.cx, -size.cy, 0};
        if (!IsPictureSize(size)) return E_INVALIDARG;
        hr = pOut->Resize(PictureBytes(size));
        if (FAILED(hr)) return hr;
        hr = Img_Convert(block.Data(), pOut->Data(), &pfBlock, &pfOut, nullptr, nullptr, 0, nullptr);
        if (FAILED(hr)) return hr;
    }
    *pSize = {size.cx, Even(size.cy)};
    return S_OK;
}

} // namespace vellumcaster
