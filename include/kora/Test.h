#pragma once

#include <kora/Dir.h>
#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Tmr.h>
#include <kora/Tsk.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <system_error>
#include <vector>

/// @file
/// What the tests of a module need: a clock that moves when told, a presenter that records, a profile and places of the
/// test's own, and a host in the test's process. All of it is inline, and bound to no test framework.
///
///     TestHost host;
///     host.profile.Set({"[Counter]", "Step = 3"});
///     host.ModuleAdd(KORA_MODULE_FILE);  // defined by kora_add_module_test()
///     host.Start();
///     host.CommandLine({"-cnt", "5"});
///     host.Run(10, 100);  // ten idle passes, 100 milliseconds apart
///     int code = host.End();
///     // now look at host.Failures(), host.presenter.alerts, host.profile.Text() ...
///
/// What these put in place of the system's is put back when they go, so where there are several of a kind, the last one
/// made is in force and goes first. They are for the user-interface thread. What cannot be made (a folder, a copy) is
/// thrown as the standard library throws it.

/// A folder of its own for one test, removed with all it holds when it goes. Names in it may have `/`.
class TestFolder {
public:
    TestFolder() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() / ("kora-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
        DirPath library(path_.string().c_str());
        if (const char* text = library.DirStringGet()) libraryForm_ = text;
    }
    ~TestFolder() {
        std::error_code ignored;
        for (auto& entry : std::filesystem::recursive_directory_iterator(path_, ignored))
            std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::filesystem::path& Native() const { return path_; }  ///< the folder, for the standard library
    /// The folder, or a name in it, as the system writes it.
    std::string NativeText(const std::string& name = "") const {
        return (name.empty() ? path_ : path_ / name).string();
    }
    /// The folder, or a name in it, in library form.
    std::string Path(const std::string& name = "") const {
        return name.empty() ? libraryForm_ : libraryForm_ + '\\' + name;
    }
    /// Makes a folder in it, with those on the way there.
    void MakeFolder(const std::string& name) const { std::filesystem::create_directories(path_ / name); }
    /// Makes a file of these bytes, in the place of one that is there.
    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream file(path_ / name, std::ios::binary | std::ios::trunc);
        file << bytes;
    }
    /// What the file holds; nothing when it is not there.
    std::string Read(const std::string& name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// Whether there is a file or a folder of this name.
    bool Has(const std::string& name) const { return std::filesystem::exists(path_ / name); }

private:
    std::filesystem::path path_;
    std::string libraryForm_;
};

/// A clock that stands still until it is told otherwise. A timed timer fires when its time has passed, so one of 1000
/// milliseconds does after Advance(1001).
class TestClock {
public:
    /// Puts the clock in force, at @p now.
    explicit TestClock(unsigned long now = 1000) : before_(inForce_) {
        inForce_ = this;
        clockBefore_ = TmrClockSet([] { return inForce_->now_; });
        Set(now);
    }
    ~TestClock() {
        inForce_ = before_;
        TmrClockSet(clockBefore_);
    }
    TestClock(const TestClock&) = delete;
    TestClock& operator=(const TestClock&) = delete;

    unsigned long Get() const { return now_; }  ///< in milliseconds
    /// In milliseconds; 32 bits of it count.
    void Set(unsigned long now) { now_ = now & 0xFFFFFFFF; }
    /// Moves it on; it wraps at 32 bits.
    void Advance(unsigned long milliseconds) { Set(now_ + milliseconds); }

private:
    static inline constinit TestClock* inForce_ = nullptr;

    unsigned long now_ = 0;
    TestClock* before_;
    TmrClock clockBefore_ = nullptr;
};

/// Keeps what the user would have been told or asked, and gives the answers set here.
class TestPresenter : public MsgPresenter {
public:
    /// An alert.
    struct Shown {
        std::string text;    ///< as it would be shown
        unsigned style = 0;  ///< of a Windows message box
    };

    TestPresenter() : before_(MsgPresenterSet(this)) {}
    ~TestPresenter() override { MsgPresenterSet(before_); }
    TestPresenter(const TestPresenter&) = delete;
    TestPresenter& operator=(const TestPresenter&) = delete;

    int Alert(const char* text, unsigned style) override {
        alerts.push_back({text, style});
        return next(answers, answer);
    }
    int ContinueAlert(const char* text) override {
        continueAlerts.emplace_back(text);
        return next(answers, continueAnswer);
    }
    void ErrorDialog(const char* text, bool& suppress) override {
        errors.emplace_back(text);
        suppress = suppressNext;
    }
    void Progress(const char* text) override { progress.emplace_back(text); }
    bool ChooseFile(MsgFileChoice& choice) override {
        asked.push_back(choice);
        return choose(choice.path);
    }
    bool ChooseDirectory(const char* prompt, CString& path) override {
        asked.push_back({prompt, "", path, false});
        return choose(path);
    }
    void Beep() override { ++beeps; }

