#include <glib.h>
#include <kora/Ini.h>

#include <QSettings>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "bench/Cases.h"

namespace kora::bench {

namespace {

const Sizes kKeys = {1000, 10000, 100000};
constexpr long kInSection = 100;

std::string section(long i) { return "Section " + std::to_string(i / kInSection); }
std::string key(long i) { return "SomeLongerKeyName" + std::to_string(i); }

/// A profile in a folder, of so many keys, and their names in the order of the file.
struct Profile {
    Profile(const std::string& folder, long keys, const char* file = "profile.ini") : path(folder + '/' + file) {
        std::filesystem::create_directories(folder);
        std::ofstream text(path, std::ios::trunc);
        for (long i = 0; i < keys; ++i) {
            if (i % kInSection == 0) text << '[' << section(i) << "]\n";
            text << key(i) << " = value " << i * 7 << '\n';
            names.emplace_back(section(i), key(i));
        }
    }
    std::string path;
    std::vector<std::pair<std::string, std::string>> names;
};

void readAll() {
    measure("ini_read_10k_keys", "kora", kKeys, [](benchmark::State& state, long count) {
        const Profile profile(memoryFolder(), count);
        char value[64];
        for (auto _ : state) {
            IniMainFileSet(profile.path.c_str());
            for (const auto& [in, name] : profile.names)
                if (!IniGetString(eIniMain, in.c_str(), name.c_str(), "", value, sizeof value, false))
                    state.SkipWithError("a key was not found");
        }
        IniMainFileSet(nullptr);
    });
    measure("ini_read_10k_keys", "gkeyfile", kKeys, [](benchmark::State& state, long count) {
        const Profile profile(memoryFolder(), count);
        for (auto _ : state) {
            GKeyFile* const file = g_key_file_new();
            g_key_file_load_from_file(file, profile.path.c_str(), G_KEY_FILE_NONE, nullptr);
            for (const auto& [in, name] : profile.names) {
                gchar* const value = g_key_file_get_value(file, in.c_str(), name.c_str(), nullptr);
                if (!value) state.SkipWithError("a key was not found");
                g_free(value);
            }
            g_key_file_free(file);
        }
    });
    measure("ini_read_10k_keys", "qsettings", kKeys, [](benchmark::State& state, long count) {
        const Profile profile(memoryFolder(), count);
        for (auto _ : state) {
            const QSettings file(QString::fromStdString(profile.path), QSettings::IniFormat);
            for (const auto& [in, name] : profile.names)
                benchmark::DoNotOptimize(file.value(QString::fromStdString(in + '/' + name)).toString().size());
        }
    });
}

/// The state file of the user, which lies where the environment says.
std::string stateFolder() { return diskFolder() + "/Veltrane/Tessera5"; }

void readOne() {
    measure("ini_get_from_file", "kora", kKeys, [](benchmark::State& state, long count) {
        const Profile profile(stateFolder(), count, "tsstate.ini");
        IniMainFileSet(nullptr);
        const auto& [in, name] = profile.names[profile.names.size() * 9 / 10];
        char value[64];
        for (auto _ : state)
            if (!IniGetString(eIniState, in.c_str(), name.c_str(), "", value, sizeof value, false))
                state.SkipWithError("the key was not found");
        std::filesystem::remove(profile.path);
    });
    measure("ini_get_from_file", "ifstream_getline", kKeys, [](benchmark::State& state, long count) {
        const Profile profile(stateFolder(), count, "tsstate.ini");
        const auto& [in, name] = profile.names[profile.names.size() * 9 / 10];
        const std::string header = '[' + in + ']', entry = name + " = ";
        for (auto _ : state) {
            std::ifstream file(profile.path);
            std::string line, value;
            for (bool here = false; std::getline(file, line);) {
                if (line[0] == '[') here = line == header;
                if (here && line.starts_with(entry)) {
                    value = line.substr(entry.size());
                    break;
                }
            }
            if (value.empty()) state.SkipWithError("the key was not found");
        }
        std::filesystem::remove(profile.path);
    });
}

void setOne(const char* name, const std::string& (*folder)()) {
    measure(name, "kora", kKeys, [=](benchmark::State& state, long count) {
        const Profile profile(folder(), count);
        IniMainFileSet(profile.path.c_str());
        const auto& [in, entry] = profile.names[profile.names.size() / 2];
        int value = 0;
        for (auto _ : state)
            if (!IniSetInt(eIniMain, in.c_str(), entry.c_str(), ++value)) state.SkipWithError("nothing was written");
        IniMainFileSet(nullptr);
    });
    measure(name, "gkeyfile", kKeys, [=](benchmark::State& state, long count) {
        const Profile profile(folder(), count);
        const auto& [in, entry] = profile.names[profile.names.size() / 2];
        int value = 0;
        for (auto _ : state) {
            GKeyFile* const file = g_key_file_new();
            g_key_file_load_from_file(file, profile.path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
            g_key_file_set_integer(file, in.c_str(), entry.c_str(), ++value);
            if (!g_key_file_save_to_file(file, profile.path.c_str(), nullptr))
                state.SkipWithError("nothing was written");
            g_key_file_free(file);
        }
    });
}

}  // namespace

void addSettingsCases() {
    readAll();
    readOne();
    setOne("ini_set_one/memory", memoryFolder);
    setOne("ini_set_one/disk", diskFolder);
}

}  // namespace kora::bench
