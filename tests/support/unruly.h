#pragma once

#include "graph/memory_allocator.h"
#include "platform/com/unknown_impl.h"
#include "platform/media/graph_results.h"
#include "platform/media/media_sample2.h"
#include "support/scripted_peer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <utility>

namespace vellumcaster::testing_support {

/// What objects do that keep to no contract: whichever method is called, it acts, or answers some code in its place and
/// does nothing, or faults. Any thread.
class CWhims {
public:
    /// \param nOneIn  of so many calls one is not as it should be.
    CWhims(std::uint64_t nSeed, std::uint64_t nOneIn) : m_nState(nSeed * 0x9E3779B97F4A7C15u), m_nOneIn(nOneIn) {}

    /// From now on all is as it should be.
    void Calm() { m_bCalm = true; }

    /// The answer, or nothing: act. A fault takes the place of a return.
    [[nodiscard]] std::optional<HRESULT> Answer() {
        if (m_bCalm) return {};
        const std::uint64_t n = Draw();
        if (n % m_nOneIn != 0) return {};
        const std::uint64_t nKind = n / m_nOneIn % (codes.size() + 4);
        return nKind < codes.size() ? codes[nKind] : Fault();
    }

    /// The answer, or what acting answers.
    template <class Act>
    HRESULT AnswerOr(Act act) {
        const auto hr = Answer();
        return hr ? *hr : act();
    }

private:
    // clang-format off
    static constexpr std::array codes{
        S_OK, S_FALSE, VFW_S_NO_STOP_TIME, E_FAIL, E_ABORT, E_POINTER, E_NOTIMPL, E_UNEXPECTED, E_INVALIDARG,
        E_OUTOFMEMORY, E_NOINTERFACE, VFW_E_NOT_CONNECTED, VFW_E_TYPE_NOT_ACCEPTED, VFW_E_ENUM_OUT_OF_SYNC,
        VFW_E_WRONG_STATE, VFW_E_NOT_COMMITTED, VFW_E_TIMEOUT, VFW_E_INVALIDMEDIATYPE, VFW_E_SAMPLE_TIME_NOT_SET};
    // clang-format on

    /// splitmix64
    std::uint64_t Draw() {
        std::uint64_t z = m_nState.fetch_add(0x9E3779B97F4A7C15u);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }

    std::atomic<std::uint64_t> m_nState;
    const std::uint64_t m_nOneIn;
    std::atomic<bool> m_bCalm = false;
};

using Whims = std::shared_ptr<CWhims>;

/// A sample of the usual kind, as far as its whims let it be one.
class CUnrulySample final : public CUnknownImpl<IMediaSample2> {
public:
    CUnrulySample(CComPtr<IMediaSample2> sp, Whims whims) : m_sp(std::move(sp)), m_Whims(std::move(whims)) {}

    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        return m_Whims->AnswerOr([&] { return CUnknownImpl::QueryInterface(iid, ppv); });
    }
    HRESULT GetPointer(BYTE** pp) override { return Do(&IMediaSample::GetPointer, pp); }
    LONG GetSize() override { return Length(&IMediaSample::GetSize); }
    HRESULT GetTime(REFERENCE_TIME* ps, REFERENCE_TIME* pe) override { return Do(&IMediaSample::GetTime, ps, pe); }
    HRESULT SetTime(REFERENCE_TIME* ps, REFERENCE_TIME* pe) override { return Do(&IMediaSample::SetTime, ps, pe); }
    HRESULT IsSyncPoint() override { return Do(&IMediaSample::IsSyncPoint); }
    HRESULT SetSyncPoint(BOOL b) override { return Do(&IMediaSample::SetSyncPoint, b); }
    HRESULT IsPreroll() override { return Do(&IMediaSample::IsPreroll); }
    HRESULT SetPreroll(BOOL b) override { return Do(&IMediaSample::SetPreroll, b); }
    LONG GetActualDataLength() override { return Length(&IMediaSample::GetActualDataLength); }
    HRESULT SetActualDataLength(LONG n) override { return Do(&IMediaSample::SetActualDataLength, n); }
    HRESULT GetMediaType(AM_MEDIA_TYPE** pp) override { return Do(&IMediaSample::GetMediaType, pp); }
    HRESULT SetMediaType(AM_MEDIA_TYPE* p) override { return Do(&IMediaSample::SetMediaType, p); }
    HRESULT IsDiscontinuity() override { return Do(&IMediaSample::IsDiscontinuity); }
    HRESULT SetDiscontinuity(BOOL b) override { return Do(&IMediaSample::SetDiscontinuity, b); }
    HRESULT GetMediaTime(LONGLONG* ps, LONGLONG* pe) override { return Do(&IMediaSample::GetMediaTime, ps, pe); }
    HRESULT SetMediaTime(LONGLONG* ps, LONGLONG* pe) override { return Do(&IMediaSample::SetMediaTime, ps, pe); }
    HRESULT GetProperties(DWORD cb, BYTE* p) override { return Do(&IMediaSample2::GetProperties, cb, p); }
    HRESULT SetProperties(DWORD cb, const BYTE* p) override { return Do(&IMediaSample2::SetProperties, cb, p); }

private:
    template <class Interface, class... Parameters>
    HRESULT Do(HRESULT (Interface::*method)(Parameters...), std::type_identity_t<Parameters>... arguments) {
        return m_Whims->AnswerOr([&] { return (m_sp.Get()->*method)(arguments...); });
    }

