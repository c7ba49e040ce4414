#include <kora/Err.h>
#include <kora/Ini.h>
#include <kora/Str.h>
#include <kora/Tmr.h>
#include <kora/Tsk.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <new>
#include <string_view>

#include "PulseEvents.h"
#include "PulseStrings.h"

namespace {

// A number of this module's errors, for whoever reads a report.
constexpr long kBadCount = 1;

// An option has four characters at most.
constexpr char kOption[] = "puls";
constexpr int kMostBeats = 1000;

// What IniCheck() and the diagnostics know of this module's settings.
constexpr IniKnownKey kSettings[] = {
    {eIniMain, "Pulse", "Interval", IniKindInt, "1000", "milliseconds between two beats"},
    {eIniState, "Pulse", "Beats", IniKindInt, "", "how many beats there were in the last run"},
};

// The broadcasts, while the module is there.
constinit NotNotify* broadcasts = nullptr;

/// Option `-puls COUNT`: so many beats, each after the time that setting "Interval" of section "Pulse" says. Other
/// modules hear of each beat, and the user of the last one. What is wrong is shown in one line, and makes the program's
/// exit code 1.
class PulseModule : public TskKoraModule {
    using TskKoraModule::TskKoraModule;

public:
    // The first phase sets up what is this module's own. Look for other modules in TskInit2() or later: all of them
    // have been through the first phase then.
    bool TskInit1() override {
        if (!TskRequestCmdLineNotify(kOption, optionGiven, reinterpret_cast<long>(this), true)) return false;
        IniKnownKeysSet(kSettings, static_cast<int>(std::size(kSettings)), true);
        broadcasts = &notify_;
        return true;
    }

    // The other way round: here nothing more is begun, and other modules are let go of.
    void TskExit1() override {
        if (left_ > 0) timer_.TmrStop();
        TskRequestCmdLineNotify(kOption, optionGiven, reinterpret_cast<long>(this), false);
        if (beats_ > 0) IniSetInt(eIniState, "Pulse", "Beats", beats_);
        IniKnownKeysSet(kSettings, static_cast<int>(std::size(kSettings)), false);
    }

    // Everybody has detached.
    void TskExit2() override { broadcasts = nullptr; }

    // Shows an error of this module's in the module's own words.
    bool TskErrHandler() override {
        if (complaint_ == 0) return false;
        show(MsgIconExclamation, complaint_, kMostBeats);
        complaint_ = 0;
        return true;
    }

private:
    // A member's timer belongs to the module and is not deleted by the library.
    struct Timer : TmrTimer {
        explicit Timer(PulseModule& module) : TmrTimer(TmrTypeTimed, OwnedElsewhere()), module_(module) {}
        // False: the timer stays. It does not start again by itself.
        bool TmrExpiry() override { return module_.beat(), false; }
        PulseModule& module_;
    };

    static bool optionGiven(long, long, long module, long, long arguments) {
        reinterpret_cast<PulseModule*>(module)->takeOption(*reinterpret_cast<const CStringArray*>(arguments));
        return true;  // and hear of the next one
    }

    // Called once for each time that the option is among the arguments; the last one counts.
    void takeOption(const CStringArray& arguments) {
        std::string_view text;
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            const std::string_view argument = arguments[i];
            if (argument.size() > 1 && (argument[0] == '-' || argument[0] == '/') && argument.substr(1) == kOption)
                text = i + 1 < arguments.size() ? std::string_view(arguments[i + 1]) : std::string_view();
        }
        int count = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
        if (error != std::errc() || end != text.data() + text.size() || count < 1 || count > kMostBeats)
            complain(kBadCount, PULSE_STRING_COUNT);
        else
            begin(count);
    }

    void begin(int count) {
        int interval = 0;
        IniGetInt(eIniMain, "Pulse", "Interval", 1000, interval);
        timer_.TmrIntervalSet(static_cast<unsigned long>(std::max(1, interval)));
        left_ = count;
        beats_ = 0;
        timer_.TmrStart();
    }

    void beat() {
        ++beats_;
        --left_;
        notify_.Notify(0, 0, left_ > 0 ? PulseBeat : PulseBeat | PulseDone, beats_, /*stopOnTrue=*/false);
        if (left_ > 0)
            timer_.TmrStart();
        else
            show(MsgIconInformation, PULSE_STRING_DONE, beats_);
    }

    void complain(long number, int string) {
        ErrReport();  // an error that waits is shown first, or ours would be dropped
        complaint_ = string;
        ErrSet(this, number, 0, nullptr);
        ErrReport();
        TskExitCodeSet(1);
    }

    void show(eMsgIcon icon, int string, int number) {
        char* format = StrRes(this, string);
        if (format != nullptr) MsgAlert(icon, MsgButtonOk, 1, "Pulse", format, number);
        ::operator delete(format);
    }

    NotNotify notify_;
    Timer timer_{*this};
    int left_ = 0;
    int beats_ = 0;
    int complaint_ = 0;  // the string that says what is wrong; 0 when nothing is
};

}  // namespace

extern "C" KORA_MODULE_EXPORT NotNotify* PulseNotifyGet() { return broadcasts; }

KORA_MODULE(PulseModule, "pulse", PULSE_STRINGS)
