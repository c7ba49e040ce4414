#include "platform/posix/netbios/NameTable.h"

#include <algorithm>

namespace kora::platform::netbios {

NameTable::NameTable() { names_.reserve(kMaxNames); }

LocalName* NameTable::find(const Name& name) {
    const auto found =
        std::find_if(names_.begin(), names_.end(), [&](const LocalName& own) { return own.name == name; });
    return found == names_.end() ? nullptr : &*found;
}

LocalName* NameTable::find(std::uint8_t number) {
    const auto found =
        std::find_if(names_.begin(), names_.end(), [&](const LocalName& own) { return own.number == number; });
    return found == names_.end() ? nullptr : &*found;
}

const LocalName* NameTable::registered(const Name& name) {
    const LocalName* own = find(name);
    return own && own->registered ? own : nullptr;
}

const LocalName* NameTable::registered(std::uint8_t number) {
    const LocalName* own = find(number);
    return own && own->registered ? own : nullptr;
}

LocalName* NameTable::add(const Name& name, bool group) {
    if (names_.size() == kMaxNames) return nullptr;
    // Round and round, so that somebody who still uses the number of a deleted name meets no other name soon.
    do lastNumber_ = lastNumber_ == kLastNumber ? kFirstNumber : static_cast<std::uint8_t>(lastNumber_ + 1);
    while (find(lastNumber_));
    return &names_.emplace_back(LocalName{name, lastNumber_, group, false});
}

void NameTable::remove(std::uint8_t number) {
    std::erase_if(names_, [&](const LocalName& own) { return own.number == number; });
}

}  // namespace kora::platform::netbios
