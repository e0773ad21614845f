// The simulated fromelf: every output format of the fromELF page, checked
// against the plain binary of the same image (the hex formats decoded here,
// record checksums included), and its text description.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

#include "tool_run.h"

namespace ads::fakeads_test {
namespace {

const char kImage[] = " \".\\Debug\\blinky.axf\"";

unsigned HexValue(const std::string& text, size_t at, size_t digits) {
    return static_cast<unsigned>(std::stoul(text.substr(at, digits), nullptr, 16));
}

using Memory = std::map<uint32_t, unsigned char>;

// The bytes in address order; they must follow one another without a gap.
std::string Contiguous(const Memory& memory) {
    std::string bytes;
    uint32_t next = memory.empty() ? 0 : memory.begin()->first;
    for (const auto& [address, byte] : memory) {
        EXPECT_EQ(address, next) << "gap in the decoded bytes";
        next = address + 1;
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

// S-records: "S" type count address data checksum, the checksum the ones'
// complement of the sum of the bytes from the count on.
Memory DecodeMotorola(const std::string& text, uint32_t* entry, std::string* header) {
    Memory memory;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        EXPECT_EQ(line[0], 'S') << line;
        const char type = line[1];
        const unsigned count = HexValue(line, 2, 2);
        EXPECT_EQ(line.size(), 4 + 2 * count) << line;
        unsigned sum = count;
        for (unsigned i = 0; i < count; ++i) sum += HexValue(line, 4 + 2 * i, 2);
        EXPECT_EQ(sum & 0xffu, 0xffu) << "checksum of " << line;
        const unsigned address_bytes = type == '0' ? 2 : 4;
        const uint32_t address = HexValue(line, 4, 2 * address_bytes);
        const size_t data_start = 4 + 2 * address_bytes;
        const size_t data_bytes = count - address_bytes - 1;
        if (type == '0') {
            for (size_t i = 0; i < data_bytes; ++i) *header += static_cast<char>(HexValue(line, data_start + 2 * i, 2));
        } else if (type == '3') {
            for (size_t i = 0; i < data_bytes; ++i) {
                memory[address + static_cast<uint32_t>(i)] = static_cast<unsigned char>(HexValue(line, data_start + 2 * i, 2));
            }
        } else if (type == '7') {
            *entry = address;
        } else {
            ADD_FAILURE() << "unexpected record " << line;
        }
    }
    return memory;
}

// Intel records: ":" count address type data checksum, all bytes summing
// to 0; 04 sets the upper address half, 02 a segment, 05 the entry.
Memory DecodeIntel(const std::string& text, uint32_t* entry, std::string* types) {
    Memory memory;
    std::istringstream lines(text);
    std::string line;
    uint32_t base = 0;
    while (std::getline(lines, line)) {
        EXPECT_EQ(line[0], ':') << line;
        const unsigned count = HexValue(line, 1, 2);
        EXPECT_EQ(line.size(), 11 + 2 * count) << line;
        unsigned sum = 0;
        for (size_t i = 1; i + 1 < line.size(); i += 2) sum += HexValue(line, i, 2);
        EXPECT_EQ(sum & 0xffu, 0u) << "checksum of " << line;
        const unsigned address = HexValue(line, 3, 4);
        const unsigned type = HexValue(line, 7, 2);
        *types += std::to_string(type);
        if (type == 0) {
            // The offset wraps inside its 64 KB window, as readers of the format take it.
            for (unsigned i = 0; i < count; ++i) {
                memory[base + ((address + i) & 0xffffu)] = static_cast<unsigned char>(HexValue(line, 9 + 2 * i, 2));
            }
        } else if (type == 4) {
            base = HexValue(line, 9, 4) << 16;
        } else if (type == 2) {
            base = HexValue(line, 9, 4) << 4;
        } else if (type == 5) {
            *entry = HexValue(line, 9, 8);
        } else {
            EXPECT_EQ(type, 1u) << line;
            EXPECT_EQ(line, ":00000001FF");
        }
    }
    return memory;
}

uint32_t WordAt(const std::string& bytes, size_t index) {
    uint32_t value = 0;
    for (int i = 3; i >= 0; --i) value = (value << 8) | static_cast<unsigned char>(bytes[4 * index + i]);
    return value;
}

class FromElfTest : public ToolTest {
protected:
    void SetUp() override {
        Write("Debug\\.keep", "");
        Write("src\\main.c", "int main(void)\n{\n    return 0;\n}\nvoid led_init(void)\n{\n}\n");
        Write("src\\start.s", "        AREA    Reset, CODE, READONLY\n        EXPORT  Reset\nReset   B       Reset\n        END\n");
        ASSERT_EQ(Run("armasm", "-g \"src\\start.s\" \".\\Debug\\start.o\"").exit_code, 0);
        ASSERT_EQ(Run("armcc", "-c \"src\\main.c\" -o \".\\Debug\\main.o\"").exit_code, 0);
        ASSERT_EQ(Run("armlink", "\".\\Debug\\start.o\" \".\\Debug\\main.o\" -o \".\\Debug\\blinky.axf\"").exit_code, 0);
        ASSERT_EQ(Run("fromelf", std::string("-bin -output \"Debug\\blinky.bin\"") + kImage).exit_code, 0);
        binary_ = Read("Debug\\blinky.bin");
        ASSERT_EQ(binary_.size(), 4u * (4 + 7) + 4u * 2) << "the code of both objects and their data";
    }

    std::string Convert(const std::string& switches, const std::string& output) {
        const ToolResult result = Run("fromelf", switches + " -output \"" + output + "\"" + kImage);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.exit_code, 0);
        return Read(output);
    }

    std::string binary_;
};

TEST_F(FromElfTest, MotorolaRecordsHoldTheBinary) {
    uint32_t entry = 0;
    std::string header;
    const Memory memory = DecodeMotorola(Convert("-m32", "x.m32"), &entry, &header);
    EXPECT_EQ(memory.begin()->first, 0x8000u);
    EXPECT_EQ(Contiguous(memory), binary_);
    EXPECT_EQ(entry, 0x8000u);
    EXPECT_EQ(header, "x.m32");
}

TEST_F(FromElfTest, IntelRecordsHoldTheBinary) {
    const struct {
        const char* switch_text;
        const char* record_types;  // in the order they come
    } rows[] = {
        {"-i32", "4051"},  // extended linear address, data, start address, end
        {"-ihf", "201"},   // extended segment address, data, end
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.switch_text);
        uint32_t entry = 0;
        std::string types;
        const Memory memory = DecodeIntel(Convert(row.switch_text, "x.hex"), &entry, &types);
        EXPECT_EQ(memory.begin()->first, 0x8000u);
        EXPECT_EQ(Contiguous(memory), binary_);
        // Data records (0) of 16 bytes at most, so several of them, seen as one.
        std::string collapsed;
        for (char type : types) {
            if (collapsed.empty() || type != '0' || collapsed.back() != '0') collapsed += type;
        }
        EXPECT_EQ(collapsed, row.record_types);
        EXPECT_GT(types.size(), 4u);
        if (std::string(row.switch_text) == "-i32") {
            EXPECT_EQ(entry, 0x8000u);
        }
    }
}

// An image across a 64 KB boundary: no record may cross it, and a new
// address record opens the next window.
TEST_F(FromElfTest, IntelRecordsStartANewWindowAtA64KBoundary) {
    ASSERT_EQ(Run("armlink", "\".\\Debug\\start.o\" \".\\Debug\\main.o\" -ro-base 0xFFF8 -o high.axf").exit_code, 0);
    ASSERT_EQ(Run("fromelf", "-bin -output high.bin high.axf").exit_code, 0);
    const std::string binary = Read("high.bin");
    const struct {
        const char* switch_text;
        const char* record_types;
    } rows[] = {
        {"-i32", "404051"},
        {"-ihf", "20201"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.switch_text);
        ASSERT_EQ(Run("fromelf", std::string(row.switch_text) + " -output high.hex high.axf").exit_code, 0);
        uint32_t entry = 0;
        std::string types;
        const Memory memory = DecodeIntel(Read("high.hex"), &entry, &types);
        EXPECT_EQ(memory.begin()->first, 0xFFF8u);
        EXPECT_EQ(Contiguous(memory), binary);
        std::string collapsed;
        for (char type : types) {
            if (collapsed.empty() || type != '0' || collapsed.back() != '0') collapsed += type;
        }
        EXPECT_EQ(collapsed, row.record_types);
    }
}

TEST_F(FromElfTest, ByteOrientedFormatsHoldTheBinary) {
    const std::string verilog = Convert("-vhx", "x.vhx");
    ASSERT_EQ(verilog.rfind("@00008000\n", 0), 0u) << verilog;
    std::string bytes;
    std::istringstream lines(verilog.substr(10));
    std::string line;
    while (std::getline(lines, line)) {
        if (line[0] == '@') continue;
        EXPECT_EQ(line.size(), 2u) << line;
        bytes += static_cast<char>(HexValue(line, 0, 2));
    }
    EXPECT_EQ(bytes, binary_);

    std::istringstream hex(Convert("-bhx", "x.bhx"));
    std::string byte_hex, word;
    while (hex >> word) byte_hex += static_cast<char>(HexValue(word, 0, 2));
    EXPECT_EQ(byte_hex, binary_);
}

TEST_F(FromElfTest, AifHeaderDescribesTheImage) {
    const struct {
        const char* switches;
        size_t debug_bytes;
        uint32_t first_word;
    } rows[] = {
        {"-aif", 64, 0xE1A00000u},
        {"-nodebug -aif", 0, 0xE1A00000u},
        {"-aifbin", 64, 0xE1A00000u},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.switches);
        const std::string aif = Convert(row.switches, "x.aif");
        ASSERT_EQ(aif.size(), 128 + binary_.size() + row.debug_bytes);
        EXPECT_EQ(WordAt(aif, 0), row.first_word);
        EXPECT_EQ(WordAt(aif, 4), 0xEF000011u) << "SWI exit";
        EXPECT_EQ(WordAt(aif, 5) + WordAt(aif, 6), binary_.size()) << "read-only and read-write sizes";
        EXPECT_EQ(WordAt(aif, 7), row.debug_bytes);
        EXPECT_EQ(WordAt(aif, 10), 0x8000u) << "image base";
        EXPECT_EQ(WordAt(aif, 12), 32u) << "address mode";
        EXPECT_EQ(aif.substr(128, binary_.size()), binary_);
    }
}

