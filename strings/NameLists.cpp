#include <kora/Str.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "strings/NumberedNames.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

using Index = std::uint32_t;

// Numbers the different texts in their order as they are met, so that names are compared by numbers afterwards.
class TextRanks {
public:
    // An entry for the text; rank() answers for it once all are in.
    Index entry(std::string_view text) {
        // Neighbours in a list mostly share their prefix.
        if (texts_.empty() || texts_[last_] != text) {
            const auto [found, isNew] = entries_.try_emplace(text, static_cast<Index>(texts_.size()));
            if (isNew) texts_.push_back(text);
            last_ = found->second;
        }
        return last_;
    }

    void sort() {
        std::vector<Index> order(texts_.size());
        std::iota(order.begin(), order.end(), Index{0});
        std::sort(order.begin(), order.end(),
                  [this](Index a, Index b) { return compareTexts(texts_[a], texts_[b]) < 0; });
        ranks_.resize(order.size());
        for (std::size_t rank = 0; rank < order.size(); ++rank) ranks_[order[rank]] = static_cast<Index>(rank);
    }

    Index rank(Index entry) const { return ranks_[entry]; }

private:
    std::unordered_map<std::string_view, Index> entries_;
    std::vector<std::string_view> texts_;
    std::vector<Index> ranks_;
    Index last_ = 0;
};

std::vector<NameParts> splitAll(const CStringArray& names, std::size_t count) {
    std::vector<NameParts> items;
    items.reserve(count);
    for (std::size_t i = 0; i < count; ++i) items.push_back(splitName(names[i]));
    return items;
}

// The indexes of the items in list order: by prefix, names with a number before those without, number, suffix.
std::vector<Index> listOrder(const std::vector<NameParts>& items) {
    struct Key {
        std::uint64_t prefixAndNumber;
        Index suffix;
        Index item;
    };
    constexpr int kNumberBits = 20;  // nine digits make at most 459999
    constexpr std::uint64_t kNoNumber = (1U << kNumberBits) - 1;

    TextRanks prefixes, suffixes;
    std::vector<Key> keys;
    keys.reserve(items.size());
    for (const NameParts& item : items) {
        keys.push_back({prefixes.entry(item.prefix), suffixes.entry(item.suffix), static_cast<Index>(keys.size())});
    }
    prefixes.sort();
    suffixes.sort();
    for (Key& key : keys) {
        const NameParts& item = items[key.item];
        const std::uint64_t number = item.digits.empty() ? kNoNumber : static_cast<std::uint64_t>(item.number);
        const std::uint64_t prefix = prefixes.rank(static_cast<Index>(key.prefixAndNumber));
        key.prefixAndNumber = prefix << kNumberBits | number;
        key.suffix = suffixes.rank(key.suffix);
    }
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        if (a.prefixAndNumber != b.prefixAndNumber) return a.prefixAndNumber < b.prefixAndNumber;
        return a.suffix != b.suffix ? a.suffix < b.suffix : a.item < b.item;
    });

    std::vector<Index> order(keys.size());
    std::transform(keys.begin(), keys.end(), order.begin(), [](const Key& key) { return key.item; });
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
        std::vector<Index> order;
        if (sortFirst) {
            order = listOrder(items);
        } else {
            order.resize(items.size());
            std::iota(order.begin(), order.end(), Index{0});
        }
        RangeWriter writer(names, list);
        for (const Index item : order) writer.add(item, items[item]);
        writer.close();
    });
    if (stringState.error) list.clear();
    // The result may be one of the names.
    result.swap(list);
}
