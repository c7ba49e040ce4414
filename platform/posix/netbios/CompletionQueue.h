#pragma once

#include <cstddef>
#include <vector>

struct NetNcb;

namespace kora::platform::netbios {

/// A command that has ended and whose post routine is to be called.
struct Completion {
    NetNcb* block = nullptr;
    unsigned char code = 0;
};

/// Completions in order, with room for a burst of commands that end at once; putting one in never fails.
class CompletionQueue {
public:
    static constexpr std::size_t kRoom = 4096;

    CompletionQueue() : kept_(kRoom) {}
    std::size_t size() const { return size_; }
    /// There has to be room.
    void put(const Completion& completion) { kept_[(first_ + size_++) % kRoom] = completion; }
    /// The oldest, of which there has to be one.
    Completion take() {
        const Completion oldest = kept_[first_];
        first_ = (first_ + 1) % kRoom;
        --size_;
        return oldest;
    }

private:
    std::vector<Completion> kept_;
    std::size_t first_ = 0, size_ = 0;
};

}  // namespace kora::platform::netbios
