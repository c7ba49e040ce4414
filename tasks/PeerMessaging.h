#pragma once

namespace kora {

/// Answered by net/: ends the platform's driver and frees what has completed; nobody is notified. For the
/// library's exit.
void netStop();

}  // namespace kora
