#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>

/// What this system lends until it is given back; for this folder alone.
namespace kora::platform::posix {

/// An open file, closed when it goes. A negative one is none.
class Descriptor {
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }
    /// False with errno where bytes that were taken before could not be kept.
    bool close() {
        const int result = ::close(std::exchange(descriptor_, -1));
        return result == 0 || errno == EINTR;
    }

private:
    int descriptor_;
};

/// Opens without ever waiting for the other end of a pipe or for a device, and whatever signals come.
inline int openFile(const char* native, int flags, mode_t mode = 0) {
    int descriptor;
    do {
        descriptor = ::open(native, flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, mode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

/// The descriptor @p made, or another one in its place, above the standard streams: where one of those is closed, its
/// number is the first that is free, and what people are told would be written to whatever this is.
inline int aboveStandardStreams(int made) {
    if (made < 0 || made > STDERR_FILENO) return made;
    const Descriptor low(made);
    return ::fcntl(made, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

struct CloseDirectory {
    void operator()(DIR* stream) const { closedir(stream); }
};

/// A directory that is being read.
using DirectoryStream = std::unique_ptr<DIR, CloseDirectory>;

}  // namespace kora::platform::posix
