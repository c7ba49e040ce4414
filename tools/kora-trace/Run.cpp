#include "tools/kora-trace/Run.h"

#include <kora/File.h>
#include <kora/Ini.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>

#include "core/TraceLogPath.h"
#include "platform/Platform.h"
#include "settings/Store.h"
#include "tasks/ToolsFolder.h"
#include "tools/kora-trace/Bundle.h"
#include "tools/kora-trace/Pages.h"
#include "tools/kora-trace/ReadLog.h"

namespace kora::tracelog {

namespace {

constexpr int kRead = 0, kNothing = 1, kWrongUse = 2;
constexpr std::size_t kDumpsOfAPage = 20;

class Run {
public:
    Run(const Options& options, const Streams& streams) : options_(options), streams_(streams) {}

    int run() {
        const bool packs = !options_.bundle.empty();
        const bool own = options_.file.empty() && (packs || streams_.inIsTerminal);
        if ((own || packs) && !useSettings())
            return failed("the settings " + options_.settings + " cannot be read", kWrongUse);
        // What modules bring for themselves yields to what was asked for.
        if (own || packs) addFolder(platform::nativePath(toolsFolder()));
        for (const std::string& table : options_.tables)
            if (std::filesystem::is_directory(table) ? !addFolder(table) : !addTable(table)) return kWrongUse;
        if (!openLog(own)) return kNothing;
        return packs ? bundle() : show();
    }

private:
    int failed(const std::string& text, int code = kNothing) const {
        streams_.messages << "kora-trace: " << text << '\n';
        return code;
    }

    bool addTable(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        std::string problem = "cannot be read";
        const bool added = file && names_.add(text, problem);
        if (!problem.empty()) failed(path + ": " + problem);
        return added;
    }

    bool addFolder(const std::string& folder) {
        std::set<std::filesystem::path> tables;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(folder, none))
            if (entry.path().extension() == ".trace") tables.insert(entry.path());
        bool all = true;
        for (const auto& table : tables) all = addTable(table.string()) && all;
        return all;
    }

    bool openLog(bool own) {
        if (options_.file == "-" || (options_.file.empty() && !own)) {
            name_ = "standard input";
            return true;
        }
        name_ = own ? platform::nativePath(traceLogPath()) : options_.file;
        std::error_code ignored;
        if (!std::filesystem::is_directory(name_, ignored)) file_.open(name_, std::ios::binary);
        if (!file_.is_open()) failed(name_ + " cannot be read");
        return file_.is_open();
    }

    // Writing there would end the log.
    bool isLog(const std::string& path) const {
        std::error_code none;
        return file_.is_open() && std::filesystem::equivalent(path, name_, none);
    }

    std::istream& log() { return file_.is_open() ? file_ : streams_.in; }

    bool colours() const {
        if (options_.colour != Colour::automatic) return options_.colour == Colour::always;
        return streams_.outIsTerminal && options_.output.empty() &&
               platform::environment().variable("NO_COLOR").value_or("").empty() &&
               platform::environment().variable("TERM").value_or("") != "dumb";
    }

    std::unique_ptr<Page> page(std::ostream& out) const {
        switch (options_.format) {
            case Format::json:
                return jsonPage(out, names_, name_);
            case Format::html:
                return htmlPage(out, names_, name_);
            default:
                return textPage(out, names_, colours());
        }
    }

    int show() {
        std::ofstream file;
        if (isLog(options_.output)) return failed(options_.output + " is the log", kWrongUse);
        if (!options_.output.empty()) {
            file.open(options_.output, std::ios::binary | std::ios::trunc);
            if (!file) return failed(options_.output + " cannot be written");
        }
        std::ostream& out = file.is_open() ? file : streams_.out;
        const std::size_t all = options_.format == Format::html ? kDumpsOfAPage : LastDumps::kAll;
        const auto shown = page(out);
        const Summary summary = readLog(log(), *shown, options_.last > 0 ? options_.last : all);
        if (!out.flush()) return failed("the output cannot be written");
        return summary.anything() ? kRead : failed("nothing in " + name_ + " could be read");
    }

    bool useSettings() const {
        FileDocRootSearchSet(true);  // as the host does
        if (options_.settings.empty()) return true;
        const std::string path = std::filesystem::absolute(options_.settings).lexically_normal().string();
        platform::FileKind kind;
        platform::Failure ignored;
        return platform::fileSystem().kind(platform::libraryPath(path), kind, ignored) && IniMainFileSet(path.c_str());
    }

    int bundle() {
        if (isLog(options_.bundle)) return failed(options_.bundle + " is the log", kWrongUse);
        const std::string path =
            platform::libraryPath(std::filesystem::absolute(options_.bundle).lexically_normal().string());
        // A device is not replaced by an archive, whatever was asked for.
        std::error_code none;
        if (!options_.listOnly && std::filesystem::exists(options_.bundle, none)) {
            if (!std::filesystem::is_regular_file(options_.bundle, none))
                return failed(options_.bundle + " is no file");
            if (!options_.force) return failed(options_.bundle + " is there already; --force replaces it");
        }
        BundleContents contents;
        takeNewest(log(), contents);
        contents.logName = name_;
        contents.mainProfile = profilePath(eIniMain);
        contents.stateProfile = profilePath(eIniState);
        contents.toolsFolder = toolsFolder();
        const std::vector<ZipEntry> entries = bundleEntries(contents, names_, HomePaths::ofThisUser());
        streams_.out << options_.bundle << (options_.listOnly ? " would hold" : " will hold") << ", in bytes:\n"
                     << bundleList(entries);
        if (!streams_.out.flush()) return failed("what it holds cannot be shown, so nothing was written");
        if (options_.listOnly) return kRead;
        if (!isAgreed()) return failed("nothing was written");
        if (!writeWhole(path, zipArchive(entries, std::time(nullptr)))) return kNothing;
        streams_.out << "written\n";
        return kRead;
    }

    // Nobody is asked who is not there.
    bool isAgreed() {
        if (options_.yes || !streams_.inIsTerminal || !streams_.outIsTerminal) return true;
        streams_.out << "Write it? (y/n) " << std::flush;
        std::string answer;
        return std::getline(streams_.in, answer) && (answer.starts_with('y') || answer.starts_with('Y'));
    }

    // Under its name there is the whole archive, or what was there before.
    bool writeWhole(const std::string& path, const std::string& bytes) {
        using platform::fileSystem;
        const std::string scratch = path + ".part";
        platform::Failure failure;
        const bool written = fileSystem().write(scratch, bytes, platform::WriteMode::createNew, true, failure);
        const bool mine = written || failure.cause != platform::Cause::exists;
        const bool done = written && (options_.force ? fileSystem().rename(scratch, path, failure)
                                                     : fileSystem().link(scratch, path, failure));
        platform::Failure ignored;
        if (mine && !(done && options_.force)) fileSystem().remove(scratch, ignored);
        if (done) return true;
        const std::string name = options_.bundle + (mine ? "" : ".part");
        if (failure.cause != platform::Cause::exists)
            failed(name + " cannot be written");
        else
            failed(name + " is there already" + (mine ? "; --force replaces it" : ""));
        return false;
    }

    const Options& options_;
    const Streams& streams_;
    NameTable names_;
    std::string name_;
    std::ifstream file_;
};

}  // namespace

int run(const Options& options, const Streams& streams) { return Run(options, streams).run(); }

}  // namespace kora::tracelog
