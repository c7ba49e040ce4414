#include "host/Json.h"
#include "tools/kora-trace/Escapes.h"
#include "tools/kora-trace/Pages.h"

namespace kora::tracelog {

namespace {

constexpr bool kInOneLine = true;

class JsonPage : public Page {
public:
    JsonPage(std::ostream& out, const NameTable& names, const std::string& log) : out_(out), names_(names) {
        json_.begin('{');
        json_.field("tool", "kora-trace");
        json_.field("version", kLibraryVersion);
        json_.field("names", names.tables());
        json_.field("log", log);
        json_.key("records").begin('[');
    }

    void note(const Note& note) override {
        begin("note", note.line, kInOneLine);
        textOrNull("date", note.date);
        json_.field("text", note.text);
        end();
    }

    void skipped(const Skipped& skipped) override {
        begin("skipped", skipped.line, kInOneLine);
        json_.field("lines", skipped.lines);
        json_.field("why", skipped.why);
        end();
    }

    void dump(const Dump& dump) override {
        const std::vector<Item> items = decode(dump, names_);
        begin("dump", dump.line, !kInOneLine);
        json_.field("lastLine", dump.lastLine);
        textOrNull("reason", dump.reason);
        textOrNull("date", dump.date);
        numberOrNull("count", dump.count);
        json_.field("overwritten", dump.overwritten());
        numberOrNull("wrapAge", dump.wrapAge());
        json_.field("unwritten", dump.unwritten());
        json_.field("words", dump.words.size());
        json_.field("ended", dump.ended);
        json_.field("mixed", dump.mixed);
        json_.key("damage").begin('[');
        for (const std::string& sentence : dump.damage()) json_.value(sentence);
        json_.end(']');
        const Item* fault = severest(items);
        numberOrNull("severest", fault != nullptr ? std::optional(fault - items.data()) : std::nullopt);
        json_.key("items").begin('[');
        for (const Item& item : items) write(dump, item);
        json_.end(']');
        end();
    }

    void end(const Summary& summary) override {
        json_.end(']');
        json_.key("summary").begin('{');
        json_.field("dumps", summary.dumps);
        json_.field("notes", summary.notes);
        json_.field("skippedLines", summary.skippedLines);
        json_.field("olderDumps", summary.olderDumps);
        json_.end('}');
        json_.end('}');
        out_ << json_.text();
    }

private:
    void textOrNull(const char* key, const std::string& text) {
        text.empty() ? json_.key(key).null() : json_.field(key, text);
    }

    void nameOrNull(const char* key, const std::string* name) {
        name == nullptr ? json_.key(key).null() : json_.field(key, *name);
    }

    template <class Number>
    void numberOrNull(const char* key, const std::optional<Number>& number) {
        number ? json_.field(key, *number) : json_.key(key).null();
    }

    void begin(const char* type, std::uint64_t line, bool inOneLine) {
        json_.begin('{', inOneLine);
        json_.field("type", type);
        json_.field("line", line);
    }

    void end() {
        json_.end('}');
        out_ << json_.taken();
    }

    void beginWord(const Dump& dump, std::size_t at) {
        json_.begin('{', kInOneLine);
        numberOrNull("age", dump.age(at));
        json_.field("word", hexWord(dump.words[at]));
    }

    void write(const Dump& dump, const Item& item) {
        constexpr const char* kKinds[] = {"step", "fault", "word"};
        beginWord(dump, item.first);
        json_.field("kind", kKinds[static_cast<int>(item.kind)]);
        if (item.kind != Kind::word) {
            json_.field("level", levelOf(item.word));
            json_.field("dataFlag", hasData(item.word));
            json_.field("module", moduleOf(item.word));
            nameOrNull("moduleName", names_.module(item.word));
            json_.field("file", fileOf(item.word));
            nameOrNull("fileName", names_.file(item.word));
            json_.field("location", locationOf(item.word));
            nameOrNull("place", item.place != nullptr ? &item.place->text : nullptr);
            json_.key("data").begin('[');
            for (std::size_t i = 1; i < item.size; ++i) {
                beginWord(dump, item.first + i);
                json_.field("meaning", dataMeaning(item, i));
                json_.end('}');
            }
            json_.end(']');
        }
        json_.end('}');
    }

    std::ostream& out_;
    const NameTable& names_;
    host::Json json_;
};

}  // namespace

std::unique_ptr<Page> jsonPage(std::ostream& out, const NameTable& names, const std::string& log) {
    return std::make_unique<JsonPage>(out, names, log);
}

}  // namespace kora::tracelog
