#include "paths/SharedDirectories.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "paths/PathText.h"
#include "platform/Platform.h"

namespace kora {

namespace {

constexpr std::size_t kShared = 4;

struct {
    bool filled = false;
    char text[kShared][kPathTextSize] = {};
    char workingDirectory[kPathTextSize] = "";
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

/// A directory that is too long counts as none.
void keep(const std::string& directory, char (&text)[kPathTextSize]) {
    const bool fits = directory.size() < kPathTextSize;
    std::memcpy(text, fits ? directory.c_str() : "", fits ? directory.size() + 1 : 1);
}

}  // namespace

void pathsStart() {
    platform::Environment& places = platform::environment();
    const std::string directories[kShared] = {places.workingDirectory(), places.programDirectory(),
                                              places.systemDirectory(), temporaryDirectory()};
    for (std::size_t i = 0; i < kShared; ++i) keep(directories[i], state.text[i]);
    state.filled = true;
}

void pathsStop() {
    // The texts stay where they are: a DirPath that is still alive may point at one.
    state.filled = false;
    state.workingDirectory[0] = '\0';
}

char* sharedDirectory(SharedDirectory which) {
    if (!state.filled) pathsStart();
    char* text = state.text[static_cast<std::size_t>(which)];
    return *text == '\0' ? nullptr : text;
}

std::string_view sharedText(SharedDirectory which) {
    const char* text = sharedDirectory(which);
    return text != nullptr ? text : std::string_view{};
}

bool isSharedDirectory(const char* text) {
    return std::any_of(std::begin(state.text), std::end(state.text),
                       [&](const char* shared) { return shared == text; });
}

void workingDirectoryRemember() { keep(platform::environment().workingDirectory(), state.workingDirectory); }

std::string_view rememberedWorkingDirectory() { return state.workingDirectory; }

}  // namespace kora
