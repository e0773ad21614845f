// What the compilers and the assembler accept for -cpu, -fpu and -apcs.
#pragma once

#include <string>

namespace fakeads {

// -cpu: an architecture ("4T", "5TE") or a processor ("ARM920T"), any case.
bool IsProcessorName(const std::string& value, std::string* why);
// -fpu: FPA, VFPv1, VFPv2, SoftFPA, SoftVFP, SoftVFP+VFP, SoftVFP+VFPv2, None, any case.
bool IsFpuName(const std::string& value, std::string* why);
// -apcs for the compilers: "/q1/q2..." with interwork (or "inter"), ropi,
// rwpi, swst, swstna and their "no" forms.
bool IsApcsQualifiers(const std::string& value, std::string* why);
// -apcs for the assembler: the same, or "none".
bool IsAssemblerApcs(const std::string& value, std::string* why);

// The byte order a command line asks for: "-bi"/"-bigend" against "-littleend".
enum class ByteOrder { kLittle, kBig };
const char* ByteOrderWord(ByteOrder order);  // "little", "big"

}  // namespace fakeads
