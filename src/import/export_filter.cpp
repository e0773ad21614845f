#include "import/export_filter.h"

namespace ads::import {

const char kExportVersionLine[] = "<?codewarrior exportversion=\"1.0.1\" ideversion=\"4.2\" ?>";
const char kDoctypeStart[] = "<!DOCTYPE PROJECT [";
const char kDoctypeEnd[] = "]>";

namespace {

// Reads the next line (without its line end) from `pos`; false at the end.
bool NextLine(const std::string& text, size_t& pos, std::string* line) {
    if (pos >= text.size()) return false;
    size_t end = text.find('\n', pos);
    size_t next = end == std::string::npos ? text.size() : end + 1;
    if (end == std::string::npos) end = text.size();
    if (end > pos && text[end - 1] == '\r' && end < text.size()) --end;
    line->assign(text, pos, end - pos);
    pos = next;
    return true;
}

// Shown in a message: at most 80 bytes, control bytes as '?'.
std::string Shown(const std::string& line) {
    std::string shown = line.substr(0, 80);
    for (char& c : shown) {
        if (static_cast<unsigned char>(c) < 0x20) c = '?';
    }
    return line.size() > 80 ? shown + "..." : shown;
}

}  // namespace

bool FilterExport(const std::string& file_text, FilteredExport* out, std::string* failure) {
    out->text.clear();
    out->source_lines.clear();
    size_t pos = 0;
    std::string line;
    if (!NextLine(file_text, pos, &line)) {
        *failure = "the file is empty";
        return false;
    }
    out->text = line;
    out->source_lines.push_back(1);
    std::string second;
    if (!NextLine(file_text, pos, &second) || second != kExportVersionLine) {
        *failure = file_text.find('\n') == std::string::npos
                       ? std::string("the file has one line only; line 2 must be ") + kExportVersionLine
                       : "line 2 is '" + Shown(second) + "', not " + kExportVersionLine;
        return false;
    }
    bool copying = true;
    int number = 2;
    bool first_kept = true;
    while (NextLine(file_text, pos, &line)) {
        ++number;
        if (line == kDoctypeStart) {
            copying = false;
        } else if (line == kDoctypeEnd) {
            copying = true;
        } else if (copying) {
            out->text += line;
            out->text += '\n';
            // The first kept line shares the buffer's first line with the
            // declaration; every later one starts a line of its own.
            if (first_kept) {
                out->source_lines[0] = number;
                first_kept = false;
            } else {
                out->source_lines.push_back(number);
            }
        }
    }
    return true;
}

namespace {

// Walks the tags of an XML text the way a parser opens and closes elements:
// comments, processing instructions, declarations and CDATA sections are
// skipped, quoted attribute values may hold '>'. open(begin, end, depth,
// empty) is called for each opening tag with its range and the depth of its
// element (1 for the outermost), empty for "<x/>", which opens nothing;
// close(end, depth) after a closing tag with the depth it closes. Either
// returns false to stop the walk.
template <typename Open, typename Close>
void WalkTags(const std::string& text, Open open, Close close) {
    int depth = 0;
    size_t i = 0;
    const size_t n = text.size();
    auto skip_past = [&](const char* end) {
        size_t at = text.find(end, i);
        i = at == std::string::npos ? n : at + std::char_traits<char>::length(end);
    };
    while (i < n) {
        if (text[i] != '<') {
            ++i;
            continue;
        }
        if (text.compare(i, 4, "<!--") == 0) {
            i += 4;
            skip_past("-->");
        } else if (text.compare(i, 9, "<![CDATA[") == 0) {
            i += 9;
            skip_past("]]>");
        } else if (text.compare(i, 2, "<?") == 0) {
            i += 2;
            skip_past("?>");
        } else if (text.compare(i, 2, "</") == 0) {
            i += 2;
            skip_past(">");
            if (depth > 0 && !close(i, depth--)) return;
        } else if (text.compare(i, 2, "<!") == 0) {
            i += 2;
            skip_past(">");
        } else {
            // An opening tag: to its '>', quoted values skipped; "/>" closes it.
            const size_t begin = i++;
            char quote = 0;
            bool self_closing = false;
            while (i < n) {
                char c = text[i++];
                if (quote != 0) {
                    if (c == quote) quote = 0;
                } else if (c == '"' || c == '\'') {
                    quote = c;
                } else if (c == '>') {
                    self_closing = i >= 2 && text[i - 2] == '/';
                    break;
                }
            }
            if (!open(begin, i, depth + 1, self_closing)) return;
            if (!self_closing) ++depth;
        }
    }
}

}  // namespace

int ElementDepth(const std::string& text, int limit) {
    int deepest = 0;
    WalkTags(
        text,
        [&](size_t, size_t, int depth, bool empty) {
            if (!empty && depth > deepest) deepest = depth;
            return deepest <= limit;
        },
        [](size_t, int) { return true; });
    return deepest;
}

bool ThirdLevelElements(const std::string& text, std::vector<std::vector<TextRange>>* out) {
    out->clear();
    bool ok = true;
    int outermost = 0;
    size_t begin = 0;
    WalkTags(
        text,
        [&](size_t at, size_t end, int depth, bool empty) {
            if (depth == 1 && ++outermost > 1) return ok = false;
            if (depth == 2) out->emplace_back();
            if (depth == 3 && empty) out->back().push_back(TextRange{at, end});
            if (depth == 3) begin = at;
            return true;
        },
        [&](size_t at, int depth) {
            if (depth == 3) out->back().push_back(TextRange{begin, at});
            return true;
        });
    return ok && outermost == 1;
}

}  // namespace ads::import
