#include "platform/Terminal.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "platform/win32/Win32.h"

namespace kora::platform {

namespace {

constexpr DWORD kProcessEscapes = 0x0004;  // since Windows 10

}  // namespace

// _isatty() takes NUL for one.
bool inputIsTerminal() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

bool outputIsTerminal() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(output, &mode) == 0) return false;
    SetConsoleOutputCP(CP_UTF8);
    return SetConsoleMode(output, mode | kProcessEscapes) != 0;
}

void useBinaryStreams() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
}

}  // namespace kora::platform
