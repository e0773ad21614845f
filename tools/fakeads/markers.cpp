#include "markers.h"

#include "platform/text.h"

namespace fakeads {
namespace {

const struct {
    const char* word;
    MarkerKind kind;
} kKinds[] = {
    {"warning", MarkerKind::kWarning},
    {"error", MarkerKind::kError},
    {"serious", MarkerKind::kSerious},
    {"fatal", MarkerKind::kFatal},
    {"link-warning", MarkerKind::kLinkWarning},
    {"link-error", MarkerKind::kLinkError},
    {"link-fatal", MarkerKind::kLinkFatal},
    {"print", MarkerKind::kPrint},
};

}  // namespace

bool FindMarker(const std::string& line, Marker* marker) {
    const size_t key = line.find(kMarkerKey);
    if (key == std::string::npos) return false;
    std::string rest = ads::platform::Trim(line.substr(key + sizeof kMarkerKey - 1));
    // A marker in a block comment ends before the comment does.
    if (rest.size() >= 2 && rest.compare(rest.size() - 2, 2, "*/") == 0) {
        rest = ads::platform::Trim(rest.substr(0, rest.size() - 2));
    }
    const size_t blank = rest.find_first_of(" \t");
    marker->word = rest.substr(0, blank);
    marker->text = blank == std::string::npos ? std::string() : ads::platform::Trim(rest.substr(blank));
    marker->kind = MarkerKind::kUnknown;
    for (const auto& kind : kKinds) {
        if (marker->word == kind.word) marker->kind = kind.kind;
    }
    if (marker->kind != MarkerKind::kPrint && marker->text.empty()) marker->kind = MarkerKind::kUnknown;
    return true;
}

const char* LinkMarkerWord(MarkerKind kind) {
    for (const auto& entry : kKinds) {
        if (entry.kind == kind) return entry.word;
    }
    return "";
}

MarkerKind LinkMarkerKind(const std::string& word) {
    for (const auto& entry : kKinds) {
        if (word == entry.word) return entry.kind;
    }
    return MarkerKind::kUnknown;
}

}  // namespace fakeads
