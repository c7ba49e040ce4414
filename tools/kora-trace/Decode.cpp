#include "tools/kora-trace/Decode.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace kora::tracelog {

namespace {

constexpr std::uint32_t kNeverSet = 7u << 25;  // bits 25 to 27
constexpr std::uint32_t kFaultBits = 15u << 28 | kDataFlag;
constexpr std::size_t kFaultWords = 3;

bool isCode(std::uint32_t word) { return (word & kNeverSet) == 0 && moduleOf(word) != 0; }

// "Error dump module 1 file 25 loc 208": what ERR() names a dump after, numbers in hexadecimal. Takes the number
// behind @p name.
bool takeField(std::string_view& text, std::string_view name, std::uint32_t& value) {
    if (!text.starts_with(name)) return false;
    text.remove_prefix(name.size());
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc{};
}

/// Reads items off a stretch of words that follow each other without a gap.
class Stretch {
public:
    Stretch(const Dump& dump, const NameTable& names, std::size_t end) : dump_(dump), names_(names), end_(end) {}

    Item itemAt(std::size_t at) const {
        Item item;
        item.first = at;
        item.word = dump_.words[at];
        if (!isCode(item.word)) return item;
        item.place = names_.place(item.word);
        const bool marked = (item.word & kFaultBits) != 0;
        const bool filed = marked || (item.place != nullptr && item.place->fault) || namesTheDump(at);
        if (filed && isFiled(at)) {
            item.kind = Kind::fault;
            item.size = std::min(kFaultWords, end_ - at);
        } else if (!marked) {
            item.kind = Kind::step;
            if (item.place != nullptr) item.size = std::min(1 + item.place->data.size(), end_ - at);
        }
        if (item.kind == Kind::word) item.place = nullptr;
        return item;
    }

private:
    // A code with a level or the data flag is a fault where the two words behind it are as ERR() writes them: the data,
    // zero without the flag, and a zero. A trigger may dump the ring before they are there.
    bool isFiled(std::size_t at) const {
        const bool dataFits = at + 1 >= end_ || hasData(dump_.words[at]) || dump_.words[at + 1] == 0;
        return dataFits && (at + 2 >= end_ || dump_.words[at + 2] == 0);
    }

    // The last three words are the fault that the dump is named after.
    bool namesTheDump(std::size_t at) const {
        if (!dump_.ended || at + kFaultWords != dump_.words.size()) return false;
        std::string_view reason = dump_.reason;
        std::uint32_t module, file, location;
        return takeField(reason, "Error dump module ", module) && takeField(reason, " file ", file) &&
               takeField(reason, " loc ", location) && reason.empty() && module == moduleOf(dump_.words[at]) &&
               file == fileOf(dump_.words[at]) && location == locationOf(dump_.words[at]);
    }

    const Dump& dump_;
    const NameTable& names_;
    std::size_t end_;
};

}  // namespace

std::vector<Item> decode(const Dump& dump, const NameTable& names) {
    std::vector<Item> items;
    std::size_t at = dump.unwritten();
    while (at < dump.words.size()) {
        std::size_t end = at + 1;
        while (end < dump.words.size() && !dump.gapBefore(end)) ++end;
        const Stretch stretch(dump, names, end);
        while (at < end) {
            items.push_back(stretch.itemAt(at));
            at += items.back().size;
        }
    }
    return items;
}

const Item* severest(const std::vector<Item>& items) {
    const Item* found = nullptr;
    for (const Item& item : items)
        if (item.kind == Kind::fault && (found == nullptr || levelOf(item.word) >= levelOf(found->word))) found = &item;
    return found;
}

const char* dataMeaning(const Item& item, std::size_t index) {
    if (item.kind == Kind::fault)
        return index > 1 ? "end of the fault" : hasData(item.word) ? "data pointer" : "no data";
    return item.place->data[index - 1].c_str();
}

}  // namespace kora::tracelog
