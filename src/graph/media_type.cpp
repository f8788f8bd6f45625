#include "graph/media_type.h"

#include "image/blob_holder.h"
#include "image/guarded_memory.h"
#include "platform/com/task_memory.h"
#include "platform/media/media_type_ids.h"

#include <new>
#include <utility>

namespace vellumcaster {

namespace {

/// A new block with the bytes at `pSource`, or zeros for null; null for no bytes. Who gives the source's size may be
/// wrong about it.
HRESULT CopyFormat(std::size_t cb, const void* pSource, BYTE** ppb) {
    *ppb = nullptr;
    if (cb == 0) return S_OK;
    CTaskBlob block;
    if (cb > cbLargestFormat || block.Alloc(cb, !pSource) != S_OK) return E_OUTOFMEMORY;
    if (pSource && !SEH_CopyMemory(block.Data(), pSource, cb)) return E_UNEXPECTED;
    *ppb = block.Detach().data();
    return S_OK;
}

} // namespace

void MT_Init(AM_MEDIA_TYPE& mt, const GUID& major, const GUID& subtype) {
    AM_MEDIA_TYPE fresh; // the ids may stand in the record itself
    fresh.majortype = major;
    fresh.subtype = subtype;
    fresh.bFixedSizeSamples = 1;
    fresh.lSampleSize = 1;
    mt = fresh;
}

void MT_Free(AM_MEDIA_TYPE& mt) {
    CoTaskMemFree(std::exchange(mt.pbFormat, nullptr));
    if (IUnknown* pUnk = std::exchange(mt.pUnk, nullptr)) pUnk->Release();
}

void MT_Clear(AM_MEDIA_TYPE& mt) {
    MT_Free(mt);
    MT_Init(mt, GUID_NULL, GUID_NULL);
}

HRESULT MT_Set(AM_MEDIA_TYPE& mt, const GUID& major, const GUID& subtype, const GUID& format, std::size_t cb,
               const void* pSource) {
    AM_MEDIA_TYPE made;
    MT_Init(made, major, subtype);
    made.formattype = format;
    if (const HRESULT hr = CopyFormat(cb, pSource, &made.pbFormat); hr != S_OK) return hr;
    made.cbFormat = static_cast<ULONG>(cb);
    MT_Free(mt);
    mt = made;
    return S_OK;
}

HRESULT MT_CloneFormat(const AM_MEDIA_TYPE* pmt, BYTE** ppb) {
    if (!pmt) return E_INVALIDARG;
    if (!ppb) return E_POINTER;
    *ppb = nullptr;
    const bool bBroken = (pmt->cbFormat == 0) != !pmt->pbFormat;
    return bBroken ? E_UNEXPECTED : CopyFormat(pmt->cbFormat, pmt->pbFormat, ppb);
}

HRESULT MT_Assign(AM_MEDIA_TYPE& dst, const AM_MEDIA_TYPE* pSrc) {
    if (pSrc == &dst) return S_OK;
    if (!pSrc) {
        MT_Clear(dst);
        return S_OK;
    }
    AM_MEDIA_TYPE copy = *pSrc;
    if (const HRESULT hr = MT_CloneFormat(pSrc, &copy.pbFormat); hr != S_OK) return hr;
    if (copy.pUnk) copy.pUnk->AddRef();
    MT_Free(dst);
    dst = copy;
    return S_OK;
}

HRESULT MT_Copy(AM_MEDIA_TYPE* pDst, const AM_MEDIA_TYPE* pSrc) {
    if (!pDst) return E_INVALIDARG;
    if (pDst == pSrc) return S_OK;
    AM_MEDIA_TYPE copy;
    const HRESULT hr = MT_Assign(copy, pSrc);
    if (hr == S_OK) *pDst = copy;
    return hr;
}

AM_MEDIA_TYPE* MT_Clone(const AM_MEDIA_TYPE* pSrc) {
    if (!pSrc) return nullptr;
    AM_MEDIA_TYPE copy;
    if (MT_Copy(&copy, pSrc) != S_OK) return nullptr;
    void* pShell = CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE));
    if (pShell) return new (pShell) AM_MEDIA_TYPE(copy);
    MT_Free(copy);
    return nullptr;
}

void MT_Delete(AM_MEDIA_TYPE* pmt) {
    if (!pmt) return;
    MT_Free(*pmt);
    CoTaskMemFree(pmt);
}

} // namespace vellumcaster
