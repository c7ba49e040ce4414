#include "strings/SizedText.h"

namespace kora {

constinit StringState stringState{};

}  // namespace kora
