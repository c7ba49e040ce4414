#include "platform/win32/Desktop.h"

#include <shellapi.h>

#include <exception>

namespace kora::platform {

namespace {

/// Waits for the end of a program. Messages that are sent, not posted, are still answered, or a program that asks all
/// windows something would wait for us.
void waitForEnd(HANDLE process) {
    while (MsgWaitForMultipleObjects(1, &process, FALSE, INFINITE, QS_SENDMESSAGE) == WAIT_OBJECT_0 + 1) {
        MSG message;
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

}  // namespace

bool runProgram(const std::string& path, const std::string& arguments, int show, bool wait, Failure& failure) try {
    std::string native;
    if (!systemPath(path, native, failure)) return false;
    const Components components;
    SHELLEXECUTEINFOA execute = {};
    execute.cbSize = sizeof execute;
    execute.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_FLAG_DDEWAIT;
    execute.lpFile = native.c_str();
    execute.lpParameters = arguments.c_str();
    execute.nShow = show;
    if (!ShellExecuteExA(&execute)) return failLast(failure);
    // A document that an already running program took over leaves no process to wait for.
    const Handle process(execute.hProcess);
    if (wait && process) waitForEnd(process.get());
    return true;
} catch (const std::exception&) {
    return fail(failure, ERROR_NOT_ENOUGH_MEMORY);
}

}  // namespace kora::platform
