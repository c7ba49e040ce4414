#include <kora/Err.h>
#include <kora/Net.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "core/Presenter.h"
#include "net/Codes.h"
#include "net/Command.h"
#include "net/Driver.h"
#include "net/ErrorTexts.h"
#include "net/StatusPage.h"
#include "strings/Guarded.h"

namespace {

using namespace kora::net;

constexpr short kAdaptersProbed = 4;
constexpr short kAdaptersShown = 2;
constexpr unsigned kInformation = 0x40;  // the style of an alert

/// Copies a name, padded with blanks; null is the empty one.
void copyName(unsigned char* to, const char* name) {
    std::memset(to, ' ', kNameSize);
    for (int i = 0; name != nullptr && i < kNameSize && name[i] != '\0'; ++i)
        to[i] = static_cast<unsigned char>(name[i]);
}

// Codes by which an adapter says that it is there, and that it does not know the command.
bool answers(unsigned char code) {
    return code == code::kIllegalCommand || (code >= 0x40 && code <= 0x4E) || (code >= 0x50 && code <= 0xFD);
}

/// Asks an adapter for its status; @p status is filled where it answers 0.
unsigned short askStatus(kora::NetCommand& command, short number, unsigned char (&status)[kStatusSize]) {
    command.block = {};
    command.block.ncb_command = command::kAdapterStatus;
    command.block.ncb_lana_num = static_cast<unsigned char>(number);
    copyName(command.block.ncb_callname, "*");
    if (!kora::netDataMake(command, kStatusSize)) return kNoMemory;
    const unsigned char code = kora::netDriverCall(command.block);
    if (code == 0) std::memcpy(status, command.data.memory, kStatusSize);
    kora::netDataFree(command);
    return code;
}

}  // namespace

NetBIOS::NetBIOS(unsigned long instance)
    : adapter(-1),
      postRoutine(kora::netCommandPost),
      callbackWindow(0),
      groupName{},
      nameNumber(0),
      counters{},
      adapterStatus{},
      owner(nullptr) {
    if (const std::uint32_t box = kora::netCompletionBox(); box != 0)
        callbackWindow = kora::platform::statusWindowOpen(instance, box, kora::NetStatusPage::of, this);
}

NetBIOS::~NetBIOS() {
    kora::netCommandsOrphan(*this);
    if (callbackWindow != 0) kora::platform::statusWindowClose(callbackWindow);
    for (unsigned char* status : adapterStatus) delete[] status;
}

const char* NetBIOS::MapError(unsigned short code) { return kora::netErrorText(code); }

void NetBIOS::StatusShow() {
    AdapterFind();  // whose answer is 0 too where the last adapter is none
    if (adapter >= 0)
        for (short number = 0; number < kAdaptersShown; ++number) statusRefresh(number);
    if (callbackWindow == 0 || !kora::platform::statusWindowShow(callbackWindow))
        kora::presenter().Alert(StatusText().c_str(), kInformation);
}

unsigned short NetBIOS::AdapterFind() {
    if (postRoutine == nullptr) return kNoPostRoutine;
    if (callbackWindow == 0) return kNoWindow;
    if (adapter >= 0) return 0;
    kora::NetCommand* const probe = kora::netCommandMake(*this, counters, callbackWindow, 0);
    if (probe == nullptr) return kNoMemory;
    unsigned short result = 0;
    for (short number = 0; number < kAdaptersProbed && adapter < 0 && result != kNoMemory; ++number) {
        probe->block = {};
        probe->block.ncb_command = command::kInvalid;
        probe->block.ncb_lana_num = static_cast<unsigned char>(number);
        const unsigned char code = kora::netDriverCall(probe->block);
        result = code;
        if (!answers(code)) continue;
        unsigned char status[kStatusSize];
        result = askStatus(*probe, number, status);
        // An adapter without a revision is none.
        if (result == 0 && status[kStatusRevision] != 0) adapter = number;
    }
    kora::netCommandFree(*probe);
    return result;
}

const char* NetBIOS::GroupNameGet() { return groupName; }

unsigned short NetBIOS::GroupNameAdd(const char* name) {
    if (groupName[0] != '\0') return kNameExists;
    kora::NetCommand* const command = kora::netCommandMake(*this, counters, callbackWindow, 0);
    if (command == nullptr) return kNoMemory;
    copyName(command->block.ncb_name, name);
    commandFill(command->block, command::kAddGroupName);
    unsigned char code = kora::netCommandIssue(*command);
    if (code == code::kDuplicateName) {
        // The name is left over from an earlier object of this program.
        commandFill(command->block, command::kDeleteName);
        command->block.ncb_post = nullptr;
        kora::netDriverCall(command->block);
        commandFill(command->block, command::kAddGroupName);
        code = kora::netCommandIssue(*command);
    }
    if (code != 0) kora::netCommandFree(*command);
    return code;
}

unsigned short NetBIOS::GroupNameDelete() {
    if (groupName[0] == '\0') return kNoName;
    kora::NetCommand* const command = kora::netCommandMake(*this, counters, callbackWindow, 0);
    if (command == nullptr) return kNoMemory;
    std::memcpy(command->block.ncb_name, groupName, kNameSize);
    commandFill(command->block, command::kDeleteName);
    std::memset(groupName, 0, sizeof groupName);
    nameNumber = 0;
    const unsigned char code = kora::netCommandIssue(*command);
    if (code != 0) kora::netCommandFree(*command);
    return code;
}

unsigned short NetBIOS::DatagramSend(void* data, short length) {
    if (length < 0 || length > kLargestDatagram || (data == nullptr && length > 0)) return kNotSent;
    kora::NetCommand* const command =
        kora::netCommandMake(*this, counters, callbackWindow, static_cast<std::size_t>(length));
    if (command == nullptr) return kNotSent;
    if (length > 0) std::memcpy(command->data.memory, data, static_cast<std::size_t>(length));
    command->block.ncb_num = nameNumber;
    std::memcpy(command->block.ncb_callname, groupName, kNameSize);
    commandFill(command->block, command::kSendDatagram);
    const unsigned char code = kora::netCommandIssue(*command);
    if (code != 0) kora::netCommandFree(*command);
    ++counters.datagramsSent;
    return code;
}

void NetBIOS::GroupNameAdded(unsigned short) {}

void NetBIOS::DatagramSent(unsigned short, void*, short) {}

void NetBIOS::DatagramReceived(unsigned short, void*, short) {}

CString NetBIOS::StatusText() {
    CString text;
    kora::guarded([&] { text = kora::NetStatusPage::text(*this); });
    return text;
}

const NetCounters& NetBIOS::CountersGet() { return counters; }

void NetBIOS::commandFill(NetNcb& block, unsigned char code) const {
    block.ncb_command = code;
    block.ncb_lana_num = static_cast<unsigned char>(adapter);
    block.ncb_post = postRoutine;
}

void NetBIOS::statusRefresh(short number) {
    unsigned char*& kept = adapterStatus[number];
    if (kept == nullptr) kept = new (std::nothrow) unsigned char[kStatusSize]();
    if (kept == nullptr) return;
    kora::NetCommand* const command = kora::netCommandMake(*this, counters, callbackWindow, 0);
    if (command == nullptr) return;
    unsigned char status[kStatusSize];
    if (askStatus(*command, number, status) == 0) std::memcpy(kept, status, kStatusSize);
    kora::netCommandFree(*command);
}
