#include "tools/kora-new/NewModule.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "tools/kora-new/ModuleName.h"

namespace kora::newmodule {

namespace {

bool write(const std::filesystem::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    return !file.fail();
}

}  // namespace

std::string writeModule(const std::string& name, const std::string& directory, std::vector<std::string>& files) {
    const NameForms forms = formsOf(name);
    const std::filesystem::path folder = std::filesystem::path(directory) / name;
    std::error_code error;
    if (!std::filesystem::create_directory(folder, error))
        return folder.string() + (error ? " cannot be made: " + error.message() + '.' : " is there already.");
    for (const TemplateFile& file : templateFiles()) {
        const std::filesystem::path path = folder / renamed(file.name, forms);
        files.push_back(path.string());
        if (write(path, renamed(file.text, forms))) continue;
        // Only what was made here goes.
        for (const std::string& made : files) std::filesystem::remove(made, error);
        std::filesystem::remove(folder, error);
        files.clear();
        return path.string() + " cannot be written.";
    }
    return {};
}

}  // namespace kora::newmodule
