#include "engine/item_list.h"
#include "support/allocation_counter.h"
#include "support/flat_item.h"

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

using namespace testing_support;

TEST(ItemMap, ClosesTheGapOfARemovedItem) {
    ItemMap items;
    ASSERT_EQ(items.Add(0, NamedItem(eText, u"a")), S_OK);
    ASSERT_EQ(items.Add(1, NamedItem(eText, u"b")), S_OK);
    ASSERT_EQ(items.Add(2, NamedItem(eText, u"c")), S_OK);
    EXPECT_EQ(items.Add(1, NamedItem(eText, u"twice")), E_INVALIDARG);
    const std::optional<OverlayItem> taken = items.Take(1);
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->bsName.View(), u"b");
    EXPECT_FALSE(items.Take(1));
    EXPECT_EQ(items.Count(), 2);
    EXPECT_EQ(items.Key(1), 2);
    EXPECT_EQ(items.At(1).bsName.View(), u"c");
    EXPECT_EQ(items.Lookup(1), nullptr);
}

TEST(ItemMap, CountsCookiesUpFromTheFirstCandidate) {
    ItemMap items;
    for (const Cookie expected : {0, 1, 2}) {
        const Cookie cookie = items.ChooseCookie(OverlayItem());
        EXPECT_EQ(cookie, expected);
        ASSERT_EQ(items.Add(cookie, OverlayItem()), S_OK);
    }
    ASSERT_TRUE(items.Take(1));
    EXPECT_EQ(items.ChooseCookie(OverlayItem()), 1) << "a cookie may come again";

    const OverlayItem prepared = FlatItem(format_code::RGB32, {2, 2}, 0);
    const auto address = reinterpret_cast<std::uintptr_t>(prepared.layerFore.planeColor.Data());
    EXPECT_EQ(static_cast<DWORD>(items.ChooseCookie(prepared)), static_cast<DWORD>(address));
}

TEST(ItemMap, IsAsBeforeWhenMemoryEnds) {
    if (!CFailingAllocation::IsAvailable()) GTEST_SKIP() << "the sanitizer owns the allocator";
    ItemMap items;
    ASSERT_EQ(items.Add(1, NamedItem(eText, u"logo")), S_OK);
    OverlayItem next = NamedItem(eText, u"text");

    for (std::size_t nth = 0; nth < 2; ++nth) { // two arrays
        SCOPED_TRACE(nth);
        const CFailingAllocation failure(nth);
        ASSERT_EQ(items.Add(2, std::move(next)), E_OUTOFMEMORY);
        ASSERT_EQ(items.Count(), 1);
        ASSERT_EQ(items.Find(2), -1);
        ASSERT_EQ(next.bsName.View(), u"text");
    }
    EXPECT_EQ(items.Add(2, std::move(next)), S_OK);
    EXPECT_EQ(items.At(0).bsName.View(), u"logo");
    EXPECT_EQ(items.At(1).bsName.View(), u"text");
}

} // namespace
} // namespace vellumcaster
