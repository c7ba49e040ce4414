#pragma once

#include <kora/Sht.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kora::test {

/// What a cell holds beside its text; the size is a heading's height or width.
enum { kDirty, kMultiLine, kProtected, kAlign, kFlags, kMark, kMarkValue, kData, kSize, kAttributes };

struct CellModel {
    std::string own;             // the text when the cell owns it
    const char* lent = nullptr;  // and when it does not
    long lentLength = 0;
    bool isOwner = true;
    std::array<std::intptr_t, kAttributes> attributes = {};

    std::intptr_t& operator[](int which) { return attributes.begin()[which]; }
    long length() const { return isOwner ? static_cast<long>(own.size()) : lentLength; }
    const char* text() const { return !isOwner ? lent : own.empty() ? nullptr : own.data(); }
    std::string_view view() const { return {text(), static_cast<std::size_t>(length())}; }
    void set(const char* text_, long length_, bool copy) {
        if (text_ == text() && copy == isOwner && length_ == length()) return;
        isOwner = copy && text_ != nullptr && length_ != 0;
        std::string copied;  // the text may be this cell's own
        if (isOwner) copied.assign(text_, length_ < 0 ? strlen(text_) : strnlen(text_, static_cast<size_t>(length_)));
        own = copied, lent = text_, lentLength = length_;
    }
    int soil() { return std::exchange((*this)[kDirty], 1) == 0; }  // what the count of dirty cells grows by
};

/// The sheet once more, as plainly as it can be said: one map of all there is, every rule written out where it acts.
/// Rows are axis 0, columns axis 1.
struct SheetModel {
    using Place = std::array<int, 2>;    // row and column; row headings are in column -1, column headings in row -1
    using Range = std::array<Place, 2>;  // first and last of both

    std::map<Place, CellModel> cells;
    Place count = {0, 0}, client = {0, 0};
    int dirtyCells = 0;
    bool dirty = false, isVirtual = false;
    eShtSelect kind = ShtSelectNone;
    Range selection = {};
    std::vector<std::pair<short, short>> asked;  // what ShtProgCellChange() was told; it refuses the call stopAt
    std::vector<bool> told;                      // and ShtProgCellChangeDone()
    std::size_t stopAt = 0;

    CellModel* find(Place at) {
        const auto it = cells.find(at);
        return it != cells.end() ? &it->second : nullptr;
    }
    CellModel* heading(unsigned axis, int n) { return n < 0 ? nullptr : find(axis == 0 ? Place{n, -1} : Place{-1, n}); }
    CellModel* cell(int r, int c) { return r < 0 || c < 0 ? nullptr : find({r, c}); }
    Place used() const {
        Place end = {0, 0};
        for (const auto& [at, cell] : cells)
            if (at[0] >= 0 && at[1] >= 0 && cell.length() != 0)
                end = {std::max(end[0], at[0] + 1), std::max(end[1], at[1] + 1)};
        return end;
    }
    Range wholeSheet() const { return {Place{0, 0}, Place{count[0] - 1, count[1] - 1}}; }
    int last(const Range& range, unsigned axis) const { return std::min(range[1][axis], count[axis] - 1); }
    std::optional<Range> selected() const {
        Range range = selection;
        for (unsigned axis = 0; axis < 2; ++axis) {
            const bool whole = kind == ShtSelectSheet || kind == (axis == 0 ? ShtSelectCols : ShtSelectRows);
            if (whole || range[0][axis] == -1) range[0][axis] = 0;
            if (whole || range[1][axis] == -1) range[1][axis] = count[axis] - 1;
        }
        return kind == ShtSelectNone ? std::nullopt : std::optional(range);
    }
    std::string toBuffer(bool selectionOnly) {
        std::string text;
        const std::optional<Range> range = selectionOnly ? selected() : Range{Place{0, 0}, count};
        for (int r = range ? (*range)[0][0] : 0; range && r <= (*range)[1][0]; ++r, text += '\r')
            for (int c = (*range)[0][1]; c <= (*range)[1][1]; ++c)
                text.append(c != (*range)[0][1], '\t').append(cell(r, c) ? cell(r, c)->view() : "");
        return text.size() <= 64000 ? text : "refused";
    }

