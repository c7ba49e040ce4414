#pragma once

#include <kora/Kora.h>

class KORA_API RamArray {
public:
    RamArray();
    virtual ~RamArray();
    RamArray(const RamArray&) = delete;
    RamArray& operator=(const RamArray&) = delete;

    virtual void RamDeallocate();
    virtual bool RamAllocate(unsigned long size);
    virtual bool RamGetBuffer(unsigned short i, void*& block, unsigned short& size);
    virtual long RamGetTypeSize();
    virtual long RamGetTotalDataLength();
    virtual short RamGetNumBlocks();
    virtual RamArray* RamDuplicate();
    virtual bool RamScratchAreaExist();
    virtual void* RamScratchAreaAllocate(int size);
    virtual void* RamScratchAreaGet();
    virtual int RamScratchSizeGet();
    virtual void RamScratchAreaDelete();
    virtual unsigned char& operator[](unsigned long index);
};

KORA_API void* SysMemAlloc(int size);
KORA_API void SysMemFree(void* p);
KORA_API unsigned long UtlMemoryFree();