    std::deque<int> answers;          ///< what the next alerts of both kinds answer
    int answer = 1;                   ///< what alerts answer after that: 1 OK, 2 Cancel, 4 Retry, 6 Yes, 7 No ...
    int continueAnswer = 1219;        ///< what continue alerts answer after that: 1219 or 1220
    std::deque<std::string> choices;  ///< what the next choosers answer; an empty one cancels
    std::string chosen;               ///< what choosers answer after that
    bool suppressNext = false;        ///< whether the user does not want to see an internal error again

    std::vector<Shown> alerts;                ///< message boxes
    std::vector<std::string> continueAlerts;  ///< alerts with two buttons of their own
    std::vector<std::string> errors;          ///< internal ones
    std::vector<std::string> progress;        ///< lines on how far something has come
    std::vector<MsgFileChoice> asked;         ///< of choosers of both kinds, a directory's prompt and path
    int beeps = 0;                            ///< how many there were

private:
    template <class Answer>
    static Answer next(std::deque<Answer>& prepared, const Answer& otherwise) {
        if (prepared.empty()) return otherwise;
        const Answer first = prepared.front();
        prepared.pop_front();
        return first;
    }
    bool choose(CString& path) {
        const std::string choice = next(choices, chosen);
        if (choice.empty()) return false;
        path = choice;
        return true;
    }

    MsgPresenter* before_;
};

/// Keeps everything that belongs to the user out of reach: see TskScratchPlacesSet(). Not for the time between
/// Startup() and ExitInstance().
class TestPlaces {
public:
    TestPlaces() : before_(inForce_) {
        if (!TskScratchPlacesSet(folder.NativeText().c_str()))
            throw std::system_error(std::make_error_code(std::errc::operation_not_permitted), "TestPlaces");
        inForce_ = this;
    }
    ~TestPlaces() {
        inForce_ = before_;
        TskScratchPlacesSet(before_ != nullptr ? before_->folder.NativeText().c_str() : nullptr);
    }
    TestPlaces(const TestPlaces&) = delete;
    TestPlaces& operator=(const TestPlaces&) = delete;

    std::string Log() const { return folder.Read("documents/ts_error_log.txt"); }                ///< the trace log
    std::string State() const { return folder.Read("userdata/Veltrane/Tessera5/tsstate.ini"); }  ///< the state file

    TestFolder folder;  ///< with the places in it, by the names that TskScratchPlacesSet() gives them

private:
    static inline constinit TestPlaces* inForce_ = nullptr;

    TestPlaces* before_;
};

/// A main profile of the test's own, which begins empty. What the library read of it changes with Set() alone, as it
/// does in life: what a module writes is in Text(), and read at the next start.
class TestProfile {
public:
    TestProfile() : before_(inForce_) {
        inForce_ = this;
        Set({});
    }
    ~TestProfile() {
        inForce_ = before_;
        IniMainFileSet(before_ != nullptr ? before_->file().c_str() : nullptr);
    }
    TestProfile(const TestProfile&) = delete;
    TestProfile& operator=(const TestProfile&) = delete;

    /// Writes the profile and has it read.
    void Set(const std::vector<std::string>& lines) {
        std::string text;
        for (const std::string& line : lines) text += line + '\n';
        folder_.Write("ts.ini", text);
        Read();
    }
    void Read() const { IniMainFileSet(file().c_str()); }        ///< has the profile read as it stands
    std::string Text() const { return folder_.Read("ts.ini"); }  ///< the profile as it stands

private:
    static inline constinit TestProfile* inForce_ = nullptr;

    std::string file() const { return folder_.NativeText("ts.ini"); }

    TestFolder folder_;
    TestProfile* before_;
};

/// What became of a module in a TestHost.
struct TestModule {
    std::string file;     ///< its name and type; empty for a module without a file
    std::string name;     ///< empty as long as it was not loaded
    bool loaded = false;  ///< its file was loaded, and its entry connected
    std::string failure;  ///< what went wrong, in words; empty when nothing did
};

/// The library, started without windows in the test's process, with a clock, a presenter, a profile and places of its
/// own. It has the host's loop: messages, an idle pass, a report of the error that waits.
///
/// One of them at a time; when it has gone the next one finds the library as new. After End() the same one may be
/// started again, with all that its run left behind.
class TestHost : private TskObserver {
public:
    TestHost() : observerBefore_(TskObserverSet(this)) {
        FileDocRootSearchSet(true);
        tools_.MakeFolder("tools");
        ToolsFolderSet(tools_.NativeText("tools"));
    }
    ~TestHost() override {
        End();
        TskToolsFolderSet(nullptr);
        FileDocRootSearchSet(rootSearchBefore_);
        TskObserverSet(observerBefore_);
    }
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    /// Copies a module's file into the host's tools folder, which begins empty; under another name if one is given.
    void ModuleAdd(const std::string& file, const std::string& as = "") const {
        const std::filesystem::path path(file);
        std::filesystem::copy_file(path, tools_.Native() / "tools" / (as.empty() ? path.filename().string() : as));
    }
    /// Loads the modules of this folder instead, where it is.
    void ToolsFolderSet(const std::string& folder) { TskToolsFolderSet(folder.c_str()); }

