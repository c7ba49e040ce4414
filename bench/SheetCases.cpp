#include <absl/strings/str_split.h>
#include <kora/Sht.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <numeric>

#include "bench/Cases.h"

namespace kora::bench {

namespace {

using Grid = std::vector<std::vector<std::string>>;

constexpr short kColumns = 16;
const Sizes kRows = {2047, 8191, 32767};

/// Texts as they stand in tables of parts and nets.
const std::string& text(long row, long column) {
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> all;
        for (int i = 0; i < 4096; ++i) {
            char buffer[32];
            std::snprintf(buffer, sizeof buffer, "net_%04d_%c", i, 'a' + i % 26);
            all.emplace_back(buffer);
        }
        return all;
    }();
    return texts[static_cast<std::size_t>(row * 31 + column * 7) % texts.size()];
}

struct Sheet : ShtSheet {
    Sheet() : ShtSheet(nullptr, nullptr, 0) {}
    void set(long row, long column, const std::string& text) {
        ShtCellSet(static_cast<short>(row), static_cast<short>(column), true, const_cast<char*>(text.data()),
                   static_cast<long>(text.size()), nullptr, ShtCellUpdateNone, ShtCellShowNone, ShtCellShowNone);
    }
    long length(long row, long column) {
        bool copied;
        char* text;
        long length;
        void* data;
        if (!ShtCellGet(static_cast<short>(row), static_cast<short>(column), copied, text, length, data)) return -1;
        return length + *text;
    }
};

void set(Grid& grid, long row, long column, const std::string& text) {
    if (static_cast<long>(grid.size()) <= row) grid.resize(static_cast<std::size_t>(row) + 1);
    auto& cells = grid[static_cast<std::size_t>(row)];
    if (static_cast<long>(cells.size()) <= column) cells.resize(static_cast<std::size_t>(column) + 1);
    cells[static_cast<std::size_t>(column)] = text;
}
void set(Sheet& sheet, long row, long column, const std::string& text) { sheet.set(row, column, text); }

long length(Grid& grid, long row, long column) {
    const std::string& text = grid[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    return static_cast<long>(text.size()) + text[0];
}
long length(Sheet& sheet, long row, long column) { return sheet.length(row, column); }

template <class Table>
void fill(Table& table, long rows) {
    for (long row = 0; row < rows; ++row)
        for (long column = 0; column < kColumns; ++column) set(table, row, column, text(row, column));
}

/// Times the making of tables. The first one is not timed: what memory costs that the system has to find anew depends
/// on what ran before.
template <class Table, class Make>
void timeMade(benchmark::State& state, const Make& make) {
    auto table = std::make_unique<Table>();
    make(*table);
    for (auto _ : state) {
        state.PauseTiming();
        table.reset();
        table = std::make_unique<Table>();
        state.ResumeTiming();
        make(*table);
    }
}

template <class Table>
void cells(const char* who) {
    measure("sheet_fill_32767x16", who, kRows, [](benchmark::State& state, long rows) {
        timeMade<Table>(state, [=](Table& table) { fill(table, rows); });
    });
    const auto places = [](long rows, std::size_t count) {
        Random random;
        std::vector<std::pair<short, short>> all;
        for (std::size_t i = 0; i < count; ++i)
            all.emplace_back(random.below(static_cast<unsigned>(rows)), random.below(kColumns));
        return all;
    };
    measure("sheet_random_read_1M", who, kRows, [=](benchmark::State& state, long rows) {
        Table table;
        fill(table, rows);
        const auto at = places(rows, 1000000);
        long sum = 0;
        for (auto _ : state)
            for (const auto& [row, column] : at) sum += length(table, row, column);
        benchmark::DoNotOptimize(sum);
    });
    measure("sheet_random_write_100k", who, kRows, [=](benchmark::State& state, long rows) {
        Table table;
        fill(table, rows);
        const auto at = places(rows, 100000);
        Random random;
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < at.size(); ++i)
            texts.push_back("w" + std::to_string(random.below(100000000)) + std::string(random.below(8), 'x'));
        for (auto _ : state) {
            for (std::size_t i = 0; i < at.size(); ++i) set(table, at[i].first, at[i].second, texts[i]);
            state.PauseTiming();
            std::rotate(texts.begin(), texts.begin() + 17, texts.end());
            state.ResumeTiming();
        }
    });
}

/// Rows of four cells, in an order.
enum class Order { random, sorted, reverse };

std::string sortText(long row, long column, long rows, Order order) {
    char buffer[32];
    Random random(static_cast<unsigned>(row * 4 + column));
    // The sheet compares numbers of 16 bits: larger ones would not be in order.
    const long key = order == Order::random ? static_cast<long>(random.below(1000000))
                                            : 10000 + (order == Order::sorted ? row : rows - row);
    std::snprintf(buffer, sizeof buffer, "%s_%06ld", column == 0 ? "net" : "pin", key);
    return buffer;
}

void sorts(const char* name, Order order) {
    constexpr long kCells = 4;
    measure(name, "kora", kRows, [=](benchmark::State& state, long rows) {
        for (auto _ : state) {
            state.PauseTiming();
            auto sheet = std::make_unique<Sheet>();
            for (long row = 0; row < rows; ++row)
                for (long column = 0; column < kCells; ++column)
                    sheet->set(row, column, sortText(row, column, rows, order));
            state.ResumeTiming();
            sheet->ShtSheetSort(ShtSortCells);
            state.PauseTiming();
            sheet.reset();
            state.ResumeTiming();
        }
    });
    measure(name, "stable_sort_of_rows", kRows, [=](benchmark::State& state, long rows) {
        Grid grid;
        for (long row = 0; row < rows; ++row)
            for (long column = 0; column < kCells; ++column) set(grid, row, column, sortText(row, column, rows, order));
        for (auto _ : state) {
            state.PauseTiming();
            std::vector<const std::vector<std::string>*> sorted(grid.size());
            std::transform(grid.begin(), grid.end(), sorted.begin(), [](const auto& row) { return &row; });
            state.ResumeTiming();
            std::reverse(sorted.begin(), sorted.end());
            std::stable_sort(sorted.begin(), sorted.end(), [](const auto* a, const auto* b) {
                for (std::size_t i = 0; i < a->size(); ++i)
                    if (const int way = std::strcmp((*a)[i].c_str(), (*b)[i].c_str()); way != 0) return way < 0;
                return false;
            });
            benchmark::DoNotOptimize(sorted.data());
        }
    });
}

/// Exchange text: cells of about 12 characters.
std::string exchange(long length, long columns) {
    std::string all;
    for (long row = 0; static_cast<long>(all.size()) < length; ++row) {
        for (long column = 0; column < columns; ++column) {
            if (column > 0) all += '\t';
            all += text(row, column);
        }
        all += '\r';
    }
    return all;
}

void exchanges() {
    const Sizes kLengths = {1000000, 3000000, 10000000};
    constexpr long kWide = 26;
    measure("tsv_read_10MB", "kora", kLengths, [](benchmark::State& state, long length) {
        std::string all = exchange(length, kWide);
        timeMade<Sheet>(state, [&](Sheet& sheet) {
            if (!sheet.ShtSheetFromBuffer(all.data(), static_cast<long>(all.size()), false, true))
                state.SkipWithError("the text was refused");
        });
    });
    measure("tsv_read_10MB", "absl_strsplit", kLengths, [](benchmark::State& state, long length) {
        const std::string all = exchange(length, kWide);
        timeMade<Grid>(state, [&](Grid& grid) {
            for (const absl::string_view row : absl::StrSplit(all, '\r')) grid.push_back(absl::StrSplit(row, '\t'));
        });
    });
    const Sizes kWritten = {7000, 21000, 63000};
    measure("tsv_write", "kora", kWritten, [](benchmark::State& state, long length) {
        std::string all = exchange(length, kColumns);
        Sheet sheet;
        sheet.ShtSheetFromBuffer(all.data(), static_cast<long>(all.size()), false, true);
        for (auto _ : state) {
            char* buffer = nullptr;
            long written = 0;
            if (!sheet.ShtSheetToBuffer(buffer, written, false)) state.SkipWithError("the sheet was refused");
            benchmark::DoNotOptimize(buffer);
            ShtBufferFree(buffer);
        }
    });
    measure("tsv_write", "std_string_append", kWritten, [](benchmark::State& state, long length) {
        const std::string all = exchange(length, kColumns);
        Grid grid;
        for (const absl::string_view row : absl::StrSplit(all, '\r')) grid.push_back(absl::StrSplit(row, '\t'));
        for (auto _ : state) {
            std::string buffer;
            for (const auto& row : grid) {
                bool first = true;
                for (const std::string& cell : row) {
                    if (!first) buffer += '\t';
                    buffer += cell;
                    first = false;
                }
                buffer += '\r';
            }
            benchmark::DoNotOptimize(buffer.data());
        }
    });
}

}  // namespace

void addSheetCases() {
    cells<Sheet>("kora");
    cells<Grid>("vector_vector_string");
    sorts("sheet_sort_32k_random", Order::random);
    sorts("sheet_sort_32k_sorted", Order::sorted);
    sorts("sheet_sort_32k_reverse", Order::reverse);
    exchanges();
}

}  // namespace kora::bench
