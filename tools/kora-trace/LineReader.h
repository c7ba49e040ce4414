#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace kora::tracelog {

struct Line {
    std::string_view text;     ///< without its end; the beginning of a line that is too long. Stays until the next one
    std::uint64_t number = 0;  ///< counted from 1
    bool cut = false;          ///< there was more than kMostKept bytes
};

/// Lines of any length out of any bytes, in memory that does not grow with them.
class LineReader {
public:
    static constexpr std::size_t kMostKept = 65'536;

    explicit LineReader(std::istream& in) : in_(in), buffer_(kMostKept) {}
    /// False at the end. An empty last line is none.
    bool next(Line& line);

private:
    bool fill();

    std::istream& in_;
    std::vector<char> buffer_;
    std::size_t at_ = 0, end_ = 0;
    std::string text_;
    std::uint64_t number_ = 0;
};

}  // namespace kora::tracelog
