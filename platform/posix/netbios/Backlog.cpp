#include "platform/posix/netbios/Backlog.h"

#include <algorithm>
#include <new>

#include "platform/posix/netbios/NameTable.h"

namespace kora::platform::netbios {

bool Backlog::keep(std::uint8_t number, const Name& source, Bytes data) {
    std::list<KeptDatagram>& of = kept_[number];
    if (data.size() > kMaxDatagram || of.size() == kMaxPerName) return false;
    try {
        KeptDatagram& kept = of.emplace_back();
        kept.serial = ++lastSerial_;
        kept.length = static_cast<std::uint16_t>(data.size());
        kept.source = source;
        std::ranges::copy(data, kept.bytes.begin());
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

std::optional<KeptDatagram> Backlog::take(std::uint8_t number) {
    std::list<KeptDatagram>* from = &kept_[number];
    if (number == kAnyNumber) {
        const auto oldest = [](const std::list<KeptDatagram>& of) {
            return of.empty() ? UINT64_MAX : of.front().serial;
        };
        from = &*std::ranges::min_element(kept_.begin() + kFirstNumber, kept_.end(), {}, oldest);
    }
    if (from->empty()) return std::nullopt;
    const KeptDatagram taken = from->front();
    from->pop_front();
    return taken;
}

}  // namespace kora::platform::netbios
