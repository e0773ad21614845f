// The text filter an export goes through before TinyXML sees it: TinyXML
// cannot read the export's DOCTYPE block, and only exports of one IDE
// version are taken.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ads::import {

// The second line every accepted export has, exactly.
extern const char kExportVersionLine[];  // <?codewarrior exportversion="1.0.1" ideversion="4.2" ?>
extern const char kDoctypeStart[];       // <!DOCTYPE PROJECT [
extern const char kDoctypeEnd[];         // ]>

struct FilteredExport {
    std::string text;
    // The export's line number of each line of `text` (index 0 is line 1),
    // for messages about the XML.
    std::vector<int> source_lines;
};

// Filters the export line by line: the first line starts the buffer with no
// line break after it; the second must be kExportVersionLine; of the others
// every line is copied with a "\n", except the lines from kDoctypeStart up
// to kDoctypeEnd (and a kDoctypeEnd line anywhere). Lines end at "\n"; a
// "\r" before it belongs to the line end, as in a file read in text mode.
// False with *failure set for an empty file or a wrong second line.
bool FilterExport(const std::string& file_text, FilteredExport* out, std::string* failure);

// TinyXML reads nested elements recursively. Deeper nesting than this is
// refused before the parse, so that an export cannot exhaust the stack of
// the host's thread; real exports nest about ten levels.
constexpr int kMaxElementDepth = 200;

// The deepest element nesting of an XML text, counted the way a parser opens
// and closes elements (comments, processing instructions, declarations and
// CDATA sections skipped; quoted attribute values may hold '>'). Stops
// counting once `limit` is passed and returns a value above it.
int ElementDepth(const std::string& text, int limit);

struct TextRange {
    size_t begin;
    size_t end;
};

// The elements of the third level (the children of the outermost element's
// children) as ranges of the text, listed per second-level element in order,
// found as ElementDepth finds them. False when the text has no outermost
// element or more than one.
bool ThirdLevelElements(const std::string& text, std::vector<std::vector<TextRange>>* out);

}  // namespace ads::import
