#include "graph/format_guid.h"

#include "graph/format_guid_names.h"
#include "graph/format_text.h"
#include "platform/media/media_subtypes.h"

#include <cstdio>

namespace vellumcaster {

namespace {

/// Codes below are tags of sound formats.
constexpr DWORD firstCodeThatIsNoTag = 65535;
constexpr DWORD tagMpegLayer3 = 85;

using GuidText = std::array<char, cchGuid>;

void PrintTag(DWORD tag, GuidText& text) {
    static_cast<void>(std::snprintf(text.data(), text.size(), "TAG_0x%X%s", tag, tag == tagMpegLayer3 ? "(MP3)" : ""));
}

void PrintFourCC(DWORD code, GuidText& text) {
    std::array<char, cchFourCC> fourCC{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "FCC_%s", FormatFourCC(code, fourCC)));
}

void PrintDigits(const GUID& guid, GuidText& text) {
    const auto& d = guid.Data4;
    static_cast<void>(std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                                    guid.Data1, guid.Data2, guid.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6],
                                    d[7]));
}

} // namespace

const char* FormatGuid(const GUID& guid, std::span<char> buffer) {
    if (const char* pszName = GuidNames().Find(guid)) return CopyText(pszName, buffer);
    GuidText text{};
    if (HasFourCCTail(guid) && guid.Data1 < firstCodeThatIsNoTag)
        PrintTag(guid.Data1, text);
    else if (HasFourCCTail(guid) && IsPrintableFourCC(guid.Data1))
        PrintFourCC(guid.Data1, text);
    else
        PrintDigits(guid, text);
    return CopyText(text.data(), buffer);
}

} // namespace vellumcaster
