#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Str.h>
#include <kora/Tsk.h>

#include <new>

#include "BlifReader.h"
#include "Report.h"

namespace {

constexpr const char* kOption = "net";

// Numbers of this module's errors; -2 is the library's own for memory that ran out.
constexpr long kBadNetlist = 1;
constexpr long kOutOfMemory = -2;

/// Option `-net FILE`: reads a netlist and prints what is in it. What is wrong with the file is shown in one line, and
/// makes the program's exit code 1.
class NetlistModule : public TskKoraModule {
    using TskKoraModule::TskKoraModule;

public:
    bool TskInit1() override {
        return TskRequestCmdLineNotify(kOption, optionGiven, reinterpret_cast<long>(this), true);
    }

    void TskExit1() override { TskRequestCmdLineNotify(kOption, optionGiven, reinterpret_cast<long>(this), false); }

    bool TskErrHandler() override {
        if (complaint_.empty()) return false;
        MsgAlert(MsgIconExclamation, MsgButtonOk, 1, "Netlist", "%s", complaint_.c_str());
        complaint_.clear();
        return true;
    }

private:
    static bool optionGiven(long, long, long module, long, long arguments) {
        reinterpret_cast<NetlistModule*>(module)->takeNextOption(*reinterpret_cast<const CStringArray*>(arguments));
        return true;
    }

    // Called once for each of our options among the arguments, in their order.
    void takeNextOption(const CStringArray& arguments) {
        const std::size_t place = findOption(arguments, nextArgument_);
        const std::size_t file = place + 1;
        nextArgument_ = findOption(arguments, file) < arguments.size() ? file : 0;
        try {
            if (file < arguments.size() && !arguments[file].empty())
                show(arguments[file]);
            else
                complain("-net needs the name of a netlist file", 0);
        } catch (const std::bad_alloc&) {
            complaint_.clear();
            fail(kOutOfMemory, 0);
        }
    }

    static bool isOption(const CString& argument) {
        return (argument.starts_with('-') || argument.starts_with('/')) &&
               argument.compare(1, CString::npos, kOption) == 0;
    }

    static std::size_t findOption(const CStringArray& arguments, std::size_t place) {
        while (place < arguments.size() && !isOption(arguments[place])) ++place;
        return place;
    }

    void show(const CString& name) {
        FilePath file(name.c_str());
        std::vector<netlist::Model> models;
        netlist::Complaint complaint;
        if (!netlist::readBlif(file, this, models, complaint)) {
            const CString where = complaint.line == 0 ? name : name + ':' + std::to_string(complaint.line);
            complain(where + ": " + complaint.text, complaint.line);
            return;
        }
        for (const netlist::Model& model : models)
            for (const CString& line : netlist::report(model)) Strprintf("%s\n", line.c_str());
    }

    void complain(const CString& text, long line) {
        complaint_ = text;
        fail(kBadNetlist, line);
    }

    void fail(long number, long line) {
        ErrReport();  // an error that waits is shown first, or ours would be dropped
        ErrSet(this, number, line, nullptr);
        ErrReport();
        TskExitCodeSet(1);
    }

    CString complaint_;
    std::size_t nextArgument_ = 0;
};

}  // namespace

KORA_MODULE(NetlistModule, "netlist", KORA_NO_STRINGS)
