#include <cstdlib>

#include "host/BinaryFile.h"

namespace {

using namespace kora::host;

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const BinaryFile file = readBinary({data, size});
    const auto* const begin = reinterpret_cast<const char*>(data);
    std::size_t read = 0;
    // Every text is one of the file's, and all together are in proportion to it.
    const auto check = [&](std::string_view text) {
        require(text.data() == nullptr || (text.data() >= begin && text.data() + text.size() < begin + size));
        read += text.size() + 16;
    };
    for (const std::string_view text : {file.ownName, file.rpath, file.runpath, file.koraVersion}) check(text);
    for (const std::string_view name : file.exports) check(name);
    for (const std::string_view name : file.needed) check(name);
    for (const std::string_view name : file.versionsDefined) check(name);
    for (const BinaryFile::Import& import : file.imports) check(import.name);
    for (const BinaryFile::Version& version : file.versionsNeeded) check(version.name);
    require(read <= 6 * size + 0x20000);
    require(!file.machineText().empty());
    if (file.format == BinaryFile::Format::unknown) require(file.exports.empty() && file.needed.empty());
    return 0;
}
