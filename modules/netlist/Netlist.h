#pragma once

#include <kora/Kora.h>

#include <cstddef>
#include <optional>
#include <unordered_map>

namespace netlist {

/// A signal, by its place in Model::nets.
using NetId = std::size_t;

struct Net {
    CString name;
    long drivenIn = 0;     ///< the line of the file that drives it, 0 when none does
    long fanOut = 0;       ///< how many pins of gates, latches and parts it feeds
    bool isInput = false;  ///< of the model
    bool isOutput = false;
    bool onUnknownPin = false;  ///< at a pin whose direction the file does not tell
};

/// A logic function, or a gate of a library.
struct Gate {
    CString type;  ///< the library's name for it, empty for a function
    std::vector<NetId> inputs;
    NetId output;
    std::vector<CString> rows;  ///< of a function: the input patterns ('0', '1', '-') at which the output is rowValue
    bool rowValue = true;       ///< the output's value where a row matches; elsewhere it is the other one
};

struct Latch {
    NetId input, output;
    std::optional<NetId> control;
};

/// A model that is used within another.
struct Part {
    struct Pin {
        CString name;
        NetId net;
    };
    CString model;
    std::vector<Pin> pins;
    long line;
};

/// One model of a netlist file.
struct Model {
    CString name;
    std::vector<Net> nets;
    std::vector<NetId> inputs, outputs;
    std::vector<Gate> gates;
    std::vector<Latch> latches;
    std::vector<Part> parts;

    /// The signal of this name, made when there is none yet.
    NetId net(const CString& netName);
    /// The signal of this name, null when there is none.
    const Net* find(const CString& netName) const;
    /// Notes that line @p line drives a signal.
    /// @return the line that drives it already, 0 when none did.
    long drive(NetId net, long line);
    /// Notes a pin that a signal feeds.
    NetId feed(NetId net);

private:
    std::unordered_map<CString, NetId> byName_;
};

}  // namespace netlist
