#include "Request.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "Message.h"
#include "Roster.h"
#include "VisibleText.h"

namespace stations {

namespace {

constexpr std::size_t kMostGroup = 15;
constexpr std::uint32_t kMostWait = 86400;

enum Option { peer, say, till, forSeconds, status };
constexpr const char* kOptions[] = {"peer", "say", "till", "for", "stat"};

// What the library takes for an option: any module's, so that it is nobody's value.
bool isAnOption(std::string_view argument) {
    return (argument.starts_with('-') || argument.starts_with('/')) && argument.size() > 1 && argument.size() <= 5;
}

// Which of our options an argument is, or the end of kOptions.
const char* const* optionIn(std::string_view argument) {
    if (!isAnOption(argument)) return std::end(kOptions);
    return std::ranges::find(kOptions, argument.substr(1), [](const char* name) { return std::string_view(name); });
}

// The number that an argument is; 0 unless it is one from 1 to the most.
std::uint32_t numberIn(std::string_view argument, std::uint32_t most) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(argument.data(), argument.data() + argument.size(), number);
    return error == std::errc{} && end == argument.data() + argument.size() && number <= most ? number : 0;
}

CString range(const char* what, std::size_t most) {
    return CString(" needs a number of ") + what + " from 1 to " + std::to_string(most);
}

// Adds what one option asks for, and answers what is wrong with it behind the option's name.
CString take(Option option, const CString& value, const CString& group, Request& request) {
    switch (option) {
        case peer:
            if (value.empty()) return " needs the name of a group";
            if (value.size() > kMostGroup) return " takes a name of 15 characters at most: " + visible(value);
            if (!group.empty() || !request.group.empty())
                return ": this station is in " + visible(group.empty() ? request.group : group) + " already";
            request.group = value;
            return {};
        case say:
            if (value.empty()) return " needs a text";
            if (value.size() > kMostText)
                return " takes " + std::to_string(kMostText) + " bytes at most, and this text has " +
                       std::to_string(value.size());
            request.lines.push_back(visible(value));
            return {};
        case till:
            request.stations = numberIn(value, Roster::kMost);
            return request.stations != 0 ? CString() : range("stations", Roster::kMost);
        case forSeconds:
            request.seconds = numberIn(value, kMostWait);
            return request.seconds != 0 ? CString() : range("seconds", kMostWait);
        case status:
            request.status = true;
            break;
    }
    return {};
}

}  // namespace

std::span<const char* const> optionNames() { return kOptions; }

std::size_t optionCount(const CStringArray& arguments) {
    return static_cast<std::size_t>(std::ranges::count_if(
        arguments, [](const CString& argument) { return optionIn(argument) != std::end(kOptions); }));
}

Request requestIn(const CStringArray& arguments, const CString& group) {
    Request request;
    CString first;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const char* const* name = optionIn(arguments[i]);
        if (name == std::end(kOptions)) continue;
        const bool hasValue = i + 1 < arguments.size() && !isAnOption(arguments[i + 1]);
        const CString wrong =
            take(static_cast<Option>(name - kOptions), hasValue ? arguments[i + 1] : CString(), group, request);
        if (first.empty()) first = arguments[i];
        if (!wrong.empty() && request.complaint.empty()) request.complaint = '-' + CString(*name) + wrong;
    }
    if (request.complaint.empty() && !first.empty() && group.empty() && request.group.empty())
        request.complaint = first + " needs -peer GROUP beside it";
    return request;
}

}  // namespace stations
