#include <algorithm>

#include "host/BinaryFile.h"

namespace kora::host {

namespace {

enum : std::uint16_t { kRunnable = 0x0002, kDll = 0x2000 };      // characteristics of the file
enum : unsigned { kExports = 0, kImports = 1, kResources = 2 };  // directories
constexpr std::uint32_t kStringTables = 6;                       // type of resource
constexpr std::uint32_t kNamed = 0x80000000, kSubdirectory = 0x80000000;
constexpr unsigned kMostSections = 1024;
constexpr unsigned kMostDirectories = 16, kMostNames = 0x10000;  // names lead to numbers of 16 bits

struct Section {
    std::uint64_t address, size, offset;
};

struct Directory {
    std::uint32_t address = 0, size = 0;
};

class Reader {
public:
    Reader(Image& image, BinaryFile& file) : image_(image), file_(file) {}

    void read(std::uint64_t head) {
        const unsigned sections = image_.u16(head + 6), optionalSize = image_.u16(head + 20);
        const unsigned traits = image_.u16(head + 22);
        const std::uint64_t optional = head + 24;
        file_.machine = image_.u16(head + 4);
        if (traits & kRunnable) file_.kind = traits & kDll ? BinaryFile::Kind::library : BinaryFile::Kind::program;
        image_.require(optional, optionalSize, "its head");
        const unsigned magic = image_.u16(optional);
        if (magic != 0x10B && magic != 0x20B) throw Damage{"its head is of an unknown kind"};
        file_.bits = magic == 0x20B ? 64 : 32;
        readDirectories(optional, optional + optionalSize);
        readSections(optional, optional + optionalSize, sections);
        if (directories_[kExports].address != 0) readExports();
        if (directories_[kImports].address != 0) readImports();
        if (directories_[kResources].address != 0) readStrings();
    }

private:
    void readDirectories(std::uint64_t optional, std::uint64_t end) {
        const std::uint64_t count = optional + (file_.bits == 64 ? 108 : 92);
        const unsigned directories = std::min(image_.u32(count), kMostDirectories);
        for (unsigned i = 0; i < directories && count + 12 + 8 * i <= end; ++i)
            directories_[i] = {image_.u32(count + 4 + 8 * i), image_.u32(count + 8 + 8 * i)};
    }

    void readSections(std::uint64_t optional, std::uint64_t table, unsigned count) {
        if (count > kMostSections) throw Damage{"it has more sections than any library"};
        image_.require(table, std::uint64_t{40} * count, "the table of sections");
        // The head is there too, at the begin of the addresses.
        sections_.push_back({0, std::min<std::uint64_t>(image_.u32(optional + 60), image_.size()), 0});
        for (unsigned i = 0; i < count; ++i) {
            const std::uint64_t at = table + std::uint64_t{40} * i;
            const Section section{image_.u32(at + 12), image_.u32(at + 16), image_.u32(at + 20)};
            // One without bytes in the file begins as zeros.
            if (section.offset == 0 || section.size == 0) continue;
            image_.require(section.offset, section.size, "a section");
            sections_.push_back(section);
        }
    }

    /// The section that holds @p address.
    const Section& sectionOf(std::uint64_t address) const {
        for (const Section& section : sections_)
            if (address >= section.address && address - section.address < section.size) return section;
        throw Damage{"a table lies outside its sections"};
    }
    std::uint64_t offsetOf(std::uint64_t address) const {
        const Section& section = sectionOf(address);
        return section.offset + (address - section.address);
    }
    std::string_view text(std::uint64_t address, std::uint64_t most = ~std::uint64_t{0}) {
        const Section& section = sectionOf(address);
        const std::uint64_t at = section.offset + (address - section.address), end = section.offset + section.size;
        return image_.text(at, most < end - at ? at + most : end);
    }

