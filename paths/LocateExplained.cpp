#include <kora/File.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "paths/FileSearch.h"

bool FileLocateExplain(const char* dir, const CStringArray& dirs, const char* name, FileExplanation& explanation,
                       bool everywhere) try {
    FileExplanation fresh;
    if (name != nullptr) {
        fresh.name = kora::nameToFind(name, &fresh.references);
        kora::FileSearch search(fresh.name, fresh.tries, everywhere);
        CStringArray found;
        search.everywhere(dir, dirs, found);
        FilePath path;
        if (!found.empty()) {
            if (path.FileStringSet(found[0].c_str()))
                fresh.found = path.FileStringGet();
            else  // it is there, and no FilePath can hold its path
                std::ranges::find(fresh.tries, FileVerdictFound, &FileTry::verdict)->verdict = FileVerdictNoPath;
        }
    }
    std::swap(explanation, fresh);  // what was given may stand in it
    return !explanation.found.empty();
} catch (const std::exception&) {
    explanation = FileExplanation();
    return false;
}

bool FileLocateExplain(const char* name, FileExplanation& explanation, bool everywhere) {
    return FileLocateExplain(nullptr, {}, name, explanation, everywhere);
}
