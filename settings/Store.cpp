#include "settings/Store.h"

#include <kora/File.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <string>

#include "paths/Places.h"
#include "paths/ProfileEntry.h"
#include "paths/SharedDirectories.h"
#include "platform/Platform.h"
#include "settings/MainProfile.h"
#include "settings/ProfileEdit.h"
#include "settings/ProfileFile.h"
#include "settings/ProfileTable.h"
#include "settings/ProfileText.h"
#include "settings/ValueText.h"
#include "strings/Bytes.h"

namespace kora {

namespace {

constexpr char kMainName[] = "ts.ini";
constexpr char kStateName[] = "tsstate.ini";

bool isOwnName(std::string_view name) {
    return equalIgnoringCase(name, kProfileScratch) || equalIgnoringCase(name, kProfileBackup);
}

/// One of the two files. A null path is one that the system gives no directory for: it reads as empty.
struct Profile {
    FilePath path;
    bool whole = false;  // the file is there, or no backup stands in for it

    bool names(ProfileNames& names) { return profileNames(path.FileStringGet(), names); }
    bool makeWhole() {
        ProfileNames found;
        return whole = whole || (names(found) && takeBackupBack(found));
    }
};

struct Store {
    Profile main, state;
    ProfileTable table;
    // A file as the last call read it, and as it wrote it. The memory is kept for the next call.
    std::string text, edited;
};

struct {
    Store* store = nullptr;
    FilePath* mainGiven = nullptr;
} constinit family;

/// Whether @p directory has the main profile, or did have it before a swap was broken off there.
bool mainIsIn(const char* directory, FilePath& path) {
    if (!path.SetDir(directory) || !path.FileFullNameSet(kMainName)) return false;
    Profile here{path};
    here.makeWhole();
    return path.FileExists();
}

/// The fixed search order's first hit, else the document root. A backup is looked for in every directory of the
/// search but the per-user one: there it is the state file's.
void locateMain(FilePath& path) {
    if (family.mainGiven) {
        path = *family.mainGiven;
        return;
    }
    if (FileLocateFile(kMainName, path, true)) return;
    CString program;
    FileGetProgramDir(program);
    const CString directories[] = {CString(rememberedWorkingDirectory()), program, DirGetDocRootDir()};
    for (const CString& directory : directories)
        if (!directory.empty() && mainIsIn(directory.c_str(), path)) return;
    path.FileNullSet();
    if (path.DirInitDocRoot()) path.FileFullNameSet(kMainName);
}

void locateState(FilePath& path) {
    const auto local = profileValue(eIniMain, "System", "LocalStateFile");
    const bool inSystem = local && boolOf(*local).value_or(false);
    if (inSystem ? path.DirInitOSBase() : path.DirInitAppData()) path.FileFullNameSet(kStateName);
}

bool readState(Store& store) {
    platform::Failure failure;
    return !store.state.path.FileNullGet() && readProfile(store.state.path.FileStringGet(), store.text, failure);
}

}  // namespace

bool settingsStart() {
    if (family.store) return true;
    try {
        // In force before anything is read: looking for the files expands names, which asks for entries.
        family.store = new (std::nothrow) Store;
        if (!family.store) return false;
        Store& store = *family.store;
        locateMain(store.main.path);
        if (!store.main.path.FileNullGet()) {
            store.main.makeWhole();
            loadProfile(store.main.path.FileStringGet(), store.table);
        }
        locateState(store.state.path);
        if (!store.state.path.FileNullGet()) store.state.makeWhole();
        return true;
    } catch (const std::exception&) {
        settingsStop();
        return false;
    }
}

void settingsStop() {
    delete family.store;
    family.store = nullptr;
}

std::string profilePath(eIniFile file) {
    if (!settingsStart()) return {};
    FilePath& path = file == eIniState ? family.store->state.path : family.store->main.path;
    return path.FileNullGet() ? "" : path.FileStringGet();
}

std::optional<std::string_view> profileValue(eIniFile file, const char* section, const char* key) noexcept {
    if (!section || !key || !(family.store || settingsStart())) return std::nullopt;
    Store& store = *family.store;
    if (file != eIniState) return store.table.value(section, key);
    try {
        ProfileLine line;
        LinePlace place;
        if (!readState(store) || !findProfileEntry(store.text, section, key, line, place)) return std::nullopt;
        return line.value;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<ProfileItem> profileItem(eIniFile file, const char* section, int index, bool& sectionFound) noexcept {
    sectionFound = false;
    if (!section || !settingsStart()) return std::nullopt;
    Store& store = *family.store;
    if (file != eIniState) {
        sectionFound = store.table.hasSection(section);
        const auto* entry = index < 0 ? nullptr : store.table.entry(section, static_cast<std::size_t>(index));
        return entry ? std::optional(ProfileItem{entry->key(), entry->value()}) : std::nullopt;
    }
    try {
        if (!readState(store)) return std::nullopt;
        ProfileLine line;
        LinePlace place;
        for (SectionWalk walk(store.text, section); walk.next(line, place);) {
            sectionFound = true;
            if (line.kind == ProfileLine::Kind::entry && index-- == 0) return ProfileItem{line.name, line.value};
        }
    } catch (const std::exception&) {
    }
    return std::nullopt;
}

std::vector<ProfileSource> profileSources(eIniFile file) {
    std::vector<ProfileSource> sources;
    if (!settingsStart()) throw std::bad_alloc();
    Store& store = *family.store;
    if (file != eIniState) {
        for (const auto& source : store.table.sources()) sources.push_back({source->path, source->text});
    } else if (readState(store)) {
        sources.push_back({store.state.path.FileStringGet(), store.text});
    }
    return sources;
}

bool profileSet(eIniFile file, const char* section, const char* key, const char* value) noexcept {
    if (!section || !key) return false;
    if (!value) value = "";
    try {
        if (!isProfileEntry(section, key, value) || !settingsStart()) return false;
        Store& store = *family.store;
        Profile& profile = file == eIniState ? store.state : store.main;
        ProfileNames names;
        // A backup that could not be taken back yet would be lost to the next swap.
        if (profile.path.FileNullGet() || !profile.makeWhole() || !profile.names(names)) return false;
        platform::Failure failure;
        if (!readProfile(names.file, store.text, failure)) {
            if (failure.cause == platform::Cause::notFound) directoryMakeForWrite(names.file);
            if (!createProfile(names.file)) return false;
            store.text.clear();
        }
        setProfileEntry(store.text, section, key, value, store.edited);
        return replaceProfile(names, store.edited);
    } catch (const std::exception&) {
        return false;
    }
}

bool profileDirectory(const std::string& key, std::string& directory) {
    const auto value = profileValue(eIniMain, "Directories", key.c_str());
    if (!value) return false;
    directory = *value;
    return true;
}

}  // namespace kora

bool IniMainFileSet(const char* path) try {
    std::unique_ptr<FilePath> given;
    if (path) {
        given.reset(new (std::nothrow) FilePath);
        std::string text = kora::platform::libraryPath(path);
        std::replace(text.begin(), text.end(), '/', '\\');
        // A relative path begins where the program works.
        if (!given || !given->DirStringSet(kora::platform::environment().workingDirectory().c_str()) ||
            !given->FileStringSet(text.c_str()) || text.ends_with('\\') || kora::isOwnName(given->FileFullNameGet()))
            return false;
    }
    delete kora::family.mainGiven;
    kora::family.mainGiven = given.release();
    kora::settingsStop();
    return kora::settingsStart();
} catch (const std::exception&) {
    return false;
}

bool IniMainFileGet(CString& path) try {
    path.clear();
    if (!kora::settingsStart() || kora::family.store->main.path.FileNullGet()) return false;
    path = kora::family.store->main.path.FileStringGet();
    return true;
} catch (const std::exception&) {
    return false;
}
