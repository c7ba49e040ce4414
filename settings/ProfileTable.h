#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "containers/HashIndex.h"

namespace kora {

/// The main profile in memory: sections, compared exactly, each with its entries in file order, whose keys are compared
/// without regard to case. The first entry of a key is the one that counts.
class ProfileTable {
public:
    /// Holds its places in a line in 16 bits each: that is all of a line that is looked at.
    struct Entry {
        std::string_view key() const { return {text, keyLength}; }
        std::string_view value() const { return {text + valueAt, valueLength}; }
        bool hasKey(std::string_view wanted) const;

        const char* text;  // into one of the sources
        std::uint16_t keyLength, valueAt, valueLength;
        bool repeats;  // an earlier entry of the section has this key
    };

    /// Adds a file behind what is there. A key that an earlier file has is left out; one that this file has twice
    /// keeps both its entries. Answers the text where the table keeps it; @p path is kept beside it.
    std::string_view add(std::string text, std::string path = {});

    struct Source {
        std::string path, text;
    };
    /// The files, in the order in which they were added.
    const std::vector<std::unique_ptr<const Source>>& sources() const { return sources_; }

    std::optional<std::string_view> value(std::string_view section, std::string_view key) const;
    /// Entry @p index of the section, counted from 0 over all its parts; null when it has fewer.
    const Entry* entry(std::string_view section, std::size_t index) const;
    bool hasSection(std::string_view section) const;

private:
    /// Entries that stand behind one another in entries_.
    struct Run {
        std::uint32_t first, count;
    };
    struct Section {
        std::string_view name;
        std::vector<Run> runs;
        HashIndex keys;
        mutable std::uint32_t next = 0;  // the place in the last run behind the entry found last

        /// The entry there, which is asked for next as a rule; kNone when there is none.
        std::uint32_t expected() const {
            return next < runs.back().count ? runs.back().first + next : HashIndex::kNone;
        }
    };

    std::uint32_t sectionIndex(std::string_view name) const;
    std::uint32_t otherSectionIndex(std::string_view name) const;
    std::uint32_t sectionMade(std::string_view name);

    std::vector<std::unique_ptr<const Source>> sources_;
    std::vector<Section> sections_;
    std::vector<Entry> entries_;
    HashIndex sectionsByName_;
    mutable std::uint32_t lastSection_ = 0;  // the one asked for last, which is asked for again as a rule
};

}  // namespace kora
