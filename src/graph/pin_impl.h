#pragma once

#include "graph/media_type_enumerator.h"
#include "graph/narrow_text.h"
#include "graph/pin_core.h"
#include "platform/com/no_exceptions.h"
#include "platform/com/task_memory.h"
#include "platform/media/base_filter.h"

#include <algorithm>

namespace vellumcaster {

/// What both pins answer alike.
/// \tparam Pin  the concrete pin, which derives from this and from `CPinCore`.
template <class Pin>
class IPinImpl : public IPin {
public:
    HRESULT ConnectedTo(IPin** ppPin) override {
        if (!ppPin) return E_POINTER;
        *ppPin = This().Peer().Detach();
        return *ppPin ? S_OK : VFW_E_NOT_CONNECTED;
    }

    HRESULT ConnectionMediaType(AM_MEDIA_TYPE* pmt) override {
        if (!pmt) return E_POINTER;
        CAutoLock lock(This().m_csPin);
        return This().IsConnected() ? This().CopyMediaType(pmt) : VFW_E_NOT_CONNECTED;
    }

    HRESULT QueryPinInfo(PIN_INFO* pInfo) override {
        if (!pInfo) return E_POINTER;
        return WithoutExceptions([&] {
            *pInfo = {};
            WidenText(This().m_szName.data(), pInfo->achName);
            pInfo->dir = This().m_Direction;
            const auto spFilter = This().m_apFilter.Get();
            if (spFilter) pInfo->pFilter = CComPtr<IBaseFilter>(spFilter.Get()).Detach();
            return S_OK;
        });
    }

    HRESULT QueryDirection(PIN_DIRECTION* pPinDir) override {
        if (!pPinDir) return E_POINTER;
        *pPinDir = This().m_Direction;
        return S_OK;
    }

    HRESULT QueryId(OLECHAR** ppszId) override {
        if (!ppszId) return E_POINTER;
        *ppszId = nullptr;
        return WithoutExceptions([&] {
            const std::u16string id = FromUtf8(This().m_szName.data());
            auto* pszId = static_cast<OLECHAR*>(CoTaskMemAlloc((id.size() + 1) * sizeof(OLECHAR)));
            if (!pszId) return E_OUTOFMEMORY;
            std::copy_n(id.c_str(), id.size() + 1, pszId);
            *ppszId = pszId;
            return S_OK;
        });
    }

    HRESULT QueryAccept(const AM_MEDIA_TYPE* pmt) override { return This().QueryAcceptMT(pmt) ? S_OK : S_FALSE; }

    HRESULT EnumMediaTypes(IEnumMediaTypes** ppEnum) override {
        if (!ppEnum) return E_POINTER;
        *ppEnum = nullptr;
        return WithoutExceptions([&] {
            CAutoLock lock(This().m_csPin);
            *ppEnum = MakeCounted<CMediaTypeEnumerator<Pin>>(CComPtr<Pin>(&This())).Detach();
            return S_OK;
        });
    }

    HRESULT QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }

protected:
    ~IPinImpl() = default;

    Pin& This() { return static_cast<Pin&>(*this); }
};

} // namespace vellumcaster
