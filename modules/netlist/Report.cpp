#include "Report.h"

#include <kora/Str.h>

#include <algorithm>

namespace netlist {

namespace {

constexpr std::size_t kLeaders = 5;

CString counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

CString counts(const Model& model) {
    CString line = counted(model.inputs.size(), "input", "inputs") + ", " +
                   counted(model.outputs.size(), "output", "outputs") + ", " +
                   counted(model.gates.size(), "gate", "gates");
    if (!model.latches.empty()) line += ", " + counted(model.latches.size(), "latch", "latches");
    if (!model.parts.empty()) line += ", " + counted(model.parts.size(), "part", "parts");
    return line + ", " + counted(model.nets.size(), "signal", "signals");
}

// Case counts: K0 and k1 between each other would break up both ranges.
bool inNaturalOrder(const CString& a, const CString& b) {
    return StrCompareName(a.c_str(), -1, b.c_str(), -1, /*caseSensitive=*/true) < 0;
}

}  // namespace

std::vector<NetId> leaders(const Model& model) {
    std::vector<NetId> nets;
    for (NetId net = 0; net < model.nets.size(); ++net)
        if (model.nets[net].fanOut > 1) nets.push_back(net);
    const auto end = nets.begin() + static_cast<std::ptrdiff_t>(std::min(kLeaders, nets.size()));
    std::partial_sort(nets.begin(), end, nets.end(), [&model](NetId left, NetId right) {
        const Net &a = model.nets[left], &b = model.nets[right];
        return a.fanOut != b.fanOut ? a.fanOut > b.fanOut : inNaturalOrder(a.name, b.name);
    });
    nets.erase(end, nets.end());
    return nets;
}

CStringArray report(const Model& model) {
    CStringArray lines{"model " + model.name + ": " + counts(model)};
    const auto add = [&lines](const char* label, const CString& text) {
        if (!text.empty()) lines.push_back(CString("  ") + label + ": " + text);
    };
    const auto addList = [&add](const char* label, CStringArray& names) {
        std::ranges::sort(names, inNaturalOrder);
        CString text;
        StrMakeNameListString(names, text, /*sortFirst=*/false);
        add(label, text);
    };
    CStringArray inputs, outputs, latches, internal, undriven;
    for (const NetId net : model.inputs) inputs.push_back(model.nets[net].name);
    for (const NetId net : model.outputs) outputs.push_back(model.nets[net].name);
    for (const Latch& latch : model.latches) latches.push_back(model.nets[latch.output].name);
    for (const Net& net : model.nets) {
        if (!net.isDriven()) undriven.push_back(net.name);
        if (net.isDriven() && !net.isInput && !net.isOutput) internal.push_back(net.name);
    }
    CString largest;
    for (const NetId net : leaders(model))
        largest += (largest.empty() ? "" : ", ") + model.nets[net].name + ' ' + std::to_string(model.nets[net].fanOut);
    add("largest fan-out", largest);
    addList("inputs", inputs);
    addList("outputs", outputs);
    addList("latches", latches);
    addList("internal", internal);
    addList("driven by nothing", undriven);
    return lines;
}

}  // namespace netlist
