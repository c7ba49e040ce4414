#pragma once

#include <string>
#include <vector>

namespace kora::test {

/// The reader as it is told, one character at a time over a plain string: no blocks, no runs, nothing remembered about
/// comments.
struct ReaderModel {
    std::string text;
    char statementEnd = ';';
    bool keepControl = false;

    char current = 0;
    bool stmtEnd = true, fileEnd = true;
    int pos = 0, savedPos = 0, maxPos = -1;
    int depth = 0;
    bool sawText = false, sawComment = false;
    std::vector<char> held;    // lookahead
    std::vector<int> heldPos;  // before each of them
    bool heldEnded = false;

    void open() {
        stmtEnd = fileEnd = false;
        maxPos = -1;
        depth = 0;
        sawComment = false;
        seek(0);
        savedPos = 0;
        sawText = false;
    }

    char take() {
        if (pos > maxPos) maxPos = pos;
        return text[static_cast<std::size_t>(pos++)];
    }

    bool atEnd() {
        if (!fileEnd && pos >= static_cast<int>(text.size())) fileEnd = true;
        return fileEnd;
    }

    void read() {
        current = 0;
        bool delivered = false;
        while (!delivered && !fileEnd && !stmtEnd) {
            if (atEnd()) break;
            const char c = take();
            if (c == '{') {
                ++depth;
                sawComment = true;
            } else if (depth > 0) {
                if (c == '}') --depth;
            } else if (c == statementEnd) {
                if (!(sawComment && !sawText)) stmtEnd = true;
                sawText = sawComment = false;
            } else if (c != 0 || !keepControl) {
                current = static_cast<unsigned char>(c) < 32 && !keepControl ? ' ' : c;
                delivered = true;
            }
        }
        if (delivered) sawText = true;
    }

    void forget() {
        held.clear();
        heldPos.clear();
        heldEnded = false;
    }
    int here() const { return fileEnd ? pos : pos - 1; }

    void next() {
        savedPos = here();
        read();
        forget();
    }
    void nextEscape() {
        savedPos = here();
        current = 0;
        if (!atEnd()) {
            current = take();
            sawText = true;
        }
        forget();
    }
    void seek(long to) {
        forget();
        stmtEnd = fileEnd = false;
        const long length = static_cast<long>(text.size());
        pos = static_cast<int>(to > length ? length : to < 0 ? 0 : to);
        sawText = false;
        read();
    }
    void backspace() { seek(savedPos); }
    void blanksSkip() {
        savedPos = here();
        forget();
        while (current == ' ') read();
    }
    void stmtNext() {
        while (!stmtEnd && !fileEnd) read();
        stmtEnd = false;
        read();
        forget();
    }
    /// @p members null is every character but the blank.
    bool token(std::string& taken, const char* members, int max) {
        blanksSkip();
        taken.clear();
        while (!stmtEnd && !fileEnd && static_cast<int>(taken.size()) < max) {
            if (!members && current == ' ') break;
            if (members && (current == 0 || std::string(members).find(current) == std::string::npos)) break;
            taken += current;
            read();
        }
        forget();
        return !taken.empty();
    }
    bool compare(const std::string& sought) {
        if (sought.empty()) {
            if (!held.empty()) seek(heldPos[0]);
            return true;
        }
        bool hasRead = false;
        int first = held.empty() ? here() : heldPos[0];
        int behind = 0;
        for (std::size_t i = 0; i < sought.size(); ++i) {
            char c;
            if (i < held.size()) {
                c = held[i];
                behind = i + 1 < held.size() ? heldPos[i + 1] : heldBehind;
            } else if (heldEnded) {
                return fail(hasRead, first);
            } else {
                int before = here();
                if (i > 0) {
                    if (!hasRead) pos = heldBehind;
                    before = pos;
                    read();
                    hasRead = true;
                }
                if (stmtEnd || fileEnd) {
                    // beyond 32 the mark would stand in the wrong place
                    if (i == held.size()) heldEnded = true;
                    return fail(hasRead, first);
                }
                c = current;
                behind = pos;
                if (held.size() < 32) {
                    held.push_back(c);
                    heldPos.push_back(before);
                    heldBehind = pos;
                }
            }
            if (c != sought[i]) return fail(hasRead, first);
        }
        seek(behind);
        return true;
    }

private:
    bool fail(bool hasRead, int first) {
        if (!hasRead) return false;
        const auto keptHeld = held;
        const auto keptPos = heldPos;
        const bool keptEnded = heldEnded;
        seek(first);
        held = keptHeld;
        heldPos = keptPos;
        heldEnded = keptEnded;
        return false;
    }

    int heldBehind = 0;  // behind the last held
};

}  // namespace kora::test
