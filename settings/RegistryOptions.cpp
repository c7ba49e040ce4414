#include <kora/Ini.h>

#include <climits>
#include <cstring>
#include <exception>
#include <optional>

#include "platform/Platform.h"

using namespace kora;
using platform::RegistryType;
using platform::RegistryValue;

namespace {

std::optional<RegistryValue> readOption(const char* section, const char* name) {
    RegistryValue value;
    if (!section || !name || !platform::registryRead(section, name, value)) return std::nullopt;
    return value;
}

bool writeOption(const char* section, const char* name, RegistryType type, std::string_view bytes) try {
    return section && name && platform::registryWrite(section, name, {type, std::string(bytes)});
} catch (const std::exception&) {
    return false;
}

/// A number counts under its own type, or as bytes of exactly its size.
template <class Number>
bool getNumber(const char* section, const char* name, RegistryType type, Number& number) try {
    const auto option = readOption(section, name);
    if (!option || option->bytes.size() != sizeof number) return false;
    if (option->type != type && option->type != RegistryType::binary) return false;
    std::memcpy(&number, option->bytes.data(), sizeof number);
    return true;
} catch (const std::exception&) {
    return false;
}

template <class Number>
bool setNumber(const char* section, const char* name, RegistryType type, Number number) {
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    return writeOption(section, name, type, {bytes, sizeof bytes});
}

}  // namespace

bool GetRegOption(const char* section, const char* name, int& value) {
    return getNumber(section, name, RegistryType::number32, value);
}

bool GetRegOption(const char* section, const char* name, CString& value) try {
    const auto option = readOption(section, name);
    if (!option || option->type != RegistryType::text) return false;
    // The terminator is stored, or was forgotten by whoever else wrote it.
    value = option->bytes.substr(0, option->bytes.find('\0'));
    return true;
} catch (const std::exception&) {
    return false;
}

bool GetRegOption(const char* section, const char* name, std::int64_t& value) {
    return getNumber(section, name, RegistryType::number64, value);
}

bool GetRegOption(const char* section, const char* name, bool& value) {
    int number = 0;
    if (!GetRegOption(section, name, number)) return false;
    value = number != 0;
    return true;
}

bool GetRegOption(const char* section, const char* name, void* buffer, int size) try {
    if (!buffer || size < 0) return false;
    const auto option = readOption(section, name);
    if (!option || option->bytes.size() > static_cast<std::size_t>(size)) return false;
    std::memcpy(buffer, option->bytes.data(), option->bytes.size());
    return true;
} catch (const std::exception&) {
    return false;
}

int GetRegOptionLen(const char* section, const char* name) try {
    const auto option = readOption(section, name);
    return option && option->bytes.size() <= INT_MAX ? static_cast<int>(option->bytes.size()) : 0;
} catch (const std::exception&) {
    return 0;
}

bool SetRegOption(const char* section, const char* name, int value) {
    return setNumber(section, name, RegistryType::number32, value);
}

bool SetRegOption(const char* section, const char* name, const void* buffer, int size) {
    if (size < 0 || (!buffer && size > 0)) return false;
    const std::string_view bytes(static_cast<const char*>(buffer), static_cast<std::size_t>(size));
    return writeOption(section, name, RegistryType::binary, bytes);
}

bool SetRegOption(const char* section, const char* name, const CString& value) {
    return SetRegOption(section, name, value.c_str());
}

bool SetRegOption(const char* section, const char* name, std::int64_t value) {
    return setNumber(section, name, RegistryType::number64, value);
}

bool SetRegOption(const char* section, const char* name, bool value) {
    return SetRegOption(section, name, value ? 1 : 0);
}

bool SetRegOption(const char* section, const char* name, const char* value) {
    // With its terminator, which belongs to the stored size.
    return value && writeOption(section, name, RegistryType::text, {value, std::strlen(value) + 1});
}
