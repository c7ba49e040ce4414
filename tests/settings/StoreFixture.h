#pragma once

#include <kora/Ini.h>
#include <kora/Test.h>
#include <kora/Trace.h>

#include <gtest/gtest.h>

#include <string>

#include "paths/SharedDirectories.h"
#include "settings/Store.h"
#include "tests/support/ScopedPlaces.h"

namespace kora::test {

/// A store of the test's own: both profiles and the log lie in one folder, and nothing was read yet.
class StoreFixture : public testing::Test {
protected:
    StoreFixture() { forget(); }
    ~StoreFixture() override {
        TraceToFileSet(false);
        IniMainFileSet(nullptr);
        forget();
    }

    static constexpr char kStateFolder[] = "userdata/Veltrane/Tessera5";
    static constexpr char kState[] = "userdata/Veltrane/Tessera5/tsstate.ini";
    static constexpr char kStateScratch[] = "userdata/Veltrane/Tessera5/qznew96.ert";
    static constexpr char kStateBackup[] = "userdata/Veltrane/Tessera5/qzold96.ert";
    static constexpr char kMain[] = "documents/ts.ini";
    static constexpr char kLog[] = "documents/ts_error_log.txt";

    void state(const std::string& text) {
        files.MakeFolder(kStateFolder);
        files.Write(kState, text);
    }
    std::string state() const { return files.Read(kState); }
    /// Writes the main profile and has it read.
    void main(const std::string& text) {
        files.Write(kMain, text);
        settingsStop();
        settingsStart();
    }
    static std::string get(eIniFile file, const char* section, const char* key) {
        CString text;
        return IniGetString(file, section, key, text, false) ? text : "(not found)";
    }

    ScopedPlaces places;
    TestFolder& files = places.folder;

private:
    static void forget() {
        settingsStop();
        pathsStop();
    }
};

}  // namespace kora::test
