#pragma once

#include "graph/redirection.h"
#include "platform/media/media_seeking.h"

namespace vellumcaster {

/// Places and rates are upstream's: every call goes through to it.
/// \tparam Pin  the output pin, which derives from this.
template <class Pin>
class IMediaSeekingImpl : public IMediaSeeking {
public:
    HRESULT GetCapabilities(DWORD* pCapabilities) override {
        return Redirect("IMediaSeeking::GetCapabilities(pCapabilities)", &IMediaSeeking::GetCapabilities,
                        pCapabilities);
    }
    HRESULT CheckCapabilities(DWORD* pCapabilities) override {
        const HRESULT hr =
            Redirect("IMediaSeeking::CheckCapabilities()", &IMediaSeeking::CheckCapabilities, pCapabilities);
        if (SUCCEEDED(hr) && pCapabilities)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                              "%s: IMediaSeeking::CheckCapabilities(): capabilities=0x%X\n",
                              static_cast<Pin&>(*this).DisplayName(), *pCapabilities);
        return hr;
    }
    HRESULT IsFormatSupported(const GUID* pFormat) override {
        return Redirect("IMediaSeeking::IsFormatSupported(pFormat)", &IMediaSeeking::IsFormatSupported, pFormat);
    }
    HRESULT QueryPreferredFormat(GUID* pFormat) override {
        return Redirect("IMediaSeeking::QueryPreferredFormat(pFormat)", &IMediaSeeking::QueryPreferredFormat, pFormat);
    }
    HRESULT GetTimeFormat(GUID* pFormat) override {
        return Redirect("IMediaSeeking::GetTimeFormatA(pFormat)", &IMediaSeeking::GetTimeFormat, pFormat);
    }
    HRESULT IsUsingTimeFormat(const GUID* pFormat) override {
        return Redirect("IMediaSeeking::IsUsingTimeFormat(pFormat)", &IMediaSeeking::IsUsingTimeFormat, pFormat);
    }
    HRESULT SetTimeFormat(const GUID* pFormat) override {
        return Redirect("IMediaSeeking::SetTimeFormat(pFormat)", &IMediaSeeking::SetTimeFormat, pFormat);
    }
    HRESULT GetDuration(LONGLONG* pDuration) override {
        const HRESULT hr = Redirect("IMediaSeeking::GetDuration()", &IMediaSeeking::GetDuration, pDuration);
        if (SUCCEEDED(hr) && pDuration)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                              "%s: IMediaSeeking::GetDuration(): duration=%I64i\n",
                              static_cast<Pin&>(*this).DisplayName(), *pDuration);
        return hr;
    }
    HRESULT GetStopPosition(LONGLONG* pStop) override {
        return Redirect("IMediaSeeking::GetStopPosition(pStop)", &IMediaSeeking::GetStopPosition, pStop);
    }
    HRESULT GetCurrentPosition(LONGLONG* pCurrent) override {
        return Redirect("IMediaSeeking::GetCurrentPosition(pCurrent)", &IMediaSeeking::GetCurrentPosition, pCurrent);
    }
    HRESULT ConvertTimeFormat(LONGLONG* pTarget, const GUID* pTargetFormat, LONGLONG Source,
                              const GUID* pSourceFormat) override {
        const HRESULT hr = Redirect("IMediaSeeking::ConvertTimeFormat()", &IMediaSeeking::ConvertTimeFormat, pTarget,
                                    pTargetFormat, Source, pSourceFormat);
        if (SUCCEEDED(hr) && pTarget)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                              "%s: IMediaSeeking::ConvertTimeFormat(): target=%I64i, source=%I64i\n",
                              static_cast<Pin&>(*this).DisplayName(), *pTarget, Source);
        return hr;
    }
    HRESULT SetPositions(LONGLONG* pCurrent, DWORD dwCurrentFlags, LONGLONG* pStop, DWORD dwStopFlags) override {
        return Redirect("IMediaSeeking::SetPositions(pCurrent, dwCurrentFlags, pStop, dwStopFlags)",
                        &IMediaSeeking::SetPositions, pCurrent, dwCurrentFlags, pStop, dwStopFlags);
    }
    HRESULT GetPositions(LONGLONG* pCurrent, LONGLONG* pStop) override {
        const HRESULT hr = Redirect("IMediaSeeking::GetPositions()", &IMediaSeeking::GetPositions, pCurrent, pStop);
        if (SUCCEEDED(hr) && pCurrent && pStop)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                              "%s: IMediaSeeking::GetPositions(): current=%I64i, stop=%I64i\n",
                              static_cast<Pin&>(*this).DisplayName(), *pCurrent, *pStop);
        return hr;
    }
    HRESULT GetAvailable(LONGLONG* pEarliest, LONGLONG* pLatest) override {
        return Redirect("IMediaSeeking::GetAvailable(pEarliest, pLatest)", &IMediaSeeking::GetAvailable, pEarliest,
                        pLatest);
    }
    HRESULT SetRate(double dRate) override {
        return Redirect("IMediaSeeking::SetRate(dRate)", &IMediaSeeking::SetRate, dRate);
    }
    HRESULT GetRate(double* pdRate) override {
        return Redirect("IMediaSeeking::GetRate(pdRate)", &IMediaSeeking::GetRate, pdRate);
    }
    HRESULT GetPreroll(LONGLONG* pllPreroll) override {
        return Redirect("IMediaSeeking::GetPreroll(pllPreroll)", &IMediaSeeking::GetPreroll, pllPreroll);
    }

protected:
    ~IMediaSeekingImpl() = default;

private:
    template <class... Arguments>
    HRESULT Redirect(Arguments... arguments) {
        return RedirectCall<IMediaSeeking>(static_cast<Pin&>(*this), arguments...);
    }
};

} // namespace vellumcaster
