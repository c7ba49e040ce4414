#include "BlifReader.h"

#include <kora/File.h>

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

#include "BlifSource.h"

namespace netlist {

namespace {

// A word of the file as a message shows it: not too long, and nothing that is not printed.
CString quoted(std::string_view word) {
    constexpr std::size_t kLongest = 40;
    CString text(word.substr(0, kLongest));
    for (char& c : text)
        if (c < ' ' || c > '~') c = '?';
    return '"' + text + (word.size() > kLongest ? "...\"" : "\"");
}

// Statements that tell nothing about what is connected.
constexpr std::string_view kPassedOver[] = {
    ".area",
    ".attr",
    ".blackbox",
    ".clock_event",
    ".cname",
    ".default_input_arrival",
    ".default_input_drive",
    ".default_max_input_load",
    ".default_output_load",
    ".default_output_required",
    ".delay",
    ".input_arrival",
    ".input_drive",
    ".max_input_load",
    ".output_load",
    ".output_required",
    ".param",
    ".wire",
    ".wire_load_slope",
};

CString reasonUnreadable(FilePath& file) {
    switch (file.FileGetErrorCause()) {
        case FileErrorNotFound:
            return "there is no such file";
        case FileErrorDenied:
            return "no permission to read the file";
        case FileErrorWrongKind:
            return "this is no file";
        case FileErrorBusy:
            return "another program holds the file";
        default:
            return "the file cannot be read";
    }
}

class Reader {
public:
    Reader(TskKoraModule* module, std::vector<Model>& models, Complaint& complaint)
        : source_(module), models_(models), complaint_(complaint) {}

    bool read(FilePath& file) {
        if (!source_.open(file)) return complain(0, reasonUnreadable(file));
        Statement statement;
        while (source_.next(statement))
            if (!take(statement)) return false;
        if (source_.endedWithin()) return complain(source_.line(), "the file ends within a statement");
        if (models_.empty()) return complain(source_.line(), "the file ends without a .model");
        if (inModel_) return complain(source_.line(), "the file ends without an .end");
        return connectParts();
    }

private:
    using Words = std::span<const Word>;
    using Taker = bool (Reader::*)(const Word& statement, Words words);
    struct Row {
        std::string_view statement;
        Taker take;
        std::size_t fewest;  // words behind the statement's own
        const char* needs;   // what is missing with fewer
    };
    static const Row* statementRow(std::string_view statement);

    bool complain(long line, CString text) {
        complaint_ = {std::move(text), line};
        return false;
    }

    bool take(const Statement& statement) {
        const Word& first = statement.front();
        const Words words = Words(statement).subspan(1);
        if (first.text.front() != '.') return takeRow(statement);
        const bool wasFunction = std::exchange(inFunction_, false);
        if (first.text == ".model") return takeModel(first, words);
        if (!inModel_) return complain(first.line, quoted(first.text) + " stands outside a model");
        if (std::ranges::find(kPassedOver, first.text) != std::end(kPassedOver)) {
            inFunction_ = wasFunction;
            return true;
        }
        const Row* row = statementRow(first.text);
        if (row == nullptr) return complain(first.line, quoted(first.text) + " is no statement");
        if (words.size() < row->fewest) return complain(first.line, first.text + " needs " + row->needs);
        return (this->*row->take)(first, words);
    }

    Model& model() { return models_.back(); }

    bool drive(Model& driven, NetId net, Driver driver) {
        const long before = driven.drive(net, driver);
        return before == 0 || complain(driver.line, quoted(driven.nets[net].name) + " is driven twice, first in line " +
                                                        std::to_string(before));
    }

    bool addGate(Gate gate, long line) {
        const NetId output = gate.output;
        model().gates.push_back(std::move(gate));
        return drive(model(), output, {Driver::gate, model().gates.size() - 1, line});
    }

    // The model before ends here too if it has no .end of its own.
    bool takeModel(const Word& statement, Words words) {
        if (words.empty()) return complain(statement.line, ".model needs a name");
        const CString& name = words.front().text;
        if (!places_.try_emplace(name, models_.size()).second)
            return complain(statement.line, "a second model " + quoted(name));
        models_.emplace_back().name = name;
        inModel_ = true;
        return true;
    }

    bool takeEnd(const Word&, Words) {
        inModel_ = false;
        return true;
    }

    bool takeInputs(const Word&, Words words) {
        for (const Word& word : words) {
            const NetId net = model().net(word.text);
            model().inputs.push_back(net);
            model().nets[net].isInput = true;
            if (!drive(model(), net, {Driver::input, model().inputs.size() - 1, word.line})) return false;
        }
        return true;
    }

    bool takeOutputs(const Word&, Words words) {
        for (const Word& word : words) {
            const NetId net = model().net(word.text);
            model().outputs.push_back(net);
            model().nets[net].isOutput = true;
        }
        return true;
    }

    bool takeNames(const Word&, Words words) {
        const Word& output = words.back();
        Gate gate;
        for (const Word& word : words.first(words.size() - 1))
            gate.inputs.push_back(model().feed(model().net(word.text)));
        gate.output = model().net(output.text);
        inFunction_ = true;
        return addGate(std::move(gate), output.line);
    }

