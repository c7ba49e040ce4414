#include <glib.h>
#include <kora/DoubleList.h>
#include <kora/Ini.h>
#include <kora/Sht.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

/// What things take of the machine's memory, beside what users would keep them in: lines of a name, who, and bytes for
/// each.
namespace {

/// Bytes of the pages that this process has written to, those of files left out.
double resident() {
    long all = 0, here = 0, ofFiles = 0;
    std::ifstream("/proc/self/statm") >> all >> here >> ofFiles;
    return static_cast<double>(here - ofFiles) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// Bytes more after @p make, for each of so many things; in a process of its own, whose heap holds nothing that was
/// given back.
template <class Make>
void weigh(const char* name, const char* who, long count, const Make& make) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        const double before = resident();
        [[maybe_unused]] const auto kept = make();
        std::printf("%s %s %.1f\n", name, who, (resident() - before) / static_cast<double>(count));
        std::fflush(stdout);
        _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) < 0 || status != 0) std::exit(1);
}

constexpr int kRows = 32767, kColumns = 16, kElements = 100000, kKeys = 10000;

std::string text(int row, int column) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "net_%04d_%c", (row * 31 + column * 7) % 4096, 'a' + column);
    return buffer;
}

void sheets() {
    weigh("sheet cell", "kora", kRows * kColumns, [] {
        auto sheet = std::make_unique<ShtSheet>(nullptr, nullptr, 0);
        for (int row = 0; row < kRows; ++row)
            for (int column = 0; column < kColumns; ++column) {
                std::string cell = text(row, column);
                sheet->ShtCellSet(static_cast<short>(row), static_cast<short>(column), true, cell.data(),
                                  static_cast<long>(cell.size()), nullptr, ShtCellUpdateNone, ShtCellShowNone,
                                  ShtCellShowNone);
            }
        return sheet;
    });
    weigh("sheet cell", "vector_vector_string", kRows * kColumns, [] {
        std::vector<std::vector<std::string>> grid(kRows);
        for (int row = 0; row < kRows; ++row)
            for (int column = 0; column < kColumns; ++column)
                grid[static_cast<std::size_t>(row)].push_back(text(row, column));
        return grid;
    });
}

void lists() {
    struct Element : DoubleListElement {
        long value = 0;
    };
    weigh("list element of a long", "kora", kElements, [] {
        auto list = std::make_unique<DoubleList>();
        for (int i = 0; i < kElements; ++i) list->AttachAtTail(new Element);
        return list;
    });
    weigh("list element of a long", "std_list", kElements, [] { return std::list<long>(kElements); });
}

void profiles(const std::string& folder) {
    const std::string path = folder + "/profile.ini";
    {
        std::ofstream file(path);
        for (int i = 0; i < kKeys; ++i) {
            if (i % 100 == 0) file << "[Section " << i / 100 << "]\n";
            file << "SomeLongerKeyName" << i << " = value " << i * 7 << '\n';
        }
    }
    weigh("profile key", "kora", kKeys, [&] {
        IniMainFileSet(path.c_str());
        char value[8];
        IniGetString(eIniMain, "Section 0", "x", "", value, sizeof value, false);
        return 0;
    });
    weigh("profile key", "gkeyfile", kKeys, [&] {
        GKeyFile* const file = g_key_file_new();
        g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr);
        return file;
    });
}

}  // namespace

int main(int, char** arguments) {
    setenv("HOME", arguments[1], 1);
    unsetenv("XDG_CONFIG_HOME");
    sheets();
    lists();
    profiles(arguments[1]);
}
