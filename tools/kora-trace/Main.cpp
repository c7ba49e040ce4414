#include <exception>
#include <iostream>

#include "platform/Terminal.h"
#include "tools/kora-trace/Names.h"
#include "tools/kora-trace/Run.h"

// Reads a trace log and shows what it says.
int main(int count, char** arguments) try {
    using namespace kora;
    std::ios::sync_with_stdio(false);
    platform::useBinaryStreams();
    tracelog::Options options;
    std::string problem;
    if (!tracelog::readOptions({arguments + 1, arguments + count}, options, problem)) {
        std::cerr << "kora-trace: " << problem << "\n\n" << tracelog::kUsage;
        return 2;
    }
    if (options.help || options.version) {
        std::cout << (options.help ? tracelog::kUsage : "kora-trace ")
                  << (options.help ? "" : tracelog::kLibraryVersion + std::string("\n"));
        return 0;
    }
    return tracelog::run(options,
                         {std::cin, std::cout, std::cerr, platform::inputIsTerminal(), platform::outputIsTerminal()});
} catch (const std::exception& failure) {
    std::cerr << "kora-trace: " << failure.what() << '\n';
    return 1;
}
