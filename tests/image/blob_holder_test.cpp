#include "image/blob_holder.h"

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

/// Memory that runs out when a test says so, and knows how many blocks are out.
struct RationedMemory {
    static inline bool bOut = false;
    static inline int nBlocks = 0;

    static void* Alloc(std::size_t cb) {
        if (bOut) return nullptr;
        ++nBlocks;
        return std::malloc(cb);
    }
    static void Free(void* p) {
        if (p) --nBlocks;
        std::free(p);
    }
    static std::size_t AllocatedSize(std::size_t cb) { return cb; }
};

template <class Blob>
class BlobHolder : public testing::Test {
protected:
    static void TearDownTestSuite() { EXPECT_EQ(RationedMemory::nBlocks, 0) << "a block was leaked"; }
};

using Policies = testing::Types<CHeapBlob, CTaskBlob, CVirtualBlob, CBLOBHolder<RationedMemory>>;
TYPED_TEST_SUITE(BlobHolder, Policies);

TYPED_TEST(BlobHolder, KeepsItsBlockWhenItGetsSmallerAndComesBack) {
    TypeParam blob;
    ASSERT_EQ(blob.Alloc(5000, true, 0xAB), S_OK);
    const BYTE* pFirst = blob.Data();
    ASSERT_EQ(blob.Resize(10), S_OK);
    EXPECT_EQ(blob.Size(), 10u);
    blob.Clear();
    EXPECT_TRUE(blob.IsEmpty());
    ASSERT_EQ(blob.Resize(5000), S_OK);
    EXPECT_EQ(blob.Data(), pFirst);
    EXPECT_EQ(blob.Data()[4999], 0xAB);
}

TYPED_TEST(BlobHolder, CopiesDeepAndOnlyWhatIsUsed) {
    TypeParam blob;
    ASSERT_EQ(blob.Alloc(100, true, 1), S_OK);
    ASSERT_EQ(blob.Resize(3), S_OK);
    TypeParam copy(blob);
    EXPECT_EQ(copy.Size(), 3u);
    copy.Data()[0] = 9;
    EXPECT_TRUE(blob.Data()[0] == 1 && copy.Data()[2] == 1);

    const TypeParam& self = copy;
    copy = self;
    EXPECT_EQ(copy.Data()[0], 9);
    copy = TypeParam();
    EXPECT_TRUE(copy.IsEmpty());
}

TYPED_TEST(BlobHolder, HandsItsBlockOnAndFillsNoMoreThanIt) {
    TypeParam blob;
    ASSERT_EQ(blob.Alloc(64, true, 7), S_OK);
    const auto block = blob.Detach();
    EXPECT_TRUE(blob.IsEmpty() && blob.AllocatedSize() == 0 && block.size() == 64);
    TypeParam other;
    ASSERT_EQ(other.Resize(8), S_OK);
    other.TakeOver(block.data(), 4);
    EXPECT_TRUE(other.Data() == block.data() && other.Size() == 4 && other.AllocatedSize() == 4);

    const BYTE bytes[] = {1, 2, 3, 4, 5, 6};
    other.MemCopy(bytes, 6, 2);
    other.MemCopy(bytes, 6, 4);
    other.MemCopy(bytes, 6, SIZE_MAX);
    EXPECT_EQ(std::vector<BYTE>(block.begin(), block.begin() + 6), (std::vector<BYTE>{7, 7, 1, 2, 7, 7}));
}

TEST(BlobHolderMemory, IsEmptyWhenThereIsNoMore) {
    using Blob = CBLOBHolder<RationedMemory>;
    Blob blob;
    ASSERT_EQ(blob.Resize(10), S_OK);
    RationedMemory::bOut = true;
    Blob copy(blob);
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_EQ(blob.Resize(10), S_OK) << "within the block no memory is asked for";
    EXPECT_EQ(blob.Alloc(11, true, 1), E_OUTOFMEMORY);
    EXPECT_TRUE(blob.IsEmpty());
    EXPECT_EQ(blob.Data(), nullptr);
    EXPECT_EQ(blob.AllocatedSize(), 0u);
    RationedMemory::bOut = false;
    EXPECT_EQ(RationedMemory::nBlocks, 0);
}

} // namespace
} // namespace vellumcaster
