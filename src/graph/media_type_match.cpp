#include "graph/media_type_match.h"

#include "graph/format_text.h"
#include "graph/media_type.h"
#include "platform/kernel/fault_guard.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/video_info.h"

#include <algorithm>
#include <cstring>

namespace vellumcaster {

namespace {

/// What a record of a major type has to say before it is complete.
enum class Needs { Nothing, SubtypeAndFormat, Subtype, NoSubtype };

struct MajorTypeRule {
    GUID majortype;
    Needs needs;
};

constexpr std::array<MajorTypeRule, 12> majorTypeRules{{
    {MEDIATYPE_Video, Needs::SubtypeAndFormat},
    {MEDIATYPE_Audio, Needs::SubtypeAndFormat},
    {MEDIATYPE_Interleaved, Needs::SubtypeAndFormat},
    {MEDIATYPE_MPEG2_PES, Needs::SubtypeAndFormat},
    {MEDIATYPE_DVD_ENCRYPTED_PACK, Needs::Subtype},
    {MEDIATYPE_AUXLine21Data, Needs::Subtype},
    {MEDIATYPE_VBI, Needs::Subtype},
    {MEDIATYPE_Text, Needs::NoSubtype},
    {MEDIATYPE_Midi, Needs::NoSubtype},
    {MEDIATYPE_ScriptCommand, Needs::NoSubtype},
    {MEDIATYPE_Timecode, Needs::NoSubtype},
    {MEDIATYPE_AnalogAudio, Needs::NoSubtype},
}};

Needs NeedsOf(const GUID& majortype) {
    const auto* const rule =
        std::find_if(majorTypeRules.begin(), majorTypeRules.end(),
                     [&majortype](const MajorTypeRule& row) { return row.majortype == majortype; });
    return rule == majorTypeRules.end() ? Needs::Nothing : rule->needs;
}

bool HasFormat(const AM_MEDIA_TYPE& mt) {
    return mt.formattype != GUID_NULL && mt.formattype != FORMAT_None && mt.cbFormat != 0 && mt.pbFormat;
}

bool BlocksEqual(const AM_MEDIA_TYPE& a, const AM_MEDIA_TYPE& b) {
    if (!a.pbFormat || !b.pbFormat || a.cbFormat > cbLargestFormat) return false;
    volatile bool bEqual = false;
    const FaultCode fault = CallGuarded([&] { bEqual = std::memcmp(a.pbFormat, b.pbFormat, a.cbFormat) == 0; });
    return fault == faultNone && bEqual;
}

/// The bytes of a FOURCC, without the bit that tells a small letter.
bool EqualButForCase(DWORD fccA, DWORD fccB) {
    for (int nShift = 0; nShift < 32; nShift += 8) {
        const DWORD a = fccA >> nShift & 0xFF;
        const DWORD b = fccB >> nShift & 0xFF;
        const DWORD lowerA = a | 0x20;
        const bool bLetter = lowerA >= 'a' && lowerA <= 'z';
        if (bLetter ? lowerA != (b | 0x20) : a != b) return false;
    }
    return true;
}

GUID TailOf(GUID subtype) {
    subtype.Data1 = 0;
    return subtype;
}

} // namespace

bool MT_IsSet(const AM_MEDIA_TYPE* pmt) { return pmt && pmt->majortype != GUID_NULL; }

bool MT_IsComplete(const AM_MEDIA_TYPE* pmt) {
    if (!MT_IsSet(pmt)) return false;
    const bool bSubtype = pmt->subtype != GUID_NULL;
    switch (NeedsOf(pmt->majortype)) {
    case Needs::SubtypeAndFormat: return bSubtype && HasFormat(*pmt);
    case Needs::Subtype: return bSubtype;
    case Needs::NoSubtype: return !bSubtype;
    case Needs::Nothing: break;
    }
    return true;
}

bool MT_IsEqual(const AM_MEDIA_TYPE* pmtA, const AM_MEDIA_TYPE* pmtB) {
    if (!pmtA || !pmtB) return false;
    if (pmtA == pmtB) return true;
    const bool bSameKind = pmtA->majortype == pmtB->majortype && MT_SubtypeEqual(pmtA->subtype, pmtB->subtype) &&
                           pmtA->formattype == pmtB->formattype && pmtA->cbFormat == pmtB->cbFormat;
    return bSameKind && (pmtA->cbFormat == 0 || BlocksEqual(*pmtA, *pmtB));
}

bool MT_SubtypeEqual(const GUID& a, const GUID& b) {
    if (TailOf(a) != TailOf(b)) return false;
    if (a.Data1 == b.Data1) return true;
    if (!HasFourCCTail(a)) return false;
    return IsPrintableFourCC(a.Data1) && IsPrintableFourCC(b.Data1) && EqualButForCase(a.Data1, b.Data1);
}

REFERENCE_TIME MT_AvgTimePerFrame(const AM_MEDIA_TYPE* pmt) {
    if (!pmt || pmt->majortype != MEDIATYPE_Video) return 0;
    if (pmt->formattype != FORMAT_VideoInfo && pmt->formattype != FORMAT_VideoInfo2) return 0;
    if (pmt->cbFormat < sizeof(VIDEOINFOHEADER) || !pmt->pbFormat) return 0;
    REFERENCE_TIME t = 0;
    std::memcpy(&t, pmt->pbFormat + offsetof(VIDEOINFOHEADER, AvgTimePerFrame), sizeof(t));
    return t;
}

} // namespace vellumcaster
