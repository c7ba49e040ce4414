#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace kora {

/// Two words by which something is known.
struct Pair {
    std::uintptr_t first, second;
    bool operator==(const Pair&) const = default;
};

struct PairHash {
    std::size_t operator()(const Pair& pair) const { return pair.first * 0x9E3779B1U + pair.second; }
};

inline bool matchesAsWildcard(std::uintptr_t a, std::uintptr_t b) { return a == b || a == 0 || b == 0; }

inline bool matchesAsWildcard(const Pair& a, const Pair& b) {
    return matchesAsWildcard(a.first, b.first) && matchesAsWildcard(a.second, b.second);
}

/// Values known by pairs, in the order in which they came, each pair once; an index beside the row finds a pair without
/// a walk. A value equal to Value() stands for a place whose value is gone.
///
/// The row may change while it is walked: what is added is not part of walks that have begun, what is removed is
/// skipped, and places keep their number until no walk is under way.
template <class Value>
class PairRegister {
public:
    using Place = std::size_t;

    bool empty() const { return places_.empty(); }
    const Pair& pairAt(Place place) const { return pairs_[place]; }
    Value& at(Place place) { return values_[place]; }

    std::optional<Place> find(const Pair& pair) const {
        const auto found = places_.find(pair);
        return found != places_.end() ? std::optional(found->second) : std::nullopt;
    }

    /// Adds a pair that is not there yet. Throws when memory runs out; nothing has changed then.
    void add(const Pair& pair, Value value) {
        const auto added = places_.emplace(pair, pairs_.size()).first;
        try {
            pairs_.push_back(pair);
            values_.push_back(std::move(value));
        } catch (...) {
            pairs_.resize(values_.size());
            places_.erase(added);
            throw;
        }
    }

    /// Nothing happens when the value is gone already.
    void remove(Place place) {
        if (values_[place] == Value()) return;
        values_[place] = Value();
        places_.erase(pairs_[place]);
        tidy();
    }

    void clear() {
        std::fill(values_.begin(), values_.end(), Value());
        places_.clear();
        tidy();
    }

    /// Calls @p visitor with every place, the empty ones included, until it answers false.
    template <class Visitor>
    void walk(Visitor visitor) {
        const Walk walk(*this);
        for (Place place = 0, end = pairs_.size(); place < end; ++place)
            if (!visitor(place)) return;
    }

    /// Where values are masks: calls @p visitor with the place of every one that has some of @p bits, in order, until
    /// it answers false.
    template <class Visitor>
    void walkMasks(Value bits, Visitor visitor) {
        const Walk walk(*this);
        for (Place place = 0, end = pairs_.size(); place < end; ++place) {
            const Value* mask = &values_[place];
            if ((*mask & bits) != 0) [[likely]] {
                if (!visitor(place)) return;
                continue;
            }
            // Behind one without any of them four at a time are looked at.
            for (; end - place > 4 && ((mask[1] | mask[2] | mask[3] | mask[4]) & bits) == 0; place += 4) mask += 4;
        }
    }

    /// Calls @p visitor with the place of every value whose pair matches @p pair as a wildcard, in order, until it
    /// answers false.
    template <class Visitor>
    void walkMatching(const Pair& pair, Visitor visitor) {
        if (pair.first == 0 || pair.second == 0) {
            walk([&](Place place) {
                return values_[place] == Value() || !matchesAsWildcard(pairs_[place], pair) || visitor(place);
            });
            return;
        }
        const Walk walk(*this);
        Place places[4];
        Place* end = places;
        for (const Pair& candidate : {pair, Pair{pair.first, 0}, Pair{0, pair.second}, Pair{0, 0}})
            if (const auto place = find(candidate)) *end++ = *place;
        std::sort(places, end);
        for (const Place* place = places; place != end; ++place)
            if (values_[*place] != Value() && !visitor(*place)) return;
    }

private:
    struct Walk {
        explicit Walk(PairRegister& walked) : row(walked) { ++row.walks_; }
        ~Walk() {
            --row.walks_;
            row.tidy();
        }
        Walk(const Walk&) = delete;
        PairRegister& row;
    };

    // Closes the gaps once they are more than half of the row.
    void tidy() {
        if (walks_ != 0 || values_.size() <= 2 * places_.size()) return;
        Place kept = 0;
        for (Place place = 0; place < values_.size(); ++place) {
            if (values_[place] == Value()) continue;
            if (kept != place) {
                pairs_[kept] = pairs_[place];
                values_[kept] = std::move(values_[place]);
                places_.find(pairs_[kept])->second = kept;
            }
            ++kept;
        }
        pairs_.resize(kept);
        values_.resize(kept);
    }

    std::vector<Pair> pairs_;
    std::vector<Value> values_;  // packed, so that a walk that looks at values alone reads little
    std::unordered_map<Pair, Place, PairHash> places_;
    int walks_ = 0;
};

}  // namespace kora
