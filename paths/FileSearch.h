#pragma once

#include <kora/File.h>

#include <string>
#include <string_view>
#include <vector>

namespace kora {

/// The name as it is looked for: its references expanded (and noted, unless @p references is null), in library form.
std::string nameToFind(const char* name, std::vector<FileReference>* references = nullptr);

/// Looks for one name, directory after directory. One path buffer serves all of them, and each costs one question to
/// the system.
class FileSearch {
public:
    explicit FileSearch(const std::string& name) : name_(name) {}
    /// A search that writes down every place in @p tries. Behind the first match places are only written down, unless
    /// it asks everywhere.
    FileSearch(const std::string& name, std::vector<FileTry>& tries, bool asksEverywhere)
        : name_(name), tries_(&tries), asksEverywhere_(asksEverywhere) {}

    /// Whether the file is in @p directory; the empty directory holds nothing.
    bool hits(eFilePlace place, std::string_view directory);
    /// Where the last hit was.
    const std::string& path() const { return path_; }

    /// The fixed search order; matches are appended. Without @p stopAtFirst the answer is false for all but a full
    /// path, whatever was found.
    bool fixedOrder(CStringArray& results, bool stopAtFirst);
    /// In @p dir (may be null), in each of @p dirs, and in the fixed search order. Both lists may be one.
    void everywhere(const char* dir, const CStringArray& dirs, CStringArray& results);

private:
    bool join(std::string_view directory);
    eFileVerdict ask(FileTry* told);
    bool hitsPath(eFilePlace place, std::string_view directory, bool hasPath);

    const std::string& name_;
    std::string path_;
    std::vector<FileTry>* tries_ = nullptr;
    bool asksEverywhere_ = false;
    bool done_ = false;  // a match that ends the asking was written down
};

}  // namespace kora
