#include "SignalTable.h"

#include <array>

#include "Report.h"
#include "SheetText.h"

namespace netlist {

namespace {

// In the order of the columns.
enum Field { kModel, kName, kKind, kFanIn, kFanOut, kDriver, kFieldCount };

struct FieldLook {
    const char* heading;
    eShtCellAlign align;
    bool isProtected;
};

constexpr std::array<FieldLook, kFieldCount> kLooks = {{
    {"Model", ShtCellAlignLeft, true},
    {"Name", ShtCellAlignLeft, true},
    {"Kind", ShtCellAlignLeft, false},
    {"Fan-in", ShtCellAlignRight, false},
    {"Fan-out", ShtCellAlignRight, false},
    {"Driver", ShtCellAlignLeft, false},
}};

struct Cell {
    CString text;
    char mark = 0;
    int markValue = 0;
};

using Row = std::array<Cell, kFieldCount>;

CString kindOf(const Net& net) {
    CString kind;
    const auto add = [&kind](bool is, const char* word) {
        if (is) kind += (kind.empty() ? "" : ", ") + CString(word);
    };
    add(net.isInput, "input");
    add(net.isOutput, "output");
    add(net.driver.kind == Driver::latch, "latch");
    add(!net.isDriven(), "undriven");
    return kind.empty() ? "internal" : kind;
}

CString functionText(std::size_t inputs) {
    if (inputs == 0) return "constant";
    return "function of " + std::to_string(inputs) + (inputs == 1 ? " input" : " inputs");
}

void describeDriver(const Model& model, const Net& net, Cell& fanIn, Cell& driver) {
    std::size_t pins = 0;
    switch (net.driver.kind) {
        case Driver::none:
            driver.text = net.isDriven() ? "unknown" : "nothing";
            driver.mark = net.isDriven() ? '?' : '!';
            if (net.isDriven()) return;
            break;
        case Driver::input:
            driver.text = "input";
            break;
        case Driver::gate: {
            const Gate& gate = model.gates[net.driver.place];
            pins = gate.inputs.size();
            driver.text = gate.type.empty() ? functionText(pins) : "gate " + gate.type;
            break;
        }
        case Driver::latch:
            pins = model.latches[net.driver.place].control ? 2 : 1;
            driver.text = "latch";
            break;
        case Driver::part:
            pins = model.parts[net.driver.place].fanIn;
            driver.text = "part " + model.parts[net.driver.place].model;
            break;
    }
    fanIn.text = std::to_string(pins);
}

Row rowOf(const Model& model, const Net& net, int rank) {
    Row row;
    row[kModel].text = model.name;
    row[kName].text = net.name;
    row[kKind].text = kindOf(net);
    row[kFanOut].text = std::to_string(net.fanOut);
    if (rank != 0) row[kFanOut] = {row[kFanOut].text, '*', rank};
    if (net.fanOut == 0 && !net.isOutput && !net.onUnknownPin) row[kFanOut].mark = '!';
    describeDriver(model, net, row[kFanIn], row[kDriver]);
    return row;
}

// A sheet that had no memory for a text holds none, and says nothing; so every text is looked at again.
class Filler {
public:
    Filler(ShtSheet& sheet, Field first) : sheet_(sheet), first_(first) {}

    bool addHeadings() {
        for (int field = first_; field < kFieldCount; ++field) {
            CString heading = kLooks[static_cast<std::size_t>(field)].heading;
            if (!sheet_.ShtColHeadingSet(column(field), heading.data(), length(heading), nullptr) ||
                colHeading(sheet_, column(field)) != heading)
                return false;
        }
        return true;
    }

    bool add(const Model& model) {
        std::vector<int> ranks(model.nets.size());
        int rank = 0;
        for (const NetId net : leaders(model)) ranks[net] = ++rank;
        for (NetId net = 0; net < model.nets.size(); ++net)
            if (!add(rowOf(model, model.nets[net], ranks[net]))) return false;
        return true;
    }

    bool numberRows() {
        for (short r = 0; r < rows_; ++r) {
            CString number = std::to_string(r + 1);
            if (!sheet_.ShtRowHeadingSet(r, number.data(), length(number), nullptr) || rowHeading(sheet_, r) != number)
                return false;
        }
        return true;
    }

private:
    static long length(const CString& text) { return static_cast<long>(text.size()); }
    short column(int field) const { return static_cast<short>(field - first_); }

    bool add(Row row) {
        for (int field = first_; field < kFieldCount; ++field) {
            Cell& cell = row[static_cast<std::size_t>(field)];
            const FieldLook& look = kLooks[static_cast<std::size_t>(field)];
            const short c = column(field);
            char* text = cell.text.empty() ? nullptr : cell.text.data();  // an empty one would be referred to
            if (!sheet_.ShtCellSet(rows_, c, /*copy=*/true, text, length(cell.text), nullptr, ShtCellUpdateNone,
                                   ShtCellShowNone, ShtCellShowNone) ||
                cellText(sheet_, rows_, c) != cell.text || !sheet_.ShtCellAlignSet(rows_, c, look.align) ||
                !sheet_.ShtCellProtectSet(rows_, c, look.isProtected) ||
                !sheet_.ShtCellMarkSet(rows_, c, cell.mark, cell.markValue, ShtCellUpdateNone, ShtCellShowNone,
                                       ShtCellShowNone))
                return false;
        }
        ++rows_;
        return true;
    }

    ShtSheet& sheet_;
    const Field first_;
    short rows_ = 0;
};

}  // namespace

std::size_t signalCount(const std::vector<Model>& models) {
    std::size_t count = 0;
    for (const Model& model : models) count += model.nets.size();
    return count;
}

bool fillSignalTable(ShtSheet& sheet, const std::vector<Model>& models) {
    if (!sheet.ShtInited() || signalCount(models) > kMostSignals) return false;
    Filler filler(sheet, models.size() > 1 ? kModel : kName);
    if (!filler.addHeadings()) return false;
    for (const Model& model : models)
        if (!filler.add(model)) return false;
    sheet.ShtSheetSort(ShtSortCells);
    if (!filler.numberRows()) return false;
    sheet.ShtSheetAutoSize(ShtAutoSizeNone, ShtAutoSizeNone, ShtHeaderSizeHalf);
    sheet.ShtSheetAutoSize(ShtAutoSizeFit, ShtAutoSizeFit, ShtHeaderSizeFit);
    return true;
}

}  // namespace netlist