    /// Starts the library: modules are loaded and go through their phases.
    /// @return whether it started and nothing failed.
    bool Start() {
        modules.clear();
        started_ = Startup(nullptr, nullptr) != 0;
        count_ = 0;
        ended_ = false;
        return report() && started_ && Failures().empty();
    }
    /// Passes arguments on as a host does; whether any module took one.
    bool CommandLine(const CStringArray& arguments) {
        const bool taken = TskCmdLine(arguments);
        report();
        return taken;
    }
    /// Idle passes, each after the clock has advanced. They end when a request to quit was agreed to.
    /// @return how many there were.
    int Run(int passes = 1, unsigned long milliseconds = 0) {
        int done = 0;
        for (; done < passes && !TskGetApp()->TskAppEnding(); ++done) {
            clock.Advance(milliseconds);
            if (TskMessagePump() > 0) count_ = 0;
            Idle(count_++);
            report();
        }
        return done;
    }
    /// Asks the modules whether the program may quit, runs the exit passes, and unloads the modules. The object of a
    /// module that refuses is deleted, so that the others can end.
    /// @return the exit code: 0 when nothing failed. As a host does, 1 stands for a refusal and for an error.
    int End() {
        if (ended_) return code_;
        ended_ = true;
        for (bool agreed = TskGetApp()->TskAppQuit(); !agreed; agreed = TskExitKoraQuery()) {
            TskExitCodeSet(1);
            if (refusing_ == nullptr) break;
            failed(refusingPlace_, refusal_);
            delete refusing_;
        }
        code_ = ExitInstance();
        if (!started_ || ErrReport()) code_ = 1;
        started_ = false;
        return code_;
    }

    /// What failed, a line each; empty when nothing did.
    std::string Failures() const {
        std::string text;
        for (const TestModule& module : modules)
            if (!module.failure.empty())
                text += (module.file.empty() ? module.name : module.file) + ": " + module.failure + '\n';
        return text;
    }

    TestPlaces places;                ///< where what belongs to the user is
    TestClock clock;                  ///< moved by Run(), and by whoever wants to
    TestPresenter presenter;          ///< what the user was told and asked
    TestProfile profile;              ///< read at Start()
    std::vector<TestModule> modules;  ///< in the order in which they came; of a last run until the next Start()

private:
    struct Step {
        eTskStep step;
        TskKoraModule* module;
        std::size_t place;  // among the modules
    };

    void TskStepBegin(eTskStep step, TskKoraModule* module, const char* file) override {
        const std::string name = module != nullptr ? module->TskKoraName() : "";
        std::size_t place = 0;
        while (place < modules.size() &&
               (modules[place].file != file || (*file == '\0' && modules[place].name != name)))
            ++place;
        if (place == modules.size()) modules.push_back({file, "", false, ""});
        if (!name.empty()) modules[place].name = name;
        steps_.push_back({step, module, place});
    }
    void TskStepEnd(eTskStepResult result, const char* reason) override {
        const Step ended = steps_.back();
        steps_.pop_back();
        if (ended.step == TskStepLoad) {
            modules[ended.place].loaded = result == TskStepDone;
            if (result != TskStepDone) failed(ended.place, *reason != '\0' ? reason : "its entry threw");
        } else if (ended.step == TskStepExitRequest) {
            refusing_ = result == TskStepDone ? nullptr : ended.module;
            refusal_ = result == TskStepThrew ? "TskExitRequest() threw" : "TskExitRequest() refused";
            refusingPlace_ = ended.place;
        } else if (result == TskStepThrew || (result == TskStepFailed && ended.step <= TskStepInit4)) {
            static constexpr const char* kNames[] = {"TskInit1",     "TskInit2", "TskInit3", "TskInit4",
                                                     "TskInitFinal", "",         "TskExit1", "TskExit2"};
            failed(ended.place, std::string(kNames[ended.step - TskStepInit1]) +
                                    (result == TskStepThrew ? "() threw" : "() answered false"));
        }
    }
    void failed(std::size_t place, const std::string& how) {
        std::string& failure = modules[place].failure;
        failure += (failure.empty() ? "" : "; ") + how;
    }
    static bool report() {
        const bool failed = ErrReport();
        if (failed) TskExitCodeSet(1);
        return !failed;
    }

    TestFolder tools_;
    TskObserver* observerBefore_;
    bool rootSearchBefore_ = FileDocRootSearchGet();
    std::vector<Step> steps_;
    TskKoraModule* refusing_ = nullptr;  // of the last one asked
    const char* refusal_ = "";
    std::size_t refusingPlace_ = 0;
    bool started_ = false, ended_ = true;
    int code_ = 0;
    long count_ = 0;
};
