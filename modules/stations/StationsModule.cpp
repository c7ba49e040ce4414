#include <kora/Err.h>
#include <kora/Ini.h>
#include <kora/Tsk.h>

#include <memory>
#include <new>

#include "Request.h"
#include "Station.h"

namespace {

// Numbers of this module's errors; -2 is the library's own for memory that ran out.
constexpr long kNotDone = 1;
constexpr long kOutOfMemory = -2;

constexpr IniKnownKey kSettings[] = {
    {eIniMain, "Stations", "Announce", IniKindInt, "5", "seconds between two announcements, 1 to 300"},
};

/// Option `-peer GROUP`: joins a group of stations and shows who is there; the other options say what else to do there.
/// What goes wrong is shown in one line, and makes the program's exit code 1.
class StationsModule : public TskKoraModule {
    using TskKoraModule::TskKoraModule;

public:
    bool TskInit1() override {
        IniKnownKeysSet(kSettings, 1, true);
        return listen(true);
    }

    void TskExit1() override {
        listen(false);
        IniKnownKeysSet(kSettings, 1, false);
        station_.reset();
    }

    bool TskErrHandler() override {
        if (complaint_.empty()) return false;
        MsgAlert(MsgIconExclamation, MsgButtonOk, 1, "Stations", "%s", complaint_.c_str());
        complaint_.clear();
        return true;
    }

private:
    bool listen(bool on) {
        bool heard = true;
        for (const char* name : stations::optionNames())
            heard = TskRequestCmdLineNotify(name, optionGiven, reinterpret_cast<long>(this), on) && heard;
        return heard;
    }

    static bool optionGiven(long, long, long module, long, long arguments) {
        reinterpret_cast<StationsModule*>(module)->takeOption(*reinterpret_cast<const CStringArray*>(arguments));
        return true;
    }

    // Called once for each of our options among the arguments; all of them are followed at the first.
    void takeOption(const CStringArray& arguments) {
        if (optionsLeft_ != 0) {
            --optionsLeft_;
            return;
        }
        optionsLeft_ = stations::optionCount(arguments) - 1;
        try {
            if (!station_)
                station_ = std::make_unique<stations::Station>([this](const CString& text) { complain(text); });
            const stations::Request request = stations::requestIn(arguments, station_->group());
            if (request.complaint.empty())
                station_->follow(request);
            else
                complain(request.complaint);
        } catch (const std::bad_alloc&) {
            complaint_.clear();
            fail(kOutOfMemory);
        }
    }

    void complain(const CString& text) {
        complaint_ = text;
        fail(kNotDone);
    }

    void fail(long number) {
        ErrReport();  // an error that waits is shown first, or ours would be dropped
        ErrSet(this, number, 0, nullptr);
        ErrReport();
        TskExitCodeSet(1);
    }

    std::unique_ptr<stations::Station> station_;
    CString complaint_;
    std::size_t optionsLeft_ = 0;
};

}  // namespace

KORA_MODULE(StationsModule, "stations", KORA_NO_STRINGS)
