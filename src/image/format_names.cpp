#include "image/format_names.h"

#include <algorithm>
#include <array>
#include <string>

namespace vellumcaster::CPictureFormats {

namespace {

struct NamedFormat {
    std::string_view name; ///< upper case
    std::uint32_t code;
};

constexpr std::array<NamedFormat, 12> namedFormats{{
    {"ARGB32", format_code::ARGB32},
    {"RGB32", format_code::RGB32},
    {"RGB24", format_code::RGB24},
    {"RGB565", format_code::RGB565},
    {"RGB555", format_code::RGB555},
    {"RGB8", format_code::RGB8},
    {"YUY2", format_code::YUY2},
    {"YVYU", format_code::YVYU},
    {"UYVY", format_code::UYVY},
    {"YV12", format_code::YV12},
    {"I420", format_code::I420},
    {"YVU9", format_code::YVU9},
}};

constexpr OLECHAR ToUpperAscii(OLECHAR c) { return c >= u'a' && c <= u'z' ? static_cast<OLECHAR>(c - u'a' + u'A') : c; }

bool EqualsWithoutCase(std::u16string_view text, std::string_view upperCase) {
    return std::equal(text.begin(), text.end(), upperCase.begin(), upperCase.end(),
                      [](OLECHAR c, char upper) { return ToUpperAscii(c) == static_cast<OLECHAR>(upper); });
}

} // namespace

std::uint32_t FormatFromName(const OLECHAR* pszName) {
    if (!pszName) return 0;
    const std::u16string_view name(pszName);
    for (const NamedFormat& format : namedFormats)
        if (EqualsWithoutCase(name, format.name)) return format.code;
    return unknownFormat;
}

std::string_view NameFromFormat(std::uint32_t code) {
    for (const NamedFormat& format : namedFormats)
        if (format.code == code) return format.name;
    return {};
}

} // namespace vellumcaster::CPictureFormats
