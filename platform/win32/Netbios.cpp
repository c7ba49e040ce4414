#include "platform/win32/Netbios.h"

#include <kora/Net.h>

#include "platform/NetbiosCodes.h"
#include "platform/win32/Win32.h"

#include <nb30.h>

#include <cstddef>
#include <mutex>
#include <new>
#include <unordered_map>
#include <utility>

namespace kora::platform {

namespace {

#define SAME_PLACE(field) \
    static_assert(offsetof(NetNcb, field) == offsetof(NCB, field) && sizeof(NetNcb::field) == sizeof(NCB::field))
SAME_PLACE(ncb_command);
SAME_PLACE(ncb_retcode);
SAME_PLACE(ncb_lsn);
SAME_PLACE(ncb_num);
SAME_PLACE(ncb_buffer);
SAME_PLACE(ncb_length);
SAME_PLACE(ncb_callname);
SAME_PLACE(ncb_name);
SAME_PLACE(ncb_rto);
SAME_PLACE(ncb_sto);
SAME_PLACE(ncb_post);
SAME_PLACE(ncb_lana_num);
SAME_PLACE(ncb_cmd_cplt);
SAME_PLACE(ncb_reserve);
SAME_PLACE(ncb_event);
#undef SAME_PLACE
static_assert(sizeof(NetNcb) == 64 && sizeof(NCB) == 64);

using PostRoutine = void (*)(NetNcb*);

struct Driver {
    std::mutex mutex;
    std::unordered_map<NetNcb*, PostRoutine> underWay;
    std::mutex resetting;
    bool ready[256] = {};  // adapters that have been reset
};

/// Never destroyed: the system may post until the process has ended.
Driver& driver() {
    alignas(Driver) static constinit std::byte room[sizeof(Driver)] = {};
    static Driver* const made = new (room) Driver;
    return *made;
}

SystemNetbios load() {
    const HMODULE library = LoadLibraryA("netapi32.dll");
    return library ? reinterpret_cast<SystemNetbios>(reinterpret_cast<void*>(GetProcAddress(library, "Netbios")))
                   : nullptr;
}

SystemNetbios& systemNetbios() {
    static SystemNetbios function = load();
    return function;
}

unsigned char refuse(NetNcb& block, unsigned char code) { return block.ncb_retcode = block.ncb_cmd_cplt = code; }

// ---- adapters --------------------------------------------------------------------------------------------------

/// The system lets a process use an adapter once it has reset it. A reset that fails is tried again with the next
/// command, since the adapter may only come up later; the command goes out nevertheless, and says what is wrong.
void makeReady(SystemNetbios netbios, unsigned char number) {
    const std::lock_guard lock(driver().resetting);
    if (driver().ready[number]) return;
    NetNcb block = {};
    block.ncb_command = NCBRESET;
    block.ncb_lana_num = number;
    driver().ready[number] = netbios(&block) == NRC_GOODRET;
}

void setReady(unsigned char number, bool ready) {
    const std::lock_guard lock(driver().resetting);
    driver().ready[number] = ready;
}

/// An adapter that went away needs a reset when it is back, and the names that it had are gone.
void forgetLost(unsigned char number, unsigned char code) {
    if (code == NRC_ENVNOTDEF || code == NRC_BRIDGE) setReady(number, false);
}

// ---- post routines ---------------------------------------------------------------------------------------------

bool enter(NetNcb& block) try {
    const std::lock_guard lock(driver().mutex);
    driver().underWay.insert_or_assign(&block, block.ncb_post);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

/// Null when the block is not under way.
PostRoutine remove(NetNcb& block) {
    const std::lock_guard lock(driver().mutex);
    const auto found = driver().underWay.extract(&block);
    return found ? found.mapped() : nullptr;
}

void CALLBACK completed(NetNcb* block) {
    const PostRoutine routine = remove(*block);
    if (!routine) return;
    forgetLost(block->ncb_lana_num, block->ncb_retcode);
    block->ncb_post = routine;
    routine(block);  // the block may be gone now
}

/// The routine that stands in the block while the system has it.
PostRoutine systemsRoutine() { return reinterpret_cast<PostRoutine>(reinterpret_cast<void*>(&completed)); }

/// With a post routine the block may be gone when this returns 0: its routine can have been called by then.
unsigned char executeWithPost(SystemNetbios netbios, NetNcb& block) {
    const PostRoutine routine = block.ncb_post;
    if (!enter(block)) return refuse(block, NRC_NORES);
    block.ncb_post = systemsRoutine();
    const unsigned char code = netbios(&block);
    // Whoever takes the block out of the table ends it: a code that comes after the routine was called says nothing.
    if (code == NRC_GOODRET || !remove(block)) return NRC_GOODRET;
    block.ncb_post = routine;
    return refuse(block, code);
}

}  // namespace

SystemNetbios systemNetbiosSet(SystemNetbios replacement) { return std::exchange(systemNetbios(), replacement); }

SharedBlock Network::allocate(std::size_t size) {
    const HGLOBAL handle = GlobalAlloc(GMEM_SHARE | GMEM_ZEROINIT, size);
    if (!handle) return {};
    void* const memory = GlobalLock(handle);
    if (!memory) {
        GlobalFree(handle);
        return {};
    }
    return {memory, reinterpret_cast<std::uintptr_t>(handle)};
}

void Network::release(const SharedBlock& block) {
    const auto handle = reinterpret_cast<HGLOBAL>(block.handle);
    GlobalUnlock(handle);
    GlobalFree(handle);
}

unsigned char Network::execute(NetNcb& block, NetworkSettings (*)()) {
    const SystemNetbios netbios = systemNetbios();
    if (!netbios) return refuse(block, netbios::code::kNotLoaded);
    const unsigned char number = block.ncb_lana_num;
    const unsigned char command = block.ncb_command & static_cast<unsigned char>(~ASYNCH);
    // A reset with a session number gives the adapter back.
    const bool resets = command == NCBRESET, allocates = block.ncb_lsn == 0;
    if (!resets && command != NCBENUM && command != NCBCANCEL) makeReady(netbios, number);

    unsigned char code;
    if (block.ncb_command & ASYNCH && block.ncb_post) {
        code = executeWithPost(netbios, block);
    } else {
        code = netbios(&block);
        if (code != NRC_GOODRET) refuse(block, code);  // which not every system has written there
    }
    if (resets && code == NRC_GOODRET) setReady(number, allocates);
    forgetLost(number, code);
    return code;
}

// The first command of the next life resets its adapter, which releases the names that are left.
void networkStop() {
    const std::lock_guard lock(driver().resetting);
    for (bool& ready : driver().ready) ready = false;
}

}  // namespace kora::platform
