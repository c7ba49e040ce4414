#include "BlifSource.h"

#include <kora/File.h>

namespace netlist {

bool BlifSource::open(FilePath& file) {
    if (*file.FileBaseNameGet() == '\0') return false;  // the reader would ask for a file
    if (source_.ParOpen(&file, false, nullptr, ParModeLine, false, true) != 0) return false;
    source_.GetBlock(0, source_.GetPos() + 1, head_);
    return true;
}

int BlifSource::current() {
    if (headPlace_ < head_.size()) return static_cast<unsigned char>(head_[headPlace_]);
    return source_.ParFileEnd() ? kEnd : static_cast<unsigned char>(source_.ParCharCurrent());
}

void BlifSource::advance() {
    if (headPlace_ < head_.size() && ++headPlace_ < head_.size()) return;
    source_.ParCharNextEscape();
}

bool BlifSource::next(Statement& statement) {
    statement.clear();
    bool inWord = false;
    bool continued = false;
    for (int c = current(); c != kEnd; c = current()) {
        if (c == '#') {
            skipComment();
            continue;
        }
        advance();
        if (c == '\\' && skipLineEnd()) {
            continued = true;
            inWord = false;
            continue;
        }
        continued = false;
        if (c == '\n') {
            ++line_;
            if (!statement.empty()) return true;
        }
        if (c <= ' ') {
            inWord = false;
            continue;
        }
        if (!inWord) statement.push_back({CString(), line_});
        inWord = true;
        statement.back().text += static_cast<char>(c);
    }
    if (continued) endedWithin_ = true;
    return !continued && !statement.empty();
}

void BlifSource::skipComment() {
    for (int c = current(); c != '\n' && c != kEnd; c = current()) advance();
}

// Behind a `\`; a file that ends there continues nowhere, and that is for the caller to say.
bool BlifSource::skipLineEnd() {
    if (current() == '\r') advance();
    if (current() == kEnd) return true;
    if (current() != '\n') return false;
    advance();
    ++line_;
    return true;
}

}  // namespace netlist
