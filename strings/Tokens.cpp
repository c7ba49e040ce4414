#include <kora/Str.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

struct TokenState {
    char* copy;  // from StrNew
    char* next;  // null behind the last token
};

int firstOutside(std::string_view text, std::string_view set) {
    const std::size_t at = text.find_first_not_of(set);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

bool isNameChar(char c) { return isDigit(c) || (foldCase(c) >= 'A' && foldCase(c) <= 'Z'); }

}  // namespace

bool StrGetItem(int& position, const CString& line, CString& item) {
    const auto skip = [&line](std::size_t at, auto&& passes) {
        while (at < line.size() && passes(line[at])) ++at;
        return at;
    };
    std::size_t start = skip(static_cast<std::size_t>(std::max(position, 0)), isBlankOrControl);
    if (start >= line.size()) {
        position = static_cast<int>(start);
        return false;
    }
    std::size_t end;
    std::size_t next;
    if (const char quote = line[start]; quote == '"' || quote == '\'') {
        end = skip(++start, [quote](char c) { return c != quote; });
        next = std::min(end + 1, line.size());
    } else {
        end = next = skip(start, [](char c) { return !isBlankOrControl(c) && c != ','; });
    }
    next = skip(next, [](char c) { return isBlankOrControl(c) || c == ','; });
    // The item may be the line itself.
    if (!guarded([&] { item = line.substr(start, end - start); })) {
        item.clear();
        stringState.error = true;
        return false;
    }
    position = static_cast<int>(next);
    return true;
}

char* StrTok(const char* text, char delimiter, void** state) {
    if (!state) return nullptr;
    if (text) {
        char* copy = StrNew(text);
        *state = copy ? new (std::nothrow) TokenState{copy, copy} : nullptr;
        if (!*state) ::operator delete(copy);
    }
    auto* tokens = static_cast<TokenState*>(*state);
    if (!tokens) return nullptr;
    char* token = tokens->next;
    if (!token) {
        ::operator delete(tokens->copy);
        delete tokens;
        *state = nullptr;
        return nullptr;
    }
    char* end = delimiter == '\0' ? nullptr : std::strchr(token, delimiter);
    if (end) *end++ = '\0';
    tokens->next = end;
    return token;
}

int StrVerify(const char* s, int size, const char* set, int setSize) {
    return firstOutside(measuredText(s, size), measuredText(set, setSize));
}

int StrVerify(const CString& s, const char* set, int setSize) { return firstOutside(s, measuredText(set, setSize)); }

void StrConvertNonNameChars(CString& s) {
    std::replace_if(
        s.begin(), s.end(), [](char c) { return !isNameChar(c); }, '_');
    s.erase(std::unique(s.begin(), s.end(), [](char a, char b) { return a == '_' && b == '_'; }), s.end());
}
