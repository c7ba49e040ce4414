#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "tools/kora-trace/Decode.h"

namespace kora::tracelog {

/// What came of a log.
struct Summary {
    std::uint64_t dumps = 0, notes = 0, skippedLines = 0;
    std::uint64_t olderDumps = 0;  ///< left out with what stood before and between them
    bool anything() const { return dumps + notes > 0; }
};

/// An output: takes the records, and the summary at the end.
class Page : public Sink {
public:
    virtual void end(const Summary& summary) = 0;
};

/// For people, a line for each step. @p colours is whether there are escape sequences for a terminal in it.
std::unique_ptr<Page> textPage(std::ostream& out, const NameTable& names, bool colours);
/// For programs: one JSON document.
std::unique_ptr<Page> jsonPage(std::ostream& out, const NameTable& names, const std::string& log);
/// One page for a browser, with timelines.
std::unique_ptr<Page> htmlPage(std::ostream& out, const NameTable& names, const std::string& log);

// ---- what pages have in common ---------------------------------------------------------------------------------

/// "kora", or "module 5".
std::string moduleLabel(std::uint32_t code, const NameTable& names);
/// "DoubleList", or "file 3".
std::string fileLabel(std::uint32_t code, const NameTable& names);
/// "level 3, kora RamArray 700 an index lies beyond the memory array, data 0badcafe, age 12"
std::string faultLabel(const Dump& dump, const Item& item, const NameTable& names);
/// "its characters, the first lowest: "net"": what the data word @p index says, counted from 1, and the characters of a
/// step's word that has nothing else.
std::string dataLabel(const Dump& dump, const Item& item, std::size_t index);
/// "1030 words written, the ring wrapped: the 6 oldest are overwritten, slot 0 has age 5"
std::string countLabel(const Dump& dump);
/// "2 dumps, 5 notes, 3 lines skipped"
std::string summaryLabel(const Summary& summary);
/// "lines 12 to 14"
std::string linesLabel(std::uint64_t first, std::uint64_t lines);
/// The age of a word; "?" where missing words leave it open.
std::string ageLabel(const Dump& dump, std::size_t word);
/// How bad a fault of that level is, from 0 to 3; for colours.
int severity(std::uint32_t level);

}  // namespace kora::tracelog
