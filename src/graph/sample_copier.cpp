#include "graph/sample_copier.h"

#include "graph/sample_snapshot.h"
#include "graph/seh_calls.h"
#include "image/guarded_memory.h"
#include "platform/kernel/trace.h"
#include "platform/media/graph_results.h"

namespace vellumcaster::CSampleCopier {

namespace {

HRESULT FindRoom(IMediaSample& dst, LONG length, BYTE** ppDst) {
    const HRESULT hr = SEH_IMediaSample::GetPointer(&dst, ppDst);
    if (FAILED(hr) || !*ppDst) return FailureOf(hr, E_FAIL);
    const LONG cb = SEH_IMediaSample::GetSize(&dst);
    if (cb >= length) return S_OK;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                      "###Err### CSampleCopier::CopyBuffer(): GetSize()=%i, lActual=%i\n", cb, length);
    return E_FAIL;
}

} // namespace

HRESULT CopyBuffer(IMediaSample* pDst, const BYTE* pSrc, LONG length, WORD wanted) {
    bool bPayload = wanted & samplePayload;
    const bool bLength = wanted & sampleActualLength;
    if (bPayload && (!pSrc || !bLength)) return E_INVALIDARG;
    if (length == 0) bPayload = false;
    if (!bLength) return S_OK;

    BYTE* pData = nullptr;
    HRESULT hr = length > 0 ? FindRoom(*pDst, length, &pData) : S_OK;
    if (hr != S_OK) return hr;
    hr = SEH_IMediaSample::SetActualDataLength(pDst, length);
    if (hr != S_OK) return FailureOf(hr, E_FAIL);
    if (!bPayload || length < 0) return S_OK;
    return SEH_CopyMemory(pData, pSrc, static_cast<std::size_t>(length)) ? S_OK : E_UNEXPECTED;
}

HRESULT Copy(IMediaSample* pDst, IMediaSample* pSrc, WORD wanted) {
    CSampleT snapshot;
    const HRESULT hrLoad = snapshot.Load(pSrc, wanted);
    if (FAILED(hrLoad)) return hrLoad;
    const HRESULT hrSave = snapshot.Save(pDst, static_cast<WORD>(wanted & snapshot.Mask()));
    if (FAILED(hrSave)) return hrSave;
    return hrLoad == S_OK ? hrSave : hrLoad;
}

} // namespace vellumcaster::CSampleCopier
