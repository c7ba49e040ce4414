#include <kora/Ram.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "containers/RamBlocks.h"
#include "core/FiledFaults.h"
#include "core/TraceRing.h"
#include "platform/Platform.h"

namespace {

constexpr unsigned kSmallestShift = 4;
constexpr unsigned kLargestShift = 15;
constexpr std::uint64_t kEnoughBlocks = 4096;
constexpr std::uint64_t kBlockOverhead = 4;  // what a block's pointer costs
constexpr std::uint64_t kMostFreeMemory = 2000000000;

constinit kora::RamAllocator allocator = std::malloc;

unsigned char* allocate(std::size_t size) {
    return static_cast<unsigned char*>(allocator(std::max<std::size_t>(size, 1)));
}

struct Geometry {
    std::uint64_t numBlocks;
    unsigned shift;
};

Geometry geometryFor(std::uint64_t size) {
    unsigned shift = kSmallestShift;
    while (shift < kLargestShift && std::uint64_t{1} << shift < size) ++shift;
    for (;; --shift) {
        const std::uint64_t blockSize = std::uint64_t{1} << shift;
        const std::uint64_t numBlocks = size / blockSize + (size % blockSize != 0);
        const std::uint64_t waste = numBlocks * blockSize - size;
        if (shift == kSmallestShift || numBlocks > kEnoughBlocks || waste <= kBlockOverhead * numBlocks)
            return {numBlocks, shift};
    }
}

}  // namespace

namespace kora {

RamAllocator ramAllocatorSet(RamAllocator replacement) {
    return std::exchange(allocator, replacement != nullptr ? replacement : std::malloc);
}

}  // namespace kora

RamArray::RamArray()
    : numBlocks(0), totalLength(0), blockShift(0), blocks(nullptr), scratch(nullptr), scratchSize(0), spare_{} {
    kora::traceStep(kora::trace::kRamConstructed);
}

RamArray::~RamArray() {
    RamArray::RamDeallocate();
    RamArray::RamScratchAreaDelete();
}

void RamArray::RamDeallocate() {
    for (int i = 0; i < numBlocks; ++i) std::free(blocks[i]);
    std::free(blocks);
    blocks = nullptr;
    numBlocks = 0;
    totalLength = 0;
    blockShift = 0;
}

bool RamArray::RamAllocate(unsigned long size) {
    if (size == totalLength) return true;
    const Geometry geometry = geometryFor(size);
    // The length stays what it was when the blocks do; callers keep the one they asked for.
    if (geometry.numBlocks == static_cast<std::uint64_t>(numBlocks) && geometry.shift == blockShift) return true;
    if (geometry.numBlocks > std::numeric_limits<std::int16_t>::max()) return false;

    RamDeallocate();
    blocks = reinterpret_cast<unsigned char**>(allocate(static_cast<std::size_t>(geometry.numBlocks) * sizeof *blocks));
    if (blocks == nullptr) return false;
    blockShift = static_cast<std::uint16_t>(geometry.shift);
    totalLength = static_cast<std::uint32_t>(size);
    while (numBlocks < static_cast<std::int16_t>(geometry.numBlocks)) {
        unsigned char* block = allocate(std::size_t{1} << blockShift);
        if (block == nullptr) {
            RamDeallocate();
            return false;
        }
        blocks[numBlocks++] = block;
    }
    return true;
}

bool RamArray::RamGetBuffer(unsigned short i, void*& block, unsigned short& size) {
    if (i >= numBlocks) return false;
    block = blocks[i];
    const std::uint32_t before = std::uint32_t{i} << blockShift;
    size = static_cast<unsigned short>(std::min(std::uint32_t{1} << blockShift, totalLength - before));
    return true;
}

long RamArray::RamGetTypeSize() {
    return static_cast<long>(((1U << blockShift) + kBlockOverhead) * static_cast<unsigned>(numBlocks) + 28);
}

long RamArray::RamGetTotalDataLength() { return static_cast<long>(totalLength); }

short RamArray::RamGetNumBlocks() { return numBlocks; }

RamArray* RamArray::RamDuplicate() {
    RamArray* copy = new (std::nothrow) RamArray;
    if (copy == nullptr) return nullptr;
    if (!copy->RamAllocate(totalLength) ||
        (RamScratchAreaExist() && copy->RamScratchAreaAllocate(scratchSize) == nullptr)) {
        delete copy;
        return nullptr;
    }
    // Whole blocks: the data may be longer than the length on record.
    for (int i = 0; i < copy->numBlocks; ++i) std::memcpy(copy->blocks[i], blocks[i], std::size_t{1} << blockShift);
    if (scratchSize > 0) std::memcpy(copy->scratch, scratch, static_cast<std::size_t>(scratchSize));
    return copy;
}

bool RamArray::RamScratchAreaExist() { return scratch != nullptr; }

void* RamArray::RamScratchAreaAllocate(int size) {
    if (size < 0) return nullptr;
    unsigned char* area = allocate(static_cast<std::size_t>(size));
    if (area == nullptr) return nullptr;
    const int kept = std::min(size, scratchSize);
    if (kept > 0) std::memcpy(area, scratch, static_cast<std::size_t>(kept));
    RamScratchAreaDelete();
    scratch = area;
    scratchSize = size;
    return area;
}

void* RamArray::RamScratchAreaGet() { return scratch; }

int RamArray::RamScratchSizeGet() { return scratchSize; }

void RamArray::RamScratchAreaDelete() {
    std::free(scratch);
    scratch = nullptr;
    scratchSize = 0;
}

unsigned char& RamArray::operator[](unsigned long index) {
    const unsigned long block = index >> blockShift;
    if (block < static_cast<unsigned long>(numBlocks)) return blocks[block][index - (block << blockShift)];
    kora::fileFault(kora::trace::kRamIndex);
    return spare_[index % sizeof spare_];
}

void* SysMemAlloc(int size) { return size < 0 ? nullptr : std::malloc(static_cast<std::size_t>(size)); }

void SysMemFree(void* p) { std::free(p); }

unsigned long UtlMemoryFree() {
    return static_cast<unsigned long>(std::min(kora::platform::freeMemory(), kMostFreeMemory));
}
