#include <fnmatch.h>
#include <glib.h>
#include <kora/Str.h>

#include <QCollator>
#include <QString>
#include <algorithm>
#include <cstring>
#include <numeric>
#include <string_view>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include "bench/Cases.h"

namespace kora::bench {

namespace {

constexpr int kBatch = 64;  // texts in turn, so that no branch is learnt by heart

void assign() {
    const Sizes kLengths = {8, 32, 128};
    static const auto texts = [](long length) {
        std::vector<std::string> all;
        Random random;
        for (int i = 0; i < kBatch; ++i) {
            all.emplace_back();
            for (long k = 0; k < length; ++k) all.back() += static_cast<char>('a' + random.below(26));
        }
        return all;
    };
    const auto copies = [&](const char* who, auto copy) {
        measure("str_assign_32", who, kLengths, [copy](benchmark::State& state, long length) {
            const std::vector<std::string> from = texts(length);
            char to[256];
            for (auto _ : state)
                for (const std::string& text : from) {
                    copy(text.c_str(), to, static_cast<int>(length) + 1);
                    benchmark::DoNotOptimize(to);
                    benchmark::ClobberMemory();
                }
            state.SetItemsProcessed(state.iterations() * kBatch);
        });
    };
    copies("kora", [](const char* from, char* to, int size) { StrAssign(from, to, size); });
    copies("strncpy", [](const char* from, char* to, int size) { strncpy(to, from, static_cast<std::size_t>(size)); });
    copies("snprintf",
           [](const char* from, char* to, int size) { snprintf(to, static_cast<std::size_t>(size), "%s", from); });
}

/// A text and a needle near its end. Near matches: the needle's beginning everywhere.
void find(const char* name, bool nearMatches) {
    const Sizes kLengths = {256, 1024, 4096};
    struct Input {
        std::string text, needle;
        Input(long length, bool near) {
            Random random;
            needle = near ? std::string(31, 'a') + 'b' : "needle_of_hay";
            while (static_cast<long>(text.size()) < length)
                text += near ? 'a' : "abcdefghijklmnopqrstuvwxyz_ "[random.below(28)];
            text.replace(text.size() - needle.size(), needle.size(), needle);
        }
    };
    const auto search = [&](const char* who, auto body) {
        measure(name, who, kLengths, [body, nearMatches](benchmark::State& state, long length) {
            Input input(length, nearMatches);
            for (auto _ : state) {
                benchmark::DoNotOptimize(input.text.data());
                benchmark::ClobberMemory();
                benchmark::DoNotOptimize(body(input));
            }
        });
    };
    search("kora", [](const Input& i) { return StrPos(i.needle.c_str(), 64, i.text.c_str(), 8192); });
    search("strstr", [](const Input& i) { return strstr(i.text.c_str(), i.needle.c_str()); });
    search("memmem", [](const Input& i) {
        return memmem(i.text.c_str(), strlen(i.text.c_str()), i.needle.c_str(), strlen(i.needle.c_str()));
    });
    search("string_view_find",
           [](const Input& i) { return std::string_view(i.text.c_str()).find(std::string_view(i.needle.c_str())); });
}

std::vector<std::string> signalNames(long count, long extra = 0) {
    static const char* const kStems[] = {"DATA_BUS_", "ADDR_", "CLK", "RESET_N", "U7/Q", "net_", "VCC_IO_", "IRQ_"};
    std::vector<std::string> names;
    Random random;
    for (long i = 0; i < count; ++i) {
        char digits[16];
        std::snprintf(digits, sizeof digits, random.below(2) ? "%04u" : "%u", random.below(5000));
        names.push_back(std::string(static_cast<std::size_t>(extra), 'x') + kStems[random.below(8)] + digits +
                        (random.below(8) ? "" : "_L"));
    }
    return names;
}

void compareNames() {
    const Sizes kExtra = {1, 20, 200};
    const auto compares = [&](const char* who, auto compare) {
        measure("name_compare", who, kExtra, [compare](benchmark::State& state, long extra) {
            std::vector<std::string> names;
            const std::string stem = std::string(static_cast<std::size_t>(extra - 1), 'x') + "DATA_BUS_";
            Random random;
            for (int i = 0; i <= kBatch; ++i) {
                char digits[16];
                std::snprintf(digits, sizeof digits, "%04u", random.below(5000));
                names.push_back(stem + digits);
            }
            for (auto _ : state)
                for (int i = 0; i < kBatch; ++i)
                    benchmark::DoNotOptimize(compare(names[static_cast<std::size_t>(i)].c_str(),
                                                     names[static_cast<std::size_t>(i) + 1].c_str()));
            state.SetItemsProcessed(state.iterations() * kBatch);
        });
    };
    compares("kora", [](const char* a, const char* b) { return StrCompareName(a, 256, b, 256, true); });
    compares("strverscmp", [](const char* a, const char* b) { return strverscmp(a, b); });
}

void sortNames() {
    const Sizes kCounts = {3000, 30000, 300000};
    measure("name_sort_30k", "kora", kCounts, [](benchmark::State& state, long count) {
        const CStringArray names = signalNames(count);
        std::vector<unsigned int> tags(names.size());
        for (auto _ : state) {
            std::iota(tags.begin(), tags.end(), 0U);
            StrSortNameList(names, tags);
            benchmark::DoNotOptimize(tags.data());
        }
    });
    measure("name_sort_30k", "strverscmp_stable_sort", kCounts, [](benchmark::State& state, long count) {
        const CStringArray names = signalNames(count);
        std::vector<unsigned int> tags(names.size());
        for (auto _ : state) {
            std::iota(tags.begin(), tags.end(), 0U);
            std::stable_sort(tags.begin(), tags.end(), [&](unsigned a, unsigned b) {
                return strverscmp(names[a].c_str(), names[b].c_str()) < 0;
            });
            benchmark::DoNotOptimize(tags.data());
        }
    });
    measure("name_sort_30k", "qcollator_sort_keys", {3000, 30000}, [](benchmark::State& state, long count) {
        const CStringArray names = signalNames(count);
        QCollator collator;
        collator.setNumericMode(true);
        for (auto _ : state) {
            std::vector<std::pair<QCollatorSortKey, unsigned>> keys;
            keys.reserve(names.size());
            for (unsigned i = 0; i < names.size(); ++i)
                keys.emplace_back(collator.sortKey(QString::fromLatin1(names[i].c_str())), i);
            std::stable_sort(keys.begin(), keys.end(),
                             [](const auto& a, const auto& b) { return a.first.compare(b.first) < 0; });
            benchmark::DoNotOptimize(keys.data());
        }
    });
}

/// One pattern on texts of a length, by every matcher there is.
void match(const char* name, const Sizes& lengths, const std::string& pattern, const std::string& regex,
           const std::function<std::string(long)>& text) {
    const auto matches = [&](const char* who, auto matcher) {
        measure(name, who, lengths, [=](benchmark::State& state, long length) {
            const std::string subject = text(length);
            for (auto _ : state) {
                benchmark::DoNotOptimize(subject.data());
                benchmark::ClobberMemory();
                benchmark::DoNotOptimize(matcher(subject.c_str()));
            }
        });
    };
    matches("kora", [=](const char* s) { return StrComparePattern(pattern.c_str(), 256, s, 8192, true); });
    matches("fnmatch", [=](const char* s) { return fnmatch(pattern.c_str(), s, 0) == 0; });
    GPatternSpec* const compiled = g_pattern_spec_new(pattern.c_str());
    matches("gpatternspec", [=](const char* s) { return g_pattern_spec_match_string(compiled, s) != 0; });
    int error = 0;
    PCRE2_SIZE at = 0;
    pcre2_code* const code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(regex.c_str()), PCRE2_ZERO_TERMINATED,
                                           PCRE2_DOTALL, &error, &at, nullptr);
    pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
    pcre2_match_data* const groups = pcre2_match_data_create(4, nullptr);
    // Where it gives up with an error it is no competitor.
    const std::string longest = text(lengths.back());
    if (pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(longest.c_str()), PCRE2_ZERO_TERMINATED, 0, 0, groups, nullptr) <
        PCRE2_ERROR_NOMATCH)
        return;
    matches("pcre2_jit", [=](const char* s) {
        return pcre2_jit_match(code, reinterpret_cast<PCRE2_SPTR>(s), strlen(s), 0, 0, groups, nullptr) > 0;
    });
}

}  // namespace

void addStringCases() {
    assign();
    find("str_pos_1k/typical", false);
    find("str_pos_1k/worst", true);
    compareNames();
    sortNames();
    match("pattern_match_typical", {16, 64, 256}, "DATA_*_?12*", "\\ADATA_.*_.12.*\\z",
          [](long length) { return "DATA_" + std::string(static_cast<std::size_t>(length) - 13, 'B') + "_0123_AB"; });
    const auto as = [](const char* front) {
        return [front](long n) { return front + std::string(static_cast<std::size_t>(n), 'a'); };
    };
    match("pattern_match_adversarial/end", {50, 100, 200}, "*a*a*a*a*a*a*a*b", "\\A.*a.*a.*a.*a.*a.*a.*a.*b\\z",
          as(""));
    // With a b where it does not help, or whoever looks for one first is done.
    match("pattern_match_adversarial/open", {50, 100, 200}, "*a*a*a*a*a*a*a*b*", "\\A.*a.*a.*a.*a.*a.*a.*a.*b.*\\z",
          as("b"));
}

}  // namespace kora::bench
