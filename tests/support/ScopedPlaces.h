#pragma once

#include <kora/Test.h>

#include <map>
#include <optional>
#include <string>

#include "platform/Platform.h"

namespace kora::test {

/// Puts every special directory into a folder of the test's own while it lives: documents, userdata, shareddata,
/// system, temporary, work and program. Variables not named here are not set.
class ScopedPlaces : public platform::Environment {
public:
    ScopedPlaces() : before_(platform::environmentSet(this)) {
        for (const char* name : {"documents", "userdata", "shareddata", "system", "temporary", "work", "program"})
            folder.MakeFolder(name);
    }
    ~ScopedPlaces() override { platform::environmentSet(before_); }

    std::optional<std::string> variable(const std::string& name) override {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    }
    std::string documents() override { return place("documents"); }
    std::string userData() override { return place("userdata"); }
    std::string sharedData() override { return place("shareddata"); }
    std::string systemDirectory() override { return place("system"); }
    std::string temporary() override { return place("temporary"); }
    std::string workingDirectory() override { return place("work"); }
    std::string programDirectory() override { return place("program"); }

    TestFolder folder;
    std::map<std::string, std::string> variables;
    std::map<std::string, std::string> instead;  ///< places that stand elsewhere, or nowhere when empty

private:
    std::string place(const std::string& name) const {
        const auto found = instead.find(name);
        return found == instead.end() ? folder.Path(name) : found->second;
    }

    platform::Environment* before_;
};

}  // namespace kora::test
