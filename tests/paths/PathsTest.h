#pragma once

#include <gtest/gtest.h>
#include <kora/File.h>

#include <string>
#include <vector>

#include "paths/SharedDirectories.h"
#include "tests/support/ScopedPlaces.h"

namespace kora::test {

/// Every special directory stands in a folder of the test's own, and nothing is remembered from one test to the next.
class PathsTest : public testing::Test {
protected:
    PathsTest() { pathsStop(); }
    ~PathsTest() override {
        pathsStop();
        FileDocRootSearchSet(false);
    }

    std::string path(const std::string& name) const { return places.folder.Path(name); }
    void makeFiles(const std::vector<std::string>& names) const {
        for (const std::string& name : names) places.folder.Write(name, "");
    }

    ScopedPlaces places;
};

inline std::string shown(const char* text) { return text != nullptr ? text : "(null)"; }

/// The columns of a row of a table, between its bars.
inline std::vector<std::string> columns(const std::string& row) {
    std::vector<std::string> columns;
    for (std::size_t at = 0, bar = 0; bar != row.npos; at = bar + 3) {
        bar = row.find(" | ", at);
        columns.push_back(row.substr(at, bar - at));
    }
    return columns;
}

}  // namespace kora::test
