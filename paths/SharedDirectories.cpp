#include "paths/SharedDirectories.h"

#include <algorithm>
#include <cstring>

#include "paths/PathText.h"
#include "platform/Platform.h"

namespace kora {

namespace {

constexpr std::size_t kShared = 4;

struct {
    bool filled = false;
    char text[kShared][kPathTextSize] = {};
    std::string workingDirectory;
} constinit state;

std::string temporaryDirectory() {
    for (const char* name : {"TEMP", "TMP"}) {
        const auto value = platform::environment().variable(name);
        if (!value || value->empty()) continue;
        std::string directory = platform::libraryPath(*value);
        if (directory.size() < kPathTextSize) return directory;
    }
    return platform::environment().temporary();
}

}  // namespace

void pathsStart() {
    platform::Environment& places = platform::environment();
    const std::string directories[kShared] = {places.workingDirectory(), places.programDirectory(),
                                              places.systemDirectory(), temporaryDirectory()};
    for (std::size_t i = 0; i < kShared; ++i) {
        const bool fits = directories[i].size() < kPathTextSize;
        std::memcpy(state.text[i], fits ? directories[i].c_str() : "", fits ? directories[i].size() + 1 : 1);
    }
    state.filled = true;
}

void pathsStop() {
    // The texts stay where they are: a DirPath that is still alive may point at one.
    state.filled = false;
    state.workingDirectory.clear();
}

char* sharedDirectory(SharedDirectory which) {
    if (!state.filled) pathsStart();
    char* text = state.text[static_cast<std::size_t>(which)];
    return *text == '\0' ? nullptr : text;
}

bool isSharedDirectory(const char* text) {
    return std::any_of(std::begin(state.text), std::end(state.text),
                       [&](const char* shared) { return shared == text; });
}

void workingDirectoryRemember() { state.workingDirectory = platform::environment().workingDirectory(); }

const std::string& rememberedWorkingDirectory() { return state.workingDirectory; }

}  // namespace kora
