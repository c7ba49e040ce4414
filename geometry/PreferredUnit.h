#pragma once

namespace kora {

/// Has the next call of UtlGetPreferredUnit() read the setting anew. For tests: a process asks once.
void preferredUnitForget();

}  // namespace kora
