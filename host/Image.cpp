#include "host/Image.h"

#include <algorithm>
#include <cstring>

namespace kora::host {

void Image::require(std::uint64_t offset, std::uint64_t length, const char* what) const {
    if (!holds(offset, length)) throw Damage{std::string(what) + " reaches beyond its end"};
}

std::uint64_t Image::number(std::uint64_t offset, unsigned size) const {
    require(offset, size, "a table");
    const unsigned char* const bytes = bytes_.data() + offset;
    std::uint64_t value = 0;
    for (unsigned i = 0; i < size; ++i)
        value |= static_cast<std::uint64_t>(bytes[i]) << 8 * (bigEndian_ ? size - 1 - i : i);
    return value;
}

std::string_view Image::text(std::uint64_t offset, std::uint64_t end) {
    end = std::min(end, size());
    if (offset >= end) throw Damage{"a name lies outside its table"};
    const char* const begin = reinterpret_cast<const char*>(bytes_.data()) + offset;
    const auto* const stop = static_cast<const char*>(std::memchr(begin, 0, static_cast<std::size_t>(end - offset)));
    if (stop == nullptr) throw Damage{"a name has no end"};
    const std::string_view found(begin, static_cast<std::size_t>(stop - begin));
    spend(found.size());
    return found;
}

void Image::spend(std::uint64_t amount) {
    if (amount > budget_) throw Damage{"its tables overlap or lead in circles"};
    budget_ -= amount;
}

}  // namespace kora::host
