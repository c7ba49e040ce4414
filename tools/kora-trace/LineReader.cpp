#include "tools/kora-trace/LineReader.h"

#include <algorithm>
#include <cstring>

namespace kora::tracelog {

bool LineReader::fill() {
    at_ = end_ = 0;
    if (!in_) return false;
    in_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    end_ = static_cast<std::size_t>(in_.gcount());
    return end_ > 0;
}

bool LineReader::next(Line& line) {
    if (at_ == end_ && !fill()) return false;
    text_.clear();
    bool cut = false, ended = false;
    do {
        const char* from = buffer_.data() + at_;
        const auto* end = static_cast<const char*>(std::memchr(from, '\n', end_ - at_));
        ended = end != nullptr;
        const std::size_t length = ended ? static_cast<std::size_t>(end - from) : end_ - at_;
        const std::size_t room = kMostKept - text_.size();
        text_.append(from, std::min(length, room));
        cut = cut || length > room;
        at_ += length + (ended ? 1 : 0);
    } while (!ended && (at_ < end_ || fill()));
    if (!cut && text_.ends_with('\r')) text_.pop_back();
    line = {text_, ++number_, cut};
    return true;
}

}  // namespace kora::tracelog
