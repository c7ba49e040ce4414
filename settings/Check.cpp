#include <kora/Ini.h>

#include <exception>
#include <string>
#include <unordered_set>
#include <utility>

#include "settings/KnownKeys.h"
#include "settings/Nearest.h"
#include "settings/ProfileText.h"
#include "settings/Store.h"
#include "settings/ValueCheck.h"
#include "strings/Bytes.h"

using namespace kora;

namespace {

std::string withSuggestion(std::string text, const std::string& suggestion) {
    if (!suggestion.empty()) text.append("; is \"").append(suggestion).append("\" meant?");
    return text;
}

/// Reads the files of one profile, line by line.
class Check {
public:
    Check(eIniFile file, bool unknownSections) : file_(file), listsSections_(unknownSections) {}

    void read(const ProfileSource& source) {
        path_ = &source.path;
        line_ = 0;
        inSection_ = false;
        LinePlace place;
        for (std::size_t at = 0; at < source.text.size(); at = place.next) {
            place = lineAt(source.text, at);
            ++line_;
            const ProfileLine line = readProfileLine(place.in(source.text));
            if (line.kind == ProfileLine::Kind::header) enter(line.name);
            if (line.kind == ProfileLine::Kind::entry) check(line);
        }
    }

    std::vector<IniFinding> findings;

private:
    void enter(std::string_view section) {
        section_ = section;
        inSection_ = true;
        known_ = knownKeysOf(file_, section);
        if (!known_.empty()) return;
        if (!unknown_.insert(sectionKey(file_, section)).second) return;
        Nearest nearest(section);
        IniKnownKey key;
        for (int index = 0; IniKnownKeyGet(index, key); ++index)
            if ((key.file == eIniState) == (file_ == eIniState)) nearest.offer(key.section);
        if (listsSections_ || !nearest.name().empty())
            add(IniFaultUnknownSection, {}, "nobody knows this section", nearest.name());
    }

    void check(const ProfileLine& line) {
        if (!inSection_) return add(IniFaultNoSection, line, "stands in no section", "");
        if (known_.empty()) return;
        Nearest nearest(line.name);
        const IniKnownKey* everyKey = nullptr;
        for (const IniKnownKey& known : known_) {
            if (!known.key)
                everyKey = everyKey ? everyKey : &known;
            else if (equalIgnoringCase(known.key, line.name))
                return checkValue(known.kind, line);
            else
                nearest.offer(known.key);
        }
        if (everyKey) return checkValue(everyKey->kind, line);
        add(IniFaultUnknownKey, line, "no such key", nearest.name());
    }

    void checkValue(eIniKind kind, const ProfileLine& line) {
        if (line.value.empty()) return;
        ValueFault fault = valueFault(kind, line.value);
        if (!fault.text.empty()) add(IniFaultValue, line, std::move(fault.text), fault.suggestion);
    }

    void add(eIniFault fault, const ProfileLine& line, std::string text, const std::string& suggestion) {
        findings.push_back({fault, *path_, line_, CString(section_), CString(line.name), CString(line.value),
                            suggestion, withSuggestion(std::move(text), suggestion)});
    }

    eIniFile file_;
    bool listsSections_;
    const std::string* path_ = nullptr;
    long line_ = 0;
    bool inSection_ = false;
    std::string_view section_;
    std::vector<IniKnownKey> known_;           // keys of the section
    std::unordered_set<std::string> unknown_;  // had before
};

}  // namespace

bool IniCheck(eIniFile file, std::vector<IniFinding>& findings, bool unknownSections) try {
    Check check(file, unknownSections);
    for (const ProfileSource& source : profileSources(file)) check.read(source);
    findings.swap(check.findings);
    return true;
} catch (const std::exception&) {
    return false;
}
