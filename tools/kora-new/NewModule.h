#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kora::newmodule {

/// A file of the template, whose module is called "pulse".
struct TemplateFile {
    std::string_view name, text;
};
std::span<const TemplateFile> templateFiles();

/// Writes the files of a new module into a folder of its name, which is made in @p directory, the working directory
/// when that is empty; the name has no complaintOfName(). What a failure leaves half is removed again.
/// @return why it could not be done, in one sentence; empty when it was, with what was written in @p files.
std::string writeModule(const std::string& name, const std::string& directory, std::vector<std::string>& files);

}  // namespace kora::newmodule
