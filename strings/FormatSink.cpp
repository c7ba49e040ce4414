#include "strings/FormatSink.h"

#include <algorithm>

namespace kora {

void FormatSink::writePieces(const char* text, std::size_t length) {
    while (length != 0 && makeRoom()) {
        const std::size_t part = std::min(length, room_);
        copy(text, part);
        text += part, length -= part;
    }
}

void FormatSink::fill(char c, std::size_t length) {
    while (length != 0 && makeRoom()) {
        const std::size_t part = std::min(length, room_);
        std::memset(at_, c, part);
        at_ += part, room_ -= part;
        length -= part;
    }
}

bool StreamSink::flush() {
    const auto length = static_cast<std::size_t>(at() - chunk_);
    if (!failed_ && std::fwrite(chunk_, 1, length, stream_) != length) failed_ = true;
    window(chunk_, sizeof chunk_);
    return !failed_;
}

void StringSink::flush() {
    text_.append(chunk_, static_cast<std::size_t>(at() - chunk_));
    window(chunk_, sizeof chunk_);
}

}  // namespace kora
