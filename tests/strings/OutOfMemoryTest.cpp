#include <kora/Str.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

// Allocation of this test program: the nth one from a moment on fails, once.
namespace {

long allocationsLeft = 0;  // 0: all succeed

void* allocate(std::size_t size) {
    if (allocationsLeft > 0 && --allocationsLeft == 0) return nullptr;
    return std::malloc(size > 0 ? size : 1);
}

}  // namespace

void* operator new(std::size_t size) {
    if (void* block = allocate(size)) return block;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace {

const std::string kLong(100, 'a');  // longer than a string object holds by itself

// Runs `operation` with each of its allocations failing in turn, then with none; `failed` looks at the outcome of each
// run that met the failure.
template <class Operation, class Check>
void failEachAllocation(Operation operation, Check failed) {
    int met = 0;
    for (long nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        allocationsLeft = nth;
        auto outcome = operation();
        const bool wasMet = allocationsLeft == 0;
        allocationsLeft = 0;
        if (!wasMet) break;
        ++met;
        failed(outcome);
    }
#if !defined(_WIN32)
    // Windows programs replace their own allocation only, not that of the runtime library.
    EXPECT_GT(met, 0);
#endif
}

struct Outcome {
    CString text;
    bool flag;
};

}  // namespace

TEST(OutOfMemory, CStringsStayAsTheyWereOrComeOutEmpty) {
    const auto unchanged = [](const Outcome& outcome) {
        EXPECT_EQ(outcome.text, "old");
        EXPECT_TRUE(outcome.flag);
    };
    const auto empty = [](const Outcome& outcome) {
        EXPECT_EQ(outcome.text, "");
        EXPECT_TRUE(outcome.flag);
    };
    const auto on = [](auto operation) {
        return [operation] {
            CString text = "old";
            operation(text);
            return Outcome{std::move(text), StrStringError()};
        };
    };
    static const CStringArray names{"b12", "a1", kLong};
    failEachAllocation(on([](CString& text) { StrAssign(kLong.c_str(), -1, text); }), unchanged);
    failEachAllocation(on([](CString& text) { StrAppend(kLong.c_str(), -1, text); }), unchanged);
    failEachAllocation(on([](CString& text) { text = StrToCString(kLong.c_str(), -1); }), empty);
    failEachAllocation(on([](CString& text) { text = StrBinaryStrToRadix(kLong, 2, false); }), empty);
    failEachAllocation(on([](CString& text) {
                           CString suffix;
                           StrSplitName(kLong, text, suffix, nullptr, nullptr);
                           text.swap(suffix);
                           if (!suffix.empty()) text = "prefix";
                       }),
                       empty);
    failEachAllocation(on([](CString& text) { StrMakeNameListString(names, text, true); }), empty);
}

TEST(OutOfMemory, NamesAndTagsStayAsTheyWere) {
    static const CString name(CString().capacity(), 'a');  // has no room left
    failEachAllocation(
        [] {
            CString stepped(name);
            StrIncName(stepped, 1, false);
            return Outcome{stepped == name ? "unchanged" : "", StrStringError()};
        },
        [](const Outcome& outcome) {
            EXPECT_EQ(outcome.text, "unchanged");
            EXPECT_TRUE(outcome.flag);
        });
    static const CStringArray names{"b1", "a1"};
    std::vector<unsigned> tags;
    failEachAllocation(
        [&] {
            const long armed = allocationsLeft;
            allocationsLeft = 0;
            tags = {0, 1};
            allocationsLeft = armed;
            StrSortNameList(names, tags);
            return StrStringError();
        },
        [&](bool flag) {
            EXPECT_TRUE(flag);
            EXPECT_EQ(tags, (std::vector<unsigned>{0, 1}));
        });
}

TEST(OutOfMemory, ItemsTokensAndPatternsEndWithTheirFailure) {
    failEachAllocation([] { return std::unique_ptr<char>(StrNew("a")) != nullptr; },
                       [](bool made) { EXPECT_FALSE(made); });
    failEachAllocation(
        [] {
            void* state = nullptr;
            const bool token = StrTok("a", ';', &state) != nullptr;
            if (token) StrTok(nullptr, ';', &state);
            return token || state;
        },
        [](bool left) { EXPECT_FALSE(left); });
    failEachAllocation(
        [] {
            int at = 0;
            CString item;
            const bool read = StrGetItem(at, kLong, item);
            return !read && at == 0 && item.empty();
        },
        [](bool refused) { EXPECT_TRUE(refused); });
    static const std::string pattern = "*#" + std::string(500, '?') + "#*";
    static const std::string text(600, '1');
    failEachAllocation([] { return StrComparePattern(pattern.c_str(), -1, text.c_str(), -1, true); },
                       [](bool matched) { EXPECT_FALSE(matched); });
    EXPECT_TRUE(StrComparePattern(pattern.c_str(), -1, text.c_str(), -1, true));
}
