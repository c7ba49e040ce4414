#include "host/Recorder.h"

#include <algorithm>

#include "platform/Unattended.h"

namespace kora::host {

const std::array<const char*, kSteps> kStepNames = {"load",  "init1",       "init2", "init3", "init4",
                                                    "final", "exitRequest", "exit1", "exit2"};

namespace {

constexpr std::size_t kMostMessages = 10000;
constexpr int kFirstContinueButton = 1219;

}  // namespace

std::int64_t microseconds(Clock::duration time) {
    return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

std::int64_t microsecondsSince(Clock::time_point begin) { return microseconds(Clock::now() - begin); }

Recorder::Recorder(RunRecord& record)
    : record_(record), presenterBefore_(MsgPresenterSet(this)), observerBefore_(TskObserverSet(this)) {}

Recorder::~Recorder() {
    TskObserverSet(observerBefore_);
    MsgPresenterSet(presenterBefore_);
}

void Recorder::keep(const char* kind, const char* text, std::optional<unsigned> style, std::optional<int> answer) {
    if (record_.messages.size() == kMostMessages) {
        ++record_.messagesDropped;
        return;
    }
    const bool inStep = !open_.empty();
    record_.messages.push_back({.kind = kind,
                                .text = text != nullptr ? text : "",
                                .phase = inStep ? kStepNames[open_.back().step] : phase_,
                                .file = inStep ? record_.modules[open_.back().module].file : "",
                                .style = style,
                                .answer = answer});
}

int Recorder::Alert(const char* text, unsigned style) {
    platform::tellUnattended(text);
    const int answer = platform::defaultButton(style);
    keep("alert", text, style, answer);
    return answer;
}

int Recorder::ContinueAlert(const char* text) {
    platform::tellUnattended(text);
    keep("continueAlert", text, {}, kFirstContinueButton);
    return kFirstContinueButton;
}

void Recorder::ErrorDialog(const char* text, bool& suppress) {
    platform::tellUnattended(text);
    keep("error", text);
    suppress = false;
}

void Recorder::Progress(const char* text) {
    platform::tellUnattended(text);
    keep("progress", text);
}

bool Recorder::ChooseFile(MsgFileChoice& choice) {
    keep("chooseFile", choice.prompt.c_str(), {}, 0);
    return false;
}

bool Recorder::ChooseDirectory(const char* prompt, CString&) {
    keep("chooseDirectory", prompt, {}, 0);
    return false;
}

void Recorder::Beep() { keep("beep", ""); }

/// A module is known by its file, or by its name where it has none.
std::size_t Recorder::moduleIndex(const std::string& file, const std::string& name) {
    const auto found = std::find_if(record_.modules.begin(), record_.modules.end(), [&](const ModuleRecord& module) {
        return module.file == file && (!file.empty() || module.name == name);
    });
    const auto index = static_cast<std::size_t>(found - record_.modules.begin());
    if (found == record_.modules.end()) record_.modules.push_back({file, name, {}, {}});
    if (!name.empty()) record_.modules[index].name = name;
    return index;
}

void Recorder::TskStepBegin(eTskStep step, TskKoraModule* module, const char* file) {
    const char* const name = module != nullptr ? module->TskKoraName() : nullptr;
    const std::size_t index = moduleIndex(file, name != nullptr ? name : "");
    open_.push_back({static_cast<std::size_t>(step), index, Clock::now()});
}

void Recorder::TskStepEnd(eTskStepResult result, const char* reason) {
    if (open_.empty()) return;
    const Open ended = open_.back();
    const std::int64_t time = microsecondsSince(ended.begin);
    open_.pop_back();
    std::optional<StepRecord>& step = record_.modules[ended.module].steps[ended.step];
    if (!step) step.emplace();
    step->result = result;
    step->microseconds += time;
    step->reason = reason;
}

}  // namespace kora::host
