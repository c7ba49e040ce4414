#include "tools/kora-trace/Run.h"

#include <kora/File.h>
#include <kora/Ini.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

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
        for (const std::string& table : options_.tables)
            if (!addTable(table)) return kWrongUse;
        if (!openLog()) return kNothing;
        return options_.bundle.empty() ? show() : bundle();
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
        if (!added) failed(path + ": " + problem);
        return added;
    }

    bool openLog() {
        const bool own = options_.file.empty() && streams_.inIsTerminal;
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
               platform::environment().variable("NO_COLOR").value_or("").empty();
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
        if (!useSettings()) return failed("the settings " + options_.settings + " cannot be read", kWrongUse);
        const std::string path =
            platform::libraryPath(std::filesystem::absolute(options_.bundle).lexically_normal().string());
        BundleContents contents;
        contents.log.assign(std::istreambuf_iterator<char>(log()), {});
        contents.logName = name_;
        contents.mainProfile = profilePath(eIniMain);
        contents.stateProfile = profilePath(eIniState);
        contents.toolsFolder = toolsFolder();
        const std::vector<ZipEntry> entries = bundleEntries(contents, names_, HomePaths::ofThisUser());
        streams_.out << options_.bundle << (options_.listOnly ? " would hold" : " will hold") << ", in bytes:\n"
                     << bundleList(entries) << std::flush;
        if (options_.listOnly) return kRead;
        const auto mode = options_.force ? platform::WriteMode::replace : platform::WriteMode::createNew;
        platform::Failure failure;
        if (!platform::fileSystem().write(path, zipArchive(entries, std::time(nullptr)), mode, true, failure))
            return failed(options_.bundle + (failure.cause == platform::Cause::exists
                                                 ? " is there already; --force replaces it"
                                                 : " cannot be written"));
        streams_.out << "written\n";
        return kRead;
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
