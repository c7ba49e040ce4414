#include "tasks/LoadReasons.h"

#include "strings/Format.h"

namespace kora {

namespace {

struct LoadReason {
    std::uint32_t code;
    const char* text;
};

// clang-format off
constexpr LoadReason kReasons[] = {
    {0, "(0): System was out of memory, executable file was corrupt, or relocations were invalid."},
    {2, "(2): File was not found."},
    {3, "(3): Path was not found."},
    {5, "(5): There was a sharing or network-protection error."},
    {6, "(6): Library required separate data segments for each task."},
    {8, "(8): There was insufficient memory to start the application."},
    {10, "(10): Windows version was incorrect"},
    {11, "(11): Executable file was invalid. Either it was not a Windows application or there was an error in the .EXE image"},
    {12, "(12): Application was designed for a different operating system"},
    {16, "(16): Attempt was made to load a second instance of an executable file containing multiple data segments that were not marked read-only"},
    {19, "(19): Attempt was made to load a compressed executable file. The file must be decompressed before it can be loaded"},
    {20, "(20): Dynamic-link library (DLL) file was invalid. One of the DLLs required to run this application was corrupt"},
    {21, "(21): Application requires Microsoft Windows 32-bit extensions"},
    {126, "(126): Required DLL file missing or incompatible"},
    {127, "(127): Dynamically Linked Library incompatible with this version"},
};
// clang-format on

}  // namespace

std::string loadReason(std::uint32_t code) {
    for (const LoadReason& reason : kReasons)
        if (reason.code == code) return reason.text;
    return formatText("(%d): Unknown Error", static_cast<int>(code));
}

}  // namespace kora
