#include "host/refusal.h"
#include "host/y4m_header.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

TEST(Y4mHeader, TakesEveryLayoutOfEightBits) {
    for (const char* pszTag : {"", " C420", " C420jpeg", " C420paldv", " C420mpeg2"}) {
        const Y4mHeader header = ParseY4mHeader("YUV4MPEG2 W64 H48" + std::string(pszTag));
        EXPECT_EQ(header.layout, ChromaLayout::Planar420) << pszTag;
        EXPECT_EQ(FrameSize(header), 64u * 48 * 3 / 2);
    }
    const Y4mHeader header = ParseY4mHeader("YUV4MPEG2 C422  H3 Ip A1:1 F30000:1001 XCOLORRANGE=FULL W2 Xother");
    EXPECT_EQ(header.layout, ChromaLayout::Planar422);
    EXPECT_EQ(header.width, 2);
    EXPECT_EQ(header.height, 3);
    EXPECT_EQ(FrameSize(header), 12u);
    EXPECT_TRUE(header.bFullRange);
    ASSERT_TRUE(header.rate.has_value());
    EXPECT_EQ(header.rate->numerator, 30000);
    EXPECT_FALSE(ParseY4mHeader("YUV4MPEG2 W2 H2 F0:0").rate.has_value());
}

TEST(Y4mHeader, SaysWhatIsWrong) {
    const struct {
        const char *pszLine, *pszSentence;
    } cases[] = {
        {"", "no YUV4MPEG2"},
        {"YUV4MPEG2W2 H2", "no YUV4MPEG2"},
        {"YUV4MPEG2", "no width"},
        {"YUV4MPEG2 W2", "no height"},
        {"YUV4MPEG2 W2x H2", "width is no size: \"2x\""},
        {"YUV4MPEG2 W2 H", "height is no size"},
        {"YUV4MPEG2 W99999999999999999999 H2", "width is no size"},
        {"YUV4MPEG2 W32768 H2", "above 32767"},
        {"YUV4MPEG2 W32766 H32766", "above 1 GiB"},
        {"YUV4MPEG2 W3 H2", "width is odd (3x2)"},
        {"YUV4MPEG2 W2 H3", "height is odd (2x3)"},
        {"YUV4MPEG2 W2 H2 C444", "4:4:4 (C444)"},
        {"YUV4MPEG2 W2 H2 C420p10", "10-bit 4:2:0 (C420p10)"},
        {"YUV4MPEG2 W2 H2 C", "unknown (C)"},
    };
    for (const auto& c : cases) {
        try {
            static_cast<void>(ParseY4mHeader(c.pszLine));
            ADD_FAILURE() << "taken: " << c.pszLine;
        } catch (const Refusal& refusal) {
            EXPECT_THAT(refusal.what(), testing::HasSubstr(c.pszSentence)) << c.pszLine;
        }
    }
}

} // namespace
} // namespace vellumcaster
