#include "engine/frame_mixer.h"

#include "image/plane_layout.h"

#include <algorithm>
#include <array>
#include <optional>

namespace vellumcaster {

namespace {

constexpr std::array frameFormats{eRGB32, eRGB24, eARGB32, eYUY2, eYVYU, eUYVY, eYV12, eI420};

bool IsFrameFormat(DWORD dwFormat) {
    return std::find(frameFormats.begin(), frameFormats.end(), dwFormat) != frameFormats.end();
}

template <class Time>
std::optional<Time> ValueAt(const Time* pTime) {
    return pTime ? std::optional(*pTime) : std::nullopt;
}

} // namespace

HRESULT CCoFrameMixer::SetFormat(const FrameFormat* pFormat) {
    if (!pFormat) return E_POINTER;
    if (pFormat->nStride < 0) return E_INVALIDARG;
    const LONG nStride = pFormat->nStride != 0 ? pFormat->nStride : pFormat->nWidth;
    const PictureFormat desc{pFormat->dwFormat, pFormat->nWidth, pFormat->nHeight, static_cast<DWORD>(nStride)};
    CAutoLock lock(m_Engine.ItemLock());
    if (m_bRunning) return VFW_E_NOT_STOPPED;
    if (!IsFrameFormat(desc.dwFormat) || !Allows(desc.dwFormat)) return VFW_E_TYPE_NOT_ACCEPTED;
    if (CPictureFormats::GetBufferSize(desc) == 0) return E_INVALIDARG;
    m_desc = desc;
    m_Painter.SetInputFormat(desc.dwFormat);
    m_Painter.SetOutputFormat(desc.dwFormat);
    m_Painter.SetAvgTimePerFrame(pFormat->avgTimePerFrame);
    m_Engine.PrepareItems();
    return S_OK;
}

HRESULT CCoFrameMixer::Start() {
    CAutoLock lock(m_Engine.ItemLock());
    if (m_bRunning) return S_FALSE;
    if (!HasFormat()) return E_UNEXPECTED;
    m_Engine.ResetItemForRun();
    m_bRunning = true;
    return S_OK;
}

HRESULT CCoFrameMixer::Stop() {
    CAutoLock lock(m_Engine.ItemLock());
    return m_bRunning.exchange(false) ? S_OK : S_FALSE;
}

HRESULT CCoFrameMixer::MixFrame(BYTE* pFrame, std::uint64_t cbFrame, const LONGLONG* pllStart, const LONGLONG* pllEnd,
                                const REFERENCE_TIME* prtStart, const REFERENCE_TIME* prtEnd) {
    if (!pFrame) return E_POINTER;
    return WithoutExceptions([&] {
        CAutoLock lock(m_Engine.ItemLock());
        if (!m_bRunning) return VFW_E_WRONG_STATE;
        const SIZE sizeFrame{m_desc.nWidth, static_cast<LONG>(RowCount(m_desc))};
        return m_Engine.MixFrame({pFrame, cbFrame, m_desc}, sizeFrame,
                                 {ValueAt(pllStart), ValueAt(pllEnd), ValueAt(prtStart), ValueAt(prtEnd)});
    });
}

HRESULT CCoFrameMixer::Load(IStream* pStm) {
    const HRESULT hr = IPersistStreamImpl::Load(pStm);
    m_Engine.PrepareItems();
    return hr;
}

std::optional<HRESULT> CCoFrameMixer::ReconnectInFormat(std::uint32_t dwFormat) {
    CAutoLock lock(m_Engine.ItemLock());
    if (!HasFormat()) return {};
    if (dwFormat != m_desc.dwFormat) return VFW_E_TYPE_NOT_ACCEPTED;
    m_fccDesired = dwFormat;
    return S_OK;
}

HRESULT CCoFrameMixer::Reconnect() { return VFW_E_NOT_IN_GRAPH; }

} // namespace vellumcaster
