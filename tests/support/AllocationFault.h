#pragma once

#include <cstddef>
#include <cstdlib>

namespace kora::test {

/// Makes the nth allocation from here fail (counted from 1), once or from then on. For test programs that have
/// AllocationFault.cpp among their sources; on Windows they see their own allocations only, not those inside the
/// runtime library.
class AllocationFault {
public:
    explicit AllocationFault(long nth, bool persistent = false) {
        left_ = nth;
        persistent_ = persistent;
        hit_ = false;
    }
    ~AllocationFault() { left_ = 0; }
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;

    bool wasHit() const { return hit_; }

    static void* allocate(std::size_t size) {
        if (left_ > 0 && --left_ == 0) {
            hit_ = true;
            if (persistent_) left_ = 1;
            return nullptr;
        }
        return std::malloc(size > 0 ? size : 1);
    }

private:
    static inline constinit long left_ = 0;  // 0: all succeed
    static inline constinit bool persistent_ = false;
    static inline constinit bool hit_ = false;
};

}  // namespace kora::test
