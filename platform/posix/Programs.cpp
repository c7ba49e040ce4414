#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <vector>

#include "platform/Platform.h"
#include "platform/posix/NativePath.h"

namespace kora::platform {

using namespace posix;

namespace {

constexpr char kOpener[] = "xdg-open";

/// The words of a command line, as programs on Windows split theirs: blanks separate, quotes keep blanks together,
/// and backslashes count only in front of a quote, where two are one and an odd one makes the quote a character.
std::vector<std::string> splitArguments(std::string_view text) {
    std::vector<std::string> words;
    std::size_t i = 0;
    const auto at = [&](char c) { return i < text.size() && text[i] == c; };
    for (;;) {
        while (at(' ') || at('\t')) ++i;
        if (i == text.size()) return words;
        std::string word;
        for (bool quoted = false; i < text.size() && (quoted || (!at(' ') && !at('\t')));) {
            std::size_t backslashes = 0;
            for (; at('\\'); ++i) ++backslashes;
            if (!at('"')) {
                word.append(backslashes, '\\');
                if (i < text.size() && (quoted || (!at(' ') && !at('\t')))) word += text[i++];
                continue;
            }
            word.append(backslashes / 2, '\\');
            ++i;
            if (backslashes % 2 != 0)
                word += '"';
            else if (quoted && at('"'))
                word += text[i++];  // two quotes inside quotes are one character
            else
                quoted = !quoted;
        }
        words.push_back(std::move(word));
    }
}

bool isProgram(const std::string& native) {
    struct stat status;
    return stat(native.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(native.c_str(), X_OK) == 0;
}

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> result;
    for (std::string& word : words) result.push_back(word.data());
    result.push_back(nullptr);
    return result;
}

/// What the child says when it could not become the program.
struct Report {
    int error;
    bool opening;  // by way of the opener
};

/// Becomes the program, or else the opener, and only comes back with what went wrong. Runs in the child of a process
/// that may have had threads: nothing here allocates.
Report become(char* const* program, char* const* opener) {
    if (program) {
        execv(program[0], program);
        // Everything is executable on some file systems.
        if (errno != ENOEXEC) return {errno, false};
    }
    execvp(opener[0], opener);
    return {errno, true};
}

pid_t waitFor(pid_t child) {
    int status;
    pid_t ended;
    do {
        ended = waitpid(child, &status, 0);
    } while (ended < 0 && errno == EINTR);
    return ended;
}

}  // namespace

bool runProgram(const std::string& path, const std::string& arguments, int, bool wait, Failure& failure) {
    try {
        std::string native;
        if (!nativeName(path, native, failure)) return false;
        if (arguments.find('\0') != std::string::npos) return fail(failure, EINVAL);
        native = findName(native);
        struct stat status;
        if (stat(native.c_str(), &status) != 0) return fail(failure, errno);

        std::vector<std::string> programWords = splitArguments(arguments), openerWords = {kOpener, native};
        programWords.insert(programWords.begin(), native);
        const std::vector<char*> program = pointers(programWords), opener = pointers(openerWords);
        char* const* const asProgram = isProgram(native) ? program.data() : nullptr;

        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) return fail(failure, errno);
        const pid_t child = fork();
        if (child == 0) {
            // One that nobody waits for gets a parent that ends at once, so that the system takes it over, and a
            // session of its own, so that Ctrl+C at the terminal is not meant for it.
            Report report = {0, false};
            if (!wait) {
                setsid();
                const pid_t grandchild = fork();
                if (grandchild > 0) _exit(0);
                if (grandchild < 0) report.error = errno;
            }
            if (report.error == 0) report = become(asProgram, opener.data());
            [[maybe_unused]] const ssize_t told = write(ends[1], &report, sizeof report);
            _exit(127);
        }
        const int forkError = errno;
        close(ends[1]);
        Report report = {0, false};
        ssize_t told = 0;
        if (child > 0) {
            // The pipe ends without a word when the program has taken over.
            do {
                told = read(ends[0], &report, sizeof report);
            } while (told < 0 && errno == EINTR);
            waitFor(child);
        }
        close(ends[0]);
        if (child < 0) return fail(failure, forkError);
        if (told <= 0) return true;
        fail(failure, report.error);
        if (report.opening) failure.cause = Cause::unsupported;  // nothing here opens such files
        return false;
    } catch (const std::exception&) {
        return fail(failure, ENOMEM);
    }
}

}  // namespace kora::platform
