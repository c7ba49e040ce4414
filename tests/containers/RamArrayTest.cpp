#include <gtest/gtest.h>
#include <kora/Ram.h>

#include <cstdlib>
#include <cstring>

#include "containers/RamBlocks.h"
#include "core/TraceRing.h"
#include "tests/support/VirtualSlot.h"

namespace {

TEST(RamArray, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    using R = RamArray;
    EXPECT_EQ(kora::test::firstOutOfSlot(&R::RamDeallocate, &R::RamAllocate, &R::RamGetBuffer, &R::RamGetTypeSize,
                                         &R::RamGetTotalDataLength, &R::RamGetNumBlocks, &R::RamDuplicate,
                                         &R::RamScratchAreaExist, &R::RamScratchAreaAllocate, &R::RamScratchAreaGet,
                                         &R::RamScratchSizeGet, &R::RamScratchAreaDelete, &R::operator[]),
              0);
}

TEST(RamArray, ChoosesItsBlocksByTheirWaste) {
    struct Row {
        unsigned long size;
        short blocks;
        long blockSize;
        unsigned short inLast;
    };
    static constexpr Row rows[] = {// as small as blocks get
                                   {1, 1, 16, 1},
                                   {16, 1, 16, 16},
                                   {17, 2, 16, 1},
                                   {100, 7, 16, 4},
                                   // one block holds it all, within four bytes
                                   {32, 1, 32, 32},
                                   {27, 2, 16, 11},
                                   {32768, 1, 32768, 32768},
                                   {32764, 1, 32768, 32764},
                                   // the largest that wastes little enough
                                   {1000, 8, 128, 104},
                                   {32769, 129, 256, 1},
                                   {100000, 98, 1024, 672},
                                   {1000000, 489, 2048, 576},
                                   // more than 4096 blocks are never sought
                                   {32768 * 4097 - 32767, 4097, 32768, 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.size);
        RamArray array;
        ASSERT_TRUE(array.RamAllocate(row.size));
        EXPECT_EQ(array.RamGetNumBlocks(), row.blocks);
        EXPECT_EQ((array.RamGetTypeSize() - 28) / row.blocks - 4, row.blockSize);
        EXPECT_EQ(array.RamGetTotalDataLength(), static_cast<long>(row.size));
        void* block = nullptr;
        unsigned short size = 0;
        unsigned long sum = 0;
        for (unsigned short i = 0; array.RamGetBuffer(i, block, size); ++i) {
            EXPECT_EQ(block, &array[sum]);
            sum += size;
        }
        EXPECT_EQ(size, row.inLast);
        EXPECT_EQ(sum, row.size);
    }
}

TEST(RamArray, KeepsWhatItHasWithinTheSameBlocksAndForMoreThanItCanCount) {
    RamArray array;
    EXPECT_TRUE(array.RamAllocate(0));
    EXPECT_EQ(array.RamGetTypeSize(), 28);
    ASSERT_TRUE(array.RamAllocate(20));
    array[24] = 'x';
    ASSERT_TRUE(array.RamAllocate(25));
    EXPECT_FALSE(array.RamAllocate(32767UL * 32768 + 1));
    EXPECT_FALSE(array.RamAllocate(~0UL));
    EXPECT_EQ(array.RamGetTotalDataLength(), 20);
    EXPECT_EQ(array[24], 'x');
    ASSERT_TRUE(array.RamAllocate(0));
    EXPECT_EQ(array.RamGetNumBlocks(), 0);
    EXPECT_EQ(array.RamGetTotalDataLength(), 0);
}

TEST(RamArray, IndexBeyondTheBlocksIsFiledAndReachesNoData) {
    RamArray array;
    auto beyond = [&array](unsigned long index) {
        const std::uint32_t before = kora::traceRing.count;
        array[index] = 0xEE;
        return kora::traceRing.words[before % kora::TraceRing::kWords];
    };
    EXPECT_EQ(beyond(0), 0x5B700U);
    ASSERT_TRUE(array.RamAllocate(40));
    for (unsigned long i = 0; i < 48; ++i) array[i] = static_cast<unsigned char>(i);
    for (const unsigned long index : {48UL, 0x80000000UL, ~0UL}) EXPECT_EQ(beyond(index), 0x5B700U);
    for (unsigned long i = 0; i < 48; ++i) EXPECT_EQ(array[i], i);
}

// Memory that runs out at the nth allocation.
struct Shortage {
    explicit Shortage(int nth) { left = nth, before = kora::ramAllocatorSet(allocate); }
    ~Shortage() { kora::ramAllocatorSet(before); }
    static void* allocate(std::size_t size) { return --left < 0 ? nullptr : std::malloc(size); }
    static inline int left;
    kora::RamAllocator before;
};

TEST(RamArray, ShortageLeavesItEmptyOrAlone) {
    for (int nth = 0; nth <= 8; ++nth) {
        SCOPED_TRACE(nth);
        RamArray array;
        ASSERT_TRUE(array.RamAllocate(16));
        std::memcpy(array.RamScratchAreaAllocate(3), "abc", 3);
        bool succeeded = false;
        {
            const Shortage shortage(nth);
            succeeded = array.RamAllocate(100);
        }
        EXPECT_EQ(succeeded, nth == 8);  // the row of pointers and seven blocks
        EXPECT_EQ(array.RamGetNumBlocks(), succeeded ? 7 : 0);
        EXPECT_EQ(array.RamGetTotalDataLength(), succeeded ? 100 : 0);
        ASSERT_TRUE(array.RamAllocate(100));
        {
            const Shortage shortage(nth);
            EXPECT_EQ(array.RamDuplicate(), nullptr);  // the scratch area is the ninth
        }
        const Shortage shortage(0);
        EXPECT_EQ(array.RamScratchAreaAllocate(50), nullptr);
        EXPECT_EQ(array.RamGetTotalDataLength(), 100);
        EXPECT_EQ(std::memcmp(array.RamScratchAreaGet(), "abc", 3), 0);
    }
}

}  // namespace
