#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <gtest/gtest.h>
#include <kora/Test.h>

#include <functional>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

/// Another program that has a file open for reading and lets others do what @p share says.
class Held {
public:
    Held(const std::string& path, DWORD share)
        : file_(CreateFileA(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_NE(file_, INVALID_HANDLE_VALUE);
    }
    ~Held() { CloseHandle(file_); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

private:
    HANDLE file_;
};

TEST(HeldFile, IsBusy) {
    const TestFolder folder;
    folder.Write("held", "old");
    folder.Write("new", "new");
    const std::string held = folder.Path("held"), other = folder.Path("new");
    FileSystem& files = fileSystem();
    std::string bytes;
    struct Row {
        const char* what;
        std::function<bool(Failure&)> operation;
    };
    const Row rows[] = {
        {"read", [&](Failure& f) { return files.read(held, bytes, f); }},
        {"replace", [&](Failure& f) { return files.write(held, "x", WriteMode::replace, false, f); }},
        {"append", [&](Failure& f) { return files.write(held, "x", WriteMode::append, false, f); }},
        {"remove", [&](Failure& f) { return files.remove(held, f); }},
        {"rename", [&](Failure& f) { return files.rename(held, folder.Path("to"), f); }},
        {"rename over it", [&](Failure& f) { return files.rename(other, held, f); }},
    };
    Failure failure;
    {
        const Held closed(held, 0);
        for (const Row& row : rows) {
            failure = {};
            EXPECT_FALSE(row.operation(failure)) << row.what;
            EXPECT_EQ(failure.cause, Cause::busy) << row.what << ", code " << failure.code;
        }
        FileStatus status;
        EXPECT_TRUE(files.status(held, status, failure));
    }
    EXPECT_TRUE(files.rename(other, held, failure));
    EXPECT_EQ(folder.Read("held"), "new");
}

TEST(DeviceNames, AreNoFiles) {
    for (const char* name : {"NUL", "CON"}) {
        SCOPED_TRACE(name);
        std::string bytes;
        Failure failure;
        EXPECT_FALSE(fileSystem().read(name, bytes, failure));
        EXPECT_FALSE(fileSystem().write(name, "x", WriteMode::append, false, failure));
    }
}

}  // namespace
