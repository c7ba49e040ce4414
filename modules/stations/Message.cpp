#include "Message.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string_view>

#include "VisibleText.h"

namespace stations {

namespace {

constexpr std::string_view kVersion = "KS1";
constexpr std::string_view kKinds[] = {"here", "say", "bye"};
constexpr std::size_t kIdDigits = 16;

// The longest that can be said: version, kind, sender and name with a line feed behind each.
static_assert(3 + 1 + 3 + 1 + kIdDigits + 1 + kMostName + 1 + kMostText == kMostBytes);

std::string_view nextLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

// Takes a number and what separates it from the next one; false when there is none.
template <class Number>
bool takeNumber(std::string_view& text, int base, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc{} || (end != text.data() + text.size() && *end != ' ')) return false;
    text.remove_prefix(std::min(text.size(), static_cast<std::size_t>(end - text.data()) + 1));
    return true;
}

}  // namespace

CString bytesOf(const Message& message) {
    char sender[kIdDigits + 1];
    std::snprintf(sender, sizeof sender, "%08lx%08lx", static_cast<unsigned long>(message.sender >> 32),
                  static_cast<unsigned long>(message.sender & 0xFFFFFFFF));
    CString bytes(kVersion);
    for (const std::string_view line : {kKinds[message.kind], std::string_view(sender)}) (bytes += '\n') += line;
    bytes += '\n' + message.name.substr(0, kMostName) + '\n';
    if (message.kind == Message::say) bytes += message.text.substr(0, kMostText);
    if (message.kind == Message::here) bytes += std::to_string(message.seconds) + ' ' + std::to_string(message.hears);
    return bytes;
}

std::optional<Message> messageIn(const void* data, std::size_t size) {
    if (data == nullptr || size > kMostBytes) return std::nullopt;
    std::string_view rest(static_cast<const char*>(data), size);
    if (nextLine(rest) != kVersion) return std::nullopt;
    const auto* kind = std::ranges::find(kKinds, nextLine(rest));
    if (kind == std::end(kKinds)) return std::nullopt;
    Message message;
    message.kind = static_cast<Message::Kind>(kind - kKinds);
    std::string_view sender = nextLine(rest);
    if (sender.size() != kIdDigits || sender.find(' ') != sender.npos || !takeNumber(sender, 16, message.sender))
        return std::nullopt;
    const std::string_view name = nextLine(rest);
    if (name.size() > kMostName || name.find_first_not_of(' ') == name.npos) return std::nullopt;
    message.name = visible(name);
    std::string_view text = nextLine(rest);
    if (message.kind == Message::say) {
        if (text.size() > kMostText) return std::nullopt;
        message.text = visible(text);
    }
    if (message.kind == Message::here) {
        if (!takeNumber(text, 10, message.seconds) || !takeNumber(text, 10, message.hears)) return std::nullopt;
        message.seconds = std::clamp(message.seconds, 1u, kMostSeconds);
    }
    return message;
}

}  // namespace stations
