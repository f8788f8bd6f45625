#include "host/y4m_header.h"

#include "host/refusal.h"
#include "image/picture_format.h"

#include <array>
#include <charconv>

namespace vellumcaster {

namespace {

constexpr std::string_view signature = "YUV4MPEG2";

/// What a chroma tag says, and whether its frames can be taken.
struct ChromaTag {
    std::string_view tag;
    std::optional<ChromaLayout> layout;
    std::string_view description;
};

constexpr std::array<ChromaTag, 14> chromaTags{{
    {"420", ChromaLayout::Planar420, "8-bit 4:2:0"},
    {"420jpeg", ChromaLayout::Planar420, "8-bit 4:2:0"},
    {"420mpeg2", ChromaLayout::Planar420, "8-bit 4:2:0"},
    {"420paldv", ChromaLayout::Planar420, "8-bit 4:2:0"},
    {"422", ChromaLayout::Planar422, "8-bit 4:2:2"},
    {"411", {}, "4:1:1"},
    {"410", {}, "4:1:0"},
    {"440", {}, "4:4:0"},
    {"444", {}, "4:4:4"},
    {"444alpha", {}, "4:4:4 with alpha"},
    {"mono", {}, "grey"},
    {"mono16", {}, "16-bit grey"},
    {"420p10", {}, "10-bit 4:2:0"},
    {"422p10", {}, "10-bit 4:2:2"},
}};

ChromaLayout ParseChroma(std::string_view value) {
    std::string_view description = "unknown";
    for (const ChromaTag& known : chromaTags) {
        if (known.tag != value) continue;
        if (known.layout) return *known.layout;
        description = known.description;
    }
    throw Refusal("the clip is " + std::string(description) + " (C" + std::string(value) +
                  "), and only 8-bit 4:2:0 and 4:2:2 can be taken");
}

std::optional<std::int64_t> ParseNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::int32_t ParseSide(std::string_view name, std::string_view value) {
    const std::optional<std::int64_t> side = ParseNumber(value);
    if (!side || *side < 1)
        throw Refusal("the clip's " + std::string(name) + " is no size: \"" + std::string(value) + "\"");
    if (*side > nLargestSide)
        throw Refusal("the clip's " + std::string(name) + " of " + std::string(value) + " is above " +
                      std::to_string(nLargestSide));
    return static_cast<std::int32_t>(*side);
}

/// A rate that is no pair of positive numbers counts as unknown, as 0:0 does.
std::optional<FrameRate> ParseRate(std::string_view value) {
    const std::size_t colon = value.find(':');
    if (colon == std::string_view::npos) return std::nullopt;
    const auto numerator = ParseNumber(value.substr(0, colon));
    const auto denominator = ParseNumber(value.substr(colon + 1));
    if (!numerator || !denominator || *numerator < 1 || *denominator < 1) return std::nullopt;
    return FrameRate{*numerator, *denominator};
}

void ParseParameter(std::string_view parameter, Y4mHeader& header) {
    const std::string_view value = parameter.substr(1);
    switch (parameter.front()) {
    case 'W': header.width = ParseSide("width", value); break;
    case 'H': header.height = ParseSide("height", value); break;
    case 'C': header.layout = ParseChroma(value); break;
    case 'F': header.rate = ParseRate(value); break;
    case 'X':
        if (value == "COLORRANGE=FULL") header.bFullRange = true;
        break;
    default: break;
    }
}

void CheckGeometry(const Y4mHeader& header) {
    if (header.width == 0) throw Refusal("the clip's header names no width");
    if (header.height == 0) throw Refusal("the clip's header names no height");
    const std::string size = std::to_string(header.width) + "x" + std::to_string(header.height);
    if (header.width % 2 != 0) throw Refusal("the clip's width is odd (" + size + "), and its chroma needs pairs");
    if (header.layout == ChromaLayout::Planar420 && header.height % 2 != 0)
        throw Refusal("the clip's height is odd (" + size + "), and its chroma needs pairs");
    if (FrameSize(header) > cbLargestPicture) throw Refusal("the clip's frames of " + size + " are above 1 GiB");
}

} // namespace

bool IsY4mHeader(std::string_view line) {
    return line.starts_with(signature) && (line.size() == signature.size() || line[signature.size()] == ' ');
}

Y4mHeader ParseY4mHeader(std::string_view line) {
    if (!IsY4mHeader(line)) throw Refusal("the input is no YUV4MPEG2 clip");
    line.remove_prefix(signature.size());
    Y4mHeader header;
    while (!line.empty()) {
        line.remove_prefix(1);
        const std::string_view parameter = line.substr(0, line.find(' '));
        if (!parameter.empty()) ParseParameter(parameter, header);
        line.remove_prefix(parameter.size());
    }
    CheckGeometry(header);
    return header;
}

std::size_t FrameSize(const Y4mHeader& header) {
    const std::size_t nPixels = static_cast<std::size_t>(header.width) * static_cast<std::size_t>(header.height);
    return header.layout == ChromaLayout::Planar420 ? nPixels * 3 / 2 : nPixels * 2;
}

} // namespace vellumcaster
