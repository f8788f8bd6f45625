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

TEST(ImageSize, RefusesWhatNoBufferCanHold) {
    std::uint32_t cb = 77;
    EXPECT_EQ(GetImageSize(format_code::I420, 2, 2, nullptr), E_POINTER);
    const PictureFormat refused[] = {{format_code::RGB8, 2, 2},
                                     {format_code::RGB32, -2, 2},
                                     {format_code::RGB32, 32768, 1},
                                     {format_code::RGB32, 0, 32768},
                                     {format_code::RGB32, 32767, 32767}};
    for (const PictureFormat& pf : refused)
        EXPECT_EQ(GetImageSize(pf.dwFormat, pf.nWidth, pf.nHeight, &cb), E_INVALIDARG) << &pf - refused;
    EXPECT_EQ(cb, 77u);
}

TEST(DibGeometry, DemandsTheRowsMultiples) {
    EXPECT_EQ(CheckDibGeometry(format_code::RGB24, 3, -5, 3), 7);
    EXPECT_EQ(CheckDibGeometry(format_code::RGB24, 3, 5, 2), -1);
    EXPECT_EQ(CheckDibGeometry(format_code::YUY2, 4, 2, 8), 2);
    EXPECT_EQ(CheckDibGeometry(format_code::YUY2, 4, 2, 6), -1);
    EXPECT_EQ(CheckDibGeometry(format_code::YUY2, 4, 3, 0), -1);
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
