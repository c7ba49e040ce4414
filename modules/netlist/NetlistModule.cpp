#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Str.h>
#include <kora/Tsk.h>

#include <new>

#include "BlifReader.h"
#include "Report.h"
#include "Request.h"
#include "SignalTable.h"
#include "TableFile.h"

namespace {

// Numbers of this module's errors; -2 is the library's own for memory that ran out.
constexpr long kBadNetlist = 1;
constexpr long kOutOfMemory = -2;

/// Option `-net FILE`: reads a netlist and prints what is in it; `-tsv FILE`, `-csv FILE` and `-html FILE` behind it
/// write the table of its signals. What is wrong is shown in one line, and makes the program's exit code 1.
class NetlistModule : public TskKoraModule {
    using TskKoraModule::TskKoraModule;

public:
    bool TskInit1() override { return listen(true); }

    void TskExit1() override { listen(false); }

    bool TskErrHandler() override {
        if (complaint_.empty()) return false;
        MsgAlert(MsgIconExclamation, MsgButtonOk, 1, "Netlist", "%s", complaint_.c_str());
        complaint_.clear();
        return true;
    }

private:
    bool listen(bool on) {
        const long self = reinterpret_cast<long>(this);
        bool heard = TskRequestCmdLineNotify(netlist::kNetOption, optionGiven, self, on);
        for (const netlist::Format& format : netlist::formats())
            heard = TskRequestCmdLineNotify(format.option, optionGiven, self, on) && heard;
        return heard;
    }

    static bool optionGiven(long, long, long module, long, long arguments) {
        reinterpret_cast<NetlistModule*>(module)->takeNextOption(*reinterpret_cast<const CStringArray*>(arguments));
        return true;
    }

    // Called once for each of our options among the arguments, in their order.
    void takeNextOption(const CStringArray& arguments) {
        const std::size_t place = netlist::findOption(arguments, nextArgument_);
        nextArgument_ = netlist::findOption(arguments, place + 1) < arguments.size() ? place + 1 : 0;
        try {
            const netlist::Request request = netlist::requestAt(arguments, place);
            if (!request.complaint.empty())
                complain(request.complaint, 0);
            else if (!request.netlist.empty())
                fulfil(request);
        } catch (const std::bad_alloc&) {
            complaint_.clear();
            fail(kOutOfMemory, 0);
        }
    }

    // Nothing is printed or written before everything that is asked for has been made.
    void fulfil(const netlist::Request& request) {
        FilePath file(request.netlist.c_str());
        std::vector<netlist::Model> models;
        netlist::Complaint complaint;
        if (!netlist::readBlif(file, this, models, complaint)) {
            const CString where = complaint.line == 0 ? "" : ':' + std::to_string(complaint.line);
            complain(request.netlist + where + ": " + complaint.text, complaint.line);
            return;
        }
        CStringArray rendered;
        if (!request.tables.empty() && !makeTables(request, models, file.FileFullNameGet(), rendered)) return;
        for (const netlist::Model& model : models)
            for (const CString& line : netlist::report(model)) Strprintf("%s\n", line.c_str());
        for (std::size_t i = 0; i < rendered.size(); ++i) {
            const CString& name = request.tables[i].file;
            const CString reason = netlist::writeTableFile(name, rendered[i]);
            if (!reason.empty()) complain(name + ": " + reason, 0);
        }
    }

    bool makeTables(const netlist::Request& request, const std::vector<netlist::Model>& models, const CString& title,
                    CStringArray& rendered) {
        const std::size_t signals = netlist::signalCount(models);
        if (signals > netlist::kMostSignals) {
            complain(request.netlist + ": " + std::to_string(signals) +
                         " signals are too many for a table, which has " + std::to_string(netlist::kMostSignals) +
                         " rows at most",
                     0);
            return false;
        }
        ShtSheet sheet(this, nullptr, 0);
        if (!netlist::fillSignalTable(sheet, models)) throw std::bad_alloc();
        for (const netlist::Request::Table& table : request.tables) {
            CString reason;
            if (table.format->render(sheet, title, rendered.emplace_back(), reason)) continue;
            complain(table.file + ": " + reason, 0);
            return false;
        }
        return true;
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
