#include "tasks/Mailbox.h"

#include <kora/Tsk.h>

#include <new>

#include "platform/Platform.h"
#include "tasks/ApplicationState.h"
#include "tasks/Running.h"

namespace kora {

namespace {

struct Mailbox {
    std::uint32_t id;
    MailboxHandler handler;
    void* context;
    Mailbox* next;
};

struct Mailboxes {
    Mailbox* first;
    std::uint32_t lastId;
    bool started;
};

constinit Mailboxes mailboxes{};

Mailbox* mailbox(std::uint32_t id) {
    Mailbox* box = mailboxes.first;
    while (box != nullptr && box->id != id) box = box->next;
    return box;
}

// Numbers are not used again while an old message may still carry them: only after all 32 bits of them.
std::uint32_t unusedId() {
    do ++mailboxes.lastId;
    while (mailboxes.lastId == kQuitMailbox || mailbox(mailboxes.lastId) != nullptr);
    return mailboxes.lastId;
}

void deliver(std::uint32_t receiver, std::uintptr_t value) {
    try {
        if (receiver == kQuitMailbox) {
            TskGetApp()->TskAppQuit();
        } else if (const Mailbox* box = mailbox(receiver)) {
            box->handler(box->context, value);
        }
    } catch (...) {
        exceptionNote("Exception in TskMessagePump");
    }
}

}  // namespace

bool mailboxesStart() {
    if (!mailboxes.started) mailboxes.started = platform::messagesStart(deliver);
    return mailboxes.started;
}

void mailboxesStop() {
    if (mailboxes.started) platform::messagesStop();
    mailboxes.started = false;
}

std::uint32_t mailboxOpen(MailboxHandler handler, void* context) {
    if (!mailboxesStart()) return 0;
    Mailbox* box = new (std::nothrow) Mailbox{unusedId(), handler, context, mailboxes.first};
    if (box == nullptr) return 0;
    mailboxes.first = box;
    return box->id;
}

void mailboxClose(std::uint32_t id) {
    for (Mailbox** link = &mailboxes.first; *link != nullptr; link = &(*link)->next) {
        if ((*link)->id != id) continue;
        Mailbox* closed = *link;
        *link = closed->next;
        delete closed;
        return;
    }
}

bool mailboxPost(std::uint32_t id, std::uintptr_t value) { return platform::messagesPost(id, value); }

}  // namespace kora

int TskMessagePump() {
    const kora::Running running;
    return kora::mailboxesStart() ? kora::platform::messagesPump(PreTranslateMessage) : 0;
}

void TskQuitRequest() {
    kora::mailboxesStart();
    kora::mailboxPost(kora::kQuitMailbox, 0);
}

bool TskInterruptsAsQuit(bool on) { return kora::mailboxesStart() && kora::platform::interruptsToMessages(on); }
