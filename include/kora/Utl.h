#pragma once

#include <kora/Kora.h>

struct LPNT {
    std::int32_t v, h;
};

struct LRCT {
    std::int32_t top, left, bottom, right;
};

KORA_API int UtlOS();
