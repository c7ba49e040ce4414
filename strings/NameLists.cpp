#include <kora/Str.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "strings/NumberedNames.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

using Index = std::uint32_t;

// Texts by number: equal texts get equal numbers, and the numbers are in the texts' order. Lists have few different
// prefixes and suffixes, so that most of their names are compared by numbers alone.
class TextRanks {
public:
    explicit TextRanks(std::size_t most) : slots_(std::bit_ceil(2 * most + 1), kFree) {}

    /// Takes the next text in.
    void add(std::string_view text) {
        // Neighbours in a list mostly agree.
        if (texts_.empty() || texts_[last_] != text) last_ = entryOf(text);
        entries_.push_back(last_);
    }

    /// The rank of every text, in the order in which they were added.
    std::vector<Index> ranks() && {
        struct Place {
            std::uint64_t head;
            Index text;
        };
        std::vector<Place> places;
        places.reserve(texts_.size());
        for (const std::string_view text : texts_) places.push_back({headOf(text), static_cast<Index>(places.size())});
        std::sort(places.begin(), places.end(), [this](const Place& a, const Place& b) {
            return a.head != b.head ? a.head < b.head : compareTexts(texts_[a.text], texts_[b.text]) < 0;
        });
        std::vector<Index> rankOf(places.size());
        for (std::size_t rank = 0; rank < places.size(); ++rank) rankOf[places[rank].text] = static_cast<Index>(rank);
        for (Index& entry : entries_) entry = rankOf[entry];
        return std::move(entries_);
    }

private:
    static constexpr Index kFree = static_cast<Index>(-1);

    Index entryOf(std::string_view text) {
        const std::size_t mask = slots_.size() - 1;
        std::size_t at = std::hash<std::string_view>{}(text)&mask;
        while (slots_[at] != kFree && texts_[slots_[at]] != text) at = (at + 1) & mask;
        if (slots_[at] == kFree) {
            slots_[at] = static_cast<Index>(texts_.size());
            texts_.push_back(text);
        }
        return slots_[at];
    }

    // The first eight bytes as one number in the order of signed bytes. Shorter texts are filled up with the least
    // byte.
    static std::uint64_t headOf(std::string_view text) {
        std::uint64_t head = 0;
        for (std::size_t i = 0; i < 8; ++i) {
            const int byte = i < text.size() ? signedByte(text[i]) : -128;
            head = head << 8 | static_cast<std::uint64_t>(byte + 128);
        }
        return head;
    }

    std::vector<Index> slots_;
    std::vector<std::string_view> texts_;
    std::vector<Index> entries_;
    Index last_ = 0;
};

std::vector<Index> listedOrder(std::size_t count) {
    std::vector<Index> order(count);
    std::iota(order.begin(), order.end(), Index{0});
    return order;
}

// Puts `order` into the order of the keys it names; equal keys stay as they stand.
void sortByKey(std::vector<Index>& order, const std::vector<Index>& keys) {
    constexpr int kDigitBits = 11;
    constexpr Index kDigitMask = (1U << kDigitBits) - 1;
    const Index greatest = keys.empty() ? 0 : *std::max_element(keys.begin(), keys.end());
    std::vector<Index> sorted(order.size());
    for (int shift = 0; shift < 32 && greatest >> shift != 0; shift += kDigitBits) {
        std::array<Index, kDigitMask + 1> starts{};
        for (const Index key : keys) ++starts[key >> shift & kDigitMask];
        std::exclusive_scan(starts.begin(), starts.end(), starts.begin(), Index{0});
        for (const Index item : order) sorted[starts[keys[item] >> shift & kDigitMask]++] = item;
        order.swap(sorted);
    }
}

std::vector<NameParts> splitAll(const CStringArray& names, std::size_t count) {
    std::vector<NameParts> items;
    items.reserve(count);
    for (std::size_t i = 0; i < count; ++i) items.push_back(splitName(names[i]));
    return items;
}

// The indexes of the items in list order: by prefix, names with a number before those without, number, suffix.
std::vector<Index> listOrder(const std::vector<NameParts>& items) {
    constexpr Index kNoNumber = 1U << 19;  // nine digits make at most 459999
    TextRanks prefixes(items.size()), suffixes(items.size());
    std::vector<Index> numbers;
    numbers.reserve(items.size());
    for (const NameParts& item : items) {
        prefixes.add(item.prefix);
        suffixes.add(item.suffix);
        numbers.push_back(item.digits.empty() ? kNoNumber : static_cast<Index>(item.number));
    }
    std::vector<Index> order = listedOrder(items.size());
    sortByKey(order, std::move(suffixes).ranks());
    sortByKey(order, numbers);
    sortByKey(order, std::move(prefixes).ranks());
    return order;
}

// Writes names one after the other and draws those with neighbouring numbers together.
class RangeWriter {
public:
    RangeWriter(const CStringArray& names, CString& result) : names_(names), result_(result) {}

    void add(Index name, const NameParts& parts) {
        if (extends(parts)) {
            step_ = parts.number - number_;
            ++length_;
        } else {
            close();
            if (!first_) result_ += ' ';
            result_ += names_[name];
            length_ = canOpen(parts) ? 1 : 0;
            step_ = 0;
            opener_ = parts;
        }
        first_ = false;
        last_ = name;
        // Runs count in 16 bits: names above 32767 are not drawn together.
        number_ = static_cast<std::int16_t>(parts.number);
    }

    void close() {
        if (length_ > 2) result_ += "..";
        if (length_ == 2) result_ += ' ';
        if (length_ >= 2) result_ += names_[last_];
        length_ = 0;
    }

private:
    static bool canOpen(const NameParts& parts) {
        constexpr std::string_view kBrackets = "[]";
        return !parts.digits.empty() && parts.prefix.find_first_of(kBrackets) == std::string_view::npos &&
               parts.suffix.find_first_of(kBrackets) == std::string_view::npos;
    }

    bool extends(const NameParts& parts) const {
        if (length_ == 0 || parts.digits.empty()) return false;
        const int step = parts.number - number_;
        const bool follows = step_ == 0 ? step == 1 || step == -1 : step == step_;
        return follows && parts.suffix == opener_.suffix && parts.prefix == opener_.prefix;
    }

    const CStringArray& names_;
    CString& result_;
    NameParts opener_{};
    std::size_t length_ = 0;  // names in the open run, 0 when none is open
    int step_ = 0;            // 1 or -1 once the run has a direction
    std::int16_t number_ = 0;
    Index last_ = 0;
    bool first_ = true;
};

}  // namespace

void StrSortNameList(const CStringArray& names, std::vector<unsigned int>& tags) {
    stringState.error = !guarded([&] {
        const std::vector<Index> order = listOrder(splitAll(names, std::min(names.size(), tags.size())));
        std::vector<unsigned int> sorted(tags);
        std::transform(order.begin(), order.end(), sorted.begin(), [&tags](Index item) { return tags[item]; });
        tags.swap(sorted);
    });
}

void StrMakeNameListString(const CStringArray& names, CString& result, bool sortFirst) {
    CString list;
    stringState.error = !guarded([&] {
        const std::vector<NameParts> items = splitAll(names, names.size());
        const std::vector<Index> order = sortFirst ? listOrder(items) : listedOrder(items.size());
        RangeWriter writer(names, list);
        for (const Index item : order) writer.add(item, items[item]);
        writer.close();
    });
    if (stringState.error) list.clear();
    // The result may be one of the names.
    result.swap(list);
}
