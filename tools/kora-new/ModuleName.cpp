#include "tools/kora-new/ModuleName.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kora::newmodule {

namespace {

constexpr std::size_t kLongest = 40;
constexpr std::size_t kOption = 4;

// Names that a module cannot have, each with a space before and behind it.
constexpr std::string_view kWordsOfCpp =
    " alignas alignof and and_eq asm auto bitand bitor bool break case catch char char16_t char32_t char8_t class "
    "co_await co_return co_yield compl concept const const_cast consteval constexpr constinit continue decltype "
    "default delete do double dynamic_cast else enum explicit export extern false float for friend goto if import "
    "inline int long module mutable namespace new noexcept not not_eq nullptr operator or or_eq private protected "
    "public register reinterpret_cast requires return short signed sizeof static static_assert static_cast struct "
    "switch template this thread_local throw true try typedef typeid typename union unsigned using virtual void "
    "volatile wchar_t while xor xor_eq ";

constexpr std::string_view kTargetsOfCMake =
    " all all_build clean codegen continuous depend edit_cache experimental help install list_install_components "
    "nightly nightlymemorycheck package package_source preinstall rebuild_cache run_tests test uninstall zero_check ";

constexpr std::string_view kDevicesOfWindows =
    " aux com0 com1 com2 com3 com4 com5 com6 com7 com8 com9 con lpt0 lpt1 lpt2 lpt3 lpt4 lpt5 lpt6 lpt7 lpt8 lpt9 nul "
    "prn ";

bool isLower(char c) { return c >= 'a' && c <= 'z'; }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char lower(char c) { return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }
char upper(char c) { return isLower(c) ? static_cast<char>(c - 'a' + 'A') : c; }

bool holds(std::string_view list, const std::string& name) { return list.find(' ' + name + ' ') != list.npos; }

}  // namespace

std::string complaintOfName(std::string_view name) {
    const std::string quoted = '"' + std::string(name) + '"';
    const bool begins = !name.empty() && (isLower(name[0]) || isUpper(name[0]));
    const bool allowed = std::all_of(name.begin(), name.end(),
                                     [](char c) { return isLower(c) || isUpper(c) || isDigit(c) || c == '_'; });
    if (!begins || !allowed || name.back() == '_' || name.find("__") != name.npos)
        return "A module's name begins with a letter and goes on with letters, digits and single underscores between "
               "them, unlike " +
               quoted + '.';
    if (name.size() > kLongest)
        return "A module's name has " + std::to_string(kLongest) + " characters at most, and " + quoted + " has " +
               std::to_string(name.size()) + '.';
    // Files and targets are told apart by letter case on some systems only.
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), lower);
    if (holds(kWordsOfCpp, std::string(name))) return quoted + " is a word of C++.";
    if (holds(kTargetsOfCMake, folded)) return quoted + " is a target of CMake's own.";
    if (holds(kDevicesOfWindows, folded)) return quoted + " is a device on Windows, where no file can have that name.";
    if (folded.starts_with("kora") || folded.starts_with("tsk"))
        return "Names that begin as " + quoted + " does are the library's own.";
    return {};
}

NameForms formsOf(std::string_view name) {
    NameForms forms{std::string(name), {}, {}, std::string(name.substr(0, kOption))};
    for (std::size_t i = 0; i < name.size(); ++i) {
        forms.macro += upper(name[i]);
        if (name[i] != '_') forms.type += i == 0 || name[i - 1] == '_' ? upper(name[i]) : name[i];
    }
    return forms;
}

std::string renamed(std::string_view text, const NameForms& forms) {
    // The shorter name is part of the longer one, which so comes first.
    const std::pair<std::string_view, const std::string&> places[] = {
        {"pulse", forms.name}, {"Pulse", forms.type}, {"PULSE", forms.macro}, {"puls", forms.option}};
    std::string result;
    while (!text.empty()) {
        const auto* place = std::find_if(std::begin(places), std::end(places),
                                         [&](const auto& entry) { return text.starts_with(entry.first); });
        const bool found = place != std::end(places);
        result += found ? std::string_view(place->second) : text.substr(0, 1);
        text.remove_prefix(found ? place->first.size() : 1);
    }
    return result;
}

}  // namespace kora::newmodule
