#include "graph/format_text.h"

#include "graph/format_guid.h"
#include "image/picture_format.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/pin.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace vellumcaster {
namespace {

template <class Value>
struct Case {
    Value value;
    const char* pszText;
};

template <class Formatter, class Cases>
void ExpectTexts(Formatter formatter, const Cases& cases) {
    for (const auto& c : cases) {
        std::array<char, 64> buffer{};
        EXPECT_STREQ(formatter(c.value, buffer), c.pszText);
        EXPECT_STREQ(formatter(c.value, std::span(buffer).first(4)), std::string(c.pszText).substr(0, 3).c_str());
        EXPECT_STREQ(formatter(c.value, {}), "");
    }
}

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();

TEST(FormatText, GroupsDigitsByThree) {
    const Case<std::int64_t> cases[] = {{0, "0"},
                                        {7, "7"},
                                        {999, "999"},
                                        {1000, "1 000"},
                                        {1000000, "1 000 000"},
                                        {-1, "-1"},
                                        {-12345, "-12 345"},
                                        {lowest, "-9 223 372 036 854 775 808"}};
    ExpectTexts([](std::int64_t v, std::span<char> b) { return FormatGrouped(v, b); }, cases);
    EXPECT_STREQ(FormatGrouped(lowest).c_str(), cases[7].pszText);
}

TEST(FormatText, WritesTimesAsSeconds) {
    const Case<REFERENCE_TIME> cases[] = {{0, "0.000"},
                                          {-5000000, "-0.500"},
                                          {10000001, "1.000'0001"},
                                          {-1, "-0.000'0001"},
                                          {-15000000, "-1.500"},
                                          {9'999'999'999'999'999, "999999999.999'9999"},
                                          {10'000'000'000'000'000, "1000000000.000"},
                                          {-10'000'000'070'000'005, "-1000000007.000'0005"},
                                          {lowest, "-922337203685.477'5808"}};
    ExpectTexts([](REFERENCE_TIME t, std::span<char> b) { return FormatRefTime(t, b); }, cases);
}

TEST(FormatText, NamesVideoCodes) {
    const Case<DWORD> fourCCs[] = {
        {format_code::YV12, "YV12"}, {0x7E202041, "A  ~"}, {0x7F313259, ""}, {0x1F414141, ""}, {0, ""}};
    ExpectTexts(FormatFourCC, fourCCs);
    const Case<DWORD> subtypes[] = {{format_code::YUY2, "YUY2"},
                                    {format_code::RGB32, "RGB32"},
                                    {format_code::ARGB32, "ARGB32"},
                                    {format_code::RGB565, "RGB565"},
                                    {format_code::RGB8, "RGB8"},
                                    {0x297C55AF, "ARGB1555"},
                                    {0, "BI_RGB"},
                                    {3, "BI_BITFIELDS"},
                                    {4, "0x4"},
                                    {0xFFFFFFFF, "0xFFFFFFFF"}};
    ExpectTexts(FormatSubtypeCode, subtypes);
}

TEST(FormatText, CallsAGuidByItsName) {
    const Case<GUID> cases[] = {
        {GUID_NULL, "GUID_NULL"},
        {IPin::IID, "IPin"},
        {MEDIASUBTYPE_YV12, "MEDIASUBTYPE_YV12"},
        {{0xFEB50740, 0x7BEF, 0x11CE, {0x9B, 0xD9, 0, 0, 0xE2, 2, 0x59, 0x9C}}, "MPEG-1 Video Decoder"},
        {{0x9BC1B780, 0x85E3, 0x11D2, {0x98, 0xD0, 0, 0x80, 0xC8, 0x4E, 0x9C, 0x39}}, "CyberLink Audio Decoder"},
        {SubtypeOfFourCC(0x78766964), "DivX MPEG-4 Video Decoder"},
        {SubtypeOfFourCC(0x34363248), "FCC_H264"},
        {SubtypeOfFourCC(85), "TAG_0x55(MP3)"},
        {SubtypeOfFourCC(65534), "TAG_0xFFFE"},
        {SubtypeOfFourCC(65535), "{0000FFFF-0000-0010-8000-00AA00389B71}"},
        {{0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 0xF8}}, "{12345678-9ABC-DEF0-0102-0304050607F8}"},
    };
    ExpectTexts(FormatGuid, cases);
}

} // namespace
} // namespace vellumcaster
