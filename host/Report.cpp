#include "host/Report.h"

#include <kora/Tsk.h>
#include <kora/Utl.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "host/Json.h"

namespace kora::host {

namespace {

constexpr int kReportVersion = 1;
constexpr const char* kResults[] = {"done", "failed", "threw"};

std::string timeText() {
    const std::time_t now = std::time(nullptr);
    const std::tm* const parts = std::gmtime(&now);
    char text[32] = "";
    if (parts != nullptr) std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", parts);
    return text;
}

void writeModule(Json& json, const ModuleRecord& module) {
    json.begin('{');
    json.field("file", module.file);
    json.field("name", module.name);
    for (std::size_t i = 0; i < kSteps; ++i) {
        const std::optional<StepRecord>& step = module.steps[i];
        if (!step) continue;
        json.key(kStepNames[i]).begin('{');
        json.field("result", kResults[step->result]);
        json.field("microseconds", step->microseconds);
        if (!step->reason.empty()) json.field("reason", step->reason);
        json.end('}');
    }
    if (!module.advice.empty()) json.field("advice", module.advice);
    json.end('}');
}

// The last pass and the exit passes answer nothing: there only an exception is a failure.
bool hasFailed(const ModuleRecord& module) {
    for (std::size_t i = 0; i < kSteps; ++i) {
        const std::optional<StepRecord>& step = module.steps[i];
        if (step && (step->result == TskStepThrew || (step->result == TskStepFailed && i <= TskStepInit4))) return true;
    }
    return false;
}

void writeTotals(Json& json, const RunRecord& record, std::int64_t run) {
    json.begin('{');
    json.field("modules", record.modules.size());
    json.field("failed", std::count_if(record.modules.begin(), record.modules.end(), hasFailed));
    json.key("microseconds").begin('{');
    for (std::size_t i = 0; i < kSteps; ++i) {
        std::int64_t time = 0;
        for (const ModuleRecord& module : record.modules) time += module.steps[i] ? module.steps[i]->microseconds : 0;
        json.field(kStepNames[i], time);
    }
    json.field("start", record.startMicroseconds);
    json.field("end", record.endMicroseconds);
    json.field("run", run);
    json.end('}');
    json.end('}');
}

void writeMessage(Json& json, const MessageRecord& message) {
    json.begin('{');
    json.field("kind", message.kind);
    json.field("text", message.text);
    json.field("phase", message.phase);
    if (!message.file.empty()) json.field("file", message.file);
    if (message.style) json.field("style", *message.style);
    if (message.answer) json.field("answer", *message.answer);
    json.end('}');
}

bool isOrdinary(const std::string& path) {
    std::error_code ignored;
    const auto type = std::filesystem::status(path, ignored).type();
    return type == std::filesystem::file_type::regular || type == std::filesystem::file_type::not_found;
}

bool writeBytes(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << bytes;
    file.close();
    return !file.fail();
}

bool writeFile(const std::string& path, const std::string& bytes) {
    // A pipe or a terminal takes what comes; it has no other name, and is not to be replaced.
    if (!isOrdinary(path)) return writeBytes(path, bytes);
    const std::string scratch = path + ".new";
    std::error_code error;
    if (writeBytes(scratch, bytes)) {
        std::filesystem::rename(scratch, path, error);
        if (!error) return true;
    }
    std::filesystem::remove(scratch, error);
    return false;
}

}  // namespace

Report::Report(std::string path) : path_(std::move(path)), started_(timeText()) {
    std::error_code ignored;
    if (path_ != "-" && isOrdinary(path_)) std::filesystem::remove(path_, ignored);
}

std::string Report::text(const RunRecord& record, int exitCode) const {
    Json json;
    json.begin('{');
    json.field("report", kReportVersion);
    json.field("host", KORA_VERSION);
    json.field("library", TskVersionGet());
    json.field("platform", UtlOS() == 3 ? "windows" : "posix");
    json.field("started", started_);
    json.field("ended", timeText());
    json.field("profile", record.profile);
    json.field("profileThere", record.profileThere);
    json.field("toolsFolder", record.toolsFolder);
    json.field("startUp", record.started);
    if (!record.error.empty()) json.field("error", record.error);
    json.key("modules").begin('[');
    for (const ModuleRecord& module : record.modules) writeModule(json, module);
    json.end(']');
    writeTotals(json.key("totals"), record, microsecondsSince(begin_));
    json.key("idle").begin('{');
    json.field("passes", record.passes.count);
    json.field("microseconds", microseconds(record.passes.time));
    json.field("longest", microseconds(record.passes.longest));
    json.end('}');
    json.key("messages").begin('[');
    for (const MessageRecord& message : record.messages) writeMessage(json, message);
    json.end(']');
    json.field("messagesDropped", record.messagesDropped);
    json.key("exit").begin('{');
    if (record.agreed)
        json.field("agreed", *record.agreed);
    else
        json.key("agreed").null();
    json.field("forced", record.forced);
    json.end('}');
    json.field("exitCode", exitCode);
    json.end('}');
    return json.text();
}

bool Report::write(const RunRecord& record, int exitCode) const {
    const std::string bytes = text(record, exitCode);
    const bool written =
        path_ == "-" ? std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size() && std::fflush(stdout) == 0
                     : writeFile(path_, bytes);
    if (!written) std::fprintf(stderr, "kora-host: the report %s cannot be written\n", path_.c_str());
    return written;
}

}  // namespace kora::host