    void readExports() {
        const std::uint64_t at = offsetOf(directories_[kExports].address);
        const std::uint32_t functions = image_.u32(at + 20), names = image_.u32(at + 24);
        file_.ownName = text(image_.u32(at + 12));
        if (names == 0) return;
        if (names > kMostNames) throw Damage{"it claims more names than there can be"};
        const std::uint64_t nameTable = offsetOf(image_.u32(at + 32)), numbers = offsetOf(image_.u32(at + 36));
        const std::uint64_t addresses = offsetOf(image_.u32(at + 28));
        image_.require(nameTable, std::uint64_t{4} * names, "the table of exported names");
        image_.require(numbers, std::uint64_t{2} * names, "the table of exported names");
        for (std::uint64_t i = 0; i < names; ++i) {
            image_.entry();
            const std::string_view name = text(image_.u32(nameTable + 4 * i));
            const unsigned number = image_.u16(numbers + 2 * i);
            if (number >= functions) throw Damage{"an exported name leads nowhere"};
            file_.exports.push_back(name);
            if (name == "TskKoraVersion") file_.koraVersion = text(image_.u32(addresses + 4ULL * number), 32);
        }
    }

    void readImports() {
        for (std::uint64_t at = offsetOf(directories_[kImports].address);; at += 20) {
            const std::uint32_t lookup = image_.u32(at), name = image_.u32(at + 12), addresses = image_.u32(at + 16);
            if (name == 0 || addresses == 0) return;
            image_.entry();
            const std::string_view library = text(name);
            file_.needed.push_back(library);
            readImportsOf(library, offsetOf(lookup != 0 ? lookup : addresses));
        }
    }

    void readImportsOf(std::string_view library, std::uint64_t at) {
        const unsigned size = file_.bits / 8;
        for (;; at += size) {
            const std::uint64_t entry = image_.word(at, file_.bits);
            if (entry == 0) return;
            image_.entry();
            const bool byNumber = entry >> (file_.bits - 1) != 0;
            if (!byNumber) file_.imports.push_back({text((entry & 0x7FFFFFFF) + 2), library});
        }
    }

    /// Calls @p visit with the number and the place of each entry that a directory of resources has.
    template <class Visit>
    void eachResource(std::uint64_t directory, Visit visit) {
        const unsigned count = image_.u16(directory + 12) + image_.u16(directory + 14);
        for (unsigned i = 0; i < count; ++i) {
            image_.entry();
            visit(image_.u32(directory + 16 + 8ULL * i), image_.u32(directory + 20 + 8ULL * i));
        }
    }

    /// Strings are kept by sixteens: types, then blocks, then languages, of which the first one counts.
    void readStrings() {
        const std::uint64_t root = offsetOf(directories_[kResources].address);
        unsigned strings = 0;
        eachResource(root, [&](std::uint32_t type, std::uint32_t blocks) {
            if (type != kStringTables || !(blocks & kSubdirectory)) return;
            eachResource(root + (blocks & ~kSubdirectory), [&](std::uint32_t block, std::uint32_t languages) {
                if (block & kNamed || !(languages & kSubdirectory)) return;
                bool first = true;
                eachResource(root + (languages & ~kSubdirectory), [&](std::uint32_t, std::uint32_t data) {
                    if (first && !(data & kSubdirectory)) strings += stringsIn(root + data);
                    first = false;
                });
            });
        });
        file_.strings = strings;
    }

    /// How many strings of a block are there: each is its length and as many characters of 16 bits.
    unsigned stringsIn(std::uint64_t entry) {
        unsigned strings = 0;
        std::uint64_t at = offsetOf(image_.u32(entry));
        for (int i = 0; i < 16; ++i) {
            const unsigned length = image_.u16(at);
            strings += length > 0;
            at += 2 + 2 * std::uint64_t{length};
        }
        return strings;
    }

    Image& image_;
    BinaryFile& file_;
    std::vector<Section> sections_;
    Directory directories_[kMostDirectories];
};

}  // namespace

void readPe(Image& image, BinaryFile& file) {
    if (!image.holds(0, 2) || image.u16(0) != 0x5A4D) return;  // "MZ"
    if (!image.holds(0, 64)) throw Damage{"its head reaches beyond its end"};
    const std::uint64_t head = image.u32(60);
    if (!image.holds(head, 24) || image.u32(head) != 0x4550) return;  // "PE": a program of another age
    file.format = BinaryFile::Format::pe;
    Reader(image, file).read(head);
}

}  // namespace kora::host
