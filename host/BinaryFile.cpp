#include "host/BinaryFile.h"

namespace kora::host {

namespace {

struct Machine {
    BinaryFile::Format format;
    unsigned number;
    const char* name;
};

using enum BinaryFile::Format;

constexpr Machine kMachines[] = {
    {elf, 2, "SPARC"},   {elf, 3, "i386"},     {elf, 8, "MIPS"},        {elf, 20, "PowerPC"},   {elf, 21, "PowerPC"},
    {elf, 22, "s390"},   {elf, 40, "ARM"},     {elf, 43, "SPARC"},      {elf, 50, "IA-64"},     {elf, 62, "x86-64"},
    {elf, 183, "ARM64"}, {elf, 243, "RISC-V"}, {elf, 258, "LoongArch"}, {pe, 0x14C, "i386"},    {pe, 0x1C0, "ARM"},
    {pe, 0x1C4, "ARM"},  {pe, 0x200, "IA-64"}, {pe, 0x5064, "RISC-V"},  {pe, 0x8664, "x86-64"}, {pe, 0xAA64, "ARM64"},
};

}  // namespace

std::string BinaryFile::machineText() const {
    if (format == unknown) return "unknown format";
    std::string text = format == elf ? "ELF " : "PE ";
    text += std::to_string(bits) + "-bit ";
    if (bigEndian) text += "big-endian ";
    for (const Machine& known : kMachines)
        if (known.format == format && known.number == machine) return text + known.name;
    return text + "machine " + std::to_string(machine);
}

BinaryFile readBinary(std::span<const unsigned char> bytes) {
    BinaryFile file;
    Image image(bytes);
    try {
        readElf(image, file);
        if (file.format == unknown) readPe(image, file);
    } catch (const Damage& damage) {
        file.damage = damage.what;
    }
    return file;
}

}  // namespace kora::host
