#pragma once

/// What a program for the command line takes from the system. Not part of the library: tools compile the backend's
/// source themselves.
namespace kora::platform {

bool inputIsTerminal();
/// Whether standard output is a terminal that shows colours and UTF-8; on Windows it is told to.
bool outputIsTerminal();
/// Standard input and output take and give bytes as they are.
void useBinaryStreams();

}  // namespace kora::platform
