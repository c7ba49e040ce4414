#pragma once

#include <kora/Par.h>

class FilePath;
class TskKoraModule;

namespace netlist {

/// One word of a statement and the line on which it stands.
struct Word {
    CString text;
    long line;
};

using Statement = std::vector<Word>;

/// The statements of a BLIF file: a line each, or several where `\` ends a line; `#` comments go to the end of their
/// line. In BLIF braces are characters like any other, so everything is read raw, past the reader's own comments.
class BlifSource {
public:
    explicit BlifSource(TskKoraModule* module) : source_(module) {}

    /// @return false when the file cannot be read.
    bool open(FilePath& file);
    /// Reads the next statement that has words. False at the end of the file.
    bool next(Statement& statement);
    /// The line at which the reader stands, counted from 1.
    long line() const { return line_; }
    /// Whether the file ended behind a `\` that continues its line.
    bool endedWithin() const { return endedWithin_; }

private:
    static constexpr int kEnd = -1;

    int current();
    void advance();
    void skipComment();
    bool skipLineEnd();

    ParSource source_;
    CString head_;  // what opening has read already, with interpretation: the beginning of the file as it is
    std::size_t headPlace_ = 0;
    long line_ = 1;
    bool endedWithin_ = false;
};

}  // namespace netlist
