#include <kora/Str.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/AllocationFault.h"

namespace {

const std::string kLong(100, 'a');  // longer than a string object holds by itself

// Runs `operation` with each of its allocations failing in turn, then with none. A failure sets the flag and turns
// the text `before` into `expected`.
template <class Operation>
void turns(const CString& before, const CString& expected, Operation operation) {
    for (long nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        CString text(before);
        bool wasMet;
        {
            const kora::test::AllocationFault fault(nth);
            operation(text);
            wasMet = fault.wasHit();
        }
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
