#include "platform/win32/Win32.h"

#include <exception>

namespace kora::platform {

namespace {

constexpr char kBaseKey[] = "Software\\Veltrane\\Tessera5\\";
constexpr char kComputerNameKey[] = "System\\CurrentControlSet\\control\\ComputerName\\ComputerName";

struct Key {
    HKEY key = nullptr;
    ~Key() {
        if (key) RegCloseKey(key);
    }
};

// What the system's calls would cut short is the name of no value.
bool whole(const std::string& section, const std::string& name) {
    return section.find('\0') == section.npos && name.find('\0') == name.npos;
}

RegistryType typeOf(DWORD type) {
    switch (type) {
        case REG_SZ:
        case REG_EXPAND_SZ:
            return RegistryType::text;
        case REG_DWORD:
            return RegistryType::number32;
        case REG_QWORD:
            return RegistryType::number64;
        default:
            return RegistryType::binary;
    }
}

bool read(HKEY root, const char* path, const char* name, RegistryValue& value) {
    Key key;
    if (RegOpenKeyExA(root, path, 0, KEY_QUERY_VALUE, &key.key) != ERROR_SUCCESS) return false;
    std::string bytes(256, '\0');
    for (;;) {
        DWORD type = REG_NONE;
        DWORD size = static_cast<DWORD>(bytes.size());
        const LONG result =
            RegQueryValueExA(key.key, name, nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
        if (result == ERROR_SUCCESS) {
            bytes.resize(size);
            value = {typeOf(type), std::move(bytes)};
            return true;
        }
        // Another program may have made it longer meanwhile, so this can come more than once.
        if (result != ERROR_MORE_DATA) return false;
        bytes.resize(size);
    }
}

/// A name that begins and ends with a dot is no device's and keeps its spaces when it becomes a file's.
std::string dotted(const std::string& name) { return '.' + name + '.'; }

}  // namespace

bool registryRead(const std::string& section, const std::string& name, RegistryValue& value) try {
    if (const std::string folder = environment().registryFolder(); !folder.empty())
        return registryFileRead(folder, dotted(section), dotted(name), value);
    return whole(section, name) && read(HKEY_CURRENT_USER, (kBaseKey + section).c_str(), name.c_str(), value);
} catch (const std::exception&) {
    return false;
}

bool registryWrite(const std::string& section, const std::string& name, const RegistryValue& value) try {
    if (const std::string folder = environment().registryFolder(); !folder.empty())
        return registryFileWrite(folder, dotted(section), dotted(name), value);
    Key key;
    return whole(section, name) &&
           RegCreateKeyExA(HKEY_CURRENT_USER, (kBaseKey + section).c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                           &key.key, nullptr) == ERROR_SUCCESS &&
           RegSetValueExA(key.key, name.c_str(), 0, static_cast<DWORD>(value.type),
                          reinterpret_cast<const BYTE*>(value.bytes.data()),
                          static_cast<DWORD>(value.bytes.size())) == ERROR_SUCCESS;
} catch (const std::exception&) {
    return false;
}

std::optional<std::string> registeredComputerName() try {
    RegistryValue value;
    if (!read(HKEY_LOCAL_MACHINE, kComputerNameKey, "ComputerName", value) || value.type != RegistryType::text)
        return {};
    return value.bytes.substr(0, value.bytes.find('\0'));
} catch (const std::exception&) {
    return {};
}

}  // namespace kora::platform
