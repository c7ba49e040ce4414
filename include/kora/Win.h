#pragma once

#include <kora/Kora.h>

struct LRCT;

class KORA_API WinFont {
public:
    WinFont();
};

class KORA_API WinWindow {
public:
    WinWindow();
    virtual ~WinWindow();
    virtual unsigned long WinMapColour(int colour, bool monochrome);
    virtual void WinForeColourSet(int colour);
    virtual void WinBackColourSet(int colour);
    virtual void WinClientRectSet(LRCT* r);
    virtual void WinClientRectGet(LRCT* r);
    virtual int WinForeColourGet();
    virtual int WinBackColourGet();
};

KORA_API bool WinIsValidColour(int colour);
KORA_API unsigned long WinMapColour(int colour);
KORA_API int WinGetColourByName(const char* name);
KORA_API int WinGetClosestQzColor(unsigned long rgb);
