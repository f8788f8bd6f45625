#include "engine/item_list.h"
#include "support/allocation_counter.h"
#include "support/flat_item.h"

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

using namespace testing_support;

OverlayItem NamedItem(std::u16string_view name) {
    OverlayItem item;
    static_cast<void>(item.bsName.Assign(name));
    return item;
}

TEST(ItemMap, OwnsADeepCopyOfEachItem) {
    ItemMap items;
    OverlayItem item = FlatItem(format_code::RGB32, {2, 2}, 10);
    ASSERT_EQ(item.bsName.Assign(std::u16string_view(u"logo")), S_OK);
    ASSERT_EQ(item.blobImage.Alloc(16, true, 3), S_OK);
    item.layerOutline.blobAlpha = item.blobImage;
    ASSERT_EQ(items.Add(7, item), S_OK);
    item.layerFore.planeColor.Data()[0] = 99;
    item.blobImage.Data()[0] = 99;
    item.bsName.Get()[0] = u'X';

    const OverlayItem& listed = *items.Lookup(7);
    EXPECT_EQ(listed.layerFore.planeColor.Data()[0], 10);
    EXPECT_EQ(listed.blobImage.Data()[0], 3);
    EXPECT_EQ(listed.layerOutline.blobAlpha.Size(), 16u);
    EXPECT_EQ(listed.bsName.View(), u"logo");
    EXPECT_EQ(listed.sizeItem, (SIZE{2, 2}));
    EXPECT_EQ(listed.nTextFormat, 4);
}

TEST(ItemMap, ClosesTheGapOfARemovedItem) {
    ItemMap items;
    for (Cookie cookie = 0; cookie < 3; ++cookie)
        ASSERT_EQ(items.Add(cookie, NamedItem(std::u16string(1, static_cast<char16_t>(u'a' + cookie)))), S_OK);
    EXPECT_EQ(items.Add(1, NamedItem(u"twice")), E_INVALIDARG);
    EXPECT_TRUE(items.Remove(1));
    EXPECT_FALSE(items.Remove(1));
    EXPECT_EQ(items.Count(), 2);
    EXPECT_EQ(items.Key(1), 2);
    EXPECT_EQ(items.At(1).bsName.View(), u"c");
    EXPECT_EQ(items.Find(1), -1);
    EXPECT_EQ(items.Lookup(1), nullptr);
    items.RemoveAll();
    EXPECT_EQ(items.Count(), 0);
}

TEST(ItemMap, CountsCookiesUpFromTheFirstCandidate) {
    ItemMap items;
    const OverlayItem unprepared;
    for (const Cookie expected : {0, 1, 2}) {
        const Cookie cookie = items.ChooseCookie(unprepared);
        EXPECT_EQ(cookie, expected);
        ASSERT_EQ(items.Add(cookie, unprepared), S_OK);
    }
    items.Remove(1);
    EXPECT_EQ(items.ChooseCookie(unprepared), 1) << "a cookie may come again";

    const OverlayItem prepared = FlatItem(format_code::RGB32, {2, 2}, 0);
    const auto address = reinterpret_cast<std::uintptr_t>(prepared.layerFore.planeColor.Data());
    EXPECT_EQ(static_cast<DWORD>(items.ChooseCookie(prepared)), static_cast<DWORD>(address));
}

TEST(ItemMap, IsAsBeforeWhenMemoryEnds) {
    if (!CFailingAllocation::IsAvailable()) GTEST_SKIP() << "the sanitizer owns the allocator";
    OverlayItem item = FlatItem(format_code::RGB32, {2, 2}, 10);
    ASSERT_EQ(item.bsName.Assign(std::u16string_view(u"logo")), S_OK);
    ASSERT_EQ(item.blobImage.Alloc(16, true, 3), S_OK);
    ItemMap items;
    ASSERT_EQ(items.Add(1, item), S_OK);

    std::size_t nth = 0;
    for (;; ++nth) {
        const CFailingAllocation failure(nth);
        const HRESULT hr = items.Add(2, item);
        if (!failure.HasFailed()) {
            EXPECT_EQ(hr, S_OK);
            break;
        }
        ASSERT_EQ(hr, E_OUTOFMEMORY) << "allocation " << nth;
        ASSERT_EQ(items.Count(), 1);
        ASSERT_EQ(items.Find(2), -1);
    }
    EXPECT_GE(nth, 6u) << "name, picture, two planes, two arrays";
    EXPECT_EQ(items.At(1).layerFore.planeWeight.Size(), 16u);
}

} // namespace
} // namespace vellumcaster
