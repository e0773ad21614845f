#include "compile_commands.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ads::host {
namespace {

using Args = std::vector<std::string>;

const char kFile[] = "/p/src/a.c";

// What every C command starts with when nothing changes it.
Args C(const Args& middle, const char* cpu = "-mcpu=arm7tdmi") {
    Args args = {"clang", "--target=arm-none-eabi"};
    if (*cpu) args.push_back(cpu);
    for (const char* a : {"-xc", "-std=gnu89", "-fshort-enums"}) args.push_back(a);
    args.insert(args.end(), middle.begin(), middle.end());
    args.push_back("-c");
    args.push_back(kFile);
    return args;
}

TEST(CompileCommands, EachAdsSwitchFamilyBecomesWhatClangdAccepts) {
    struct Row {
        const char* name;
        std::string ads;
        SourceLanguage language;
        Args expected;
    };
    const std::string cc = "C:\\ADS\\Bin\\armcc.exe -g+ ";
    const Row rows[] = {
        {"the program, the template's source and object are dropped",
         cc + "-O0 -g+ -c \"src\\main.c\" -o \".\\Debug\\main.o\"", SourceLanguage::kC, C({})},
        {"-I: one argument per folder of a list, the subfolder star cut",
         cc + "-I\"C:\\proj\\inc*\" -I\".\\inc;..\\lib\\inc\" -c \"a.c\"", SourceLanguage::kC,
         C({"-IC:/proj/inc", "-I./inc", "-I../lib/inc"})},
        {"-J: system folders", cc + "-J\"{Compiler}Include*\"  -J\"C:\\ADS\\Include\" -c \"a.c\"",
         SourceLanguage::kC, C({"-isystem", "{Compiler}Include", "-isystem", "C:/ADS/Include"})},
        {"-D and -U kept, also with the value apart", cc + "-DDEBUG=1 -D \"NAME=a b\" -UNDEBUG -c \"a.c\"",
         SourceLanguage::kC, C({"-DDEBUG=1", "-DNAME=a b", "-UNDEBUG"})},
        {"-cpu: a processor clang knows", cc + "-cpu ARM920T -c \"a.c\"", SourceLanguage::kC, C({}, "-mcpu=arm920t")},
        {"-cpu: an architecture", cc + "-cpu 5TE -c \"a.c\"", SourceLanguage::kC, C({}, "-march=armv5te")},
        {"-cpu: a processor clang does not know", cc + "-cpu ARM7500FE -c \"a.c\"", SourceLanguage::kC, C({}, "")},
        {"-fpu: VFP with VFP calling", cc + "-fpu VFPv2 -c \"a.c\"", SourceLanguage::kC,
         C({"-mfpu=vfpv2", "-mfloat-abi=hard"})},
        {"-fpu: VFP with soft calling", cc + "-fpu SoftVFP+VFP -c \"a.c\"", SourceLanguage::kC,
         C({"-mfpu=vfpv2", "-mfloat-abi=softfp"})},
        {"-fpu: none", cc + "-fpu None -c \"a.c\"", SourceLanguage::kC, C({"-mfloat-abi=soft"})},
        {"byte order", cc + "-bi -littleend -c \"a.c\"", SourceLanguage::kC, C({"-mbig-endian", "-mlittle-endian"})},
        {"-W alone silences, -W letters and -fx are dropped", cc + "-W -Wax+gp -fx -c \"a.c\"", SourceLanguage::kC,
         C({"-w"})},
        {"-zc: plain char is signed", cc + "-zc -c \"a.c\"", SourceLanguage::kC, C({"-fsigned-char"})},
        {"what clang has no word for is dropped",
         cc + "-Ecz -O2 -Otime -Ono_inline -gtp -apcs /interwork/ropi -zo -split_ldm -auto_float_constants "
              "-via \"C:\\my opts.txt\" -errors err.txt -ansi -cpp -embeddedcplusplus -M -c \"a.c\"",
         SourceLanguage::kC, C({})},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.expected, ClangdArguments(row.ads, row.language, kFile, PathStyle{true})) << row.name;
    }
}

