#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "tools/kora-trace/HomePaths.h"
#include "tools/kora-trace/Names.h"
#include "tools/kora-trace/Zip.h"

namespace kora::tracelog {

struct BundleContents {
    std::string log;                        ///< the log's bytes, or the newest of them
    std::uint64_t olderBytes = 0;           ///< of the log, that are left out
    std::string logName;                    ///< what it is called in the documents of the bundle
    std::string mainProfile, stateProfile;  ///< paths in library form; empty ones are left out
    std::string toolsFolder;                ///< in library form
};

/// Takes the newest lines of a log, at most as many bytes as belong into a bundle; the rest is never held.
void takeNewest(std::istream& log, BundleContents& contents);

/// What is packed, each part with home paths removed; the first one, contents.txt, says what the others are.
std::vector<ZipEntry> bundleEntries(const BundleContents& contents, const NameTable& names, const HomePaths& homes);

/// The parts with their sizes, a line for each.
std::string bundleList(const std::vector<ZipEntry>& entries);

}  // namespace kora::tracelog
