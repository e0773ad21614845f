// Marker comments: how a test source asks the simulated tools for a message.
// The language is described at the top of main.cpp and in README.md.
#pragma once

#include <string>

namespace fakeads {

enum class MarkerKind {
    kWarning,      // compile time, "Warning:"
    kError,        // compile time, "Error:"
    kSerious,      // compile time, "Serious error:"
    kFatal,        // compile time, "Fatal error:", and the tool stops there
    kLinkWarning,  // carried in the object, printed by armlink as "Warning:"
    kLinkError,    // carried in the object, printed by armlink as "Error:"
    kLinkFatal,    // carried in the object, printed by armlink as "Fatal error:"
    kPrint,        // the text is printed as a line of its own
    kUnknown,      // a word the language does not have (reported as an error)
};

struct Marker {
    MarkerKind kind = MarkerKind::kUnknown;
    std::string word;  // the kind as written
    std::string text;  // the message, trimmed, a closing "*/" removed
};

constexpr char kMarkerKey[] = "FAKEADS:";

// False when the line holds no "FAKEADS:". A marker whose message is empty
// (other than "print") counts as unknown.
bool FindMarker(const std::string& line, Marker* marker);

// The object file's word for a link marker ("link-error") and back.
const char* LinkMarkerWord(MarkerKind kind);
MarkerKind LinkMarkerKind(const std::string& word);

}  // namespace fakeads
