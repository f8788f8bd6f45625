#pragma once

#include "platform/com/unknown_impl.h"
#include "platform/media/media_sample.h"
#include "platform/media/mem_input_pin.h"

#include <vellumcaster/results.h>

#include <functional>
#include <utility>

namespace vellumcaster::testing_support {

/// An allocator with one sample, or with a failure in its place.
class COneSampleAllocator final : public CUnknownImpl<IMemAllocator> {
public:
    HRESULT SetProperties(ALLOCATOR_PROPERTIES*, ALLOCATOR_PROPERTIES*) override { return E_NOTIMPL; }
    HRESULT GetProperties(ALLOCATOR_PROPERTIES*) override { return E_NOTIMPL; }
    HRESULT Commit() override { return S_OK; }
    HRESULT Decommit() override { return S_OK; }
    HRESULT GetBuffer(IMediaSample** ppBuffer, REFERENCE_TIME* pStart, REFERENCE_TIME* pEnd, DWORD dwFlags) override {
        m_bAskedPlainly = !pStart && !pEnd && dwFlags == 0;
        if (FAILED(m_hr)) return m_hr;
        *ppBuffer = CComPtr<IMediaSample>(m_spSample).Detach();
        return m_hr;
    }
    HRESULT ReleaseBuffer(IMediaSample*) override { return S_OK; }

    CComPtr<IMediaSample> m_spSample;
    HRESULT m_hr = S_OK;
    bool m_bAskedPlainly = false;
};

/// A pin downstream that shows each sample to a function and answers what that answers.
class CWatchingPin final : public CUnknownImpl<IMemInputPin> {
public:
    explicit CWatchingPin(std::function<HRESULT(IMediaSample&)> onReceive) : m_onReceive(std::move(onReceive)) {}

    HRESULT GetAllocator(IMemAllocator**) override { return E_NOTIMPL; }
    HRESULT NotifyAllocator(IMemAllocator*, BOOL) override { return S_OK; }
    HRESULT GetAllocatorRequirements(ALLOCATOR_PROPERTIES*) override { return E_NOTIMPL; }
    HRESULT Receive(IMediaSample* pSample) override { return m_onReceive(*pSample); }
    HRESULT ReceiveMultiple(IMediaSample**, LONG, LONG*) override { return E_NOTIMPL; }
    HRESULT ReceiveCanBlock() override { return S_OK; }

private:
    std::function<HRESULT(IMediaSample&)> m_onReceive;
};

} // namespace vellumcaster::testing_support