TEST(CompileCommands, LanguageAndToolSetTheDialect) {
    struct Row {
        const char* name;
        std::string ads;
        SourceLanguage language;
        Args expected;
    };
    const Row rows[] = {
        {"strict C is C89", "armcc.exe -ansi -strict -c \"a.c\"", SourceLanguage::kC,
         {"clang", "--target=arm-none-eabi", "-mcpu=arm7tdmi", "-xc", "-std=c89", "-fshort-enums", "-c", kFile}},
        {"-fy keeps enums as int", "armcc.exe -fy -c \"a.c\"", SourceLanguage::kC,
         {"clang", "--target=arm-none-eabi", "-mcpu=arm7tdmi", "-xc", "-std=gnu89", "-c", kFile}},
        {"Thumb C", "C:\\ADS\\Bin\\TCC.EXE -c \"a.c\"", SourceLanguage::kC,
         {"clang", "--target=arm-none-eabi", "-mcpu=arm7tdmi", "-mthumb", "-xc", "-std=gnu89", "-fshort-enums", "-c",
          kFile}},
        {"ARM C++", "armcpp.exe -strict -c \"a.cpp\"", SourceLanguage::kCpp,
         {"clang", "--target=arm-none-eabi", "-mcpu=arm7tdmi", "-xc++", "-std=c++98", "-fshort-enums", "-c", kFile}},
        {"Thumb C++", "tcpp -cpu ARM946E-S -c \"a.cpp\"", SourceLanguage::kCpp,
         {"clang", "--target=arm-none-eabi", "-mcpu=arm946e-s", "-mthumb", "-xc++", "-std=c++98", "-fshort-enums",
          "-c", kFile}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.expected, ClangdArguments(row.ads, row.language, kFile, PathStyle{true})) << row.name;
    }
}

TEST(CompileCommands, WindowsPathsStayAsTheyAre) {
    EXPECT_EQ((Args{"clang", "--target=arm-none-eabi", "-mcpu=arm7tdmi", "-xc", "-std=gnu89", "-fshort-enums",
                    "-I.\\inc", "-isystem", "C:\\ADS\\Include", "-c", "C:\\p\\a.c"}),
              ClangdArguments("armcc.exe -I\".\\inc\" -J\"C:\\ADS\\Include\" -c \"a.c\"", SourceLanguage::kC,
                              "C:\\p\\a.c", PathStyle{false}));
}

TEST(CompileCommands, JsonStringsEscapeWhatJsonForbids) {
    struct Row {
        const char* name;
        std::string text;
        std::string json;
    };
    const Row rows[] = {
        {"plain", "abc", "\"abc\""},
        {"quote and backslash", "-DNAME=\"C:\\x\"", "\"-DNAME=\\\"C:\\\\x\\\"\""},
        {"named control bytes", "a\nb\rc\td", "\"a\\nb\\rc\\td\""},
        {"other control bytes", std::string("\x01\x1f\x7f", 3), "\"\\u0001\\u001f\\u007f\""},
        {"UTF-8 as it is", "caf\xC3\xA9", "\"caf\xC3\xA9\""},
    };
    for (const Row& row : rows) EXPECT_EQ(row.json, JsonString(row.text)) << row.name;
}

TEST(CompileCommands, TheFileIsAnArrayOfEntries) {
    EXPECT_EQ("[]\n", CompileCommandsJson({}));
    CompileCommand one{"/p", "/p/a.c", {"clang", "-c", "/p/a.c"}};
    CompileCommand two{"/p", "/p/b \"x\".c", {"clang"}};
    EXPECT_EQ(
        "[\n"
        "  {\n"
        "    \"directory\": \"/p\",\n"
        "    \"file\": \"/p/a.c\",\n"
        "    \"arguments\": [\"clang\", \"-c\", \"/p/a.c\"]\n"
        "  },\n"
        "  {\n"
        "    \"directory\": \"/p\",\n"
        "    \"file\": \"/p/b \\\"x\\\".c\",\n"
        "    \"arguments\": [\"clang\"]\n"
        "  }\n"
        "]\n",
        CompileCommandsJson({one, two}));
}

}  // namespace
}  // namespace ads::host
