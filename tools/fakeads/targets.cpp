#include "targets.h"

#include <cstddef>

#include "command_line.h"

namespace fakeads {
namespace {

const char* const kProcessors[] = {
    "3", "3m", "4", "4T", "4xM", "4TxM", "5", "5T", "5xM", "5TxM", "5E", "5TE", "5TExP", "5TEJ",
    "XScale", "ARM6", "ARM60", "ARM600", "ARM610", "ARM7", "ARM710A", "ARM710AM", "ARM7100",
    "ARM7500", "ARM7500FE", "ARM7D", "ARM7DI", "ARM7DM", "ARM7EJ-S", "ARM7DMI", "ARM7TM", "ARM7TDM",
    "ARM7TDMI", "ARM710T", "ARM720T", "ARM740T", "ARM7TM-S", "ARM7TDMI-S", "ARM7T-S", "ARM7TDI-S",
    "ARM810", "SA-110", "SA-1100", "ARM9TDMI", "ARM920T", "ARM922T", "ARM940T", "ARM9E-S",
    "ARM9EJ-S", "ARM926EJ-S", "ARM946E-S", "ARM966E-S", "ARM9E-S-rev0", "ARM946E-S-rev0",
    "ARM966E-S-rev0", "ARM10TDMI", "ARM1020T", "ARM10200", "ARM10E", "ARM1020E", "ARM1022E",
    "ARM10200E",
};

const char* const kFpus[] = {
    "FPA", "VFPv1", "VFPv2", "SoftFPA", "SoftVFP", "SoftVFP+VFP", "SoftVFP+VFPv2", "None",
};

// The qualifiers with the shortest spelling each accepts (its capitals).
const char* const kQualifiers[] = {"INTERwork", "ROPI", "RWPI", "SWST", "SWSTNA"};

bool InList(const std::string& value, const char* const* begin, const char* const* end) {
    for (const char* const* name = begin; name != end; ++name) {
        if (Lower(value) == Lower(*name)) return true;
    }
    return false;
}

bool IsQualifier(std::string word) {
    word = Lower(word);
    if (word.compare(0, 2, "no") == 0 && word != "none") word = word.substr(2);
    for (const char* qualifier : kQualifiers) {
        const std::string name = Lower(qualifier);
        size_t mandatory = 0;
        while (qualifier[mandatory] != '\0' && !(qualifier[mandatory] >= 'a' && qualifier[mandatory] <= 'z')) {
            ++mandatory;
        }
        if (word.size() >= mandatory && word.size() <= name.size() && name.compare(0, word.size(), word) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool IsProcessorName(const std::string& value, std::string* why) {
    if (InList(value, std::begin(kProcessors), std::end(kProcessors))) return true;
    *why = "unknown processor or architecture";
    return false;
}

bool IsFpuName(const std::string& value, std::string* why) {
    if (InList(value, std::begin(kFpus), std::end(kFpus))) return true;
    *why = "unknown floating-point architecture";
    return false;
}

bool IsApcsQualifiers(const std::string& value, std::string* why) {
    if (value.size() < 2 || value[0] != '/') {
        *why = "qualifiers are written /name/name";
        return false;
    }
    size_t start = 1;
    while (start <= value.size()) {
        size_t end = value.find('/', start);
        if (end == std::string::npos) end = value.size();
        const std::string word = value.substr(start, end - start);
        if (!IsQualifier(word)) {
            *why = word.empty() ? "empty qualifier" : "unknown qualifier /" + word;
            return false;
        }
        start = end + 1;
    }
    return true;
}

bool IsAssemblerApcs(const std::string& value, std::string* why) {
    if (Lower(value) == "none") return true;
    return IsApcsQualifiers(value, why);
}

const char* ByteOrderWord(ByteOrder order) { return order == ByteOrder::kBig ? "big" : "little"; }

}  // namespace fakeads
