#pragma once

#include <string>
#include <vector>

#include "tools/kora-trace/HomePaths.h"
#include "tools/kora-trace/Names.h"
#include "tools/kora-trace/Zip.h"

namespace kora::tracelog {

/// The version that a module's file (in library form) says it has, without being run; empty when it says nothing.
using ModuleVersion = std::string (*)(const std::string& path);

struct BundleContents {
    std::string log;                        ///< the log's bytes
    std::string logName;                    ///< what it is called in the documents of the bundle
    std::string mainProfile, stateProfile;  ///< paths in library form; empty ones are left out
    std::string toolsFolder;                ///< in library form
    ModuleVersion version = nullptr;        ///< null leaves versions out
};

/// The newest part of a log that a bundle takes.
inline constexpr std::size_t kMostBundledLog = 1024 * 1024;

/// What is packed, each part with home paths removed; the first one, contents.txt, says what the others are.
std::vector<ZipEntry> bundleEntries(const BundleContents& contents, const NameTable& names, const HomePaths& homes);

/// The parts with their sizes, a line for each.
std::string bundleList(const std::vector<ZipEntry>& entries);

}  // namespace kora::tracelog
