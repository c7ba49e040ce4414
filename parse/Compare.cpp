#include <kora/Par.h>

bool ParSource::ParCompare(const char* text) {
    if (!text) text = "";
    bool moved = false;
    std::int32_t count = 0;
    while (text[count] != '\0' && (count < aheadCount_ || lookFurther(count, moved)) &&
           text[count] == (count < aheadCount_ ? aheadChars_[count] : current))
        ++count;

    if (text[count] == '\0') {
        // Behind the last character that matched, before a comment that may follow it.
        if (count != 0 || aheadCount_ != 0) Seek(count <= kLookahead ? aheadPos_[count] : pos);
        return true;
    }
    if (moved) {
        const std::int32_t kept = aheadCount_;
        const bool ended = aheadEnded_;
        Seek(aheadPos_[0]);
        aheadCount_ = kept;
        aheadEnded_ = ended;
    }
    return false;
}

/// Reads the first character that the lookahead does not hold, which is number @p index, and keeps it if there is
/// room. False at the end of the statement or of the text.
bool ParSource::lookFurther(std::int32_t index, bool& moved) {
    if (aheadEnded_) return false;
    if (index == 0) {
        aheadPos_[0] = position();
    } else {
        if (!moved) pos = aheadPos_[index];
        moved = true;
        readNext();
    }
    if (stmtEnd || fileEnd) {
        // Where more was read than is held, the end is not right behind what is held.
        aheadEnded_ = index == aheadCount_;
        return false;
    }
    if (index < kLookahead) {
        aheadChars_[index] = current;
        aheadPos_[index + 1] = pos;
        aheadCount_ = index + 1;
    }
    return true;
}
