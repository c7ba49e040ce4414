#include <kora/Sht.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "core/VirtualSlots.h"
#include "sheet/State.h"
#include "strings/Bytes.h"
#include "strings/FirstByte.h"

namespace kora {

namespace {

constexpr std::size_t kLargestBuffer = 64000;

constexpr bool endsRow(char c) { return c == '\r' || c == '\n'; }
constexpr bool endsCell(char c) { return c == '\t' || endsRow(c); }

// How long the cell text is that stands in front.
std::size_t endOfCell(std::string_view text) {
    const auto endsIn = [](std::uint64_t bytes) {
        return bytesEqual(bytes, '\t') | bytesEqual(bytes, '\r') | bytesEqual(bytes, '\n');
    };
    return static_cast<std::size_t>(firstByte(text.data(), text.data() + text.size(), endsCell, endsIn) - text.data());
}

// Where text goes while it is only measured. False when there is no more room.
struct TextMeasure {
    std::size_t room;

    bool put(std::string_view text) {
        if (text.size() > room) return false;
        room -= text.size();
        return true;
    }
    bool put(char) {
        if (room == 0) return false;
        --room;
        return true;
    }
};

struct TextBuffer : TextMeasure {
    char* at;

    bool put(std::string_view text) {
        if (!TextMeasure::put(text)) return false;
        moveText(at, text.data(), text.size());
        at += text.size();
        return true;
    }
    bool put(char c) {
        if (!TextMeasure::put(c)) return false;
        *at++ = c;
        return true;
    }
};

template <typename Sink, typename TextsOf>
bool putRange(Sink& to, const SheetRange& range, TextsOf textsOf) {
    Sink sink = to;
    for (int r = range.top; r <= range.bottom; ++r) {
        const auto textOf = textsOf(r);
        for (int c = range.left; c <= range.right; ++c) {
            if (c > range.left && !sink.put('\t')) return false;
            if (!sink.put(textOf(c))) return false;
        }
        if (!sink.put('\r')) return false;
    }
    to = sink;
    return true;
}

// The texts of a row, which may be missing.
auto textsOf(const TShtRow* row) {
    return [held = row != nullptr ? *row : TShtRow{}](int c) {
        const TShtCell* const cell = held.cell(c);
        if (cell == nullptr) return std::string_view();
        if (cell->isPlain()) return std::string_view(cell->plainText(), static_cast<std::size_t>(cell->plainLength()));
        return cell->view();
    };
}

// The text that an override of the sheet's operation says.
std::string_view askText(ShtSheet& sheet, int r, int c) {
    bool copied = true;
    char* text = nullptr;
    long length = 0;
    void* data = nullptr;
    sheet.ShtCellGet(static_cast<short>(r), static_cast<short>(c), copied, text, length, data);
    if (text == nullptr || length <= 0) return {};
    return {text, static_cast<std::size_t>(length)};
}

}  // namespace

}  // namespace kora

bool ShtSheet::ShtSheetToBuffer(char*& buffer, long& length, bool selectionOnly) {
    buffer = nullptr;
    length = 0;
    kora::TShtTable& table = state_->table;
    // A whole sheet has an empty column and an empty row more than there are: its readers know them.
    kora::SheetRange range{0, 0, table.rowCount(), table.colCount()};
    if (selectionOnly && !selectedRange(range)) return true;
    endEdit();

    const bool isOwn = kora::runsCode(*this, &ShtSheet::ShtCellGet, state_->ownCellGet);
    const auto put = [&](auto& sink) {
        if (isOwn) return kora::putRange(sink, range, [&](int r) { return kora::textsOf(table.row(r)); });
        return kora::putRange(sink, range,
                              [this](int r) { return [this, r](int c) { return kora::askText(*this, r, c); }; });
    };
    kora::TextMeasure measured{kora::kLargestBuffer};
    if (!put(measured)) return false;
    const std::size_t size = kora::kLargestBuffer - measured.room;
    if (size == 0) return true;
    std::unique_ptr<char, void (*)(char*)> memory(static_cast<char*>(::operator new(size, std::nothrow)),
                                                  ShtBufferFree);
    if (memory == nullptr) return false;
    kora::TextBuffer written{{size}, memory.get()};
    // An override may answer other texts than it did before, or throw.
    if (!put(written) || written.room != 0) return false;
    buffer = memory.release();
    length = static_cast<long>(size);
    return true;
}

bool ShtSheet::ShtSheetFromBuffer(char* buffer, long length, bool atSelection, bool create) {
    if (buffer == nullptr || length <= 0) return true;
    kora::TShtTable& table = state_->table;
    std::string_view rest(buffer, static_cast<std::size_t>(length));
    // The text may be a cell's own, which goes when that cell gets another.
    std::unique_ptr<char[]> copy;
    if (table.rowCount() > 0 || table.colCount() > 0) {
        copy.reset(new (std::nothrow) char[rest.size()]);
        if (copy != nullptr) std::memcpy(copy.get(), buffer, rest.size());
        rest = {copy.get(), copy != nullptr ? rest.size() : 0};
    }

    if (ShtSheetVirtGet()) create = true;
    if (table.rowCount() == 0 && !create) return true;
    kora::SheetRange start{0, 0, 0, 0};
    if (atSelection && !selectedRange(start)) return false;
    endEdit();

    const bool hasHook = !kora::runsCode(*this, &ShtSheet::ShtProgCellChange, state_->ownProgCellChange);
    // A text ends at its first NUL. One look at all of them saves one at each.
    bool goesOn = rest.data() != nullptr;
    const bool hasNul = goesOn && std::memchr(rest.data(), 0, rest.size()) != nullptr;
    int r = start.top, c = start.left, widest = 0, lastWidth = 0;
    kora::TShtRow* row = nullptr;  // at hand until the row ends or a hook may have taken it away
    while (!rest.empty() && goesOn) {
        const std::size_t size = kora::endOfCell(rest);
        if (row == nullptr) row = create ? state_->makeRow(r) : table.row(r);
        // Most rows are as long as the one before.
        if (row != nullptr && c == start.left && lastWidth > 0)
            row->reserve(table.store, std::min(lastWidth, table.colCount()), 0);
        const bool hasColumn = c < table.colCount() || (create && state_->makeColumn(c) != nullptr);
        kora::TShtCell* const cell = row != nullptr && hasColumn ? table.makeCell(*row, c) : nullptr;
        if (cell != nullptr && !cell->isProtected) {
            state_->markDirty(*cell);
            if (cell->hasExtras) table.clearMark({*row, c});
            const std::size_t kept = std::min<std::size_t>(size, INT32_MAX);
            if (hasNul || kept == 0)
                table.store.copy(*cell, rest.data(), kept);
            else
                table.store.copyWhole(*cell, rest.data(), kept);
            if (hasHook) {
                goesOn = askHook(r, c);
                row = nullptr;
            }
        }
        c = std::min(c + 1, kora::kToEnd);  // where nothing is, however far the text goes
        if (size == rest.size()) break;
        if (kora::endsRow(rest[size])) {
            r = std::min(r + 1, kora::kToEnd);
            widest = std::max(widest, c);
            lastWidth = c;
            c = start.left;
            row = nullptr;
        }
        rest.remove_prefix(size + 1);
    }
    ShtProgCellChangeDone(goesOn);
    // The last row may have no end.
    const bool isOpen = c > start.left;
    redraw({start.top, start.left, isOpen ? r : r - 1, std::max(widest, c) - 1});
    if (create) updateScrollBars();
    return true;
}

void ShtBufferFree(char* buffer) { ::operator delete(buffer); }
