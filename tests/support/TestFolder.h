#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "platform/Platform.h"

namespace kora::test {

/// A folder of its own for one test, removed with all it holds when it goes.
class TestFolder {
public:
    TestFolder() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() / ("kora-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TestFolder() {
        std::error_code ignored;
        for (auto& entry : std::filesystem::recursive_directory_iterator(path_, ignored))
            std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::filesystem::path& native() const { return path_; }
    std::string nativeText(const std::string& name = "") const {
        return (name.empty() ? path_ : path_ / name).string();
    }
    /// The folder, or a name in it, in library form.
    std::string path(const std::string& name = "") const {
        const std::string folder = platform::libraryPath(path_.string());
        return name.empty() ? folder : folder + '\\' + name;
    }
    void makeFolder(const std::string& name) const { std::filesystem::create_directories(path_ / name); }
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream file(path_ / name, std::ios::binary | std::ios::trunc);
        file << bytes;
    }
    std::string read(const std::string& name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool has(const std::string& name) const { return std::filesystem::exists(path_ / name); }

private:
    std::filesystem::path path_;
};

}  // namespace kora::test
