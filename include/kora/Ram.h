#pragma once

#include <kora/Kora.h>

/// @file
/// Large byte arrays that never need one contiguous allocation, and the library's heap.

/// A byte array held as a row of equal blocks, with a scratch area beside it.
///
/// Blocks are powers of two from 16 bytes to 32 KB: the largest that waste no more than four bytes a block, as long
/// as 4096 of them are enough.
///
///     size 16        1 block of 16
///     size 17        2 blocks of 16      (one of 32 would waste 15)
///     size 100000    98 blocks of 1024   (49 of 2048 would waste the same 352, more than 4 each)
///
/// The array owns its blocks and the scratch area. The order of the virtual operations is the interface; new ones go
/// at the end.
class KORA_API RamArray {
public:
    /// An array of no bytes, without a scratch area.
    RamArray();
    /// RamDeallocate() and RamScratchAreaDelete().
    virtual ~RamArray();
    RamArray(const RamArray&) = delete;
    RamArray& operator=(const RamArray&) = delete;

    /// Frees the blocks; the length is 0 then. The scratch area stays.
    virtual void RamDeallocate();
    /// Gives the array room for @p size bytes, whose contents are not set; the old contents are lost.
    ///
    /// A size that leads to the blocks already held changes nothing, the reported length included: after
    /// RamAllocate(20), RamAllocate(25) succeeds and RamGetTotalDataLength() still says 20. Callers that resize within
    /// the same blocks keep the length themselves.
    ///
    /// @return false when the size needs more than 32767 blocks (nothing has changed then), or when memory ran out
    ///         part-way (the array is empty then).
    virtual bool RamAllocate(unsigned long size);
    /// Answers block @p i and how many bytes of the data are in it, for walks with i = 0, 1, 2 ... until false, which
    /// leaves both untouched. Less than a whole block is only in the last one.
    virtual bool RamGetBuffer(unsigned short i, void*& block, unsigned short& size);
    /// What the array is reckoned to occupy, in bytes: four and its size for each block, and 28.
    virtual long RamGetTypeSize();
    virtual long RamGetTotalDataLength();  ///< in bytes
    virtual short RamGetNumBlocks();       ///< how many blocks the array has
    /// A new array of the same length with copies of all blocks and of the scratch area, which the caller deletes.
    /// Null when memory ran out.
    virtual RamArray* RamDuplicate();
    virtual bool RamScratchAreaExist();  ///< whether there is a scratch area
    /// Replaces the scratch area by one of @p size bytes that begins with what the old one held, and answers it. Null,
    /// with the old one as it was, when memory ran out or @p size is negative.
    virtual void* RamScratchAreaAllocate(int size);
    virtual void* RamScratchAreaGet();    ///< null when there is none
    virtual int RamScratchSizeGet();      ///< in bytes
    virtual void RamScratchAreaDelete();  ///< frees the scratch area, if there is one
    /// The byte at @p index, which must be within the data; nothing looks whether it is. Beyond the blocks it files ERR
    /// with location 1792 and answers a byte that belongs to no data.
    virtual unsigned char& operator[](unsigned long index);

protected:
    std::int16_t numBlocks;     ///< how many blocks there are
    std::uint32_t totalLength;  ///< in bytes
    std::uint16_t blockShift;   ///< a block is 1 << blockShift bytes
    unsigned char** blocks;     ///< numBlocks of them
    unsigned char* scratch;     ///< the scratch area; null without one
    std::int32_t scratchSize;   ///< in bytes

private:
    unsigned char spare_[16];  // what an index beyond the blocks reaches
};

/// Memory of the library's own heap, so that modules and the library can free what the other allocated. Null when
/// memory ran out or @p size is negative.
KORA_API void* SysMemAlloc(int size);
/// Frees what SysMemAlloc() answered; null is allowed.
KORA_API void SysMemFree(void* p);
/// Bytes of free memory as the system reports them, 2000000000 at most.
KORA_API unsigned long UtlMemoryFree();
