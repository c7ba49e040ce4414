#include <gmock/gmock.h>
#include <kora/Test.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>

#include "host/Json.h"

namespace {

using testing::HasSubstr;

/// A JSON text as one map: "modules.0.file" leads to a text, "exitCode" to a number, as they are written there,
/// and a list or an object to how many it holds. Throws for what is no JSON.
class JsonFields {
public:
    explicit JsonFields(const std::string& text) : text_(text) {
        value("");
        require(next() == '\0');
    }
    const std::string& operator[](const std::string& path) { return fields_[path]; }

private:
    void require(bool holds) const { holds ? void() : throw std::runtime_error("no JSON at " + std::to_string(at_)); }
    char next() { return text_[at_ = std::min(text_.find_first_not_of(" \r\n\t", at_), text_.size())]; }
    void take(char expected) { require(next() == expected), ++at_; }
    std::string string() {
        take('"');
        const std::size_t begin = at_;
        for (; text_[at_] != '"'; ++at_) {
            require(static_cast<unsigned char>(text_[at_]) >= ' ');
            if (text_[at_] == '\\') ++at_;
        }
        return text_.substr(begin, at_++ - begin);
    }
    void value(const std::string& path) {
        const char first = next();
        std::string& field = fields_[path];
        if (first == '"') {
            field = string();
        } else if (first == '{' || first == '[') {
            int count = 0;
            for (++at_; next() != (first == '{' ? '}' : ']'); ++count) {
                if (count > 0) take(',');
                const std::string name = first == '{' ? string() : std::to_string(count);
                if (first == '{') take(':');
                value(path.empty() ? name : path + '.' + name);
            }
            ++at_;
            field = std::to_string(count);
        } else {
            for (; std::isalnum(static_cast<unsigned char>(text_[at_])) || text_[at_] == '-'; ++at_)
                field += text_[at_];
            require(!field.empty());
        }
    }

