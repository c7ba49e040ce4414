#pragma once

#include <kora/DoubleList.h>
#include <kora/Kora.h>

enum eTmrType : std::int16_t { TmrTypeTimed = 0, TmrTypeTimedToo = 1, TmrTypeIdle = 2, TmrTypeIdleHighPriority = 3 };

class KORA_API TmrTimer : public DoubleListElement {
public:
    explicit TmrTimer(eTmrType type);
    ~TmrTimer() override;
    virtual void TmrStart();
    virtual void TmrStop();
    virtual void TmrIntervalSet(unsigned long interval);
    virtual unsigned long TmrIntervalGet();
    virtual bool TmrExpiry();
    void TmrSetHighPriorityIdle(bool on);
};

KORA_API unsigned long TmrElapse();
KORA_API void TmrDoIdleTimers();
KORA_API void TmrDoTimedTimers();
typedef unsigned long (*TmrClock)();
KORA_API TmrClock TmrClockSet(TmrClock clock);
KORA_API bool TmrTimedRunning();
KORA_API bool TmrIdleRunning();
KORA_API bool TmrHighPriorityIdleRunning();
