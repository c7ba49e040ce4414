#include "host/LoadDoctor.h"

#include <gmock/gmock.h>
#include <kora/Test.h>

#include <filesystem>

namespace {

using namespace kora::host;
using testing::HasSubstr;

ModuleFile tiny(const std::string& name) { return readModuleFile(std::string(KORA_TINY_FILES) + "/" + name); }

// One of the library's two platforms is this one; the other's files are read the same.
TEST(LoadDoctor, TellsWhatIsWrongWithFilesOfBothSystems) {
    const ModuleFile program = readModuleFile(KORA_HOST);
    ASSERT_EQ(program.tables.kind, BinaryFile::Kind::program);
    const struct {
        const char *file, *machine, *version;
        int strings;
        const char *needs, *advice;  // on the file's own platform
    } rows[] = {
        {"good-x86-64.elf", "ELF 64-bit x86-64", "0.1.0", 2, "libkora.so.0", "It would load."},
        {"absent-x86-64.elf", "ELF 64-bit x86-64", "0.1.0", 2, "libabsent.so.7", "needs libabsent.so.7, which"},
        {"newer-x86-64.elf", "ELF 64-bit x86-64", "9.9.0", 2, "libkora.so.0", "\"_Z9TskFuturev\" first: take it to"},
        {"good-i386.pe", "PE 32-bit i386", "0.1.0", 3, "kora.dll", "It would load."},
        {"absent-i386.pe", "PE 32-bit i386", "0.1.0", -1, "absent.dll", "needs absent.dll, which"},
        {"newer-i386.pe", "PE 32-bit i386", "9.9.0", -1, "kora.dll", "\"_Z9TskFuturev\" first: take it to"},
        {"undecorated-i386.pe", "PE 32-bit i386", "0.1.0", -1, "kora.dll", "exported as \"TskKoraMain\", without"},
        {"undecorated-i386.elf", "ELF 32-bit i386", "0.1.0", 2, "libkora.so.0", "exported as \"TskKoraMain\", without"},
        {"good-mips.elf", "ELF 32-bit big-endian MIPS", "0.1.0", 2, "libkora.so.0", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        const ModuleFile file = tiny(row.file);
        EXPECT_EQ(file.trouble + file.tables.damage, "");
        EXPECT_EQ(file.tables.machineText(), row.machine);
        EXPECT_EQ(builtAgainst(file.tables), row.version);
        EXPECT_EQ(file.tables.strings ? static_cast<int>(*file.tables.strings) : -1, row.strings);
        EXPECT_EQ(file.tables.needed, std::vector<std::string_view>{row.needs});
        const Diagnosis diagnosis = diagnose(file, program, "0.1.0");
        const bool native = file.tables.sameMachine(program.tables);
        EXPECT_EQ(diagnosis.loads, native && std::string(row.advice) == "It would load.") << diagnosis.advice;
        EXPECT_THAT(diagnosis.advice, HasSubstr(native ? row.advice : "and this host is"));
        EXPECT_THAT(diagnosisText(file, diagnosis, "0.1.0"), HasSubstr(row.needs));
    }
}

// Where a file says itself where its libraries are, they are found there.
TEST(LoadDoctor, FindsLibrariesBesideTheFile) {
    const TestFolder folder;
    folder.MakeFolder("beside");
    const bool windows = readModuleFile(KORA_HOST).tables.format == BinaryFile::Format::pe;
    const auto copy = [&](const char* name, const char* to) {
        std::filesystem::copy_file(std::filesystem::path(KORA_TINY_FILES) / name, folder.Native() / to);
    };
    copy(windows ? "absent-i386.pe" : "absent-x86-64.elf", "m.qzx");
    copy(windows ? "good-i386.pe" : "good-x86-64.elf", windows ? "absent.dll" : "beside/libabsent.so.7");
    const Diagnosis found = diagnose(readModuleFile(folder.NativeText("m.qzx")), readModuleFile(KORA_HOST), "0.1.0");
    ASSERT_EQ(found.needed.size(), 1U);
    EXPECT_EQ(found.needed[0].state, NeededLibrary::State::found);
    // It does not export what the host's library does. Where a name comes from is not asked in ELF files.
    EXPECT_EQ(found.namesMissing.size(), windows ? 1U : 0U);
}

// Cut off anywhere, a file is either found damaged or all that it says is still there.
TEST(LoadDoctor, NoCutOffFileMisleads) {
    for (const char* name : {"good-x86-64.elf", "undecorated-i386.elf", "good-mips.elf", "good-i386.pe"}) {
        const ModuleFile whole = tiny(name);
        for (std::size_t length = 0; length < whole.bytes.size(); ++length) {
            const std::vector<unsigned char> bytes(whole.bytes.data(), whole.bytes.data() + length);
            const BinaryFile file = readBinary(bytes);
            if (file.format == BinaryFile::Format::unknown || !file.damage.empty()) continue;
            ASSERT_EQ(file.exports, whole.tables.exports) << name << " of " << length << " bytes";
            ASSERT_EQ(file.imports.size(), whole.tables.imports.size());
        }
    }
}

TEST(LoadDoctor, HostileHeadsAreRefused) {
    const std::tuple<const char*, std::size_t, unsigned char, const char*> rows[] = {
        {"good-x86-64.elf", 18, 0xB7, "It is for ELF 64-bit ARM64 and this host is"},
        {"good-x86-64.elf", 5, 7, "damaged, its head is of an unknown kind"},
        {"good-x86-64.elf", 7, 9, "damaged, it is for another system"},
        {"good-x86-64.elf", 16, 2, "This is a program"},
        {"good-x86-64.elf", 39, 0xFF, "damaged, the table of segments reaches beyond its end"},
        {"good-x86-64.elf", 57, 0xFF, "damaged, it has more segments than any library"},
        {"good-i386.pe", 0, 'X', "neither an ELF nor a PE file"},
    };
    const ModuleFile program = readModuleFile(KORA_HOST);
    for (const auto& [name, offset, byte, advice] : rows) {
        ModuleFile file = tiny(name);
        file.bytes[offset] = byte;
        file.tables = readBinary(file.bytes);
        EXPECT_THAT(diagnose(file, program, "0.1.0").advice, HasSubstr(advice)) << offset;
    }
    for (const char* none : {"nowhere", "", "."}) EXPECT_THAT(readModuleFile(none).trouble, HasSubstr("is ")) << none;
}

}  // namespace
