#include <kora/Dir.h>
#include <kora/Tsk.h>

#include <exception>
#include <memory>

#include "paths/Places.h"
#include "paths/SharedDirectories.h"
#include "platform/Platform.h"
#include "settings/Store.h"
#include "tasks/ApplicationState.h"

namespace kora {

namespace {

/// The special directories, and the registry options, below one folder.
class ScratchPlaces : public platform::Environment {
public:
    explicit ScratchPlaces(const std::string& folder) : folder_(folder) {}

    bool make() const {
        for (const char* name : {"documents", "userdata", "shareddata", "system", "temporary", "work"})
            if (!directoryMake(place(name))) return false;
        return true;
    }

    std::optional<std::string> variable(const std::string& name) override {
        // These come before the system's own directory for temporary files.
        if (name == "TEMP" || name == "TMP") return place("temporary");
        return Environment::variable(name);
    }
    std::string documents() override { return place("documents"); }
    std::string userData() override { return place("userdata"); }
    std::string sharedData() override { return place("shareddata"); }
    std::string systemDirectory() override { return place("system"); }
    std::string temporary() override { return place("temporary"); }
    std::string workingDirectory() override { return place("work"); }
    std::string registryFolder() override { return place("registry"); }

private:
    std::string place(const char* name) const { return folder_ + '\\' + name; }

    const std::string folder_;
};

constinit ScratchPlaces* scratchPlaces = nullptr;

}  // namespace

}  // namespace kora

bool TskScratchPlacesSet(const char* folder) try {
    using namespace kora;
    if (applicationState.started) return false;
    std::unique_ptr<ScratchPlaces> places;
    if (folder != nullptr) {
        DirPath path;
        path.DirInitStartIn();
        if (!path.DirStringSet(folder)) return false;
        places = std::make_unique<ScratchPlaces>(path.DirStringGet());
        if (!places->make()) return false;
    }
    platform::environmentSet(places.get());
    delete scratchPlaces;
    scratchPlaces = places.release();
    // What is remembered of the places before.
    pathsStop();
    settingsStop();
    return true;
} catch (const std::exception&) {
    return false;
}
