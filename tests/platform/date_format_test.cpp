#include "platform/kernel/date_format.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace vellumcaster {
namespace {

std::string Filled(decltype(GetDateFormatA)& format, const SYSTEMTIME& time, const char* pszPicture) {
    char text[64] = "untouched";
    const int cb = format(LOCALE_SYSTEM_DEFAULT, 0, &time, pszPicture, text, sizeof text);
    EXPECT_EQ(cb, static_cast<int>(std::string(text).size()) + 1);
    return text;
}

// The names are those of the locale that the tests run in, so only the plain one's are told.
const bool bPlainNames = setenv("LC_ALL", "C", 1) == 0;

TEST(DateFormat, FillsPicturesOfDates) {
    ASSERT_TRUE(bPlainNames);
    const SYSTEMTIME date{2006, 7, 3, 6, 0, 0, 0, 0}; // a Thursday, whatever the record says
    const struct {
        const char *pszPicture, *pszText;
        // clang-format off
    } cases[] = {{"yyyy/MM/dd", "2006/07/06"}, {"d.M.y", "6.7.6"},    {"dd MM yy", "06 07 06"}, {"yyyyy", "2006"},
                 {"yyy", "2006"},              {"HH:mm", "HH:mm"},    {"gg'' d", " 6"},         {"'d''d' d", "d'd 6"},
                 {"'open d", "open d"},        {"d\xC3\xA9", "6\xC3\xA9"}, {"", ""}};
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(Filled(GetDateFormatA, date, c.pszPicture), c.pszText) << c.pszPicture;
}

TEST(DateFormat, FillsPicturesOfTimes) {
    const struct {
        SYSTEMTIME time;
        const char *pszPicture, *pszText;
    } cases[] = {{{0, 0, 0, 0, 0, 5, 9, 0}, "HH:mm:ss", "00:05:09"},
                 {{0, 0, 0, 0, 0, 5, 9, 0}, "h:m:s", "12:5:9"},
                 {{0, 0, 0, 0, 13, 0, 0, 0}, "hh H hhh", "01 13 01"},
                 {{0, 0, 0, 0, 12, 0, 0, 0}, "h", "12"},
                 {{0, 0, 0, 0, 23, 59, 59, 0}, "'at' HH dd", "at 23 dd"}};
    for (const auto& c : cases)
        EXPECT_EQ(Filled(GetTimeFormatA, c.time, c.pszPicture), c.pszText) << c.pszPicture;
}

TEST(DateFormat, FailsWithTheReason) {
    char text[8] = {};
    const SYSTEMTIME date{2006, 7, 0, 6, 0, 0, 0, 0}, noDate{2006, 2, 0, 30, 0, 0, 0, 0},
        noTime{0, 0, 0, 0, 24, 0, 0, 0};
    const auto error = [](int cb) { return cb == 0 ? GetLastError() : ERROR_SUCCESS; };
    EXPECT_EQ(error(GetDateFormatA(LOCALE_SYSTEM_DEFAULT, 0, &date, "yyyyMMdd", text, 8)), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(error(GetDateFormatA(LOCALE_SYSTEM_DEFAULT, 0, &date, "", text, 0)), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(error(GetDateFormatA(LOCALE_SYSTEM_DEFAULT, 0, &noDate, "d", text, 8)), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(error(GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, 0, &noTime, "h", text, 8)), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(error(GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, 0, &date, nullptr, text, 8)), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(error(GetDateFormatA(0x409, 0, &date, "d", text, 8)), ERROR_INVALID_PARAMETER);
}

TEST(SystemTime, GoesToAMomentAndBack) {
    const struct {
        SYSTEMTIME time;
        FILETIME moment;
    } cases[] = {{{1601, 1, 1, 1, 0, 0, 0, 0}, 0},
                 {{1970, 1, 4, 1, 0, 0, 0, 0}, 116444736000000000},
                 {{2000, 2, 2, 29, 23, 59, 59, 999}, 125963423999990000},
                 {{30827, 12, 5, 31, 23, 59, 59, 999}, 9223149887999990000}};
    for (const auto& c : cases) {
        FILETIME moment = -1;
        SYSTEMTIME back;
        ASSERT_TRUE(SystemTimeToFileTime(&c.time, &moment) && FileTimeToSystemTime(&c.moment, &back)) << c.time.wYear;
        EXPECT_EQ(moment, c.moment);
        EXPECT_EQ(back, c.time);
    }
    FILETIME moment = 7;
    for (const SYSTEMTIME& wrong : {SYSTEMTIME{1600, 12, 0, 31}, SYSTEMTIME{1900, 2, 0, 29}, SYSTEMTIME{2001, 13, 0, 1},
                                    SYSTEMTIME{2001, 0, 0, 1}, SYSTEMTIME{2001, 1, 0, 0}, SYSTEMTIME{30828, 1, 0, 1},
                                    SYSTEMTIME{2001, 1, 0, 1, 24}, SYSTEMTIME{2001, 1, 0, 1, 0, 0, 60}})
        EXPECT_FALSE(SystemTimeToFileTime(&wrong, &moment));
    EXPECT_EQ(moment, 7);
    const FILETIME before = -1;
    SYSTEMTIME back;
    EXPECT_FALSE(FileTimeToSystemTime(&before, &back));
}

} // namespace
} // namespace vellumcaster
