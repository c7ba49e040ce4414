#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <locale.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <vector>

#include "core/OwnStrings.h"
#include "platform/Platform.h"
#include "platform/posix/Handles.h"
#include "platform/posix/NativePath.h"

namespace kora::platform {

using namespace posix;

namespace {

// Windows numbers, which the library has its texts for.
enum : std::uint32_t {
    kFileNotFound = 2,
    kPathNotFound = 3,
    kAccessDenied = 5,
    kNoMemory = 8,
    kNeedsModule = 126,
    kNeedsFunction = 127,
    kBadFormat = 193
};

constexpr char kStringTable[] = "TskKoraStrings";

#if defined(__x86_64__)
constexpr unsigned kMachine = EM_X86_64;
#elif defined(__aarch64__)
constexpr unsigned kMachine = EM_AARCH64;
#else
#error "Name the machine of this platform's libraries."
#endif

/// Whether the file is a library of this machine and whole. The loader would map segments that the file does not
/// hold, and the process would end at the first access.
bool isLibrary(int file, std::uint64_t size) {
    // The linkers put the segments right behind the head, so that one read gets both.
    struct {
        Elf64_Ehdr head;
        Elf64_Phdr segments[16];
    } start;
    const ssize_t got = pread(file, &start, sizeof start, 0);
    const Elf64_Ehdr& head = start.head;
    if (got < static_cast<ssize_t>(sizeof head) || std::memcmp(head.e_ident, ELFMAG, SELFMAG) != 0 ||
        head.e_ident[EI_CLASS] != ELFCLASS64 || head.e_ident[EI_DATA] != ELFDATA2LSB || head.e_machine != kMachine ||
        head.e_type != ET_DYN || head.e_phentsize != sizeof(Elf64_Phdr))
        return false;
    const Elf64_Phdr* segments = start.segments;
    std::vector<Elf64_Phdr> elsewhere;
    const std::size_t bytes = head.e_phnum * sizeof(Elf64_Phdr);
    if (head.e_phoff != sizeof head || sizeof head + bytes > static_cast<std::size_t>(got)) {
        elsewhere.resize(head.e_phnum);
        segments = elsewhere.data();
        if (head.e_phoff > size ||
            pread(file, elsewhere.data(), bytes, static_cast<off_t>(head.e_phoff)) != static_cast<ssize_t>(bytes))
            return false;
    }
    return std::all_of(segments, segments + head.e_phnum, [&](const Elf64_Phdr& segment) {
        return segment.p_type != PT_LOAD || (segment.p_offset <= size && segment.p_filesz <= size - segment.p_offset);
    });
}

std::uint32_t codeOf(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
            return kAccessDenied;
        case ENOMEM:
            return kNoMemory;
        case ENOTDIR:
        case ENAMETOOLONG:
        case ELOOP:
            return kPathNotFound;
        default:  // there, but nothing that can be read: a socket, a broken disk
            return kBadFormat;
    }
}

/// What stands in the way of loading @p native before the loader is asked; 0 when nothing does. A name that is there in
/// another letter case becomes that one.
std::uint32_t obstacle(std::string& native) {
    struct stat status;
    int opened = openFile(native.c_str(), O_RDONLY);
    if (opened < 0 && errno == ENOENT) {
        native = findVariant(native);
        opened = openFile(native.c_str(), O_RDONLY);
    }
    const Descriptor file(opened);
    if (!file) {
        if (errno != ENOENT) return codeOf(errno);
        const std::string directory = native.substr(0, native.rfind('/') + 1) + '.';
        return stat(directory.c_str(), &status) == 0 ? kFileNotFound : kPathNotFound;
    }
    if (fstat(file.get(), &status) != 0) return codeOf(errno);
    if (S_ISDIR(status.st_mode)) return kAccessDenied;
    const bool ordinary = S_ISREG(status.st_mode);
    if (ordinary && isLibrary(file.get(), static_cast<std::uint64_t>(status.st_size))) return 0;
    return kBadFormat;
}

/// The loader's sentence in the language of its sources, whatever the user's is, so that it can be read by codeOf().
std::string loaderSentence() {
    const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t before = plain ? uselocale(plain) : nullptr;
    const char* text = dlerror();
    const std::string sentence = text ? text : "";
    if (plain) {
        uselocale(before);
        freelocale(plain);
    }
    return sentence;
}

/// What a sentence "file: reason" of the loader about loading @p native means.
std::uint32_t codeOf(std::string_view sentence, const std::string& native) {
    const auto says = [&](const char* words) { return sentence.find(words) != std::string_view::npos; };
    if (says("annot allocate memory") || says("out of memory")) return kNoMemory;
    if (says("undefined symbol") || (says("version `") && says("not found"))) return kNeedsFunction;
    if (!sentence.starts_with(native + ':')) return kNeedsModule;
    return says("Operation not permitted") || says("Permission denied") ? kAccessDenied : kBadFormat;
}

void* address(ModuleHandle module) { return reinterpret_cast<void*>(module); }
ModuleHandle handle(const void* module) { return reinterpret_cast<ModuleHandle>(module); }

/// The module that holds @p address; the loader's handle is the address of its link map.
ModuleHandle moduleOf(const void* address) {
    Dl_info info;
    void* map = nullptr;
    return dladdr1(address, &info, &map, RTLD_DL_LINKMAP) != 0 ? handle(map) : 0;
}

const TskString* stringTable(ModuleHandle module) {
    return module == ownModule() ? ownStrings : static_cast<const TskString*>(moduleFunction(module, kStringTable));
}

}  // namespace

ModuleHandle loadModule(const std::string& path, LoadFailure& failure) {
    try {
        std::string native;
        Failure ignored;
        if (!nativeName(path, native, ignored)) {
            failure = {kPathNotFound, {}};
            return 0;
        }
        // Without a directory the loader would look where the system keeps its libraries.
        if (native.find('/') == std::string::npos) native.insert(0, "./");
        if (const std::uint32_t code = obstacle(native)) {
            failure = {code, {}};
            return 0;
        }
        if (void* module = dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL)) return handle(module);
        std::string sentence = loaderSentence();
        const std::uint32_t code = codeOf(sentence, native);
        failure = {code, std::move(sentence)};
    } catch (const std::exception&) {
        failure = {kNoMemory, {}};
    }
    return 0;
}

void unloadModule(ModuleHandle module) {
    if (module != 0) dlclose(address(module));
}

void* moduleFunction(ModuleHandle module, const char* name) {
    if (module == 0 || !name) return nullptr;
    void* function = dlsym(address(module), name);
    if (!function) dlerror();  // nobody asks for the sentence
    // The loader also looks in the libraries that the module needs; what those export is not the module's.
    return function && moduleOf(function) == module ? function : nullptr;
}

int moduleString(ModuleHandle module, int id, char* buffer, int size) {
    if (module == 0 || !buffer || size <= 0) return 0;
    const TskString* string = stringTable(module);
    while (string && string->text && string->id != id) ++string;
    const char* const text = string && string->text ? string->text : "";
    const std::size_t length = strnlen(text, static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text, length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

ModuleHandle ownModule() {
    static const ModuleHandle own = moduleOf(ownStrings);
    return own;
}

const void* calledCode(const void* code) { return code; }

}  // namespace kora::platform
