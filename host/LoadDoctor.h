#pragma once

#include <string>

#include "host/LibrarySearch.h"
#include "host/ModuleFile.h"

namespace kora::host {

/// What can be told about a module file without running it.
struct Diagnosis {
    bool loads = false;
    std::string advice;  ///< one sentence: what to do, or that it would load
    std::vector<NeededLibrary> needed;
    std::vector<std::string> versionsMissing, namesMissing;
};

/// Whether the host @p program, whose library has the version @p version, would load @p file, and if not, why.
Diagnosis diagnose(const ModuleFile& file, const ModuleFile& program, const std::string& version);

/// The version of Kora that the file was built against, as far as it says; empty when it does not.
std::string builtAgainst(const BinaryFile& file);

/// What the file is, in one line without its end: "a.qzx: ELF 64-bit x86-64, 16048 bytes, for Kora 0.1.0, entry,
/// exported names: 10".
std::string listingLine(const ModuleFile& file);

/// The diagnosis in lines for people, the sentence last.
std::string diagnosisText(const ModuleFile& file, const Diagnosis& diagnosis, const std::string& version);

}  // namespace kora::host
