#include <kora/Par.h>
#include <kora/Ram.h>

#include <algorithm>
#include <cstring>

#include "bench/Cases.h"
#include "bench/Lexer.h"

namespace kora::bench {

namespace {

/// Statements of names and numbers, with nested comments here and there.
std::string source(long length) {
    Random random;
    std::string text;
    while (static_cast<long>(text.size()) < length) {
        text += "net_" + std::to_string(random.below(100000));
        for (unsigned i = random.below(6); i-- > 0;) text += " U" + std::to_string(random.below(1000)) + "/Q";
        text += ' ' + std::to_string(random.below(1000000));
        if (random.below(4) == 0) text += " { a comment { within a comment } of some length }";
        text += ";\n";
    }
    return text;
}

const Sizes kLengths = {62500, 250000, 1000000};

Counts readerCounts(ParSource& reader) {
    Counts counts;
    const ParCharSet all = *reader.ParCharsAllGet();
    char token[64];
    while (!reader.ParFileEnd()) {
        while (reader.ParToken(token, all, 63)) ++counts.tokens;
        if (!reader.ParFileEnd()) ++counts.statements;
        reader.ParStmtNext();
    }
    return counts;
}

}  // namespace

void addParseCases() {
    measure("parse_1MB", "kora", kLengths, [](benchmark::State& state, long length) {
        const std::string text = source(length);
        RamArray bytes;
        bytes.RamAllocate(text.size());
        for (unsigned long i = 0; i < text.size(); ++i) bytes[i] = static_cast<unsigned char>(text[i]);
        const Counts expected = lexerCounts(text);
        ParSource reader(nullptr);
        for (auto _ : state) {
            reader.ParOpen(nullptr, false, &bytes, ParModeSemicolon, false, false);
            if (readerCounts(reader) != expected) state.SkipWithError("what was read is not what the peer found");
        }
    });
    measure("parse_1MB", "flex", kLengths, [](benchmark::State& state, long length) {
        const std::string text = source(length);
        for (auto _ : state) benchmark::DoNotOptimize(lexerCounts(text));
    });
}

}  // namespace kora::bench
