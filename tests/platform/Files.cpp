#include <gtest/gtest.h>
#include <kora/Test.h>

#include <map>
#include <memory>
#include <random>
#include <set>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

// Random operations under names in random letter case, against a map of folded names: what is done, what is refused and
// why, and that a refusal changes nothing.
TEST(FileSystem, AgreesWithAMapWhateverTheLetterCase) {
    static constexpr std::size_t sizes[] = {0, 1, 2, 20, 4095, 4096, 4097, 300'000};
    for (const unsigned seed : {1u, 2u, 3u, 4u}) {
        const TestFolder folder;
        std::mt19937 random(seed);
        // "A", and "A\B" below it. Directories have no bytes, and two names of one file the same.
        std::map<std::string, std::shared_ptr<std::string>> model;
        const auto pick = [&](std::size_t count) { return random() % count; };
        const auto name = [&] {
            const std::string top(1, "ABC"[pick(3)]);
            return pick(2) ? top : top + '\\' + "ABC"[pick(3)];
        };
        const auto path = [&](std::string text) {
            for (char& c : text)
                if (c != '\\' && pick(2)) c = static_cast<char>(c - 'A' + 'a');
            return folder.Path(text);
        };
        const auto kindOf = [&](const std::string& key) {
            if (!model.contains(key)) return FileKind::none;
            return model[key] ? FileKind::file : FileKind::directory;
        };
        const auto hasParent = [&](const std::string& key) {
            return key.size() == 1 || kindOf(key.substr(0, 1)) == FileKind::directory;
        };
        const auto namesBelow = [&](const std::string& key) {
            std::set<std::string> names;
            for (const auto& [each, bytes] : model)
                if (each.size() == key.size() + 2 && each.starts_with(key)) names.insert(each.substr(2));
            return names;
        };
        const auto unless = [&](FileKind wanted, const std::string& key) {
            if (kindOf(key) == wanted) return Cause::none;
            return kindOf(key) == FileKind::none ? Cause::notFound : Cause::wrongKind;
        };
        FileSystem& files = fileSystem();
        for (int step = 0; step < 800; ++step) {
            const std::string key = name(), to = name();
            const std::size_t operation = pick(10);
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step << " operation " << operation << ' '
                                            << key << ' ' << to);
            std::string bytes(sizes[pick(std::size(sizes))], '\0');
            for (char& byte : bytes) byte = static_cast<char>(random());
            Failure failure;
            bool done = false;
            Cause cause = Cause::none;
            switch (operation) {
                case 0:
                case 1: {
                    const auto mode = static_cast<WriteMode>(pick(3));
                    done = files.write(path(key), bytes, mode, /*flush=*/pick(2) != 0, failure);
                    if (!hasParent(key))
                        cause = Cause::notFound;
                    else if (mode == WriteMode::createNew && kindOf(key) != FileKind::none)
                        cause = Cause::exists;
                    else if (kindOf(key) == FileKind::directory)
                        cause = Cause::wrongKind;
                    if (cause != Cause::none) break;
                    if (!model[key]) model[key] = std::make_shared<std::string>();
                    *model[key] = mode == WriteMode::append ? *model[key] + bytes : bytes;
                    break;
                }
                case 2: {
                    std::string found = "kept";
                    done = files.read(path(key), found, failure);
                    cause = unless(FileKind::file, key);
                    ASSERT_TRUE(found == (cause == Cause::none ? *model[key] : "kept"));
                    break;
                }
                case 3:
                    done = files.remove(path(key), failure);
                    cause = unless(FileKind::file, key);
                    if (cause == Cause::none) model.erase(key);
                    break;
                case 4:
                    done = files.createDirectory(path(key), failure);
                    cause = !hasParent(key)                 ? Cause::notFound
                            : kindOf(key) == FileKind::none ? Cause::none
                                                            : Cause::exists;
                    if (cause == Cause::none) model[key] = nullptr;
                    break;
                case 5:
                    done = files.removeDirectory(path(key), failure);
                    cause = unless(FileKind::directory, key);
                    if (cause == Cause::none && !namesBelow(key).empty()) cause = Cause::notEmpty;
                    if (cause == Cause::none) model.erase(key);
                    break;
                case 6:
                case 7: {
                    if (kindOf(key) == FileKind::directory) continue;
                    const bool link = operation == 6;
                    done = link ? files.link(path(key), path(to), failure) : files.rename(path(key), path(to), failure);
                    if (kindOf(key) == FileKind::none || !hasParent(to))
                        cause = Cause::notFound;
                    else if (link && kindOf(to) != FileKind::none)
                        cause = Cause::exists;
                    else if (kindOf(to) == FileKind::directory)
                        cause = Cause::wrongKind;
                    if (cause != Cause::none) break;
                    model[to] = model[key];
                    if (!link && key != to) model.erase(key);
                    break;
                }
                case 8: {
                    std::vector<DirectoryEntry> entries = {{"KEPT", FileKind::none}};
                    done = files.list(path(key), entries, failure);
                    cause = unless(FileKind::directory, key);
                    std::set<std::string> names;
                    for (DirectoryEntry& entry : entries) {
                        for (char& c : entry.name) c = static_cast<char>(std::toupper(c));
                        names.insert(entry.name);
                        if (done) {
                            EXPECT_EQ(entry.kind, kindOf(key + '\\' + entry.name));
                        }
                    }
                    EXPECT_EQ(names, cause == Cause::none ? namesBelow(key) : std::set<std::string>{"KEPT"});
                    break;
                }
                default: {
                    FileStatus status;
                    FileKind kind = FileKind::none;
                    done = files.kind(path(key), kind, failure);
                    EXPECT_EQ(files.status(path(key), status, failure), done);
                    if (kindOf(key) == FileKind::none) cause = Cause::notFound;
                    EXPECT_EQ(kind, kindOf(key));
                    EXPECT_EQ(status.kind, kindOf(key));
                    EXPECT_EQ(status.size, kind == FileKind::file ? static_cast<std::int64_t>(model[key]->size()) : 0);
                }
            }
            if (done) failure = {};
            ASSERT_EQ(failure.cause, cause) << failure.code;
            ASSERT_FALSE(HasFailure());
        }
    }
}