    // "10- 1": where the inputs are like that, the output is 1; a function without inputs has the second part alone.
    bool takeRow(Words words) {
        const Word& first = words.front();
        if (!inFunction_) return complain(first.line, quoted(first.text) + " is no statement");
        Gate& gate = model().gates.back();
        const std::size_t inputs = gate.inputs.size();
        const CString& value = words.back().text;
        const CString pattern = inputs == 0 ? CString() : first.text;
        if (words.size() != (inputs == 0 ? 1U : 2U) || pattern.size() != inputs ||
            pattern.find_first_not_of("01-") != CString::npos || (value != "0" && value != "1"))
            return complain(first.line, quoted(first.text) + " begins no row of a function of " +
                                            std::to_string(inputs) + (inputs == 1 ? " input" : " inputs"));
        if (!gate.rows.empty() && gate.rowValue != (value == "1"))
            return complain(first.line, "a row for " + value + " among rows for the opposite");
        gate.rowValue = value == "1";
        gate.rows.push_back(pattern);
        return true;
    }

    // .latch INPUT OUTPUT [TYPE CONTROL] [INITIAL]
    bool takeLatch(const Word& statement, Words words) {
        if (words.size() > 5) return complain(statement.line, ".latch has too many words");
        Latch latch{model().feed(model().net(words[0].text)), model().net(words[1].text), {}};
        if (words.size() >= 4 && words[3].text != "NIL") latch.control = model().feed(model().net(words[3].text));
        model().latches.push_back(latch);
        return drive(model(), latch.output, {Driver::latch, model().latches.size() - 1, words[1].line});
    }

    // PIN=SIGNAL
    bool splitPin(const Word& word, CString& pin, CString& signal) {
        const std::size_t sign = word.text.find('=');
        if (sign == 0 || sign == CString::npos || sign + 1 == word.text.size())
            return complain(word.line, quoted(word.text) + " is no pin and signal");
        pin = word.text.substr(0, sign);
        signal = word.text.substr(sign + 1);
        return true;
    }

    bool takeGate(const Word&, Words words) {
        Gate gate;
        gate.type = words.front().text;
        CString pin, signal;
        for (const Word& word : words.subspan(1)) {
            if (!splitPin(word, pin, signal)) return false;
            if (&word != &words.back()) gate.inputs.push_back(model().feed(model().net(signal)));
        }
        gate.output = model().net(signal);
        return addGate(std::move(gate), words.back().line);
    }

    bool takeSubckt(const Word& statement, Words words) {
        Part part{words.front().text, {}, statement.line};
        CString pin, signal;
        for (const Word& word : words.subspan(1)) {
            if (!splitPin(word, pin, signal)) return false;
            part.pins.push_back({pin, model().net(signal)});
        }
        model().parts.push_back(std::move(part));
        return true;
    }

    // Which way a part's pins go is known only once all models are.
    bool connectParts() {
        for (Model& user : models_)
            for (std::size_t place = 0; place < user.parts.size(); ++place)
                if (!connect(user, place)) return false;
        return true;
    }

    bool connect(Model& user, std::size_t partPlace) {
        Part& part = user.parts[partPlace];
        const auto place = places_.find(part.model);
        for (const Part::Pin& pin : part.pins) {
            if (place == places_.end()) {
                user.nets[pin.net].onUnknownPin = true;
                continue;
            }
            const Net* port = models_[place->second].find(pin.name);
            if (port != nullptr && port->isOutput) {
                if (!drive(user, pin.net, {Driver::part, partPlace, part.line})) return false;
            } else if (port != nullptr && port->isInput) {
                user.feed(pin.net);
                ++part.fanIn;
            } else {
                return complain(part.line, "model " + quoted(part.model) + " has no pin " + quoted(pin.name));
            }
        }
        return true;
    }

    BlifSource source_;
    std::vector<Model>& models_;
    std::unordered_map<CString, std::size_t> places_;  // of the models, by name
    Complaint& complaint_;
    bool inModel_ = false;
    bool inFunction_ = false;  // rows may follow
};

const Reader::Row* Reader::statementRow(std::string_view statement) {
    static constexpr Row kRows[] = {
        {".inputs", &Reader::takeInputs, 0, ""},
        {".outputs", &Reader::takeOutputs, 0, ""},
        {".names", &Reader::takeNames, 1, "an output"},
        {".latch", &Reader::takeLatch, 2, "an input and an output"},
        {".gate", &Reader::takeGate, 2, "a type and an output"},
        {".subckt", &Reader::takeSubckt, 1, "a model"},
        {".end", &Reader::takeEnd, 0, ""},
    };
    const Row* row = std::ranges::find(kRows, statement, &Row::statement);
    return row != std::end(kRows) ? row : nullptr;
}

}  // namespace

bool readBlif(FilePath& file, TskKoraModule* module, std::vector<Model>& models, Complaint& complaint) {
    models.clear();
    return Reader(module, models, complaint).read(file);
}

}  // namespace netlist