    std::string text_;
    std::size_t at_ = 0;
    std::map<std::string, std::string> fields_;
};

/// A folder in which the host runs as a process, with modules of the tests.
struct Runs : testing::Test {
    Runs() {
        folder_.Write("ts.ini", "");
        std::filesystem::current_path(folder_.Native());
    }
    ~Runs() override { std::filesystem::current_path(before_); }
    void put(const std::string& modules) {
        folder_.MakeFolder("t");
        std::istringstream words(modules);
        for (std::string word; words >> word;) {
            const auto to = folder_.Native() / "t" / (word += ".qzx");
            std::error_code missing;
            std::filesystem::copy_file(std::filesystem::path(KORA_TASKS_FIXTURES) / word, to, missing);
            if (missing) folder_.Write("t/" + word, "MZ, but no module");
        }
    }
    int run(const std::string& options) {
        const std::string number = std::to_string(++runs_);
        out_ = "out" + number;
        std::string line = "\"" KORA_HOST "\" --ini ts.ini " + options + " > " + out_ + " 2> err" + number;
        if (std::filesystem::path::preferred_separator == '\\') line = '"' + line + '"';
        const int status = std::system(line.c_str());
        return status < 256 ? status : status / 256;
    }
    std::string out() const { return folder_.Read(out_); }
    TestFolder folder_;
    std::filesystem::path before_ = std::filesystem::current_path();
    std::string out_;
    int runs_ = 0;
};

TEST_F(Runs, ReportsSayWhatBecameOfEachModule) {
    // The modules, the options, the exit code, and "path=value" of each field.
    const std::tuple<const char*, std::string, int, const char*> rows[] = {
        {"a b", "--idle 3 --exit", 0,
         "modules=2 modules.0.file=a.qzx modules.1.name=b modules.0.load.result=done modules.1.init4.result=done "
         "modules.1.final.result=done modules.0.exitRequest.result=done modules.1.exit2.result=done idle.passes=3 "
         "totals.modules=2 totals.failed=0 exit.agreed=true exit.forced=false startUp=true messages.0.kind=progress "
         "messages.0.phase=start messages.3.file=a.qzx messages.3.phase=init1 messages.3.style=0 messages.3.answer=1"},
        {"a", "", 0, "idle.passes=1 exit.agreed=true"},
        {"a", "--idle 7", 0, "idle.passes=7 exit.agreed=true"},
        {"a twin", "--stay --exit", 0,
         "idle.passes=0 modules=2 modules.0.name=a modules.1.name=a modules.1.file=twin.qzx"},
        // loading
        {"a no-entry", "--exit", 1, "modules.1.load.result=failed totals.failed=1 modules.0.exit2.result=done"},
        {"status", "--exit", 1, "modules.0.load.result=failed modules.0.init1= modules.0.name="},
        {"throws-entry", "--exit", 1, "modules.0.load.result=threw"},
        {"damaged", "--exit", 1, "modules.0.load.result=failed messages.1.kind=alert messages.1.phase=load"},
        // phases
        {"a false-phase", "--exit", 1,
         "modules.1.init2.result=failed modules.1.init3= modules.1.exitRequest= modules.0.init3.result=done"},
        {"throws-phase", "--exit", 1, "modules.0.init2.result=threw modules.0.init3= totals.failed=1"},
        {"a deletes-itself-in-phase", "--exit", 0, "modules.1.init3.result=done modules.1.init4= totals.failed=0"},
        // the end
        {"refuses a", "--exit", 1,
         "modules.1.exitRequest.result=failed modules.1.exit1= exit.agreed=false exit.forced=true"},
        {"throws-exit", "--exit", 1, "modules.0.exit1.result=threw exit.agreed=true"},
        // what does not begin
        {"a", "--exit --ini none.ini", 2, "startUp=false modules=0 exit.agreed=null"},
        {"a", "--exit --tools none", 2, "startUp=false modules=0"},
    };
    for (const auto& [modules, options, code, expected] : rows) {
        SCOPED_TRACE(modules + (' ' + options));
        put(modules);
        folder_.Write("r.json", "of an earlier run");
        EXPECT_EQ(run("--tools t --report r.json " + options), code);
        JsonFields report(folder_.Read("r.json"));
        EXPECT_EQ(report["exitCode"], std::to_string(code));
        EXPECT_EQ(report["host"], report["library"]);
        std::istringstream fields(expected);
        for (std::string field; fields >> field;) {
            const std::string path = field.substr(0, field.find('='));
            EXPECT_EQ(path + '=' + report[path], field);
        }
        EXPECT_FALSE(folder_.Has("r.json.new"));
        std::filesystem::remove_all(folder_.Native() / "t");
    }
}

TEST_F(Runs, ReportsGoWhereTheyAreSent) {
    put("a no-entry");
    EXPECT_EQ(run("--tools t --exit --report -"), 1);
    JsonFields report(out());
    EXPECT_THAT(report["modules.1.load.reason"], HasSubstr("no-entry.qzx is not compatible"));
    std::filesystem::remove(folder_.Native() / "t" / "no-entry.qzx");
    for (const char* no : {"--report none/r.json", "--report t"})
        EXPECT_EQ(run(std::string("--tools t --exit ") + no), 1) << no;
    for (const char* no : {"--idle", "--idle -1", "--idle 1x", "--report", "--why", "--no"})
        EXPECT_EQ(run(no), 2) << no;
    // What the task would leave alone is no good option either.
    for (const char* no : {"--why t/a.qzx t/b.qzx", "--list --report r.json", "--all", "--list --why t/a.qzx"})
        EXPECT_EQ(run(no), 2) << no;
}

TEST_F(Runs, FilesAreToldWithoutRunningThem) {
    put("a no-entry damaged");
    const std::tuple<const char*, int, const char*> rows[] = {
        {"--list --tools t", 0, ", strings: 2, exported names: "}, {"--list --tools t", 0, "no-entry.qzx: "},
        {"--list --all --tools t", 0, "\n  fixtureAnswer\n"},      {"--why t/a.qzx", 0, "\nIt would load."},
        {"--why t/no-entry.qzx", 1, "\nIt exports no entry: "},    {"--why t", 1, "is a directory"}};
    for (const auto& [options, code, says] : rows) {
        EXPECT_EQ(run(options), code) << options;
        std::string said = out();
        std::erase(said, '\r');
        EXPECT_THAT(said, HasSubstr(says));
    }
}

TEST(Json, TakesBytesThatAreNoUtf8ForLatin1) {
    kora::host::Json json;
    json.field("x", "\xC3\xA4 \xF0\x9F\x98\x80 \"\\\n\x01 \xE4 \xED\xA0\x80x \xC0/ \xF4\x90 \xC3");
    EXPECT_EQ(JsonFields('{' + json.text() + '}')["x"],
              "\xC3\xA4 \xF0\x9F\x98\x80 \\\"\\\\\\n\\u0001 \\u00e4 \\u00ed\\u00a0\\u0080x "
              "\\u00c0/ \\u00f4\\u0090 \\u00c3");
}

}  // namespace
