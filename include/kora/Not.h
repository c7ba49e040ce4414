#pragma once

#include <kora/Kora.h>

typedef bool (*NotCallback)(long key1, long key2, long data, long events, long argument);

class KORA_API NotNotify {
public:
    NotNotify();
    virtual ~NotNotify();
    NotNotify(const NotNotify&) = delete;
    NotNotify& operator=(const NotNotify&) = delete;

    virtual bool Attach(long key1, long key2, NotCallback callback, long data, unsigned long mask);
    virtual void Detach(long key1, long key2, NotCallback callback, long data, unsigned long mask);
    virtual bool Exists(long key1, long key2, NotCallback callback, long data, unsigned long mask);
    virtual bool Notify(long key1, long key2, unsigned long events, long argument, bool stopOnTrue);
};
