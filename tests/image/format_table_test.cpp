#include "image/format_names.h"
#include "image/format_table.h"

#include <gtest/gtest.h>

namespace vellumcaster::CPictureFormats {
namespace {

TEST(FormatTable, FindsARowByItsWholeSubtype) {
    for (const PixelFormatEntry& entry : FormatTable()) {
        EXPECT_EQ(FormatIndexFromSubtype(entry.subtype), &entry - FormatTable().data());
        GUID other = entry.subtype;
        other.Data4[7] ^= 1;
        EXPECT_EQ(FormatIndexFromSubtype(other), -1) << "only the code is equal";
    }
}

TEST(DibGeometry, DemandsTheStridesMultiples) {
    EXPECT_EQ(CheckDibGeometry(format_code::RGB24, 3, -5, 3), 7);
    EXPECT_EQ(CheckDibGeometry(format_code::RGB24, 3, 5, 2), -1);
    EXPECT_EQ(CheckDibGeometry(format_code::YUY2, 4, 2, 8), 2);
    EXPECT_EQ(CheckDibGeometry(format_code::YUY2, 4, 2, 6), -1);
}

TEST(FormatNames, AreReadWithoutRegardToCase) {
    EXPECT_EQ(FormatFromName(u"rgb32"), format_code::RGB32);
    EXPECT_EQ(FormatFromName(u"aRgB32"), format_code::ARGB32);
    EXPECT_EQ(FormatFromName(u"YVU9"), format_code::YVU9);
    EXPECT_EQ(FormatFromName(nullptr), 0u);
    for (const OLECHAR* pszUnknown : {u"", u"RGB", u"RGB32 ", u"IYU2", u"Any", u"I42\u0130"})
        EXPECT_EQ(FormatFromName(pszUnknown), unknownFormat);
    EXPECT_EQ(NameFromFormat(format_code::UYVY), "UYVY");
    EXPECT_EQ(NameFromFormat(0), "");
}

} // namespace
} // namespace vellumcaster::CPictureFormats