TEST_F(FromElfTest, ElfOutputIsAnImageAgain) {
    const std::string stripped = Convert("-nodebug -elf", "x.elf");
    EXPECT_NE(stripped.find("\ndebug off\n"), std::string::npos) << stripped;
    EXPECT_EQ(Convert("-bin", "again.bin"), binary_);
    EXPECT_EQ(Run("fromelf", "-bin -output y.bin x.elf").exit_code, 0);
    EXPECT_EQ(Read("y.bin"), binary_);
}

TEST_F(FromElfTest, TextDescriptionShowsTheChosenParts) {
    const struct {
        const char* name;
        const char* switches;
        std::vector<const char*> present;
        std::vector<const char*> absent;
    } rows[] = {
        {"NoFlags", "-text", {"** ELF Header Information", "Image Entry point: 0x00008000"}, {".symtab", "DCD"}},
        {"SymbolsGlued", "-text/s", {" Reset ", " main ", " led_init "}, {"DCD", "Program header"}},
        {"FlagsApart", "-text -v -s", {"Program header", " main "}, {"DCD"}},
        {"Disassembly", "-text/c", {"0x00008000:    ", "DCD    0x"}, {".symtab"}},
        {"AsThePageWritesThem", "-v -d -g -z -t -s -c -r",
         {"Program header", "ER_RW", ".debug_info", "Grand Totals", ".strtab", ".symtab", "DCD", "No relocation"}, {}},
        {"DebugDropped", "-nodebug -g", {"No debug information"}, {".debug_info"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ToolResult result = Run("fromelf", std::string(row.switches) + kImage);
        EXPECT_EQ(result.exit_code, 0);
        for (const char* text : row.present) EXPECT_NE(result.output.find(text), std::string::npos) << text << " in\n" << result.output;
        for (const char* text : row.absent) EXPECT_EQ(result.output.find(text), std::string::npos) << text << " in\n" << result.output;
    }
    // The post-link step names the output: the text goes there instead.
    const ToolResult to_file = Run("fromelf", std::string("-v -s -output \"Debug\\blinky.text\"") + kImage);
    EXPECT_EQ(to_file.output, "");
    EXPECT_NE(Read("Debug\\blinky.text").find(" main "), std::string::npos);
}

TEST_F(FromElfTest, InputsThatAreMissingOrNotImages) {
    Write("notes.axf", "plain text\n");
    const std::string two_images = std::string("-bin -output x.bin") + kImage + kImage;
    for (const std::string& arguments : {std::string("-bin -output x.bin \"Debug\\gone.axf\""),
                                         std::string("-bin -output x.bin notes.axf"),
                                         std::string("-bin -output x.bin \".\\Debug\\main.o\""),
                                         std::string("-bin -output x.bin"), two_images}) {
        SCOPED_TRACE(arguments);
        const ToolResult result = Run("fromelf", arguments);
        EXPECT_EQ(result.output.rfind("Fatal error: Q", 0), 0u) << result.output;
        EXPECT_EQ(result.output.find('\n'), result.output.size() - 1) << "one line";
        EXPECT_EQ(result.exit_code, 1);
    }
    EXPECT_FALSE(Exists("x.bin"));
    // An object may still be described.
    const ToolResult object = Run("fromelf", "-text/s \".\\Debug\\main.o\"");
    EXPECT_EQ(object.exit_code, 0);
    EXPECT_NE(object.output.find("    main\n"), std::string::npos) << object.output;
}

}  // namespace
}  // namespace ads::fakeads_test
