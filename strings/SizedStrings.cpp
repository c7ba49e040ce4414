#include <kora/Str.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "strings/SizedText.h"
#include "strings/TextSearch.h"

using namespace kora;

namespace {

// A text that ends at its NUL alone, read no further than it takes to see that it is longer than `room`.
std::string_view unboundedText(const char* s, std::size_t room) {
    return textUpTo(s, room == kUnbounded ? kUnbounded : room + 1);
}

}  // namespace

int StrLength(const char* s, int size) {
    return static_cast<int>(std::min<std::size_t>(measuredText(s, size).size(), INT_MAX));
}

void StrAssign(const char* src, char* dst, int size) {
    const std::size_t room = roomOf(dst, size);
    stringState.error = !putText(dst, room, 0, unboundedText(src, room));
}

void StrAssign(const char* src, int srcSize, char* dst, int size) {
    stringState.error = !putText(dst, roomOf(dst, size), 0, sizedText(src, srcSize));
}

void StrAssign(const char* src, int srcSize, CString& dst) {
    const std::string_view text = sizedText(src, srcSize);
    stringState.error = !guarded([&] { dst.assign(text); });
}

void StrAssign(const CString& src, char* dst, int size) {
    stringState.error = !putText(dst, roomOf(dst, size), 0, textUpTo(src.data(), src.size()));
}

void StrAppend(const char* src, char* dst, int size) {
    const std::size_t room = roomOf(dst, size);
    const std::string_view held = sizedText(dst, size);
    const std::size_t left = room == kUnbounded ? kUnbounded : room - held.size();
    stringState.error = !putText(dst, room, held.size(), unboundedText(src, left));
}

void StrAppend(const char* src, int srcSize, char* dst, int size) {
    const std::size_t held = sizedText(dst, size).size();
    stringState.error = !putText(dst, roomOf(dst, size), held, sizedText(src, srcSize));
}

void StrAppend(const char* src, int srcSize, CString& dst) {
    const std::string_view text = sizedText(src, srcSize);
    stringState.error = !guarded([&] { dst.append(text); });
}

void StrConcat(const char* a, int aSize, const char* b, int bSize, char* dst, int size) {
    const std::size_t room = roomOf(dst, size);
    const std::string_view first = sizedText(a, aSize);
    const std::string_view second = sizedText(b, bSize);
    putText(dst, room, 0, first);
    stringState.error = !putText(dst, room, first.size(), second);
}

void StrCopy(const char* src, int start, int count, char* dst, int size) {
    const std::string_view text =
        src && count > 0 ? std::string_view(src + start, static_cast<std::size_t>(count)) : std::string_view();
    stringState.error = !putText(dst, roomOf(dst, size), 0, text);
}

void StrInsert(const char* src, int srcSize, char* dst, int size, int position) {
    const std::size_t room = roomOf(dst, size);
    const std::string_view text = sizedText(src, srcSize);
    const std::size_t held = sizedText(dst, size).size();
    const auto at = static_cast<std::size_t>(std::max(position, 0));
    stringState.error = text.size() > room - held || at > held;
    if (stringState.error || text.empty()) return;
    const std::size_t length = held + text.size();
    std::memmove(dst + at + text.size(), dst + at, held - at);
    std::memmove(dst + at, text.data(), text.size());
    if (length < room) dst[length] = '\0';
}

void StrDelete(char* s, int size, int position, int count) {
    const std::size_t held = sizedText(s, size).size();
    const auto at = static_cast<std::size_t>(std::max(position, 0));
    stringState.error = at >= held;
    if (stringState.error || count <= 0) return;
    const std::size_t gone = std::min(static_cast<std::size_t>(count), held - at);
    std::memmove(s + at, s + at + gone, held - at - gone);
    // There is room for the NUL now, even where the text filled its buffer.
    s[held - gone] = '\0';
}

int StrPos(const char* sought, int soughtSize, const char* s, int size) {
    stringState.error = false;
    const std::string_view text = sizedText(s, size);
    const bool ended = size < 0 || text.size() < static_cast<std::size_t>(size);
    const std::size_t at = findText(text, ended, sizedText(sought, soughtSize));
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

int StrCompare(const char* a, int aSize, const char* b, int bSize) {
    stringState.error = false;
    return compareTexts(sizedText(a, aSize), sizedText(b, bSize));
}

bool StrEqualStr(const char* a, const char* b, int bSize, bool caseSensitive) {
    return StrEqualStr(a, -1, b, bSize, caseSensitive);
}

bool StrEqualStr(const char* a, int aSize, const char* b, int bSize, bool caseSensitive) {
    stringState.error = false;
    const std::string_view first = sizedText(a, aSize);
    const std::string_view second = sizedText(b, bSize);
    return caseSensitive ? first == second : equalIgnoringCase(first, second);
}

char* StrNew(const char* s) {
    if (!s) return nullptr;
    const std::size_t bytes = measuredText(s, -1).size() + 1;
    auto* copy = static_cast<char*>(::operator new(bytes, std::nothrow));
    if (copy) std::memcpy(copy, s, bytes);
    return copy;
}

CString StrToCString(const char* s, int size) {
    CString text;
    StrAssign(s, size, text);
    return text;
}

bool StrStringError() {
    const bool error = stringState.error;
    stringState.error = false;
    return error;
}

bool StrInit() {
    if (stringState.initialised++ > 0) return false;
    stringState.error = false;
    return true;
}

void StrExit() {}
