#include <kora/Net.h>
#include <kora/Tsk.h>

#include <new>

#include "net/Codes.h"
#include "net/ErrorTexts.h"

OurNetBIOS::OurNetBIOS(unsigned long instance) : NetBIOS(instance) {}

void OurNetBIOS::GroupNameAdded(unsigned short code) {
    if (owner != nullptr) owner->NetGroupNameAddResult(code);
}

void OurNetBIOS::DatagramSent(unsigned short code, void* data, short length) {
    if (owner != nullptr) owner->NetDatagramSendResult(code, data, length);
}

void OurNetBIOS::DatagramReceived(unsigned short code, void* data, short length) {
    if (owner != nullptr) owner->NetDatagramReceive(code, data, length);
}

NetPeer::NetPeer() : netBIOS_(new (std::nothrow) OurNetBIOS(TskGetOurInstance())) {
    if (netBIOS_ != nullptr) netBIOS_->owner = this;
}

NetPeer::~NetPeer() { delete netBIOS_; }

unsigned short NetPeer::NetIsAvailable() {
    return netBIOS_ != nullptr ? netBIOS_->AdapterFind() : kora::net::kNoMemory;
}

unsigned short NetPeer::NetGroupNameAdd(const char* name) {
    return netBIOS_ != nullptr ? netBIOS_->GroupNameAdd(name) : kora::net::kNoMemory;
}

unsigned short NetPeer::NetGroupNameDelete() {
    return netBIOS_ != nullptr ? netBIOS_->GroupNameDelete() : kora::net::kNoName;
}

const char* NetPeer::NetGroupNameGet() {
    static constexpr char kNone[kora::net::kNameSize + 1] = {};
    return netBIOS_ != nullptr ? netBIOS_->GroupNameGet() : kNone;
}

unsigned short NetPeer::NetDatagramSend(void* data, short length) {
    return netBIOS_ != nullptr ? netBIOS_->DatagramSend(data, length) : kora::net::kNotSent;
}

const char* NetPeer::NetMapError(unsigned short code) {
    return netBIOS_ != nullptr ? netBIOS_->MapError(code) : kora::netErrorText(code);
}

void NetPeer::NetStatusDialog() {
    if (netBIOS_ != nullptr) netBIOS_->StatusShow();
}

void NetPeer::NetGroupNameAddResult(unsigned short) {}

void NetPeer::NetDatagramSendResult(unsigned short, void*, short) {}

void NetPeer::NetDatagramReceive(unsigned short, void*, short) {}

CString NetPeer::NetStatusText() { return netBIOS_ != nullptr ? netBIOS_->StatusText() : CString(); }

NetBIOS* NetPeer::NetBIOSGet() { return netBIOS_; }
