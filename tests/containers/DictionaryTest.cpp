#include <gtest/gtest.h>
#include <kora/Dictionary.h>

#include <optional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/AllocationFault.h"
#include "tests/support/VirtualSlot.h"

namespace {

void* valueOf(long number) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(number)); }

TEST(Dictionary, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    using D = Dictionary;
    bool (D::*insertText)(const char*, void*) = &D::Insert, (D::*insertNumber)(long, void*) = &D::Insert;
    void* (D::*findText)(const char*) = &D::Find, *(D::*findNumber)(long) = &D::Find;
    void* (D::*detachText)(const char*) = &D::Detach, *(D::*detachNumber)(long) = &D::Detach;
    EXPECT_EQ(kora::test::firstOutOfSlot(insertText, insertNumber, findText, findNumber, detachText, detachNumber), 0);
}

// A map as a row of entries, newest first, that is walked each time; -1 is no cursor.
template <class Key>
struct Model {
    std::vector<std::pair<Key, void*>> row;
    int cursor = -1;

    void* find(const Key& key) {
        const int end = static_cast<int>(row.size());
        std::vector<int> places{cursor};
        if (std::is_same_v<Key, long>) places.insert(places.end(), {cursor + 1, cursor == -1 ? end - 1 : cursor - 1});
        for (int place = 0; place < end; ++place) places.push_back(place);
        for (const int place : places)
            if (place >= 0 && place < end && row[static_cast<unsigned>(place)].first == key)
                return row[static_cast<unsigned>(cursor = place)].second;
        return cursor = -1, nullptr;
    }
};

using Text = std::optional<std::vector<char>>;  // no byte longer than it is, so that a read beyond is seen
const char* passed(const Text& text) { return text ? text->data() : nullptr; }
long passed(long number) { return number; }

void makeKey(unsigned i, long& key) {
    const unsigned long steps[] = {4096, 1UL << sizeof(long) * 4, 1};
    key = static_cast<long>((i - 2UL) * steps[i % 3]);
}
// Many lengths; some the same but for the letter case or the end; an empty one and null.
void makeKey(unsigned i, Text& key) {
    const std::string text = std::string(i / 2 % 21, i % 2 != 0 ? 'a' : 'A') + (i >= 42 ? std::to_string(i / 42) : "");
    if (i != 7) key.emplace(text.c_str(), text.c_str() + text.size() + 1);
}

template <class Key>
void actAsTheModel(unsigned keys, unsigned most) {
    std::mt19937 random(keys + most);
    Dictionary dictionary;
    Model<Key> model;
    for (unsigned step = 1; step <= 10000; ++step) {
        SCOPED_TRACE(testing::Message() << "keys " << keys << " most " << most << " step " << step);
        const unsigned operation = random() % 16, detaching = step / (most * 3) % 2 == 0 ? 14 : 8;
        Key key{};
        makeKey(static_cast<unsigned>(random()) % keys, key);
        if (operation < 4) {
            ASSERT_EQ(dictionary.Find(passed(key)), model.find(key));
        } else if (operation >= detaching) {
            ASSERT_EQ(dictionary.Detach(passed(key)), model.find(key));
            if (model.find(key) != nullptr) model.row.erase(model.row.begin() + model.cursor), model.cursor = -1;
        } else if (model.row.size() < most) {
            void* value = valueOf(random() % 16 == 0 && most != 20 ? 0L : step);  // null ones never leave
            const long failing = random() % 2 == 0 ? static_cast<long>(random() % 6) : 0;
            const bool persistent = random() % 2 == 0;
            const bool inserted = [&] {
                const kora::test::AllocationFault fault(failing, persistent);
                return dictionary.Insert(passed(key), value);
            }();
            // The entry and a text's copy; what the index wants besides may be missing.
            ASSERT_EQ(inserted, failing == 0 || failing > (std::is_same_v<Key, Text> && key != Key() ? 2 : 1));
            if (inserted) model.row.insert(model.row.begin(), {key, value}), model.cursor += model.cursor >= 0;
        }
    }
}

TEST(Dictionary, ActsAsTheModel) {
    const std::pair<unsigned, unsigned> sizes[] = {{2, 4},   {2, 20},   {9, 20},    {9, 100},
                                                   {60, 20}, {60, 100}, {1000, 900}};
    for (const auto& [keys, most] : sizes) actAsTheModel<long>(keys, most), actAsTheModel<Text>(keys, most);
}

struct Redirected : Dictionary {
    void* Find(const char* key) override { return Dictionary::Find(key + 1); }
    void* Find(long key) override { return key < 0 ? this : Dictionary::Find(key + 1); }
};

TEST(Dictionary, DetachTakesWhatAnOverridingFindLeavesAtTheCursor) {
    Redirected dictionary;
    EXPECT_TRUE(dictionary.Insert(2, valueOf(2)) && dictionary.Insert("b", valueOf(3)));
    EXPECT_EQ(dictionary.Detach(-1), nullptr);  // found without a cursor
    EXPECT_EQ(dictionary.Detach(1), valueOf(2));
    EXPECT_EQ(dictionary.Detach("ab"), valueOf(3));
}

TEST(Dictionary, ManyEntriesComeAndGo) {
    constexpr long kMany = 100000;
    for (const bool alike : {false, true}) {
        Dictionary dictionary;
        auto text = [alike](long i) { return alike ? "" : "a name of some length " + std::to_string(i); };
        for (long i = 1; i <= kMany; ++i)
            ASSERT_TRUE(dictionary.Insert(alike ? 0 : i, valueOf(i)) && dictionary.Insert(text(i).c_str(), valueOf(i)));
        for (long i = 1; i <= kMany; ++i) {
            ASSERT_EQ(dictionary.Detach(alike ? 0 : i), valueOf(alike ? kMany + 1 - i : i));
            ASSERT_EQ(dictionary.Detach(text(i).c_str()), valueOf(alike ? kMany + 1 - i : i));
        }
    }
}

}  // namespace