TEST(FileSystem, RefusesNamesThatNoFileHas) {
    const TestFolder folder;
    folder.Write("f", "text");
    std::string deep = folder.Path();
    for (int i = 0; i < 3'000; ++i) deep += "\\deep";
    const std::string names[] = {"",
                                 folder.Path(std::string(300, 'x')),
                                 folder.Path("f") + '\0',
                                 deep,
                                 folder.Path("f") + std::string("\0\\..\\f", 6),
                                 "Q:\\no\\such\\drive"};
    FileSystem& files = fileSystem();
    FileStatus status;
    std::string bytes;
    std::vector<DirectoryEntry> entries;
    for (const std::string& name : names) {
        SCOPED_TRACE(name.substr(0, 80));
        Failure failures[12];
        const bool results[] = {
            files.status(name, status, failures[0]),
            files.kind(name, status.kind, failures[1]),
            files.read(name, bytes, failures[2]),
            files.write(name, "x", WriteMode::replace, false, failures[3]),
            files.remove(name, failures[4]),
            files.link(folder.Path("f"), name, failures[5]),
            files.rename(folder.Path("f"), name, failures[6]),
            files.rename(name, folder.Path("g"), failures[7]),
            files.createDirectory(name, failures[8]),
            files.removeDirectory(name, failures[9]),
            files.list(name, entries, failures[10]),
            files.setCreationTime(name, 1, failures[11]),
        };
        for (std::size_t i = 0; i < std::size(results); ++i)
            EXPECT_TRUE(!results[i] && failures[i].cause != Cause::none) << "operation " << i;
    }
    EXPECT_EQ(folder.Read("f"), "text");
}

}  // namespace
