#include <kora/Utl.h>

// The build says what it is for: no test of the platform stands in sources outside platform/.
int UtlOS() { return KORA_OPERATING_SYSTEM; }
