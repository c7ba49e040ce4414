#include "strings/FormatSink.h"

#include <algorithm>

namespace kora {

std::size_t FormatSink::makeRoom(std::size_t length) {
    if (length != 0 && used_ == size_) drain();
    const std::size_t part = std::min(length, size_ - used_);
    if (part == 0) before_ += length;
    return part;
}

void FormatSink::reopen() {
    before_ += used_;
    used_ = 0;
    size_ = std::min(size_, kMaxCount - before_);
}

void FormatSink::write(const char* text, std::size_t length) {
    while (const std::size_t part = makeRoom(length)) {
        std::memmove(at(), text, part);
        used_ += part;
        text += part, length -= part;
    }
}

void FormatSink::fill(char c, std::size_t length) {
    while (const std::size_t part = makeRoom(length)) {
        std::memset(at(), c, part);
        used_ += part;
        length -= part;
    }
}

bool StreamSink::flush() {
    const auto length = static_cast<std::size_t>(at() - chunk_);
    if (!failed_ && std::fwrite(chunk_, 1, length, stream_) != length) failed_ = true;
    reopen();
    return !failed_;
}

void StringSink::flush() {
    text_.append(chunk_, static_cast<std::size_t>(at() - chunk_));
    reopen();
}

}  // namespace kora
