// What reading a source tells the compilers and the assembler: the files it
// depends on, the messages its markers and directives ask for, the link
// messages to carry in the object, the global definitions and the size of
// its code.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "condition.h"
#include "diagnostics.h"
#include "file_formats.h"
#include "markers.h"

namespace fakeads {

struct SourceMessage {
    bool raw = false;  // a "print" marker: the text is a line of its own
    std::string file;  // as spelled: the command line's name, or the include path found
    int line = 0;
    Severity severity = Severity::kError;
    std::string text;  // "C2207W: inventing ..."
};

struct SourceScan {
    std::vector<Dependency> dependencies;  // the source first, each file once, in the order met
    std::vector<SourceMessage> messages;   // in the order met
    std::vector<LinkMessage> link_messages;
    std::vector<std::string> symbols;
    uint32_t code_lines = 0;               // of the source itself
    bool abandoned = false;                // a fatal message stopped the reading
    std::string preprocessed;              // for -E
};

struct SearchDirectories {
    std::vector<std::string> user;    // -I, in order
    std::vector<std::string> system;  // -J, in order
};

// A C or C++ source, with the command line's -D and -U applied in order
// (each entry "NAME", "NAME=VALUE", or "-NAME" for an -U).
SourceScan ScanCSource(const std::string& source, const std::vector<std::string>& defines,
                       const SearchDirectories& directories);

// An assembler source: GET and INCLUDE, EXPORT and GLOBAL, END.
SourceScan ScanAssemblerSource(const std::string& source, const SearchDirectories& directories);

// Shared by the two readers.
class IncludeSearch {
public:
    explicit IncludeSearch(const SearchDirectories& directories);
    // "name" includes: the including file's folder, then -I, then -J;
    // <name> includes: -J, then -I. A directory ending in "*" is searched
    // with all its subfolders (the IDE's own notation for a search path).
    // Empty when the file is nowhere.
    std::string Find(const std::string& name, const std::string& includer, bool quoted);

private:
    // The folders of the "*" entries are listed at the first search, not before.
    void Expand();
    SearchDirectories written_;
    bool expanded_ = false;
    std::vector<std::string> user_;
    std::vector<std::string> system_;
};

// What the C and the assembler reader share: the scan they fill, the file
// that starts it and the messages they add to it.
class SourceReader {
public:
    virtual ~SourceReader() = default;
    SourceScan Read(const std::string& source);

protected:
    void Message(const std::string& file, int line, Severity severity, const std::string& text);
    // Reads one file's text; `depth` counts the includes that led to it.
    virtual void ReadText(const std::string& file, const std::string& text, int depth) = 0;

    SourceScan scan_;
};

// Adds what a marker asks for to the scan; true when it was a fatal one.
bool TakeMarker(const Marker& marker, const std::string& file, int line, char tag_letter, SourceScan* scan);

// Adds a file to the dependencies unless it is there already.
void AddDependency(const std::string& path, const std::string& contents, SourceScan* scan);

// The file's lines without their line ends.
std::vector<std::string> SplitLines(const std::string& text);

}  // namespace fakeads
