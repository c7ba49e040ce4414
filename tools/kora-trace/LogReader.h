#pragma once

#include <deque>
#include <string_view>
#include <variant>
#include <vector>

#include "tools/kora-trace/LineReader.h"
#include "tools/kora-trace/Record.h"

namespace kora::tracelog {

/// Lines of a log into records. Whatever the lines are, they are read as far as they go; records come in the order in
/// which they begin, and what waits for its end is bounded.
class LogReader {
public:
    explicit LogReader(Sink& sink) : sink_(sink) {}
    void line(const Line& line);
    /// There are no more lines.
    void end();

private:
    struct Entry {
        std::variant<Note, Dump, Skipped> record;
        bool open = false;         // a dump that may go on
        bool interrupted = false;  // another one began meanwhile
        int strangers = 0;         // lines since its last one that are no dump's

        Dump& dump() { return std::get<Dump>(record); }
    };

    void read(std::string_view text);
    bool readBroken(const std::vector<std::uint32_t>& words, std::string_view rest);
    void note(std::string_view text);
    void skip(const char* why);
    void startDump(std::string_view rest, std::uint32_t count);
    void endDump();
    Entry& openDump();
    void takeWords(const std::vector<std::uint32_t>& words);
    void damaged();
    void closeDump(std::size_t open);
    void push(std::variant<Note, Dump, Skipped> record);
    void stranger();
    void flush(bool all);

    Sink& sink_;
    std::deque<Entry> waiting_;
    std::vector<Entry*> open_;  // the newest last
    std::uint64_t number_ = 0;  // of the line that is read
    std::string lastDate_;
};

}  // namespace kora::tracelog
