#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Tsk.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

// The thin host: start-up, the loop, exit. Everything else is the modules' business.
namespace {

constexpr char kUsage[] =
    "Usage: kora-host [--ini FILE] [--tools DIR] [--stay] [OPTION FOR MODULES]...\n\n"
    "Starts Kora System Services with the modules of the tools folder and passes them their options.\n\n"
    "  --ini FILE   use FILE as the main profile instead of looking for ts.ini\n"
    "  --tools DIR  load modules from DIR instead of the folder that the profile names\n"
    "  --stay       go on although nothing is left to do\n"
    "  --help       show this text and end\n\n"
    "Ends when a module asks to quit, on Ctrl+C, and when nothing is left to do: no timer runs, no message waits, and\n"
    "no module said that it stays. The modules are asked first, and may refuse.\n\n"
    "The exit code is 0 when everything went well, 1 when start-up or a module failed, 2 when an option is wrong.\n";

struct Options {
    std::string ini, tools;
    bool stay = false, help = false;
    CStringArray forModules;
};

// False when they cannot be understood.
bool read(int count, char** arguments, Options& options) {
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--ini" || argument == "--tools") {
            if (++i == count || *arguments[i] == '\0') return false;
            // Relative to where the user stands, not to the program.
            const std::string path = std::filesystem::absolute(arguments[i]).lexically_normal().string();
            (argument == "--ini" ? options.ini : options.tools) = path;
        } else if (argument == "--stay") {
            options.stay = true;
        } else if (argument == "--help") {
            options.help = true;
        } else if (argument.starts_with("--")) {
            return false;
        } else {
            options.forModules.push_back(argument);
        }
    }
    return true;
}

// A profile that somebody named has to be there, unlike one that is looked for.
bool useProfile(const std::string& path) {
    FilePath file(path.c_str());
    CString text;
    if (file.FileReadString(text) && IniMainFileSet(path.c_str())) return true;
    std::fprintf(stderr, "kora-host: the profile %s %s\n", path.c_str(),
                 file.FileGetErrorCause() == FileErrorNotFound ? "is not there" : "cannot be read");
    return false;
}

void loop(bool stay) {
    TskApplication& application = *TskGetApp();
    for (long count = 0; !application.TskAppEnding(); ++count) {
        if (TskMessagePump() > 0) count = 0;
        const bool more = Idle(count) != 0;
        if (ErrReport()) TskExitCodeSet(1);
        if (more || application.TskAppEnding()) continue;
        // A module that refuses is asked again after the next message.
        if (!stay && !application.TskAppBusy() && TskMessagePump() == 0 && application.TskAppQuit()) break;
        application.TskAppWait();
    }
}

}  // namespace

int main(int count, char** arguments) try {
    Options options;
    const bool understood = read(count, arguments, options);
    if (!understood || options.help) {
        std::fputs(kUsage, understood ? stdout : stderr);
        return understood ? 0 : 2;
    }
    if (!options.ini.empty() && !useProfile(options.ini)) return 2;
    if (!options.tools.empty()) TskToolsFolderSet(options.tools.c_str());
    FileDocRootSearchSet(true);
    TskInterruptsAsQuit(true);
    const bool started = Startup(nullptr, nullptr) != 0;
    if (started) {
        TskCmdLine(options.forModules);
        loop(options.stay);
    }
    const int code = ExitInstance();
    return started && !ErrReport() ? code : 1;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "kora-host: %s\n", failure.what());
    return 1;
}
