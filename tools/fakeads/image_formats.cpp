#include "image_formats.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "paths.h"

namespace fakeads {
namespace {

constexpr size_t kRecordBytes = 16;
constexpr uint32_t kNop = 0xE1A00000u;
constexpr uint32_t kSwiExit = 0xEF000011u;
constexpr uint32_t kDebugBytes = 64;

std::string HexByte(unsigned value) {
    char text[3];
    std::snprintf(text, sizeof text, "%02X", value & 0xffu);
    return text;
}

std::string HexDigits(uint32_t value, int digits) {
    char text[9];
    std::snprintf(text, sizeof text, "%0*X", digits, static_cast<unsigned>(value));
    return text;
}

struct Chunk {
    uint32_t address;
    std::string bytes;
};

// The image's bytes in records of at most 16 bytes that never cross a
// 64 KB boundary.
std::vector<Chunk> Chunks(const ImageFile& image) {
    std::vector<Chunk> chunks;
    for (const ImageRegion& region : image.regions) {
        const std::string bytes = ImageBytes(region);
        size_t offset = 0;
        while (offset < bytes.size()) {
            const uint32_t address = region.base + static_cast<uint32_t>(offset);
            size_t length = std::min(kRecordBytes, bytes.size() - offset);
            length = std::min<size_t>(length, 0x10000u - (address & 0xffffu));
            chunks.push_back(Chunk{address, bytes.substr(offset, length)});
            offset += length;
        }
    }
    return chunks;
}

// An S-record: type, then count, address, data and the ones' complement
// of the sum of count, address and data bytes.
std::string SRecord(char type, uint32_t address, int address_bytes, const std::string& data) {
    const unsigned count = static_cast<unsigned>(address_bytes + data.size() + 1);
    unsigned sum = count;
    for (int i = 0; i < address_bytes; ++i) sum += (address >> (8 * i)) & 0xffu;
    std::string record = std::string("S") + type + HexByte(count) + HexDigits(address, 2 * address_bytes);
    for (unsigned char c : data) {
        record += HexByte(c);
        sum += c;
    }
    return record + HexByte(~sum & 0xffu) + "\n";
}

// An Intel record: the two's complement of the sum of all its bytes.
std::string IntelRecord(unsigned type, uint32_t address, const std::string& data) {
    unsigned sum = static_cast<unsigned>(data.size()) + ((address >> 8) & 0xffu) + (address & 0xffu) + type;
    std::string record = ":" + HexByte(static_cast<unsigned>(data.size())) + HexDigits(address & 0xffffu, 4) + HexByte(type);
    for (unsigned char c : data) {
        record += HexByte(c);
        sum += c;
    }
    return record + HexByte((0x100u - (sum & 0xffu)) & 0xffu) + "\n";
}

std::string BigEndian(uint32_t value, int bytes) {
    std::string out;
    for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>((value >> (8 * i)) & 0xffu);
    return out;
}

std::string Word(uint32_t value, bool big) {
    std::string out;
    for (int i = 0; i < 4; ++i) out += static_cast<char>((value >> (8 * (big ? 3 - i : i))) & 0xffu);
    return out;
}

uint32_t ReadWord(const std::string& bytes, size_t at, bool big) {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        const uint32_t byte = at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0u;
        value |= byte << (8 * (big ? 3 - i : i));
    }
    return value;
}

const ImageRegion* Region(const ImageFile& image, const std::string& name) {
    for (const ImageRegion& region : image.regions) {
        if (region.name == name) return &region;
    }
    return nullptr;
}

uint32_t SizeOf(const ImageFile& image, const std::string& name) {
    const ImageRegion* region = Region(image, name);
    return region == nullptr ? 0 : region->size;
}

bool Has(const std::string& flags, char flag) { return flags.find(flag) != std::string::npos; }

std::string Printf(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Printf(const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

std::string Header(const std::string& name, const std::string& byte_order, const char* file_type) {
    const bool big = byte_order == "big";
    return "========================================================================\n\n"
           "** ELF Header Information\n\n"
           "    File Name: " + name + "\n\n"
           "    Machine class: ELFCLASS32 (32-bit)\n"
           "    Data encoding: " + std::string(big ? "ELFDATA2MSB (Big endian)" : "ELFDATA2LSB (Little endian)") + "\n"
           "    Header version: EV_CURRENT (Current version)\n"
           "    File Type: " + file_type + "\n"
           "    Machine: EM_ARM (ARM)\n\n";
}

}  // namespace

std::string PlainBinary(const ImageFile& image) {
    std::string bytes;
    for (const ImageRegion& region : image.regions) bytes += ImageBytes(region);
    return bytes;
}

std::string MotorolaHex(const ImageFile& image, const std::string& header) {
    std::string text = SRecord('0', 0, 2, header);
    for (const Chunk& chunk : Chunks(image)) text += SRecord('3', chunk.address, 4, chunk.bytes);
    return text + SRecord('7', image.entry, 4, std::string());
}

std::string IntelHex(const ImageFile& image, bool linear) {
    std::string text;
    bool first = true;
    uint32_t window = 0;
    for (const Chunk& chunk : Chunks(image)) {
        const uint32_t upper = chunk.address >> 16;
        if (first || upper != window) {
            text += linear ? IntelRecord(4, 0, BigEndian(upper, 2)) : IntelRecord(2, 0, BigEndian(upper << 12, 2));
            window = upper;
            first = false;
        }
        text += IntelRecord(0, chunk.address, chunk.bytes);
    }
    if (linear) text += IntelRecord(5, 0, BigEndian(image.entry, 4));
    return text + IntelRecord(1, 0, std::string());
}

std::string VerilogHex(const ImageFile& image) {
    std::string text;
    for (const ImageRegion& region : image.regions) {
        if (region.size == 0) continue;
        text += "@" + HexDigits(region.base, 8) + "\n";
        for (unsigned char c : ImageBytes(region)) text += HexByte(c) + "\n";
    }
    return text;
}

std::string ByteHex(const ImageFile& image) {
    std::string text;
    for (const Chunk& chunk : Chunks(image)) {
        for (size_t i = 0; i < chunk.bytes.size(); ++i) {
            text += (i == 0 ? "" : " ") + HexByte(static_cast<unsigned char>(chunk.bytes[i]));
        }
        text += "\n";
    }
    return text;
}

std::string AifImage(const ImageFile& image, bool executable) {
    const bool big = image.byte_order == "big";
    const ImageRegion* ro = Region(image, "ER_RO");
    const uint32_t base = ro == nullptr ? 0 : ro->base;
    const ImageRegion* rw = Region(image, "ER_RW");
    uint32_t words[32] = {};
    words[0] = kNop;                                       // no decompression
    words[1] = kNop;                                       // no self-relocation
    words[2] = executable ? 0xEB00000Cu : kNop;            // BL to the zero-initialisation code
    words[3] = executable ? 0xEB000000u | (((image.entry - (base + 12) - 8) >> 2) & 0xFFFFFFu) : image.entry - base;
    words[4] = kSwiExit;
    words[5] = SizeOf(image, "ER_RO");
    words[6] = SizeOf(image, "ER_RW");
    words[7] = image.debug ? kDebugBytes : 0;
    words[8] = 0;                                          // zero-initialised size
    words[9] = image.debug ? 3 : 0;                        // debug type
    words[10] = base;
    words[11] = 0;                                         // workspace
    words[12] = 32;                                        // address mode
    words[13] = rw == nullptr ? 0 : rw->base;
    for (int i = 16; i < 32; ++i) words[i] = kNop;
    std::string bytes;
    for (uint32_t word : words) bytes += Word(word, big);
    bytes += PlainBinary(image);
    if (image.debug) bytes += std::string(kDebugBytes, '\0');
    return bytes;
}

std::string TextDescription(const std::string& name, const ImageFile& image, const std::string& flags) {
    const bool big = image.byte_order == "big";
    std::string text = Header(name, image.byte_order, "ET_EXEC (Executable) (2)");
    text += "    Image Entry point: " + Hex32(image.entry) + "\n";
    text += "    Flags: " + std::string(image.attributes.empty() ? "none" : "") ;
    for (size_t i = 0; i < image.attributes.size(); ++i) text += (i ? ", " : "") + image.attributes[i];
    text += "\n\n";
    if (Has(flags, 'v')) {
        int index = 0;
        for (const ImageRegion& region : image.regions) {
            text += Printf("** Program header #%d\n\n    Type          : PT_LOAD (1)\n    Name          : %s\n"
                           "    Virtual Addr  : %s\n    File Size     : %u bytes\n\n",
                           index++, region.name.c_str(), Hex32(region.base).c_str(), static_cast<unsigned>(region.size));
        }
    }
    if (Has(flags, 'z')) {
        text += "      Code    RO Data    RW Data    ZI Data      Debug\n";
        text += Printf("%10u %10u %10u %10u %10u   Grand Totals\n\n", static_cast<unsigned>(SizeOf(image, "ER_RO")), 0u,
                       static_cast<unsigned>(SizeOf(image, "ER_RW")), 0u, image.debug ? static_cast<unsigned>(kDebugBytes) : 0u);
    }
    if (Has(flags, 'c')) {
        if (const ImageRegion* ro = Region(image, "ER_RO")) {
            text += "** Section #1 'ER_RO' (SHT_PROGBITS) [SHF_ALLOC + SHF_EXECINSTR]\n\n";
            const std::string bytes = ImageBytes(*ro);
            for (size_t at = 0; at + 4 <= bytes.size(); at += 4) {
                const uint32_t word = ReadWord(bytes, at, big);
                text += Printf("    %s:    %08x    DCD    0x%08x\n", Hex32(ro->base + static_cast<uint32_t>(at)).c_str(),
                               static_cast<unsigned>(word), static_cast<unsigned>(word));
            }
            text += "\n";
        }
    }
    if (Has(flags, 'd')) {
        if (const ImageRegion* rw = Region(image, "ER_RW")) {
            text += "** Section #2 'ER_RW' (SHT_PROGBITS) [SHF_ALLOC + SHF_WRITE]\n\n";
            const std::string bytes = ImageBytes(*rw);
            for (size_t at = 0; at < bytes.size(); at += kRecordBytes) {
                text += "    " + Hex32(rw->base + static_cast<uint32_t>(at)) + ":  ";
                for (size_t i = at; i < bytes.size() && i < at + kRecordBytes; ++i) {
                    text += " " + HexByte(static_cast<unsigned char>(bytes[i]));
                }
                text += "\n";
            }
            text += "\n";
        }
    }
    if (Has(flags, 's')) {
        text += "** Section #3 '.symtab' (SHT_SYMTAB)\n\n";
        text += "     #  Symbol Name                Value      Bind  Sec  Type\n";
        int index = 0;
        for (const ImageSymbol& symbol : image.symbols) {
            text += Printf("    %2d  %-26s %s  Gb    1    Code\n", index++, symbol.name.c_str(), Hex32(symbol.address).c_str());
        }
        text += "\n";
    }
    if (Has(flags, 't')) {
        text += "** Section #4 '.strtab' (SHT_STRTAB)\n\n";
        size_t offset = 1;
        for (const ImageSymbol& symbol : image.symbols) {
            text += Printf("    %6u  %s\n", static_cast<unsigned>(offset), symbol.name.c_str());
            offset += symbol.name.size() + 1;
        }
        text += "\n";
    }
    if (Has(flags, 'g')) {
        text += image.debug ? "** Section #5 '.debug_info' (SHT_PROGBITS)\n\n    " + std::to_string(kDebugBytes) +
                                  " bytes of debug information\n\n"
                            : std::string("** No debug information\n\n");
    }
    if (Has(flags, 'r')) text += "** No relocation sections\n\n";
    return text;
}

std::string ObjectDescription(const std::string& name, const ObjectFile& object, const std::string& flags) {
    std::string text = Header(name, object.byte_order, "ET_REL (Relocatable object) (1)");
    text += "    Source: " + object.source + "\n    Produced by: " + object.tool + "\n\n";
    if (Has(flags, 'z')) {
        text += "      Code    RO Data    RW Data    ZI Data      Debug\n";
        text += Printf("%10u %10u %10u %10u %10u   %s\n\n", static_cast<unsigned>(object.code_size), 0u, 0u, 0u, 0u,
                       FileName(name).c_str());
    }
    if (Has(flags, 's') || Has(flags, 't')) {
        text += "** Section '.symtab' (SHT_SYMTAB)\n\n";
        for (const std::string& symbol : object.symbols) text += "    " + symbol + "\n";
        text += "\n";
    }
    return text;
}

std::string FieldOffsets(const std::string& name, const ImageFile& image) {
    std::string text = "; Structure, Table and Field Offsets of " + name + "\n";
    text += image.debug ? "; no structures are described by the debug information\n"
                        : "; no debug information: build with -g and without -nodebug\n";
    return text;
}

}  // namespace fakeads
