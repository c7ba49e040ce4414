#include <algorithm>

#include "host/BinaryFile.h"

namespace kora::host {

namespace {

enum : std::uint16_t { kProgram = 2, kShared = 3 };                      // types of files
enum : std::uint32_t { kLoad = 1, kDynamic = 2 };                        // types of segments
enum : unsigned { kVersion = 1, kAnySystem = 0, kLinux = 3 };            // of the head
enum : unsigned { kLocal = 0, kWeak = 2, kHidden = 2, kUndefined = 0 };  // of symbols
constexpr std::uint64_t kPositionIndependentProgram = 0x08000000;        // DT_FLAGS_1
constexpr std::uint16_t kMayBeMissing = 2;                               // of versions

constexpr unsigned kMostSegments = 1024;
constexpr std::uint64_t kPage = 4096;  // the smallest there is

enum Tag : std::uint64_t {
    kEnd = 0,
    kNeeded = 1,
    kHash = 4,
    kStrings = 5,
    kSymbols = 6,
    kStringsSize = 10,
    kOwnName = 14,
    kRpath = 15,
    kRunpath = 29,
    kGnuHash = 0x6FFFFEF5,
    kFlags1 = 0x6FFFFFFB,
    kVersionsDefined = 0x6FFFFFFC,
    kVersionsNeeded = 0x6FFFFFFE
};

struct Segment {
    std::uint64_t offset, address, size;
};

/// The places of the tables that the dynamic section names; 0 where there is none.
struct Tables {
    std::uint64_t strings = 0, stringsEnd = 0, symbols = 0, hash = 0, gnuHash = 0, versionsDefined = 0,
                  versionsNeeded = 0;
};

struct Symbol {
    std::string_view name;
    unsigned binding, visibility, section;
    std::uint64_t value, size;
};

/// Reads one file. Everything is found as the loader finds it, by segments and addresses: sections may be gone.
class Reader {
public:
    Reader(Image& image, BinaryFile& file) : image_(image), file_(file), wide_(file.bits == 64) {}

    void read() {
        const unsigned type = image_.u16(16);
        file_.kind = type == kShared    ? BinaryFile::Kind::library
                     : type == kProgram ? BinaryFile::Kind::program
                                        : BinaryFile::Kind::other;
        readSegments();
        if (type == kShared && dynamic_.size == 0) throw Damage{"it has no dynamic section"};
        if (file_.kind == BinaryFile::Kind::other || dynamic_.size == 0) return;
        readDynamic();
        readSymbols();
        if (tables_.versionsDefined != 0) readVersionsDefined();
        if (tables_.versionsNeeded != 0) readVersionsNeeded();
    }

private:
    std::uint64_t word(std::uint64_t offset) const { return image_.word(offset, file_.bits); }
    unsigned wordSize() const { return file_.bits / 8; }

    void readSegments() {
        const std::uint64_t table = word(wide_ ? 32 : 28);
        const unsigned size = image_.u16(wide_ ? 54 : 42), count = image_.u16(wide_ ? 56 : 44);
        if (count == 0) return;
        if (size != (wide_ ? 56 : 32)) throw Damage{"its segments are described in an unknown way"};
        if (count > kMostSegments) throw Damage{"it has more segments than any library"};
        image_.require(table, std::uint64_t{size} * count, "the table of segments");
        for (unsigned i = 0; i < count; ++i) {
            const std::uint64_t at = table + std::uint64_t{size} * i;
            const std::uint32_t type = image_.u32(at);
            if (type != kLoad && type != kDynamic) continue;
            const Segment segment{word(at + (wide_ ? 8 : 4)), word(at + (wide_ ? 16 : 8)),
                                  word(at + (wide_ ? 32 : 16))};
            image_.require(segment.offset, segment.size, "a segment");
            const std::uint64_t alignment = word(at + (wide_ ? 48 : 28));
            if (type == kLoad &&
                (alignment == 0 || alignment % kPage != 0 || (segment.address - segment.offset) % alignment != 0))
                throw Damage{"a segment is not aligned to pages"};
            if (type == kDynamic)
                dynamic_ = segment;
            else
                segments_.push_back(segment);
        }
    }

    std::uint64_t offsetOf(std::uint64_t address) const {
        for (const Segment& segment : segments_)
            if (address >= segment.address && address - segment.address < segment.size)
                return segment.offset + (address - segment.address);
        throw Damage{"a table lies outside its segments"};
    }

    std::string_view string(std::uint64_t offset) const {
        if (offset >= tables_.stringsEnd - tables_.strings) throw Damage{"a name lies outside its table"};
        return image_.text(tables_.strings + offset, tables_.stringsEnd);
    }

    /// Calls @p visit with each tag and its value.
    template <class Visit>
    void eachDynamic(Visit visit) {
        for (std::uint64_t at = dynamic_.offset; at + 2 * wordSize() <= dynamic_.offset + dynamic_.size;
             at += 2 * wordSize()) {
            const std::uint64_t tag = word(at);
            if (tag == kEnd) break;
            image_.entry();
            visit(tag, word(at + wordSize()));
        }
    }

