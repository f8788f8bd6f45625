#include "engine/bitmap_to_image.h"

#include "engine/text_steps.h"
#include "platform/com/task_memory.h"
#include "platform/kernel/last_error.h"
#include "platform/kernel/trace.h"

#include <cstdlib>

namespace vellumcaster::CImageHelp {

HRESULT Bitmap2Image(const CTextCanvas& canvas, BYTE** ppPixels, BITMAPINFOHEADER* pInfo) {
    BITMAPINFOHEADER info;
    if (!canvas.GetDIBits(nullptr, &info)) {
        const HRESULT hr = LastErrorAsResult();
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CImageHelp::Bitmap2Image(): GetDIBits( NULL )=0x%X\n", hr);
        return hr;
    }
    auto* pPixels = static_cast<BYTE*>(CoTaskMemAlloc(info.biSizeImage));
    if (!pPixels) return E_OUTOFMEMORY;
    info.biHeight = -std::abs(info.biHeight);
    if (!canvas.GetDIBits(pPixels, &info)) {
        CoTaskMemFree(pPixels);
        return LastErrorAsResult();
    }
    *ppPixels = pPixels;
    if (!pInfo) return S_OK;
    *pInfo = info;
    pInfo->biSize = sizeof *pInfo;
    pInfo->biCompression = BI_RGB;
    return S_OK;
}

} // namespace vellumcaster::CImageHelp
