#pragma once

#include <kora/Net.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace kora::test {

/// A driver that does what the test says: takes asynchronous commands and keeps them until they are completed, in any
/// order, or refuses them with the codes put here.
class ScriptedDriver {
public:
    ScriptedDriver() : before_(NetDriverSet(execute)) { current_ = this; }
    ~ScriptedDriver() { NetDriverSet(before_); }

    /// Completes a command that is under way, as the driver's thread does.
    void complete(NetNcb* block, unsigned char code) {
        std::erase(pending, block);
        block->ncb_retcode = block->ncb_cmd_cplt = code;
        block->ncb_post(block);
    }
    /// The first one under way with that command, without the asynchronous bit; null when there is none.
    NetNcb* first(unsigned char command) {
        const auto found =
            std::find_if(pending.begin(), pending.end(), [&](NetNcb* b) { return (b->ncb_command & 0x7F) == command; });
        return found != pending.end() ? *found : nullptr;
    }

    std::vector<NetNcb*> pending;
    std::vector<NetNcb> log;                      ///< every block as it was issued
    std::vector<unsigned char> answers;           ///< the results of the next calls; then 0
    std::string status = std::string(348, '\0');  ///< what a status command gives

private:
    static unsigned char execute(NetNcb* block) {
        ScriptedDriver& self = *current_;
        self.log.push_back(*block);
        unsigned char answer = 0;
        if (!self.answers.empty()) {
            answer = self.answers.front();
            self.answers.erase(self.answers.begin());
        }
        block->ncb_retcode = answer;
        if (answer != 0) return answer;
        if (block->ncb_command == 0x33) std::memcpy(block->ncb_buffer, self.status.data(), block->ncb_length);
        if (block->ncb_command & 0x80) self.pending.push_back(block);
        return 0;
    }

    static inline ScriptedDriver* current_ = nullptr;
    NetDriver before_;
};

/// Knows every block that was allocated and not yet freed, and fails the nth allocation.
class CountedNetwork : public platform::Network {
public:
    CountedNetwork() : before_(platform::networkSet(this)) {}
    ~CountedNetwork() override { platform::networkSet(before_); }

    platform::SharedBlock allocate(std::size_t size) override {
        if (failing > 0 && --failing == 0) return {};
        const platform::SharedBlock block = Network::allocate(size);
        live.insert(block.memory);
        return block;
    }
    void release(const platform::SharedBlock& block) override {
        if (live.erase(block.memory) == 0) ++strayFrees;
        Network::release(block);
    }

    std::set<void*> live;
    int strayFrees = 0;
    int failing = 0;

private:
    platform::Network* before_;
};

}  // namespace kora::test
