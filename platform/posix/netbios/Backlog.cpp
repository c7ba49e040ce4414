#include "platform/posix/netbios/Backlog.h"

#include <algorithm>
#include <new>

#include "platform/posix/netbios/NameTable.h"

namespace kora::platform::netbios {

bool Backlog::keep(std::uint8_t number, const Name& source, Bytes data) {
    if (data.size() > kMaxDatagram || kept_.size() == kMax || counts_[number] == kMaxPerName) return false;
    try {
        KeptDatagram& kept = kept_.emplace_back();
        kept.number = number;
        kept.length = static_cast<std::uint16_t>(data.size());
        kept.source = source;
        std::ranges::copy(data, kept.bytes.begin());
    } catch (const std::bad_alloc&) {
        return false;
    }
    ++counts_[number];
    return true;
}

std::optional<KeptDatagram> Backlog::take(std::uint8_t number) {
    const auto found = std::ranges::find_if(kept_, [&](const KeptDatagram& kept) {
        return number == kAnyNumber ? kept.number != 0 : kept.number == number;
    });
    if (found == kept_.end()) return std::nullopt;
    const KeptDatagram taken = *found;
    --counts_[taken.number];
    kept_.erase(found);
    return taken;
}

void Backlog::drop(std::uint8_t number) {
    kept_.remove_if([&](const KeptDatagram& kept) { return kept.number == number; });
    counts_[number] = 0;
}

void Backlog::clear() {
    kept_.clear();
    counts_ = {};
}

}  // namespace kora::platform::netbios
