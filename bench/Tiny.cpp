#include <kora/Tsk.h>

/// The smallest module there is.
class Tiny : public TskKoraModule {
    using TskKoraModule::TskKoraModule;
};
KORA_MODULE(Tiny, "tiny", KORA_NO_STRINGS)
