#include <gtest/gtest.h>

#include <map>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;

/// The system's places under variables of the test's own.
struct Places : Environment {
    std::optional<std::string> variable(const std::string& name) override {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    }
    std::map<std::string, std::string> variables;
};

TEST(Places, FollowTheVariables) {
    struct Row {
        std::map<std::string, std::string> variables;
        const char *documents, *userData, *temporary;
    };
    static const Row rows[] = {
        {{{"HOME", "/home/u/"}, {"TMPDIR", "/var/tmp/"}}, "Z:\\home\\u", "Z:\\home\\u\\.config", "Z:\\var\\tmp"},
        {{{"HOME", "/"}, {"XDG_CONFIG_HOME", "/c"}}, "Z:\\", "Z:\\c", "Z:\\tmp"},
        {{{"HOME", "/"}}, "Z:\\", "Z:\\.config", "Z:\\tmp"},
        // what is not absolute does not count
        {{{"HOME", "/h"}, {"XDG_CONFIG_HOME", "c"}, {"TMPDIR", ""}}, "Z:\\h", "Z:\\h\\.config", "Z:\\tmp"},
    };
    Places places;
    for (const Row& row : rows) {
        places.variables = row.variables;
        EXPECT_EQ(places.documents(), row.documents);
        EXPECT_EQ(places.userData(), row.userData);
        EXPECT_EQ(places.temporary(), row.temporary);
    }
    places.variables.clear();  // a process without variables still has a user
    EXPECT_TRUE(places.documents().empty() || places.documents().starts_with("Z:\\"));
}

TEST(Places, TakeDocumentsFromTheUsersFile) {
    const kora::test::TestFolder folder;
    Places places;
    places.variables = {{"HOME", "/home/u"}, {"XDG_CONFIG_HOME", folder.nativeText()}};
    static constexpr const char* rows[][2] = {
        {"XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n", "Z:\\home\\u\\Papers"},
        {"# x\n  XDG_DOCUMENTS_DIR=\"/my \\\"own\\\"/docs/\"", "Z:\\my \"own\"\\docs"},
        {"XDG_DOCUMENTS_DIR=\"/a\"\nXDG_MUSIC_DIR=\"/m\"\nXDG_DOCUMENTS_DIR=\"/b\"\n", "Z:\\b"},
        {"XDG_DOCUMENTS_DIR=\"$HOME\"\n", "Z:\\home\\u"},
        // no assignment of a directory
        {"", "Z:\\home\\u"},
        {"#XDG_DOCUMENTS_DIR=\"/a\"", "Z:\\home\\u"},
        {"XDG_DOCUMENTS_DIR=\"relative\"", "Z:\\home\\u"},
        {"XDG_DOCUMENTS_DIR=\"$HOMES/x\"", "Z:\\home\\u"},
        {"XDG_DOCUMENTS_DIR=\"", "Z:\\home\\u"},
        {"XDG_DOCUMENTS_DIRS=\"/a\"", "Z:\\home\\u"},
    };
    for (const auto& [text, documents] : rows) {
        folder.write("user-dirs.dirs", text);
        EXPECT_EQ(places.documents(), documents) << text;
    }
}

}  // namespace
