#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Platform.h"

/// Library form into the names of this system, and system errors into causes; for this folder alone.
namespace kora::platform::posix {

/// The native name of @p path. False, with the failure filled in, where no file can have it: another drive than Z:, a
/// server, the empty text, or a text that holds a NUL.
bool nativeName(const std::string& path, std::string& native, Failure& failure);

/// The library form of a directory that the system names by an absolute native text, without a separator at the end;
/// empty when @p native is relative or a `\` in it would be taken for a separator.
std::string directoryPath(std::string_view native);

/// The name under which @p native stands: itself when it is there, otherwise with each part that is missing in that
/// letter case replaced by one that differs in letter case alone. From the first part on that is not there in any
/// letter case the name stays as it is.
std::string findName(const std::string& native);
/// The same for a name that is known to be missing as it stands.
std::string findVariant(const std::string& native);

/// Whether an earlier look into its directory, which has not changed since, rules out that anything stands under
/// @p native in any letter case. False says nothing, and costs nothing where the name was there. One question to the
/// system instead of two, for those who look for a file in one directory after the other.
bool isKnownMissing(const std::string& native);

/// Runs @p operation, which answers below 0 with errno, on the exact name and, where that is missing, on the one that
/// differs in letter case.
template <typename Operation>
auto onExistingName(const std::string& native, Operation operation);

Cause causeOf(int error);
/// Fills @p failure from errno's value @p error and answers false.
bool fail(Failure& failure, int error);

}  // namespace kora::platform::posix

#include <cerrno>

template <typename Operation>
auto kora::platform::posix::onExistingName(const std::string& native, Operation operation) {
    auto result = operation(native.c_str());
    if (result >= 0 || errno != ENOENT) return result;
    const std::string variant = findVariant(native);
    if (variant != native) return operation(variant.c_str());
    errno = ENOENT;
    return result;
}
