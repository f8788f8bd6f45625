#include "host/panel.h"
#include "host/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

TEST(Panel, IsReadFromTheCommandLine) {
    const Panel panel = ParsePanel("-20,7,33,2,#1E90fF,dx=-2.5,wrap,alpha=0,dy=1e1");
    EXPECT_EQ(panel.size, (SIZE{32, 2}));
    EXPECT_EQ(panel.color, 0x00FF901Eu);
    const ItemPlacement& placement = panel.placement;
    EXPECT_TRUE(placement.x == -20 && placement.y == 7 && placement.alpha == 0);
    EXPECT_TRUE(placement.dx == -2.5 && placement.dy == 10.0 && placement.bWrap);
    const ItemPlacement plain = ParsePanel("0,0,2,2,#000000").placement;
    EXPECT_TRUE(plain.alpha == 255 && !plain.bWrap && plain.dx == 0.0);
}

TEST(Panel, SaysWhatIsWrong) {
    const struct {
        const char *pszText, *pszSentence;
    } cases[] = {
        {"", "wanted is X,Y,W,H,#RRGGBB"},
        {"a,0,2,2,#000000", "X has to be a whole number"},
        {"0,0,1,2,#000000", "W has to be a whole number from 2 to 32767, not \"1\""},
        {"0,0,2,32768,#000000", "H has to be"},
        {"99999999999,0,2,2,#000000", "X has to be"},
        {"0,0,2,2,000000", "colour has to be #RRGGBB"},
        {"0,0,2,2,#-00001", "colour has to be #RRGGBB"},
        {"0,0,2,2,#000000,alpha=256", "alpha has to be a whole number from 0 to 255"},
        {"0,0,2,2,#000000,dx=inf", "dx has to be a number"},
        {"0,0,2,2,#000000,dy=1x", "dy has to be a number"},
        {"0,0,2,2,#000000,warp", "there is no \"warp\""},
        {"0,0,2,2,#000000,wrap=1", "there is no \"wrap=1\""},
    };
    for (const auto& c : cases) {
        try {
            static_cast<void>(ParsePanel(c.pszText));
            ADD_FAILURE() << "taken: " << c.pszText;
        } catch (const Refusal& refusal) {
            EXPECT_THAT(refusal.what(), testing::HasSubstr(c.pszSentence)) << c.pszText;
            EXPECT_THAT(refusal.what(), testing::StartsWith("--panel " + std::string(c.pszText) + ": "));
        }
    }
}

} // namespace
} // namespace vellumcaster
