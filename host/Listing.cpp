#include "host/Listing.h"

#include <kora/Tsk.h>

#include <cstdio>
#include <filesystem>

#include "host/LoadDoctor.h"
#include "host/Places.h"

namespace kora::host {

namespace {

void print(const std::string& text) { std::fwrite(text.data(), 1, text.size(), stdout); }

}  // namespace

int listModules(const ModuleFile& program, bool all) {
    CString folder;
    CStringArray names;
    if (!TskModuleFilesGet(folder, names)) return 1;
    const std::string place = nativeText(folder);
    print(std::to_string(names.size()) + (names.size() == 1 ? " module" : " modules") + " in " + printable(place) +
          '\n');
    for (const CString& name : names) {
        const ModuleFile file = readModuleFile(nativeText(folder + (folder.ends_with('\\') ? "" : "\\") + name));
        print(listingLine(file) + '\n');
        const Diagnosis diagnosis = diagnose(file, program, TskVersionGet());
        if (!diagnosis.loads) print("  " + printable(diagnosis.advice) + '\n');
        for (const std::string_view exported : file.tables.exports)
            if (all) print("  " + printable(exported) + '\n');
    }
    return 0;
}

void adviseOnModules(const ModuleFile& program, RunRecord& record) {
    const std::string folder = record.toolsFolder + static_cast<char>(std::filesystem::path::preferred_separator);
    for (ModuleRecord& module : record.modules) {
        const std::optional<StepRecord>& load = module.steps[TskStepLoad];
        if (!load || load->result == TskStepDone) continue;
        const Diagnosis diagnosis = diagnose(readModuleFile(folder + module.file), program, TskVersionGet());
        if (!diagnosis.loads) module.advice = diagnosis.advice;
    }
}

int explainModule(const ModuleFile& program, const std::string& path) {
    const ModuleFile file = readModuleFile(path);
    const Diagnosis diagnosis = diagnose(file, program, TskVersionGet());
    print(diagnosisText(file, diagnosis, TskVersionGet()));
    return diagnosis.loads ? 0 : 1;
}

}  // namespace kora::host
