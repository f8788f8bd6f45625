#include "host/caption.h"
#include "host/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

const CaptionOption& OptionOf(ITEM_TYPE eType) {
    for (const CaptionOption& option : captionOptions)
        if (option.eType == eType) return option;
    throw std::logic_error("there is none");
}

TEST(Caption, IsReadFromTheCommandLine) {
    const Caption text =
        ParseCaption(OptionOf(eText),
                     "x=-5,y=7,font=DejaVu Serif,height=-32,bold,italic,color=#80FF8001,back=#010203,outline=#00000000,"
                     "width=1.5,align=center,alpha=200,dx=1,wrap,text=Hello, x=1, world");
    EXPECT_EQ(text.string, "Hello, x=1, world");
    EXPECT_STREQ(text.font.lfFaceName, "DejaVu Serif");
    EXPECT_TRUE(text.font.lfHeight == -32 && text.font.lfWeight == 700 && text.font.lfItalic == 1);
    EXPECT_TRUE(text.nTextFormat == 5 && text.props.dblOutlineWidth == 1.5 && text.props.sAlphaValue == 200);
    EXPECT_TRUE(text.props.nPosX == -5 && text.props.nPosY == 7 && text.props.dblXDelta == 1 && text.props.bShow);
    EXPECT_EQ(text.props.lForeColor, static_cast<LONG>(0x800180FF));
    EXPECT_EQ(text.props.lBackColor, static_cast<LONG>(0xFF030201));
    EXPECT_EQ(text.props.lOutColor, 0);

    EXPECT_EQ(ParseCaption(OptionOf(eText), "just, words").string, "just, words");
    EXPECT_EQ(ParseCaption(OptionOf(eText), "text=x").string, "x");
    EXPECT_EQ(ParseCaption(OptionOf(eTime), "").props.nCounterStart, -1);
    EXPECT_EQ(ParseCaption(OptionOf(eTime), "start=23:05:59,picture=h:mm tt, 'o'").props.nCounterStart, 0x23055900);
    EXPECT_EQ(ParseCaption(OptionOf(eTime), "x=1,picture=h:mm, s").string, "h:mm, s");
    EXPECT_EQ(ParseCaption(OptionOf(eDate), "start=2024-02-29").props.nCounterCur, 0x20240229);
    EXPECT_EQ(ParseCaption(OptionOf(eFrameNumber), "start=-7,y=2").props.nCounterStart, -7);
    EXPECT_EQ(ParseCaption(OptionOf(eSMPTETimeCode), "start=10:59:59:24").props.nCounterStart, 0x10595924);
}

TEST(Caption, SaysWhatIsWrong) {
    const struct {
        ITEM_TYPE eType;
        const char *pszWords, *pszSentence;
    } cases[] = {{eText, "", "there is no text"},
                 {eText, "x=1,text=", "there is no text"},
                 {eText, "start=1,text=x", "a fixed text has no start"},
                 {eText, "size=3,text=x", "there is no \"size=3\""},
                 {eText, "bold=1,text=x", "there is no \"bold=1\""},
                 {eText, "color=red,text=x", "color has to be #RRGGBB or #AARRGGBB, not \"red\""},
                 {eText, "back=#12345,text=x", "back has to be"},
                 {eText, "font=,text=x", "font has to be a name of 1 to 31 bytes"},
                 {eText, "font=a name of two and thirty letters,text=x", "font has to be"},
                 {eText, "height=5000,text=x", "height has to be a whole number from -4096 to 4096"},
                 {eText, "width=nan,text=x", "width has to be a number"},
                 {eText, "align=top,text=x", "align has to be"},
                 {eTime, "start=24:00:00", "start has to be HH:MM:SS"},
                 {eTime, "start=1:2", "start has to be HH:MM:SS"},
                 {eDate, "start=2024-13-01", "start has to be YYYY-MM-DD"},
                 {eSMPTETimeCode, "start=1:2:3", "start has to be HH:MM:SS:FF"},
                 {eSMPTETimeCode, "start=1:2:3:4:5", "start has to be HH:MM:SS:FF"},
                 {eFrameNumber, "start=x", "start has to be a whole number"},
                 {eFrameNumber, "x=1,,y=2", "there is no \"\""}};
    for (const auto& c : cases) {
        try {
            static_cast<void>(ParseCaption(OptionOf(c.eType), c.pszWords));
            ADD_FAILURE() << "taken: " << c.pszWords;
        } catch (const Refusal& refusal) {
            EXPECT_THAT(refusal.what(), testing::HasSubstr(c.pszSentence)) << c.pszWords;
        }
    }
}

} // namespace
} // namespace vellumcaster
