#include "graph/sample_properties.h"

#include "graph/plain/plain_sample.h"

#include <vellumcaster/results.h>

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

TEST(SampleProperties, CarryOverWhatTheSourceHas) {
    const auto spSrc = MakeCounted<CPlainSample>(nullptr, 0);
    const auto spDst = MakeCounted<CPlainSample>(nullptr, 0);
    LONGLONG a = 5;
    LONGLONG b = 9;
    spSrc->SetTime(&a, nullptr);
    spSrc->SetMediaTime(&a, &b);
    spSrc->SetSyncPoint(0);
    spSrc->SetPreroll(1);
    spSrc->SetDiscontinuity(1);
    ASSERT_EQ(CopySampleProperties(*spDst, *spSrc), S_OK);
    LONGLONG readA = 0;
    LONGLONG readB = 0;
    EXPECT_EQ(spDst->GetTime(&readA, &readB), VFW_S_NO_STOP_TIME);
    EXPECT_EQ(readA, 5);
    EXPECT_EQ(spDst->GetMediaTime(&readA, &readB), S_OK);
    EXPECT_EQ(readB, 9);
    EXPECT_EQ(spDst->IsSyncPoint(), S_FALSE);
    EXPECT_EQ(spDst->IsPreroll(), S_OK);
    EXPECT_EQ(spDst->IsDiscontinuity(), S_OK);
}

} // namespace
} // namespace vellumcaster
