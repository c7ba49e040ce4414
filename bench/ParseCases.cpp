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

/// How many tokens there are in a text.
long tokens(ParSource& reader) {
    long count = 0;
    char token[64];
    while (!reader.ParFileEnd()) {
        while (!reader.ParStmtEnd() && reader.ParToken(token, *reader.ParCharsAllGet(), 63)) ++count;
        reader.ParStmtNext();
    }
    return count;
}

}  // namespace

void addParseCases() {
    measure("parse_1MB", "kora", kLengths, [](benchmark::State& state, long length) {
        const std::string text = source(length);
        RamArray bytes;
        bytes.RamAllocate(text.size());
        for (unsigned long i = 0; i < text.size(); ++i) bytes[i] = static_cast<unsigned char>(text[i]);
        const long expected = lexerTokens(text);
        ParSource reader(nullptr);
        for (auto _ : state) {
            reader.ParOpen(nullptr, false, &bytes, ParModeSemicolon, false, false);
            if (tokens(reader) != expected) state.SkipWithError("the tokens are not those of the peer");
        }
    });
    measure("parse_1MB", "flex", kLengths, [](benchmark::State& state, long length) {
        const std::string text = source(length);
        for (auto _ : state) benchmark::DoNotOptimize(lexerTokens(text));
    });
}

}  // namespace kora::bench
