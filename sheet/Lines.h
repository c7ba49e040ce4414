#pragma once

namespace kora {

/// Rows and columns: most of what is done to the ones is done to the others.
enum class SheetLine : int { row, column };

constexpr SheetLine other(SheetLine line) { return line == SheetLine::row ? SheetLine::column : SheetLine::row; }

inline constexpr SheetLine kLines[] = {SheetLine::row, SheetLine::column};

/// One value for rows, one for columns.
template <class Value>
struct PerLine {
    Value row{};
    Value column{};

    Value& operator[](SheetLine line) { return line == SheetLine::row ? row : column; }
    const Value& operator[](SheetLine line) const { return line == SheetLine::row ? row : column; }
    bool operator==(const PerLine&) const = default;
};

/// Rows and columns, the last ones included.
struct SheetRange {
    int top, left, bottom, right;

    int first(SheetLine line) const { return line == SheetLine::row ? top : left; }
    int last(SheetLine line) const { return line == SheetLine::row ? bottom : right; }
};

/// How many rows and column headings a sheet has at some moment.
using SheetExtent = PerLine<int>;

}  // namespace kora
