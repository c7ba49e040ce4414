#pragma once

#include <kora/Kora.h>

#include <cstddef>
#include <optional>
#include <unordered_map>

namespace netlist {

/// A signal, by its place in Model::nets.
using NetId = std::size_t;

/// What drives a signal.
struct Driver {
    enum Kind { none, input, gate, latch, part };
    Kind kind = none;
    std::size_t place = 0;  ///< in Model::gates, latches or parts
    long line = 0;          ///< of the file, 0 when there is none
};

struct Net {
    CString name;
    Driver driver;
    long fanOut = 0;       ///< how many pins of gates, latches and parts it feeds
    bool isInput = false;  ///< of the model
    bool isOutput = false;
    bool onUnknownPin = false;  ///< at a pin whose direction the file does not tell

    /// Whether something drives it, or may.
    bool isDriven() const { return driver.kind != Driver::none || onUnknownPin; }
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
    std::size_t fanIn = 0;  ///< how many of the pins take a signal
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
    /// Notes what drives a signal, unless something does already.
    /// @return the line of what did, 0 when nothing did.
    long drive(NetId net, Driver driver);
    /// Notes a pin that a signal feeds.
    NetId feed(NetId net);

private:
    std::unordered_map<CString, NetId> byName_;
};

}  // namespace netlist
