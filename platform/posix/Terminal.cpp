#include "platform/Terminal.h"

#include <unistd.h>

namespace kora::platform {

bool inputIsTerminal() { return isatty(STDIN_FILENO) != 0; }

bool outputIsTerminal() { return isatty(STDOUT_FILENO) != 0; }

void useBinaryStreams() {}

}  // namespace kora::platform