    static bool isNumber(int n) { return n >= 0 && n < 32767; }
    bool extend(unsigned axis, int n) {
        for (int& end = count[axis]; n < 32767 && end <= n; ++end)
            cells[axis == 0 ? Place{end, -1} : Place{-1, end}][kSize] = axis == 0 ? 200 : 1000;
        return isNumber(n);
    }
    CellModel& make(int r, int c) {
        for (int before = 0; before < c; ++before) cells[{r, before}];
        return cells[{r, c}];
    }
    bool setAttribute(int r, int c, int which, std::intptr_t value) {
        if (!isNumber(r) || !isNumber(c)) return false;
        extend(0, r), extend(1, c);
        const std::intptr_t was = std::exchange(make(r, c)[which], value);
        return dirtyCells += which == kDirty ? static_cast<int>(value - was) : 0, true;
    }
    bool setMark(int r, int c, char mark, int value) {
        return setAttribute(r, c, kMark, mark) && setAttribute(r, c, kMarkValue, value);
    }
    bool set(int r, int c, bool copy, const char* text, long length, std::intptr_t data) {
        if (!setAttribute(r, c, kData, data)) return false;
        return cell(r, c)->set(text, length, copy), dirtyCells += cell(r, c)->soil(), true;
    }
    bool setHeadingAttribute(unsigned axis, int n, int which, std::intptr_t value) {
        return extend(axis, n) && ((*heading(axis, n))[which] = value, true);
    }
    bool setHeading(unsigned axis, int n, const char* text, long length, std::intptr_t data) {
        return setHeadingAttribute(axis, n, kData, data) && (heading(axis, n)->set(text, length, true), true);
    }
    bool show(int r, int c, bool scrolls) {
        return count[0] > 0 && count[1] > 0 &&
               (!scrolls || (isNumber(r) && isNumber(c) && extend(0, r) && extend(1, c)));
    }

    // Everything moves to its new number; what gets -2 goes.
    void renumber(unsigned axis, const std::function<int(int)>& toNew) {
        std::map<Place, CellModel> moved;
        for (auto& [at, cell] : cells) {
            Place to = at;
            if (to[axis] != -1) to[axis] = toNew(to[axis]);
            if (to[axis] == -2)
                dirtyCells -= static_cast<int>(cell[kDirty]);
            else
                moved[to] = std::move(cell);
        }
        cells = std::move(moved);
    }
    bool add(unsigned axis, int n) {
        if (n == -1) n = selected() ? (*selected())[0][axis] : count[axis];
        if (n < 0 || n >= 32767 || count[axis] == 32767) return false;
        if (n >= count[axis]) return dirty = extend(axis, n);
        const int end = count[axis];
        renumber(axis, [n](int old) { return old + (old >= n); });
        count[axis] = n, extend(axis, n), count[axis] = end + 1;
        for (int r = 0; axis == 1 && r < count[0]; ++r)
            if (cell(r, n + 1)) make(r, n);
        return dirty = true;
    }
    bool del(unsigned axis, int n) {
        if (n == -1 && !selected()) return true;
        const int first = n == -1 ? (*selected())[0][axis] : n;
        const int end = std::min(n == -1 ? (*selected())[1][axis] + 1 : n + 1, count[axis]);
        if (first < 0 || first >= end) return false;
        renumber(axis, [=](int old) { return old < first ? old : old < end ? -2 : old - (end - first); });
        return count[axis] -= end - first, dirty = true;
    }
    bool move(unsigned axis, int from, int to) {
        if (from < 0 || to < 0 || from == to) return from >= 0 && to >= 0;
        const int target = std::min(to, count[axis] - 1), least = std::min(from, target), most = std::max(from, target);
        if (from >= count[axis]) return dirty = true;
        for (int r = 0; axis == 1 && r < count[0]; ++r)
            if (cell(r, least)) make(r, most);
        renumber(axis, [&](int old) {
            return old == from ? target : old < least || old > most ? old : old + (from < target ? -1 : 1);
        });
        return dirty = true;
    }
    // A tree that is never balanced: what sorts after a row hangs right of it, equal ones left.
    void sort(eShtSort by) {
        std::map<int, int> left, right, place;
        for (int made = 1; made < count[0]; ++made)
            for (int node = 0; node != made;)
                node = (compareRows(by, made, node) == 1 ? right : left).try_emplace(node, made).first->second;
        const std::function<void(int)> walk = [&](int node) {
            if (left.count(node) != 0) walk(left[node]);
            place.emplace(node, static_cast<int>(place.size()));
            if (right.count(node) != 0) walk(right[node]);
        };
        if (count[0] > 0) walk(0);
        renumber(0, [&](int r) { return place[r]; });
        kind = ShtSelectNone, dirty = true;
    }
    int compareRows(eShtSort by, int a, int b) {
        if (by == ShtSortHeadings) return compare(heading(0, a)->view(), heading(0, b)->view());
        int order = 0;
        for (int c = 0; order == 0 && cell(a, c) && cell(b, c); ++c)
            order = compare(cell(a, c)->view(), cell(b, c)->view());
        return order;
    }
    static int compare(std::string_view a, std::string_view b) {
        if (a.empty() || b.empty()) return a.empty() - b.empty();
        const auto isDigit = [](char ch) { return ch >= '0' && ch <= '9'; };
        const auto number = [&](std::string_view text, std::size_t& at, int value) {
            for (; at < text.size() && isDigit(text[at]);) value = (value * 10 + text[at++] - '0') % 65536;
            return value;
        };
        for (std::size_t i = 0, j = 0;;) {
            if (i == a.size() || j == b.size()) return (j == b.size()) - (i == a.size());
            const bool digits = isDigit(a[i]) && isDigit(b[j]);
            const int x = digits ? number(a, i, 0) : static_cast<signed char>(a[i++]);
            const int y = digits ? number(b, j, 0) : static_cast<signed char>(b[j++]);
            if (x != y) return x < y ? -1 : 1;
        }
    }