    /// It may be no length at all, but never more than there is.
    LONG Length(LONG (IMediaSample::*method)()) {
        const auto hr = m_Whims->Answer();
        return hr ? std::min(*hr, S_OK) : (m_sp.Get()->*method)();
    }

    CComPtr<IMediaSample2> m_sp;
    Whims m_Whims;
};

/// An allocator of the usual kind, as far as its whims let it be one, and so are its samples.
class CUnrulyAllocator final : public CUnknownImpl<IMemAllocator> {
public:
    static HRESULT Make(Whims whims, CComPtr<IMemAllocator>& sp) {
        CComPtr<CMemoryAllocator> spMemory;
        const HRESULT hr = CMemoryAllocator::Make(spMemory);
        if (hr == S_OK) sp = MakeCounted<CUnrulyAllocator>(std::move(spMemory), std::move(whims)).Get();
        return hr;
    }
    CUnrulyAllocator(CComPtr<CMemoryAllocator> sp, Whims whims) : m_sp(std::move(sp)), m_Whims(std::move(whims)) {}
    ~CUnrulyAllocator() override { m_sp->Decommit(); }

    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        return m_Whims->AnswerOr([&] { return CUnknownImpl::QueryInterface(iid, ppv); });
    }
    HRESULT SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) override {
        return m_Whims->AnswerOr([&] { return m_sp->SetProperties(pRequest, pActual); });
    }
    HRESULT GetProperties(ALLOCATOR_PROPERTIES* pProps) override {
        return m_Whims->AnswerOr([&] { return m_sp->GetProperties(pProps); });
    }
    HRESULT Commit() override {
        return m_Whims->AnswerOr([&] { return m_sp->Commit(); });
    }
    HRESULT Decommit() override {
        return m_Whims->AnswerOr([&] { return m_sp->Decommit(); });
    }
    HRESULT GetBuffer(IMediaSample** ppBuffer, REFERENCE_TIME*, REFERENCE_TIME*, DWORD dwFlags) override {
        if (const auto hr = m_Whims->Answer()) return *hr;
        CComPtr<IMediaSample> spSample;
        const HRESULT hr = m_sp->GetBuffer(spSample.Put(), nullptr, nullptr, dwFlags);
        CComPtr<IMediaSample2> spSecond;
        if (hr != S_OK) return hr;
        spSample->QueryInterface(IMediaSample2::IID, reinterpret_cast<void**>(spSecond.Put()));
        *ppBuffer = MakeCounted<CUnrulySample>(std::move(spSecond), m_Whims).Detach();
        return S_OK;
    }
    HRESULT ReleaseBuffer(IMediaSample*) override { return E_NOTIMPL; }

private:
    CComPtr<CMemoryAllocator> m_sp;
    Whims m_Whims;
};

} // namespace vellumcaster::testing_support
