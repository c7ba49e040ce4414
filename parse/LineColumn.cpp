#include <kora/Par.h>

#include <algorithm>
#include <cstring>

#include "strings/Guarded.h"

bool ParLineColumn(ParSource& source, long position, long& line, long& column, CString& text) {
    if (!source.data) return false;
    const auto wanted = static_cast<std::int32_t>(std::clamp<std::int64_t>(position, 0, source.length));
    long lineNumber = 1;
    std::int32_t begin = 0, end = source.length;
    CString found;
    const bool whole = kora::guarded([&] {
        for (std::int32_t at = 0; at < source.length;) {
            const ParSource::Cursor ahead = source.ahead(at);
            const auto* const feed = static_cast<const unsigned char*>(
                std::memchr(ahead.at, '\n', static_cast<std::size_t>(ahead.end - ahead.at)));
            at += static_cast<std::int32_t>((feed ? feed : ahead.end) - ahead.at);
            if (!feed) continue;
            if (at >= wanted) {
                end = at;
                break;
            }
            begin = ++at;
            ++lineNumber;
        }
        const bool fed = end < source.length;
        source.GetBlock(begin, end, found);
        if (fed && found.ends_with('\r')) found.pop_back();
    });
    // A block for which there is no memory comes back empty.
    if (!whole || (found.empty() && end > begin + 1)) return false;
    line = lineNumber;
    column = std::min(wanted - begin, static_cast<std::int32_t>(found.size())) + 1L;
    text.swap(found);
    return true;
}

bool ParLineColumn(ParSource& source, long& line, long& column, CString& text) {
    return ParLineColumn(source, source.GetPos(), line, column, text);
}