    void setVirtual(bool on) {
        if (std::exchange(isVirtual, on) == on) return;
        if (on) return grow(1), grow(0);
        const Place end = used();
        for (unsigned axis = 0; axis < 2; ++axis)
            while (count[axis] > end[axis]) del(axis, count[axis] - 1);
    }
    void grow(unsigned axis) {
        const int size = axis == 0 ? 200 : 1000;  // of the band too
        std::intptr_t remaining = 2 * (client[axis] - size);
        for (int n = 0; n < count[axis]; ++n) remaining -= (*heading(axis, n))[kSize];
        if (remaining > 0) add(axis, count[axis] + static_cast<int>(remaining / size));
    }
    void remove() {
        cells.clear(), count = {0, 0}, dirtyCells = 0, dirty = true, kind = ShtSelectNone;
        if (isVirtual) grow(0), grow(1);
    }
    bool selectNext() {
        const auto [r, c] = selection[0];
        const bool isCell = kind == ShtSelectCells && selection[1] == selection[0];
        if (!isCell || !heading(0, r) || !heading(1, c)) return false;
        selection[0] = {(r + (c + 1) / count[1]) % count[0], (c + 1) % count[1]};
        return selection[1] = selection[0], true;
    }
    bool change(int r, int c, const char* text, long length, bool unmark) {
        CellModel& changed = make(r, c);
        if (changed[kProtected] != 0) return true;
        dirtyCells += changed.soil(), changed.set(text, length, true);
        changed.lent = nullptr;  // an empty text lies nowhere: buffers do not last
        if (unmark) changed[kMark] = changed[kMarkValue] = 0;
        asked.emplace_back(r, c);
        return asked.size() != stopAt;
    }
    bool clearCell(int r, int c) { return !cell(r, c) || change(r, c, nullptr, 0, /*unmark=*/true); }
    void clearLine(unsigned axis, int n) {
        const int end = count[1 - axis];
        for (int i = 0; i < end && (axis == 0 ? clearCell(n, i) : clearCell(i, n));) ++i;
    }
    void clear(bool selectionOnly, bool headingsToo) {
        const std::optional<Range> range = selectionOnly ? selected() : wholeSheet();
        if (!range) return;
        const auto clearHeading = [this](CellModel& it) { dirtyCells += it.soil(), it.set(nullptr, 0, true); };
        for (int c = (*range)[0][1]; headingsToo && c < count[1]; ++c) clearHeading(*heading(1, c));
        bool goOn = true;
        for (int r = (*range)[0][0]; goOn && r <= last(*range, 0); ++r) {
            if (headingsToo) clearHeading(*heading(0, r));
            for (int c = (*range)[0][1]; goOn && c <= last(*range, 1); ++c) goOn = clearCell(r, c);
        }
        told.push_back(goOn);
    }
    void fill(unsigned axis, bool headingsToo) {
        const std::optional<Range> range = selected();
        if (!range || (kind != ShtSelectCells && isVirtual)) return;
        const unsigned across = 1 - axis;
        const int first = (*range)[0][axis];
        bool goOn = true;
        for (int line = (*range)[0][across]; goOn && line <= last(*range, across); ++line) {
            const CellModel* found = axis == 0 ? cell(first, line) : cell(line, first);
            const CellModel source = found ? *found : CellModel();
            for (int n = first + 1; goOn && n <= last(*range, axis); ++n)
                goOn = change(axis == 0 ? n : line, axis == 0 ? line : n, source.text(), source.length(), false);
        }
        told.push_back(goOn);
        for (int n = first + 1; goOn && headingsToo && n <= last(*range, axis); ++n) {
            heading(axis, n)->set(heading(axis, first)->text(), heading(axis, first)->length(), true);
            dirtyCells = heading(axis, n)->soil() + (axis == 0 ? 0 : dirtyCells);
        }
    }
    bool fromBuffer(const char* buffer, long length, bool atSelection, bool create) {
        create = create || isVirtual;
        if (buffer == nullptr || length == 0 || (count[0] == 0 && !create)) return true;
        if (atSelection && !selected()) return false;
        const Place start = atSelection ? (*selected())[0] : Place{0, 0};
        auto [r, c] = start;
        bool goOn = true;
        for (long at = 0, end = 0; goOn && at < length; at = end + 1) {
            for (end = at; end < length && buffer[end] != '\t' && buffer[end] != '\r' && buffer[end] != '\n';) ++end;
            if (create) extend(0, r), extend(1, c);
            if (heading(0, r) && heading(1, c)) goOn = change(r, c, buffer + at, end - at, /*unmark=*/true);
            ++c;
            if (end < length && buffer[end] != '\t') ++r, c = start[1];
        }
        return told.push_back(goOn), true;
    }
};

}  // namespace kora::test
