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

// Runs `operation` with each of its allocations failing in turn, then with none. It answers whether it failed as it
// should.
template <class Operation>
void failEachAllocation(Operation operation) {
    for (long nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        allocationsLeft = nth;
        const bool failedRight = operation();
        const bool wasMet = allocationsLeft == 0;
        allocationsLeft = 0;
        if (!wasMet) {
#if !defined(_WIN32)
            // Windows programs replace their own allocation only, not that of the runtime library.
            EXPECT_GT(nth, 1);
#endif
            return;
        }
        EXPECT_TRUE(failedRight);
    }
}

const CStringArray names{"b12", "a1", kLong};
const CString full(CString().capacity(), 'a');  // has no room left

}  // namespace

TEST(OutOfMemory, CStringsStayAsTheyWereOrComeOutEmpty) {
    const auto leaves = [](const char* expected, auto operation) {
        failEachAllocation([=] {
            CString text = "old";
            operation(text);
            return StrStringError() && text == expected;
        });
    };
    leaves("old", [](CString& text) { StrAssign(kLong.c_str(), -1, text); });
    leaves("old", [](CString& text) { StrAppend(kLong.c_str(), -1, text); });
    leaves("", [](CString& text) { text = StrToCString(kLong.c_str(), -1); });
    leaves("", [](CString& text) { text = StrBinaryStrToRadix(kLong, 2, false); });
    leaves("", [](CString& text) { StrMakeNameListString(names, text, true); });
    leaves("", [](CString& text) {
        CString prefix = "old";
        StrSplitName(kLong, prefix, text, nullptr, nullptr);
        if (!prefix.empty()) text = "prefix";
    });
    failEachAllocation([] {
        CString stepped(full);
        StrIncName(stepped, 1, false);
        return StrStringError() && stepped == full;
    });
}

TEST(OutOfMemory, TagsItemsTokensAndPatternsEndWithTheirFailure) {
    std::vector<unsigned> tags{2, 1, 0};
    failEachAllocation([&] {
        StrSortNameList(names, tags);
        return StrStringError() && tags[0] == 2 && tags[1] == 1 && tags[2] == 0;
    });
    failEachAllocation([] { return !std::unique_ptr<char>(StrNew("a")); });
    failEachAllocation([] {
        void* state = nullptr;
        const bool token = StrTok("a", ';', &state) != nullptr;
        if (token) StrTok(nullptr, ';', &state);
        return !token && !state;
    });
    failEachAllocation([] {
        int at = 0;
        CString item;
        return !StrGetItem(at, kLong, item) && at == 0 && item.empty();
    });
    static const std::string pattern = "*#" + std::string(500, '?') + "#*", text(600, '1');
    failEachAllocation([] { return !StrComparePattern(pattern.c_str(), -1, text.c_str(), -1, true); });
    EXPECT_TRUE(StrComparePattern(pattern.c_str(), -1, text.c_str(), -1, true));
}
