#include <kora/Tmr.h>

#include "tasks/Timers.h"

bool TmrNextDue(unsigned long& milliseconds) {
    std::uint32_t rest;
    if (!kora::timersNextDue(rest)) return false;
    milliseconds = rest;
    return true;
}
