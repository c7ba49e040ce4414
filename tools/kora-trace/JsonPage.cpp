#include "tools/kora-trace/Escapes.h"
#include "tools/kora-trace/Pages.h"

namespace kora::tracelog {

namespace {

std::string nameOrNull(const std::string* name) { return name != nullptr ? forJson(*name) : "null"; }
std::string textOrNull(const std::string& text) { return text.empty() ? "null" : forJson(text); }
const char* truth(bool value) { return value ? "true" : "false"; }

class JsonPage : public Page {
public:
    JsonPage(std::ostream& out, const NameTable& names, const std::string& log) : out_(out), names_(names) {
        out_ << "{\"tool\": \"kora-trace\", \"version\": " << forJson(kLibraryVersion)
             << ", \"names\": " << forJson(names.tables()) << ", \"log\": " << forJson(log) << ",\n\"records\": [";
    }

    void note(const Note& note) override {
        begin();
        out_ << "{\"type\": \"note\", \"line\": " << note.line << ", \"date\": " << textOrNull(note.date)
             << ", \"text\": " << forJson(note.text) << '}';
    }

    void skipped(const Skipped& skipped) override {
        begin();
        out_ << "{\"type\": \"skipped\", \"line\": " << skipped.line << ", \"lines\": " << skipped.lines
             << ", \"why\": " << forJson(skipped.why) << '}';
    }

    void dump(const Dump& dump) override {
        begin();
        const std::vector<Item> items = decode(dump, names_);
        out_ << "{\"type\": \"dump\", \"line\": " << dump.line << ", \"lastLine\": " << dump.lastLine
             << ", \"reason\": " << textOrNull(dump.reason) << ", \"date\": " << textOrNull(dump.date) << ",\n"
             << " \"count\": " << (dump.count ? std::to_string(*dump.count) : "null")
             << ", \"overwritten\": " << dump.overwritten() << ", \"unwritten\": " << dump.unwritten()
             << ", \"words\": " << dump.words.size() << ", \"ended\": " << truth(dump.ended)
             << ", \"mixed\": " << truth(dump.mixed) << ", \"damage\": [";
        const char* comma = "";
        for (const std::string& sentence : dump.damage()) {
            out_ << comma << forJson(sentence);
            comma = ", ";
        }
        const Item* fault = severest(items);
        out_ << "],\n \"severest\": " << (fault != nullptr ? std::to_string(fault - items.data()) : "null")
             << ", \"items\": [";
        comma = "\n  ";
        for (const Item& item : items) {
            out_ << comma;
            write(dump, item);
            comma = ",\n  ";
        }
        out_ << "]}";
    }

    void end(const Summary& summary) override {
        out_ << "],\n\"summary\": {\"dumps\": " << summary.dumps << ", \"notes\": " << summary.notes
             << ", \"skippedLines\": " << summary.skippedLines << ", \"olderDumps\": " << summary.olderDumps << "}}\n";
    }

private:
    void begin() {
        out_ << (first_ ? "\n" : ",\n");
        first_ = false;
    }

    void word(const Dump& dump, std::size_t at) {
        const auto age = dump.age(at);
        out_ << "{\"age\": " << (age ? std::to_string(*age) : "null") << ", \"word\": \"" << hexWord(dump.words[at])
             << '"';
    }

    void write(const Dump& dump, const Item& item) {
        constexpr const char* kKinds[] = {"step", "fault", "word"};
        word(dump, item.first);
        out_ << ", \"kind\": \"" << kKinds[static_cast<int>(item.kind)] << '"';
        if (item.kind != Kind::word) {
            out_ << ", \"level\": " << levelOf(item.word) << ", \"dataFlag\": " << truth(hasData(item.word))
                 << ", \"module\": " << moduleOf(item.word)
                 << ", \"moduleName\": " << nameOrNull(names_.module(item.word)) << ", \"file\": " << fileOf(item.word)
                 << ", \"fileName\": " << nameOrNull(names_.file(item.word))
                 << ", \"location\": " << locationOf(item.word)
                 << ", \"place\": " << nameOrNull(item.place != nullptr ? &item.place->text : nullptr)
                 << ", \"data\": [";
            for (std::size_t i = 1; i < item.size; ++i) {
                if (i > 1) out_ << ", ";
                word(dump, item.first + i);
                out_ << ", \"meaning\": " << forJson(dataMeaning(item, i)) << '}';
            }
            out_ << ']';
        }
        out_ << '}';
    }

    std::ostream& out_;
    const NameTable& names_;
    bool first_ = true;
};

}  // namespace

std::unique_ptr<Page> jsonPage(std::ostream& out, const NameTable& names, const std::string& log) {
    return std::make_unique<JsonPage>(out, names, log);
}

}  // namespace kora::tracelog
