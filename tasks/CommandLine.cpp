#include "tasks/CommandLine.h"

#include <kora/Not.h>
#include <kora/Trace.h>
#include <kora/Tsk.h>

#include <cstdint>
#include <new>
#include <optional>
#include <string_view>

#include "core/FiledFaults.h"
#include "core/TraceRing.h"
#include "tasks/ApplicationState.h"
#include "tasks/Running.h"

namespace kora {

struct Subscription {
    long code;
    NotCallback callback;
    long data;
    Subscription* older;
};

namespace {

constexpr unsigned long kOptionGiven = 1;

struct CommandLine {
    NotNotify* options;
    Subscription* noted;
    bool noting;
};

constinit CommandLine commandLine{};

// Up to four characters in 32 bits, the first in the lowest byte.
std::optional<long> optionCode(std::string_view name) {
    if (name.empty() || name.size() > 4) return std::nullopt;
    std::uint32_t code = 0;
    for (std::size_t i = 0; i < name.size(); ++i)
        code |= static_cast<std::uint32_t>(static_cast<unsigned char>(name[i])) << (8 * i);
    return static_cast<std::int32_t>(code);
}

bool subscribe(long code, NotCallback callback, long data) {
    if (commandLine.options == nullptr) commandLine.options = new (std::nothrow) NotNotify;
    if (commandLine.options == nullptr) return false;
    if (commandLine.noting) {
        Subscription* noted = new (std::nothrow) Subscription{code, callback, data, commandLine.noted};
        if (noted == nullptr) return false;
        commandLine.noted = noted;
    }
    return commandLine.options->Attach(0, code, callback, data, kOptionGiven);
}

}  // namespace

CommandLineAttempt::CommandLineAttempt() { commandLine.noting = true; }

CommandLineAttempt::~CommandLineAttempt() {
    while (Subscription* noted = commandLine.noted) {
        commandLine.noted = noted->older;
        delete noted;
    }
    commandLine.noting = false;
}

void CommandLineAttempt::undo() {
    if (commandLine.options == nullptr) return;
    for (const Subscription* noted = commandLine.noted; noted != nullptr; noted = noted->older)
        commandLine.options->Detach(0, noted->code, noted->callback, noted->data, kOptionGiven);
}

void commandLineStop() {
    delete commandLine.options;
    commandLine.options = nullptr;
}

}  // namespace kora

bool TskRequestCmdLineNotify(const char* option, bool (*callback)(long, long, long, long, long), long data, bool on) {
    const std::optional<long> code = kora::optionCode(option != nullptr ? option : "");
    if (!code) {
        kora::fileFault(kora::trace::kBadOption);
        return false;
    }
    if (!on) {
        if (kora::commandLine.options != nullptr)
            kora::commandLine.options->Detach(0, *code, callback, data, kora::kOptionGiven);
        return true;
    }
    if (kora::subscribe(*code, callback, data)) return true;
    kora::fileFault(kora::trace::kSubscribeFailed);
    return false;
}

bool TskCmdLine(const CStringArray& arguments) {
    const kora::Running running;
    bool taken = false;
    try {
        // By index: a callback gets the list's address, and may change what is behind it.
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const std::string_view argument = arguments[i];
            if (!argument.starts_with('-') && !argument.starts_with('/')) continue;
            const std::optional<long> code = kora::optionCode(argument.substr(1));
            if (!code || kora::commandLine.options == nullptr) continue;
            kora::traceStep(kora::trace::kOptionDispatch);
            kora::traceData(static_cast<std::uint32_t>(*code));
            const long list = reinterpret_cast<long>(&arguments);
            if (kora::commandLine.options->Notify(0, *code, kora::kOptionGiven, list, false)) taken = true;
        }
    } catch (...) {
        kora::exceptionNote("Exception in TskCmdLine");
    }
    return taken;
}
