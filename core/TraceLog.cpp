#include <kora/Trace.h>

#include <ctime>
#include <new>
#include <set>
#include <string>

#include "core/Messages.h"
#include "core/OwnStrings.h"
#include "core/Presenter.h"
#include "core/TraceLogPath.h"
#include "core/TraceRing.h"
#include "platform/Platform.h"
#include "strings/Format.h"

using kora::traceRing;
using kora::TraceRing;

namespace {

constexpr int kInternalErrorText = 1218;

// Texts that the user does not want to see again. Lives until the process ends, whoever still traces by then.
constinit std::set<std::string>* suppressed = nullptr;

// A log that cannot be written is passed over: there is nobody to tell.
void append(const std::string& text) {
    kora::platform::Failure ignored;
    kora::platform::fileSystem().write(kora::traceLogPath(), text, kora::platform::WriteMode::append, false, ignored);
}

bool writes(bool force) { return traceRing.toFile || force; }

void appendLine(const std::string& front, const char* text, const char* second) {
    append(front + (text ? text : "") + (second ? second : "") + '\n');
}

std::string dateAndTime() {
    const std::time_t now = std::time(nullptr);
    char text[64];
    const std::tm* local = std::localtime(&now);
    const std::size_t length = local ? std::strftime(text, sizeof text, "%b %d, %Y - %H:%M:%S - ", local) : 0;
    return std::string(text, length);
}

std::string dumpText(const char* text) {
    constexpr std::uint32_t kWordsPerLine = 8;
    constexpr char kDigits[] = "0123456789abcdef";
    std::string dump = kora::formatText("$STARTDUMP(%x)", static_cast<unsigned>(traceRing.count));
    if (text && *text) dump.append(" ").append(text);
    dump += '\n';
    for (std::uint32_t i = 0; i < TraceRing::kWords; ++i) {
        const std::uint32_t word = traceRing.words[(traceRing.count + i) % TraceRing::kWords];
        for (int shift = 28; shift >= 0; shift -= 4) dump += kDigits[word >> shift & 15];
        dump += (i + 1) % kWordsPerLine == 0 ? '\n' : ' ';
    }
    static_assert(TraceRing::kWords % kWordsPerLine == 0, "the last line would lack its end");
    return dump += "$ENDDUMP\n";
}

bool isSuppressed(const std::string& message) { return suppressed && suppressed->count(message) != 0; }

void suppress(const std::string& message) {
    if (!suppressed) suppressed = new (std::nothrow) std::set<std::string>;
    if (suppressed) suppressed->insert(message);
}

void showException(const char* text) {
    std::string message = kora::formatText(kora::ownString(kInternalErrorText).c_str(),
                                           text ? text : "Undefined exception", static_cast<unsigned>(LastTrace()));
    if (message.size() >= kora::kMessageSize) message.resize(kora::kMessageSize - 1);
    if (isSuppressed(message)) return;
    bool never = false;
    {
        struct Quiet {
            Quiet() { traceRing.recording = false; }
            ~Quiet() { traceRing.recording = true; }
        } quiet;
        kora::presenter().ErrorDialog(message.c_str(), never);
    }
    if (never) suppress(message);
}

}  // namespace

std::string kora::traceLogPath() {
    platform::Environment& places = platform::environment();
    std::string folder = places.documents();
    if (folder.empty()) folder = places.programDirectory();
    if (!folder.empty() && folder.back() != '\\') folder += '\\';
    return folder + "ts_error_log.txt";
}

void TraceInit() {
    traceRing.count = 0;
    traceRing.lastCode = 0;
    for (std::uint32_t& word : traceRing.words) word = 0;
}

void TraceData(unsigned long word) { kora::traceData(static_cast<std::uint32_t>(word)); }

void TraceCode(unsigned long code) { kora::traceCode(static_cast<std::uint32_t>(code)); }

unsigned long LastTrace() { return traceRing.lastCode; }

void TraceNote(const char* text) { TraceNote(text, "", false); }

void TraceNote(const char* text, const char* second, bool force) {
    if (!writes(force)) return;
    try {
        appendLine("", text, second);
    } catch (const std::bad_alloc&) {
    }
}

void TraceNoteDate(const char* text, bool force) {
    if (!writes(force)) return;
    try {
        appendLine(dateAndTime(), text, "");
    } catch (const std::bad_alloc&) {
    }
}

void TraceDump(const char* text, bool force) {
    if (!writes(force)) return;
    try {
        append(dumpText(text));
    } catch (const std::bad_alloc&) {
    }
}

void TraceException(const char* text) {
    TraceDump(text, false);
    try {
        showException(text);
    } catch (const std::bad_alloc&) {
    }
}

void TraceRecordSet(bool on) { traceRing.recording = on; }

bool TraceRecordGet() { return traceRing.recording; }

void TraceToFileSet(bool on) { traceRing.toFile = on; }

bool TraceToFileGet() { return traceRing.toFile; }

void TraceTriggerSet(unsigned long code) { traceRing.trigger = static_cast<std::uint32_t>(code); }

unsigned long TraceTriggerGet() { return traceRing.trigger; }
