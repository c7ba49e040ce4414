#include <gtest/gtest.h>
#include <kora/Sht.h>
#include <kora/Test.h>

#include <random>
#include <string>

namespace {

// Whatever the sheet calls may do anything to it, and throw.
struct RestlessSheet : ShtSheet {
    explicit RestlessSheet(unsigned seed) : ShtSheet(nullptr, nullptr, 0), random(seed) {}

    short number() { return static_cast<short>(random() % 12 - 1); }
    void act() {
        if (!restless || depth > 2 || random() % 4 != 0) return;
        struct Depth {
            int& depth;
            explicit Depth(int& of) : depth(++of) {}
            ~Depth() { --depth; }
        } const nested(depth);
        if (random() % 9 == 0) throw 42;
        operate();
    }
    void operate() {
        static char text[] = "a\tlonger than a cell\rc\r";
        short rows, cols;
        ShtSheet::ShtSheetSizeGet(&rows, &cols);
        if (rows > 60 || cols > 60) return ShtSheetDelete();
        const auto kind = random() % 4;
        switch (random() % 22) {
            case 0:
                return ShtSheetDelete();
            case 1:
                ShtRowAdd(number());
                return;
            case 2:
                ShtRowDel(number());
                return;
            case 3:
                ShtColAdd(number());
                return;
            case 4:
                ShtColDel(number());
                return;
            case 5:
                ShtRowMove(number(), number());
                return;
            case 6:
                ShtColMove(number(), number());
                return;
            case 7:
                return ShtSheetSort(eShtSort(kind));
            case 8:
                return ShtSheetAutoSize(eShtAutoSize(kind), eShtAutoSize(2), eShtHeaderSize(3));
            case 9:
                return ShtSheetClear(kind % 2 != 0, kind > 1);
            case 10:
                return ShtSheetFillDown(true);
            case 11:
                return ShtSheetFillRight(true);
            case 12:
                return ShtSheetSelectSet(eShtSelect(kind), number(), number(), number(), number());
            case 13:
                ShtSheetFromBuffer(text, sizeof text - 1, kind % 2 != 0, kind > 1);
                return;
            case 14:
                return ShtSheetCut();
            case 15:
                return ShtSheetVirtSet(!ShtSheet::ShtSheetVirtGet());
            case 16:
                ShtEditBegin(number(), number());
                return;
            case 17:
                return ShtScrollSet(number(), number());
            case 18:
                ShtRowHeadingSet(number(), text, 20, nullptr), ShtColHeadingSet(number(), text, 1, nullptr);
                return;
            case 19:
                return ShtRowClear(number());
            default:
                ShtCellSet(number(), number(), kind > 0, text, static_cast<long>(random() % 20), nullptr,
                           eShtCellUpdate(kind), eShtCellShow(kind), eShtCellShow(kind));
        }
    }

    void WinInvalidate(LRCT*) override { act(); }
    void WinUpdateNow() override { act(); }
    void WinScrollRangeSet(eWinScrollBar, long, long) override { act(); }
    void WinCursorSet(short) override { act(); }
    void WinTextMeasure(const char* text, long length, LPNT* size) override {
        ShtSheet::WinTextMeasure(text, length, size);
        act();
    }
    void ShtEditEnd() override { act(); }
    eShtSelect ShtSheetSelectGet(short* top, short* left, short* bottom, short* right) override {
        const eShtSelect kind = ShtSheet::ShtSheetSelectGet(top, left, bottom, right);
        return act(), kind;
    }
    bool ShtCellGet(short r, short c, bool& copied, char*& text, long& length, void*& data) override {
        if (restless && random() % 50 == 0) throw 42;
        return ShtSheet::ShtCellGet(r, c, copied, text, length, data);
    }
    bool ShtProgCellChange(short, short) override { return act(), random() % 9 != 0; }

    std::mt19937 random;
    int depth = 0;
    bool restless = false;
};

TEST(ShtSheet, BearsWhateverItsOverridesDo) {
    TestPresenter presenter;
    for (unsigned seed = 0; seed < 150; ++seed) {
        SCOPED_TRACE(seed);
        RestlessSheet sheet(seed);
        LRCT client = {0, 0, 2000, 9000};
        sheet.WinClientRectSet(&client);
        sheet.restless = true;
        for (int step = 0; step < 60; ++step) {
            try {
                sheet.operate();
            } catch (int) {
            }
            ClpClose();
        }
        sheet.restless = false;
        sheet.ShtSheetDelete();
        sheet.ShtCellFlagsSet(1, 1, 7);
        EXPECT_EQ(sheet.ShtCellFlagsGet(1, 1), 7);
    }
}

// Who has read a text may use it while other rows and columns come and go.
TEST(ShtSheet, LeavesTextsWhereTheyAre) {
    ShtSheet sheet(nullptr, nullptr, 0);
    char *heading, *text;
    long length;
    void* data;
    bool copied;
    std::string kind = "Kind", first = "first";
    sheet.ShtColHeadingSet(1, kind.data(), 4, nullptr);
    sheet.ShtCellSet(0, 0, true, first.data(), 5, nullptr, {}, {}, {});
    sheet.ShtColHeadingGet(1, heading, length, data);
    sheet.ShtCellGet(0, 0, copied, text, length, data);
    for (short n = 1; n < 100; ++n) sheet.ShtCellSet(n, n, true, first.data(), 5, nullptr, {}, {}, {});
    for (short n = 1; n < 300; ++n) sheet.ShtCellSet(0, n, true, text, 5, nullptr, {}, {}, {});
    sheet.ShtRowAdd(0);
    sheet.ShtColAdd(1);
    EXPECT_EQ(std::string(heading, 4) + std::string(text, 5), kind + first);
}

}  // namespace