    void readDynamic() {
        std::uint64_t stringsSize = 0;
        eachDynamic([&](std::uint64_t tag, std::uint64_t value) {
            if (tag == kStrings) tables_.strings = offsetOf(value);
            if (tag == kStringsSize) stringsSize = value;
            if (tag == kSymbols) tables_.symbols = offsetOf(value);
            if (tag == kHash) tables_.hash = offsetOf(value);
            if (tag == kGnuHash) tables_.gnuHash = offsetOf(value);
            if (tag == kVersionsDefined) tables_.versionsDefined = offsetOf(value);
            if (tag == kVersionsNeeded) tables_.versionsNeeded = offsetOf(value);
            if (tag == kFlags1 && (value & kPositionIndependentProgram) != 0) file_.kind = BinaryFile::Kind::program;
        });
        image_.require(tables_.strings, stringsSize, "the table of names");
        tables_.stringsEnd = tables_.strings + stringsSize;
        eachDynamic([&](std::uint64_t tag, std::uint64_t value) {
            if (tag == kNeeded) file_.needed.push_back(string(value));
            if (tag == kOwnName) file_.ownName = string(value);
            if (tag == kRpath) file_.rpath = string(value);
            if (tag == kRunpath) file_.runpath = string(value);
        });
    }

    /// The table of symbols has no length of its own; the hash tables tell how far it goes.
    std::uint64_t symbolCount() const {
        if (tables_.hash != 0) return image_.u32(tables_.hash + 4);
        if (tables_.gnuHash == 0) return 0;
        const std::uint64_t at = tables_.gnuHash;
        const std::uint64_t buckets = image_.u32(at), first = image_.u32(at + 4), filter = image_.u32(at + 8);
        const std::uint64_t bucket = at + 16 + filter * wordSize(), chain = bucket + 4 * buckets;
        image_.require(at, chain - at, "a hash table");
        std::uint64_t last = 0;
        for (std::uint64_t i = 0; i < buckets; ++i) last = std::max<std::uint64_t>(last, image_.u32(bucket + 4 * i));
        if (last < first) return first;  // nothing is exported
        // The end of a chain has its lowest bit set.
        while ((image_.u32(chain + 4 * (last - first)) & 1) == 0) ++last;
        return last + 1;
    }

    Symbol symbol(std::uint64_t at) const {
        const unsigned info = image_.u8(at + (wide_ ? 4 : 12));
        return {.name = string(image_.u32(at)),
                .binding = info >> 4,
                .visibility = image_.u8(at + (wide_ ? 5 : 13)) & 3U,
                .section = image_.u16(at + (wide_ ? 6 : 14)),
                .value = word(at + (wide_ ? 8 : 4)),
                .size = word(at + (wide_ ? 16 : 8))};
    }

    void readSymbols() {
        const std::uint64_t count = symbolCount(), size = wide_ ? 24 : 16;
        if (count <= 1) return;
        image_.require(tables_.symbols, size * count, "the table of symbols");
        for (std::uint64_t i = 1; i < count; ++i) {  // the first one means "none"
            image_.entry();
            const Symbol found = symbol(tables_.symbols + size * i);
            if (found.binding == kLocal || found.name.empty()) continue;
            if (found.section == kUndefined) {
                if (found.binding != kWeak) file_.imports.push_back({found.name, {}});
            } else if (found.visibility == 0 || found.visibility > kHidden) {
                file_.exports.push_back(found.name);
                readModuleTables(found);
            }
        }
    }

    void readModuleTables(const Symbol& found) {
        if (found.name == "TskKoraStrings") {
            // Each string is a number from 1 on, filled up to a pointer's size, and a pointer, which the loader fills
            // in.
            const std::uint64_t at = offsetOf(found.value), each = 2 * wordSize();
            unsigned strings = 0;
            while ((strings + 1) * each <= found.size && image_.u32(at + strings * each) != 0) {
                image_.entry();
                ++strings;
            }
            file_.strings = strings;
        }
        if (found.name == "TskKoraVersion") {
            const std::uint64_t at = offsetOf(found.value);
            file_.koraVersion = image_.text(at, at + std::min<std::uint64_t>(found.size, 32));
        }
    }

    void readVersionsDefined() {
        for (std::uint64_t at = tables_.versionsDefined;;) {
            image_.entry();
            file_.versionsDefined.push_back(string(image_.u32(at + image_.u32(at + 12))));
            const std::uint32_t next = image_.u32(at + 16);
            if (next == 0) return;
            at += next;
        }
    }

    void readVersionsNeeded() {
        for (std::uint64_t at = tables_.versionsNeeded;;) {
            image_.entry();
            const std::string_view library = string(image_.u32(at + 4));
            std::uint64_t version = at + image_.u32(at + 8);
            for (unsigned left = image_.u16(at + 2); left > 0; --left) {
                image_.entry();
                const bool optional = (image_.u16(version + 4) & kMayBeMissing) != 0;
                if (!optional) file_.versionsNeeded.push_back({library, string(image_.u32(version + 8))});
                version += image_.u32(version + 12);
            }
            const std::uint32_t next = image_.u32(at + 12);
            if (next == 0) return;
            at += next;
        }
    }

    Image& image_;
    BinaryFile& file_;
    const bool wide_;
    std::vector<Segment> segments_;
    Segment dynamic_{};
    Tables tables_;
};

}  // namespace

void readElf(Image& image, BinaryFile& file) {
    // 7F "ELF", the size of words and the order of bytes.
    if (!image.holds(0, 6) || image.u32(0) != 0x464C457F) return;
    file.format = BinaryFile::Format::elf;
    const unsigned words = image.u8(4), order = image.u8(5);
    const unsigned headVersion = image.u8(6), system = image.u8(7);
    if ((words != 1 && words != 2) || (order != 1 && order != 2) || headVersion != kVersion)
        throw Damage{"its head is of an unknown kind"};
    file.bits = words == 1 ? 32 : 64;
    file.bigEndian = order == 2;
    image.bigEndianSet(file.bigEndian);
    if ((system != kAnySystem && system != kLinux) || image.u32(20) != kVersion)
        throw Damage{"it is for another system, or in a later version of the format"};
    file.machine = image.u16(18);
    Reader(image, file).read();
}

}  // namespace kora::host
