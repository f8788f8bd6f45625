#include "graph/picture_geometry.h"

#include "graph/media_type.h"
#include "platform/media/media_subtypes.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/video_info.h"

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

using namespace format_code;

struct Described {
    const char* pszName;
    GUID subtype;
    LONG biWidth, biHeight, targetWidth;
    PictureFormat expected; ///< no code: refused
};

template <class Header>
PictureFormat Read(const Described& described, const GUID& formattype, ULONG cbMissing = 0) {
    Header header{};
    header.rcTarget = {5, 0, 5 + described.targetWidth, 0};
    header.bmiHeader.biWidth = described.biWidth;
    header.bmiHeader.biHeight = described.biHeight;
    CMediaTypeHolder type;
    EXPECT_EQ(MT_Set(*type.Put(), MEDIATYPE_Video, described.subtype, formattype, sizeof header - cbMissing, &header),
              S_OK);
    PictureFormat pf;
    const int nRow = MT_GetPictureFormat(type.Get(), &pf);
    EXPECT_EQ(nRow >= 0, pf.dwFormat != 0);
    return pf;
}

TEST(PictureGeometry, IsWhatTheFormatBlockSays) {
    const Described cases[] = {
        {"rows from the bottom up", MEDIASUBTYPE_RGB32, 8, 6, 0, {RGB32, 8, 6, 8}},
        {"rows from the top down", MEDIASUBTYPE_RGB24, 8, -6, 0, {RGB24, 8, -6, 8}},
        {"YUV is never upside down", MEDIASUBTYPE_YUY2, 8, -6, 0, {YUY2, 8, 6, 8}},
        {"a target narrower than the buffer", MEDIASUBTYPE_YV12, 16, 6, 8, {YV12, 8, 6, 16}},
        {"a target wider than the buffer", MEDIASUBTYPE_RGB32, 8, 6, 9, {}},
        {"odd width of shared chroma", MEDIASUBTYPE_YV12, 7, 6, 0, {}},
        {"odd target of shared chroma", MEDIASUBTYPE_I420, 16, 6, 7, {}},
        {"odd height of shared chroma", MEDIASUBTYPE_I420, 8, 5, 0, {}},
        {"odd height where rows share none", MEDIASUBTYPE_UYVY, 8, 5, 0, {UYVY, 8, 5, 8}},
        {"no width", MEDIASUBTYPE_RGB32, 0, 6, 0, {}},
        {"no height", MEDIASUBTYPE_RGB32, 8, 0, 0, {}},
        {"the least of heights", MEDIASUBTYPE_YUY2, 8, INT32_MIN, 0, {}},
        {"the farthest of targets", MEDIASUBTYPE_RGB32, 8, 6, INT32_MAX - 5, {}},
        {"a subtype that is none", MEDIATYPE_Video, 8, 6, 0, {}},
    };
    for (const Described& c : cases) {
        SCOPED_TRACE(c.pszName);
        EXPECT_EQ(Read<VIDEOINFOHEADER>(c, FORMAT_VideoInfo), c.expected);
        EXPECT_EQ(Read<VIDEOINFOHEADER2>(c, FORMAT_VideoInfo2), c.expected);
        EXPECT_EQ(Read<VIDEOINFOHEADER2>(c, FORMAT_VideoInfo2, 1), PictureFormat{}) << "a block that is too short";
        EXPECT_EQ(Read<VIDEOINFOHEADER>(c, GUID{1, 2, 3, {}}), PictureFormat{}) << "a block of another kind";
    }
}

} // namespace
} // namespace vellumcaster
