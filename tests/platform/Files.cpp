#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <random>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;
using kora::test::TestFolder;

std::string randomBytes(std::mt19937& random, std::size_t size) {
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

TEST(FileSystem, KeepsEveryByteOfEverySize) {
    const TestFolder folder;
    std::mt19937 random(1);
    for (const std::size_t size : {0u, 1u, 2u, 4095u, 4096u, 4097u, 8192u, 1'000'000u}) {
        SCOPED_TRACE(size);
        const std::string bytes = randomBytes(random, size), more = randomBytes(random, 5);
        const std::string path = folder.path("f");
        std::string found = "before";
        Failure failure;
        ASSERT_TRUE(fileSystem().write(path, bytes, WriteMode::replace, /*flush=*/true, failure));
        ASSERT_TRUE(fileSystem().read(path, found, failure));
        EXPECT_TRUE(found == bytes);
        ASSERT_TRUE(fileSystem().write(path, more, WriteMode::append, false, failure));
        ASSERT_TRUE(fileSystem().read(path, found, failure));
        EXPECT_TRUE(found == bytes + more);
    }
}

// What cannot be done says why, and leaves everything as it was.
TEST(FileSystem, SaysWhyNot) {
    const TestFolder folder;
    folder.write("file", "text");
    folder.write("other", "other text");
    folder.makeFolder("full");
    folder.write("full/inside", "x");
    folder.makeFolder("empty");
    FileSystem& files = fileSystem();
    const auto at = [&](const char* name) { return folder.path(name); };
    std::string bytes = "kept";
    FileStatus status;
    status.size = -7;
    std::vector<DirectoryEntry> entries = {{"kept", FileKind::none}};

    struct Row {
        const char* what;
        Cause cause;
        std::function<bool(Failure&)> operation;
    };
    const Row rows[] = {
        // nothing there
        {"status", Cause::notFound, [&](Failure& f) { return files.status(at("none"), status, f); }},
        {"status below nothing", Cause::notFound, [&](Failure& f) { return files.status(at("none\\x"), status, f); }},
        {"status below a file", Cause::notFound, [&](Failure& f) { return files.status(at("file\\x"), status, f); }},
        {"kind", Cause::notFound, [&](Failure& f) { return files.kind(at("none"), status.kind, f); }},
        {"kind below nothing", Cause::notFound, [&](Failure& f) { return files.kind(at("none\\x"), status.kind, f); }},
        {"read", Cause::notFound, [&](Failure& f) { return files.read(at("none"), bytes, f); }},
        {"remove", Cause::notFound, [&](Failure& f) { return files.remove(at("none"), f); }},
        {"rename", Cause::notFound, [&](Failure& f) { return files.rename(at("none"), at("to"), f); }},
        {"link", Cause::notFound, [&](Failure& f) { return files.link(at("none"), at("to"), f); }},
        {"list", Cause::notFound, [&](Failure& f) { return files.list(at("none"), entries, f); }},
        {"list below a file", Cause::notFound, [&](Failure& f) { return files.list(at("file\\x"), entries, f); }},
        {"removeDirectory", Cause::notFound, [&](Failure& f) { return files.removeDirectory(at("none"), f); }},
        {"setCreationTime", Cause::notFound, [&](Failure& f) { return files.setCreationTime(at("none"), 1, f); }},
        {"write into nothing", Cause::notFound,
         [&](Failure& f) { return files.write(at("none\\x"), "x", WriteMode::replace, false, f); }},
        {"rename into nothing", Cause::notFound,
         [&](Failure& f) { return files.rename(at("file"), at("none\\x"), f); }},
        {"createDirectory in nothing", Cause::notFound,
         [&](Failure& f) { return files.createDirectory(at("none\\x"), f); }},
        // of that name already
        {"createNew", Cause::exists,
         [&](Failure& f) { return files.write(at("file"), "x", WriteMode::createNew, false, f); }},
        {"link onto a file", Cause::exists, [&](Failure& f) { return files.link(at("file"), at("other"), f); }},
        {"createDirectory again", Cause::exists, [&](Failure& f) { return files.createDirectory(at("empty"), f); }},
        {"createDirectory on a file", Cause::exists, [&](Failure& f) { return files.createDirectory(at("file"), f); }},
        // the other kind
        {"read a directory", Cause::wrongKind, [&](Failure& f) { return files.read(at("full"), bytes, f); }},
        {"write a directory", Cause::wrongKind,
         [&](Failure& f) { return files.write(at("empty"), "x", WriteMode::replace, false, f); }},
        {"append to a directory", Cause::wrongKind,
         [&](Failure& f) { return files.write(at("empty"), "x", WriteMode::append, false, f); }},
        {"remove a directory", Cause::wrongKind, [&](Failure& f) { return files.remove(at("empty"), f); }},
        {"rename onto a directory", Cause::wrongKind,
         [&](Failure& f) { return files.rename(at("file"), at("empty"), f); }},
        {"list a file", Cause::wrongKind, [&](Failure& f) { return files.list(at("file"), entries, f); }},
        {"removeDirectory of a file", Cause::wrongKind,
         [&](Failure& f) { return files.removeDirectory(at("file"), f); }},
        // not empty
        {"removeDirectory", Cause::notEmpty, [&](Failure& f) { return files.removeDirectory(at("full"), f); }},
    };
    for (const Row& row : rows) {
        Failure failure;
        EXPECT_FALSE(row.operation(failure)) << row.what;
        EXPECT_EQ(failure.cause, row.cause) << row.what << ", code " << failure.code;
    }
    EXPECT_EQ(bytes, "kept");
    EXPECT_EQ(status.size, -7);
    EXPECT_EQ(entries.size(), 1u);
    EXPECT_EQ(folder.read("file"), "text");
    EXPECT_EQ(folder.read("other"), "other text");
    EXPECT_FALSE(folder.has("to"));
}

TEST(FileSystem, RefusesNamesThatNoFileHas) {
    const TestFolder folder;
    folder.write("f", "text");
    const std::string names[] = {
        "",
        folder.path(std::string(300, 'x')),
        folder.path("f") + '\0',
        folder.path("f") + std::string("\0\\..\\f", 6),
        folder.path() +
            [] {
                std::string deep;
                for (int i = 0; i < 3'000; ++i) deep += "\\deep";
                return deep;
            }(),
        "Q:\\no\\such\\drive",
    };
    for (const std::string& name : names) {
        SCOPED_TRACE(name.substr(0, 80));
        FileSystem& files = fileSystem();
        FileStatus status;
        std::string bytes;
        std::vector<DirectoryEntry> entries;
        int refused = 0;
        const auto refuses = [&](bool result, Failure& failure) {
            EXPECT_FALSE(result) << "operation " << refused;
            EXPECT_NE(failure.cause, Cause::none) << "operation " << refused;
            failure = {};
            ++refused;
        };
        Failure failure;
        refuses(files.status(name, status, failure), failure);
        refuses(files.kind(name, status.kind, failure), failure);
        refuses(files.read(name, bytes, failure), failure);
        refuses(files.write(name, "x", WriteMode::replace, false, failure), failure);
        refuses(files.remove(name, failure), failure);
        refuses(files.link(folder.path("f"), name, failure), failure);
        refuses(files.rename(folder.path("f"), name, failure), failure);
        refuses(files.rename(name, folder.path("g"), failure), failure);
        refuses(files.createDirectory(name, failure), failure);
        refuses(files.removeDirectory(name, failure), failure);
        refuses(files.list(name, entries, failure), failure);
        refuses(files.setCreationTime(name, 1, failure), failure);
    }
    EXPECT_EQ(folder.read("f"), "text");
}

TEST(FileSystem, DescribesFilesAndDirectories) {
    const TestFolder folder;
    folder.write("f", "12345");
    folder.makeFolder("d");
    const std::int64_t now =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
    FileStatus status;
    Failure failure;
    ASSERT_TRUE(fileSystem().status(folder.path("f"), status, failure));
    EXPECT_EQ(status.kind, FileKind::file);
    FileKind kind = FileKind::none;
    EXPECT_TRUE(fileSystem().kind(folder.path("F"), kind, failure));
    EXPECT_EQ(kind, FileKind::file);
    EXPECT_TRUE(fileSystem().kind(folder.path("d"), kind, failure));
    EXPECT_EQ(kind, FileKind::directory);
    EXPECT_EQ(status.size, 5);
    EXPECT_NEAR(static_cast<double>(status.created), static_cast<double>(now), 60);
    EXPECT_NEAR(static_cast<double>(status.modified), static_cast<double>(now), 60);
    EXPECT_FALSE(status.readOnly);
    ASSERT_TRUE(fileSystem().status(folder.path("d"), status, failure));
    EXPECT_EQ(status.kind, FileKind::directory);
    EXPECT_FALSE(status.readOnly);

    std::filesystem::permissions(folder.native() / "f", std::filesystem::perms::owner_read);
    ASSERT_TRUE(fileSystem().status(folder.path("f"), status, failure));
    EXPECT_TRUE(status.readOnly);
}

TEST(FileSystem, SetsTheTimeAFileWasMade) {
    const TestFolder folder;
    folder.write("f", "12345");
    for (const std::int64_t time : {std::int64_t{1}, std::int64_t{1'000'000'000}, std::int64_t{5'000'000'000}}) {
        Failure failure;
        if (!fileSystem().setCreationTime(folder.path("f"), time, failure)) {
            ASSERT_EQ(failure.cause, Cause::unsupported);
            GTEST_SKIP() << "not on this file system";
        }
        FileStatus status;
        ASSERT_TRUE(fileSystem().status(folder.path("f"), status, failure));
        EXPECT_EQ(status.created, time);
        EXPECT_NE(status.modified, time);
        ASSERT_TRUE(fileSystem().write(folder.path("f"), "6", WriteMode::replace, false, failure));
        ASSERT_TRUE(fileSystem().status(folder.path("f"), status, failure));
        EXPECT_EQ(status.created, time);
    }
}

TEST(FileSystem, LinksAndRenamesReplaceInOneStep) {
    const TestFolder folder;
    FileSystem& files = fileSystem();
    Failure failure;
    folder.write("old", "old text");
    folder.write("new", "new text");
    ASSERT_TRUE(files.link(folder.path("old"), folder.path("backup"), failure));
    ASSERT_TRUE(files.rename(folder.path("new"), folder.path("old"), failure));
    EXPECT_EQ(folder.read("backup"), "old text");
    EXPECT_EQ(folder.read("old"), "new text");
    EXPECT_FALSE(folder.has("new"));

    // back onto another name of the same file, onto itself, and onto itself in another letter case
    ASSERT_TRUE(files.link(folder.path("old"), folder.path("twin"), failure));
    ASSERT_TRUE(files.rename(folder.path("twin"), folder.path("old"), failure));
    EXPECT_FALSE(folder.has("twin"));
    ASSERT_TRUE(files.rename(folder.path("old"), folder.path("old"), failure));
    ASSERT_TRUE(files.rename(folder.path("old"), folder.path("Old"), failure));
    std::vector<DirectoryEntry> entries;
    ASSERT_TRUE(files.list(folder.path(), entries, failure));
    EXPECT_EQ(entries.size(), 2u);
    std::string bytes;
    ASSERT_TRUE(files.read(folder.path("Old"), bytes, failure));
    EXPECT_EQ(bytes, "new text");
}

TEST(FileSystem, WritesAFileLikeAnother) {
    const TestFolder folder;
    FileSystem& files = fileSystem();
    Failure failure;
    folder.write("model", "x");
    folder.write("new", "of another time, and longer");
    for (const char* model : {"model", "none"}) {
        ASSERT_TRUE(files.writeLike(folder.path("new"), folder.path(model), "text", failure)) << failure.code;
        EXPECT_EQ(folder.read("new"), "text");
        EXPECT_EQ(std::filesystem::status(folder.native() / "new").permissions(),
                  std::filesystem::status(folder.native() / "model").permissions());
    }
    folder.makeFolder("directory");
    EXPECT_FALSE(files.writeLike(folder.path("directory"), folder.path("model"), "text", failure));
    EXPECT_EQ(failure.cause, Cause::wrongKind);
    for (const char* name : {"new", "none", "directory"}) {
        std::string target;
        EXPECT_TRUE(files.resolveLinks(folder.path(name), target, failure));
        EXPECT_EQ(target, folder.path(name));
    }
}

// Random operations under names in random letter case, against a map of folded names.
TEST(FileSystem, AgreesWithAMapWhateverTheLetterCase) {
    struct Node {
        bool directory;
        std::string bytes;
    };
    for (const unsigned seed : {1u, 2u, 3u}) {
        SCOPED_TRACE(seed);
        const TestFolder folder;
        std::mt19937 random(seed);
        std::map<std::string, Node> model;  // "A", and "A\B" below it
        FileSystem& files = fileSystem();
        const auto pick = [&](unsigned count) { return static_cast<unsigned>(random() % count); };
        const auto name = [&] {
            std::string result(1, "ABC"[pick(3)]);
            if (pick(2)) result += std::string("\\") + "ABC"[pick(3)];
            return result;
        };
        const auto anyCase = [&](std::string text) {
            for (char& c : text)
                if (c != '\\' && pick(2)) c = static_cast<char>(c - 'A' + 'a');
            return folder.path(text);
        };
        const auto isDirectory = [&](const std::string& key) { return model.contains(key) && model[key].directory; };
        const auto isFile = [&](const std::string& key) { return model.contains(key) && !model[key].directory; };
        const auto hasParent = [&](const std::string& key) { return key.size() == 1 || isDirectory(key.substr(0, 1)); };
        const auto isEmpty = [&](const std::string& key) {
            return std::none_of(model.begin(), model.end(), [&](const auto& node) {
                return node.first.size() > key.size() && node.first.starts_with(key);
            });
        };
        for (int step = 0; step < 400; ++step) {
            const std::string key = name(), to = name();
            const unsigned operation = pick(7);
            SCOPED_TRACE(testing::Message()
                         << "step " << step << " operation " << operation << ' ' << key << ' ' << to);
            Failure failure;
            switch (operation) {
                case 0:
                case 1: {
                    const auto mode = static_cast<WriteMode>(pick(3));
                    const bool may =
                        hasParent(key) && !isDirectory(key) && !(mode == WriteMode::createNew && model.contains(key));
                    const std::string bytes = randomBytes(random, pick(20));
                    ASSERT_EQ(files.write(anyCase(key), bytes, mode, false, failure), may);
                    if (may) model[key].bytes = mode == WriteMode::append ? model[key].bytes + bytes : bytes;
                    break;
                }
                case 2: {
                    std::string bytes;
                    ASSERT_EQ(files.read(anyCase(key), bytes, failure), isFile(key));
                    if (isFile(key)) {
                        ASSERT_EQ(bytes, model[key].bytes);
                    }
                    break;
                }
                case 3:
                    ASSERT_EQ(files.remove(anyCase(key), failure), isFile(key));
                    if (isFile(key)) model.erase(key);
                    break;
                case 4:
                    ASSERT_EQ(files.createDirectory(anyCase(key), failure), hasParent(key) && !model.contains(key));
                    if (hasParent(key) && !model.contains(key)) model[key] = {true, {}};
                    break;
                case 5: {
                    const bool may = isDirectory(key) && isEmpty(key);
                    ASSERT_EQ(files.removeDirectory(anyCase(key), failure), may);
                    if (may) model.erase(key);
                    break;
                }
                case 6: {
                    if (!isFile(key)) break;
                    const bool may = hasParent(to) && !isDirectory(to);
                    ASSERT_EQ(files.rename(anyCase(key), anyCase(to), failure), may);
                    if (may && key != to) {
                        model[to] = model[key];
                        model.erase(key);
                    }
                    break;
                }
            }
            std::vector<DirectoryEntry> entries;
            ASSERT_TRUE(files.list(folder.path(), entries, failure));
            const auto topLevel =
                std::count_if(model.begin(), model.end(), [](const auto& n) { return n.first.size() == 1; });
            ASSERT_EQ(entries.size(), static_cast<std::size_t>(topLevel));
        }
    }
}

}  // namespace
