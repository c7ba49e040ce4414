#include <kora/Str.h>

#include <gtest/gtest.h>

#include <cstdlib>
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

// Runs `operation` with each of its allocations failing in turn, then with none. A failure sets the flag and turns
// the text `before` into `expected`.
template <class Operation>
void turns(const CString& before, const CString& expected, Operation operation) {
    for (long nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        CString text(before);
        allocationsLeft = nth;
        operation(text);
        const bool wasMet = allocationsLeft == 0;
        allocationsLeft = 0;
        if (!wasMet) {
#if !defined(_WIN32)
            // Windows programs replace their own allocation only, not that of the runtime library.
            EXPECT_GT(nth, 1);
#endif
            return;
        }
        EXPECT_TRUE(StrStringError());
        EXPECT_EQ(text, expected);
    }
}

}  // namespace

TEST(OutOfMemory, ResultsStayAsTheyWereOrComeOutEmpty) {
    const CStringArray names{"b12", "a1", kLong};
    std::vector<unsigned> tags{2, 1, 0};
    turns("old", "old", [](CString& text) { StrAppend(kLong.c_str(), -1, text); });
    turns("old", "", [](CString& text) { text = StrToCString(kLong.c_str(), -1); });
    turns("old", "", [&](CString& text) { StrMakeNameListString(names, text, true); });
    const CString full(CString().capacity(), 'a');  // has no room left
    turns(full, full, [](CString& text) { StrIncName(text, 1, false); });
    turns("old", "old", [&](CString& text) {
        StrSortNameList(names, tags);
        if (tags[0] != 2) text = "sorted";
    });
    EXPECT_EQ(tags, (std::vector<unsigned>{0, 1, 2}));
}
