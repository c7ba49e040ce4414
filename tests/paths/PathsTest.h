#pragma once

#include <gtest/gtest.h>
#include <kora/File.h>

#include <string>

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

    std::string path(const std::string& name) const { return places.folder.path(name); }

    ScopedPlaces places;
};

inline std::string shown(const char* text) { return text != nullptr ? text : "(null)"; }

}  // namespace kora::test
