#pragma once

namespace kora {

/// Words for a return code; "unknown" for one that has none.
const char* netErrorText(unsigned short code);

}  // namespace kora
