#include "engine/stream_demands.h"

#include "graph/format_text.h"
#include "image/format_names.h"
#include "image/picture_format.h"
#include "platform/com/bstr.h"

#include <algorithm>
#include <array>

namespace vellumcaster {

namespace {

constexpr std::array demandableFormats{format_code::ARGB32, format_code::RGB32, format_code::RGB24, format_code::YUY2,
                                       format_code::UYVY,   format_code::YVYU,  format_code::YV12,  format_code::I420};

constexpr std::uint32_t anyFormat = 0;

bool EqualsAny(std::u16string_view name) {
    constexpr std::u16string_view any = u"any";
    return std::equal(name.begin(), name.end(), any.begin(), any.end(),
                      [](OLECHAR c, OLECHAR lower) { return (c >= u'A' && c <= u'Z' ? c - u'A' + u'a' : c) == lower; });
}

std::uint32_t FormatOfName(BSTR bsName) {
    const std::u16string_view name = CBstr::View(bsName);
    return name.empty() || EqualsAny(name) ? anyFormat : CPictureFormats::FormatFromName(bsName);
}

} // namespace

HRESULT CStreamDemands::SetColorSpace(BSTR bsFourccDesired) {
    const std::uint32_t fcc = FormatOfName(bsFourccDesired);
    if (fcc != anyFormat) {
        if (fcc == m_fccDesired) return S_FALSE;
        if (!IsStopped()) return VFW_E_NOT_STOPPED;
        if (std::find(demandableFormats.begin(), demandableFormats.end(), fcc) == demandableFormats.end())
            return VFW_E_TYPE_NOT_ACCEPTED;
        if (const std::optional<HRESULT> hr = ReconnectInFormat(fcc)) return *hr;
    }
    m_fccDesired = fcc;
    MarkUnsaved();
    return S_OK;
}

HRESULT CStreamDemands::GetColorSpace(BSTR* pbsFourccDesired) const {
    if (!pbsFourccDesired) return E_POINTER;
    CShortText<cchSubtypeCode> name;
    if (m_fccDesired == anyFormat)
        CopyText("Any", name.Buffer());
    else
        FormatSubtypeCode(m_fccDesired, name.Buffer());
    const std::string_view text = name;
    std::array<OLECHAR, cchSubtypeCode> wide{};
    std::copy(text.begin(), text.end(), wide.begin());
    *pbsFourccDesired = SysAllocStringLen(wide.data(), static_cast<DWORD>(text.size()));
    return *pbsFourccDesired ? S_OK : E_OUTOFMEMORY;
}

HRESULT CStreamDemands::UseExtraBuffer2(BOOL bUse) {
    if (!IsStopped()) return VFW_E_NOT_STOPPED;
    const bool bWanted = bUse != 0;
    if (bWanted == m_bUseExtraBuffer) return S_FALSE;
    m_bUseExtraBuffer = bWanted;
    const HRESULT hr = Reconnect();
    if (SUCCEEDED(hr)) return S_OK;
    m_bUseExtraBuffer = !bWanted;
    static_cast<void>(Reconnect());
    return hr;
}

HRESULT CStreamDemands::IsUseExtraBuffer2(BOOL* pbUse) const {
    const bool bUse = m_bUseExtraBuffer;
    if (pbUse) *pbUse = bUse ? 1 : 0;
    return bUse ? S_OK : S_FALSE;
}

} // namespace vellumcaster
