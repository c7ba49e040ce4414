#include "core/OwnStrings.h"

#include "core/LibraryStrings.h"
#include "platform/Platform.h"

namespace kora {

#define KORA_TABLE_ROW(id, text) {id, text},
const TskString ownStrings[] = {KORA_LIBRARY_STRINGS(KORA_TABLE_ROW){0, nullptr}};
#undef KORA_TABLE_ROW

std::string ownString(int id) {
    char text[512];
    const int length = platform::moduleString(platform::ownModule(), id, text, sizeof text);
    return std::string(text, static_cast<std::size_t>(length > 0 ? length : 0));
}

}  // namespace kora
