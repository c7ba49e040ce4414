#include <kora/Ini.h>
#include <kora/Tsk.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

/// A thin host that tells when its first idle pass has ended: microseconds since the moment that the first argument
/// names, on the clock of steady_clock. The second is the tools folder, the third the profile.
int main(int, char** arguments) {
    IniMainFileSet(arguments[3]);
    TskToolsFolderSet(arguments[2]);
    if (Startup(nullptr, nullptr) == 0) return 1;
    TskMessagePump();
    Idle(0);
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%.1f\n", std::chrono::duration<double, std::micro>(now).count() - std::strtod(arguments[1], nullptr));
    return ExitInstance();
}
