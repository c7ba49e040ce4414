#include "platform/win32/Netbios.h"

#include <kora/Net.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <future>

#include "platform/Platform.h"
#include "tests/support/AllocationFault.h"

namespace {

using namespace kora::platform;

std::vector<int> seen, calls(600);
unsigned char (*answer)(NetNcb*);

template <int By>
void count(NetNcb* block) {
    calls[block->ncb_length] += block->ncb_post == count<By> ? By : 1000;
    delete block;
}

NetNcb make(unsigned char command, unsigned char adapter, void (*post)(NetNcb*) = nullptr, unsigned short length = 0) {
    return {command, 0, 0, 0, nullptr, length, {'*'}, {}, 0, 0, post, adapter, 0, {}, nullptr};
}

unsigned char execute(NetNcb block) { return network().execute(block, nullptr); }

// As the system calls what it finds in a block.
unsigned char complete(NetNcb* block, unsigned char code) {
    block->ncb_retcode = code;
    reinterpret_cast<void(__stdcall*)(NetNcb*)>(reinterpret_cast<void*>(block->ncb_post))(block);
    return code;
}

unsigned char __stdcall scripted(NetNcb* block) {
    seen.push_back(block->ncb_lana_num * 256 + block->ncb_command);
    return answer(block);
}

TEST(Netbios, ResetsAnAdapterBeforeItsFirstCommand) {
    const SystemNetbios before = systemNetbiosSet(scripted);
    networkStop();
    answer = [](NetNcb* block) -> unsigned char { return block->ncb_command & 0x80 ? complete(block, 0x23) : 0; };
    for (const unsigned char command : {'\x37', '\x35', '\x7F', '\x33'}) execute(make(command, 255));
    networkStop();
    NetNcb back = make(0x32, 255);
    back.ncb_lsn = 1;
    for (const NetNcb& block : {make(0x33, 255), make(0x32, 0), make(0x33, 0), back, make(0x33, 255)}) execute(block);
    // again where an adapter has gone, whoever hears of it, or could not be reset
    EXPECT_EQ(execute(make(0xB3, 0, [](NetNcb*) {})), 0);
    answer = [](NetNcb* block) -> unsigned char { return block->ncb_command == 0x32 ? 0x35 : 0x34; };
    EXPECT_TRUE(execute(make(0x33, 0)) == 0x34 && execute(make(0x33, 0)) == 0x34);
    EXPECT_EQ(seen, (std::vector{0xFF37, 0xFF35, 0xFF32, 0xFF7F, 0xFF33, 0xFF32, 0xFF33, 0x32, 0x33, 0xFF32, 0xFF32,
                                 0xFF33, 0xB3, 0x32, 0x33, 0x32, 0x33}));
    systemNetbiosSet(before);
}

// Blocks are freed by their routines; one that is refused is its issuer's as before, but not once it was posted.
TEST(Netbios, CallsEachRoutineOnceWithItsOwnBlock) {
    static std::vector<NetNcb*> waiting;
    answer = [](NetNcb* block) -> unsigned char {
        const int turn = block->ncb_command == 0x32 ? 4 : block->ncb_length % 4;
        if (turn == 0) waiting.push_back(block);
        return turn == 1 ? complete(block, 0) : turn == 2 ? complete(block, 0x22) : turn == 3 ? 0x22 : 0;
    };
    const SystemNetbios before = systemNetbiosSet(nullptr);
    for (unsigned short i = 0; i < 600; ++i) {
        auto* const block = new NetNcb(make(0xA1, 0, i % 2 ? count<1> : count<10>, i));
        systemNetbiosSet(i % 9 == 8 ? nullptr : scripted);
        const kora::test::AllocationFault memory(i % 9 == 7 ? 1 : 0);
        const unsigned char code = network().execute(*block, nullptr);
        EXPECT_TRUE(i % 9 == 8 ? code == 251 : i % 9 == 7 ? code == 9 : code == 0 || code == 0x22) << i;
        if (code != 0 && block->ncb_retcode == code && block->ncb_cmd_cplt == code) block->ncb_post(block);
    }
    systemNetbiosSet(before);
    for (; !waiting.empty(); waiting.pop_back()) complete(waiting.back(), 0);
    for (std::size_t i = 0; i < 600; ++i) EXPECT_EQ(calls[i], i % 2 ? 1 : 10) << i;
}

// A machine without a network has no adapter; asking one's own for its status sends nothing.
TEST(Netbios, IsTheSystems) {
    networkStop();
    for (const unsigned char number : {'\0', '\1', '\2', '\3', '\xFF'}) {
        static std::promise<int> posted;
        posted = {};
        unsigned char status[348] = {};
        NetNcb block = make(0xB3, number, nullptr, sizeof status);
        block.ncb_post = [](NetNcb* done) { posted.set_value(done->ncb_retcode); };
        std::fill_n(block.ncb_callname + 1, 15, ' ');
        block.ncb_buffer = status;
        const unsigned char code = network().execute(block, nullptr);
        EXPECT_TRUE(code == 0 ? posted.get_future().get() == 0 && status[6] != 0 : code == 0x23) << int{code};
        EXPECT_EQ(execute(make(0x7F, number)), code == 0 ? 3 : 0x23);
    }
    EXPECT_EQ(registeredComputerName(), std::getenv("COMPUTERNAME"));
}

}  // namespace
