#pragma once

#include <kora/Err.h>
#include <kora/Tsk.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kora::host {

using Clock = std::chrono::steady_clock;

std::int64_t microseconds(Clock::duration time);
std::int64_t microsecondsSince(Clock::time_point begin);

inline constexpr std::size_t kSteps = TskStepExit2 + 1;
/// The names of the steps in reports.
extern const std::array<const char*, kSteps> kStepNames;

/// A step that a module was taken through; of one that came more than once the last result, and all the time.
struct StepRecord {
    eTskStepResult result = TskStepDone;
    std::int64_t microseconds = 0;
    std::string reason;
};

struct ModuleRecord {
    std::string file, name;
    std::array<std::optional<StepRecord>, kSteps> steps;
    std::string advice;  ///< what the load doctor says of a file that was not loaded
};

/// What the user would have been told or asked, and the answer.
struct MessageRecord {
    const char* kind = "";  ///< "alert", "continueAlert", "error", "progress", "chooseFile", "chooseDirectory", "beep"
    std::string text;
    const char* phase = "";  ///< the step or the part of the host's run in which it came
    std::string file;        ///< of the module whose step it was
    std::optional<unsigned> style;
    std::optional<int> answer;
};

/// Everything that happened in a run.
struct RunRecord {
    std::vector<ModuleRecord> modules;
    std::vector<MessageRecord> messages;
    std::size_t messagesDropped = 0;  ///< more than anybody reads
    struct {
        std::int64_t count = 0;
        Clock::duration time{}, longest{};
    } passes;
    std::int64_t startMicroseconds = 0, endMicroseconds = 0;
    std::string profile, toolsFolder, error;
    bool profileThere = false, started = false, forced = false;
    std::optional<bool> agreed;  ///< nothing when the modules were not asked
};

/// Keeps what happens in a run while it lives: nobody is asked, alerts are answered with their default button, and
/// every text goes to standard error, which is all there is of a run that crashes.
class Recorder : private MsgPresenter, private TskObserver {
public:
    explicit Recorder(RunRecord& record);
    ~Recorder() override;
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// The part of the run that begins now, outside of steps.
    void phaseSet(const char* phase) { phase_ = phase; }

private:
    struct Open {
        std::size_t step, module;
        Clock::time_point begin;
    };

    int Alert(const char* text, unsigned style) override;
    int ContinueAlert(const char* text) override;
    void ErrorDialog(const char* text, bool& suppress) override;
    void Progress(const char* text) override;
    bool ChooseFile(MsgFileChoice& choice) override;
    bool ChooseDirectory(const char* prompt, CString& path) override;
    void Beep() override;
    void TskStepBegin(eTskStep step, TskKoraModule* module, const char* file) override;
    void TskStepEnd(eTskStepResult result, const char* reason) override;

    void keep(const char* kind, const char* text, std::optional<unsigned> style = {}, std::optional<int> answer = {});
    std::size_t moduleIndex(const std::string& file, const std::string& name);

    RunRecord& record_;
    const char* phase_ = "start";
    std::vector<Open> open_;
    MsgPresenter* presenterBefore_;
    TskObserver* observerBefore_;
};

}  // namespace kora::host
