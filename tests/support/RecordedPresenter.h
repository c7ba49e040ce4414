#pragma once

#include <kora/Err.h>

#include <string>
#include <vector>

namespace kora::test {

/// Keeps what the user would have been told or asked while it lives, and gives the answers set here.
class RecordedPresenter : public MsgPresenter {
public:
    struct Shown {
        std::string text;
        unsigned style = 0;
    };

    RecordedPresenter() : before_(MsgPresenterSet(this)) {}
    ~RecordedPresenter() override { MsgPresenterSet(before_); }

    int Alert(const char* text, unsigned style) override {
        alerts.push_back({text, style});
        return answer;
    }
    int ContinueAlert(const char* text) override {
        continueAlerts.emplace_back(text);
        return answer;
    }
    void ErrorDialog(const char* text, bool& suppress) override {
        errors.emplace_back(text);
        suppress = suppressNext;
    }
    void Progress(const char* text) override { progress.emplace_back(text); }
    bool ChooseFile(MsgFileChoice& choice) override {
        asked.push_back(choice);
        if (chosen.empty()) return false;
        choice.path = chosen;
        return true;
    }
    bool ChooseDirectory(const char* prompt, CString& path) override {
        asked.push_back({prompt, "", path, false});
        if (chosen.empty()) return false;
        path = chosen;
        return true;
    }
    void Beep() override { ++beeps; }

    int answer = 1;  ///< what alerts answer; 1 is OK
    bool suppressNext = false;
    std::string chosen;  ///< what choosers answer; empty cancels
    std::vector<Shown> alerts;
    std::vector<std::string> continueAlerts, errors, progress;
    std::vector<MsgFileChoice> asked;
    int beeps = 0;

private:
    MsgPresenter* before_;
};

}  // namespace kora::test
