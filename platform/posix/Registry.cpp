#include "platform/Platform.h"

namespace kora::platform {

bool registryRead(const std::string& section, const std::string& name, RegistryValue& value) {
    return registryFileRead(environment().registryFolder(), section, name, value);
}

bool registryWrite(const std::string& section, const std::string& name, const RegistryValue& value) {
    return registryFileWrite(environment().registryFolder(), section, name, value);
}

}  // namespace kora::platform
