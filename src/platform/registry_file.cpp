// The registry kept in a Windows ".reg" export file. Only FileSystem is used,
// so both builds have it: POSIX keeps its registry here, and the Windows
// build uses it when ORVANE_REGISTRY names a file.
//
// The file is parsed into its lines: the header, the lines before the first
// key, and per "[key]" line the lines that follow it. A change edits or adds
// lines and writes every untouched line back exactly as it was read.
#include "platform/registry.h"

#include <cstdint>

#include "platform/folders.h"
#include "platform/platform.h"
#include "platform/text.h"

namespace ads::platform {

const char* RegistryRootName(RegistryRoot root) {
    return root == RegistryRoot::kLocalMachine ? "HKEY_LOCAL_MACHINE" : "HKEY_CURRENT_USER";
}

namespace reg_file {
namespace {

const char kHeader5[] = "Windows Registry Editor Version 5.00";
const char kHeader4[] = "REGEDIT4";

// Every root a .reg file may name; the plug-in reaches the first two only,
// the others are kept as they are.
const char* const kRootNames[] = {"HKEY_LOCAL_MACHINE", "HKEY_CURRENT_USER", "HKEY_CLASSES_ROOT",
                                  "HKEY_USERS", "HKEY_CURRENT_CONFIG"};

std::string TrimRight(std::string s) {
    while (!s.empty() && (IsSpaceOrTab(s.back()) || s.back() == '\r' || s.back() == '\n')) s.pop_back();
    return s;
}

size_t SkipBlanks(const std::string& s, size_t pos) {
    while (pos < s.size() && IsSpaceOrTab(s[pos])) ++pos;
    return pos;
}

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

void AppendUtf8(uint32_t code, std::string* out) {
    if (code < 0x80) {
        out->push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out->push_back(static_cast<char>(0xC0 | (code >> 6)));
        out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        out->push_back(static_cast<char>(0xE0 | (code >> 12)));
        out->push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        out->push_back(static_cast<char>(0xF0 | (code >> 18)));
        out->push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out->push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

// UTF-16LE (after its byte-order mark) to UTF-8; false when it is not valid.
bool DecodeUtf16(const std::string& bytes, std::string* text) {
    if (bytes.size() % 2 != 0) return false;
    text->clear();
    for (size_t i = 0; i < bytes.size(); i += 2) {
        uint32_t unit = static_cast<unsigned char>(bytes[i]) | (static_cast<unsigned char>(bytes[i + 1]) << 8);
        if (unit >= 0xD800 && unit < 0xDC00) {
            if (i + 3 >= bytes.size()) return false;
            uint32_t low = static_cast<unsigned char>(bytes[i + 2]) | (static_cast<unsigned char>(bytes[i + 3]) << 8);
            if (low < 0xDC00 || low >= 0xE000) return false;
            unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
            i += 2;
        } else if (unit >= 0xDC00 && unit < 0xE000) {
            return false;
        }
        AppendUtf8(unit, text);
    }
    return true;
}

// UTF-8 to UTF-16LE; a byte that does not start a valid sequence stands for
// itself (texts the plug-in stores are 8-bit and need not be UTF-8).
std::string EncodeUtf16(const std::string& text) {
    std::string out;
    auto put = [&out](uint32_t unit) {
        out.push_back(static_cast<char>(unit & 0xFF));
        out.push_back(static_cast<char>(unit >> 8));
    };
    for (size_t i = 0; i < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        size_t length = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xE ? 3 : (c >> 3) == 0x1E ? 4 : 0;
        uint32_t code = 0;
        bool valid = length > 0 && i + length <= text.size();
        if (valid) {
            code = length == 1 ? c : length == 2 ? (c & 0x1F) : length == 3 ? (c & 0x0F) : (c & 0x07);
            for (size_t k = 1; k < length && valid; ++k) {
                const unsigned char next = static_cast<unsigned char>(text[i + k]);
                valid = (next & 0xC0) == 0x80;
                code = (code << 6) | (next & 0x3F);
            }
            const uint32_t minimum[] = {0, 0, 0x80, 0x800, 0x10000};
            valid = valid && code >= minimum[length] && code <= 0x10FFFF && !(code >= 0xD800 && code < 0xE000);
        }
        if (!valid) {
            code = c;
            length = 1;
        }
        if (code >= 0x10000) {
            put(0xD800 + ((code - 0x10000) >> 10));
            put(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            put(code);
        }
        i += length;
    }
    return out;
}

}  // namespace

enum class Encoding { kAnsi, kUtf8Bom, kUtf16 };

// One line of the file (a value may span several with "\" continuations).
struct Line {
    enum Kind { kOther, kValue } kind = kOther;  // kOther: blank or comment
    std::string raw;         // as read, line ends included; empty for new lines
    std::string name;        // of a value
    bool is_string = false;
    std::string data;        // of a string value
    bool changed = false;
};

struct Section {
    std::string raw;  // the "[...]" line as read; empty for a new section
    std::string key;  // the text between the brackets, exactly
    std::vector<Line> lines;
};

struct Document {
    bool has_header = false;
    Encoding encoding = Encoding::kAnsi;
    std::string eol = "\r\n";
    std::string header;        // the header line as read
    std::vector<Line> preamble;  // lines between the header and the first key
    std::vector<Section> sections;
};

namespace {

class ParseError {
public:
    ParseError(size_t line, std::string reason) : line_(line), reason_(std::move(reason)) {}
    size_t line() const { return line_; }
    const std::string& reason() const { return reason_; }

private:
    size_t line_;
    std::string reason_;
};

// A quoted text from text[*pos] (the opening quote) on; *pos ends behind the
// closing quote. Only \\ and \" are escapes.
std::string ParseQuoted(const std::string& text, size_t* pos, size_t line) {
    std::string out;
    size_t i = *pos + 1;
    for (;;) {
        if (i >= text.size()) throw ParseError(line, "a quoted text is not closed");
        const char c = text[i];
        if (c == '"') break;
        if (c == '\\') {
            if (i + 1 < text.size() && (text[i + 1] == '\\' || text[i + 1] == '"')) {
                out.push_back(text[i + 1]);
                i += 2;
                continue;
            }
            throw ParseError(line, "a backslash in a quoted text must be doubled (\\\\) or escape a quote (\\\")");
        }
        out.push_back(c);
        ++i;
    }
    *pos = i + 1;
    return out;
}

// "hex:", "hex(N):" and "dword:" data, continuation lines already joined.
void CheckTypedData(const std::string& data, size_t line) {
    if (StartsWithIgnoringCase(data, "dword:")) {
        const std::string digits = TrimRight(data.substr(6));
        bool ok = !digits.empty() && digits.size() <= 8;
        for (char c : digits) ok = ok && IsHexDigit(c);
        if (!ok) throw ParseError(line, "a dword value needs one to eight hexadecimal digits");
        return;
    }
    size_t colon = std::string::npos;
    if (StartsWithIgnoringCase(data, "hex:")) {
        colon = 3;
    } else if (StartsWithIgnoringCase(data, "hex(")) {
        const size_t close = data.find("):");
        bool ok = close != std::string::npos && close > 4;
        for (size_t i = 4; ok && i < close; ++i) ok = IsHexDigit(data[i]);
        if (!ok) throw ParseError(line, "a hex(N) value needs a hexadecimal type number");
        colon = close + 1;
    } else {
        throw ParseError(line, "a value must be a quoted text, dword:, hex: or hex(N):");
    }
    const std::string bytes = TrimRight(data.substr(colon + 1));
    if (SkipBlanks(bytes, 0) == bytes.size()) return;  // no bytes at all
    for (size_t start = 0; start <= bytes.size();) {
        size_t comma = bytes.find(',', start);
        if (comma == std::string::npos) comma = bytes.size();
        const size_t from = SkipBlanks(bytes, start);
        const std::string token = TrimRight(bytes.substr(from, comma > from ? comma - from : 0));
        if (token.size() != 2 || !IsHexDigit(token[0]) || !IsHexDigit(token[1])) {
            throw ParseError(line, "hexadecimal data must be bytes separated by commas");
        }
        start = comma + 1;
    }
}

// The root part of a key text, checked; the key text is kept exactly.
void CheckKeyText(const std::string& key, size_t line) {
    if (key.empty()) throw ParseError(line, "a key line names no key");
    if (key[0] == '-') throw ParseError(line, "key deletions ([-...]) have no place in a registry file");
    const std::string root = key.substr(0, key.find('\\'));
    for (const char* name : kRootNames) {
        if (EqualsIgnoringCase(root, name)) return;
    }
    throw ParseError(line, "unknown root key '" + root + "'");
}

Document Parse(const std::string& bytes) {
    Document doc;
    std::string text;
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF &&
        static_cast<unsigned char>(bytes[1]) == 0xFE) {
        doc.encoding = Encoding::kUtf16;
        if (!DecodeUtf16(bytes.substr(2), &text)) throw ParseError(1, "not valid UTF-16 text");
    } else if (StartsWithByteOrderMark(bytes)) {
        doc.encoding = Encoding::kUtf8Bom;
        text = bytes.substr(3);
    } else {
        text = bytes;
    }
    if (text.empty()) return doc;

    // Physical lines, each with its line end (the last one is given one).
    std::vector<std::string> lines;
    for (size_t start = 0; start < text.size();) {
        size_t end = text.find('\n', start);
        end = end == std::string::npos ? text.size() : end + 1;
        lines.push_back(text.substr(start, end - start));
        start = end;
    }
    const std::string& first = lines[0];
    doc.eol = first.size() >= 2 && first.compare(first.size() - 2, 2, "\r\n") == 0 ? "\r\n" : "\n";
    if (lines.back().back() != '\n') lines.back() += doc.eol;

    const std::string header = TrimRight(lines[0]);
    if (header != kHeader5 && header != kHeader4) {
        throw ParseError(1, std::string("not a registry file: the first line must be \"") + kHeader5 +
                                "\" or \"" + kHeader4 + "\"");
    }
    doc.has_header = true;
    doc.header = lines[0];

    for (size_t i = 1; i < lines.size(); ++i) {
        const size_t number = i + 1;
        const std::string content = TrimRight(lines[i]);
        const size_t start = SkipBlanks(content, 0);
        std::vector<Line>& target = doc.sections.empty() ? doc.preamble : doc.sections.back().lines;
        if (start == content.size() || content[start] == ';') {
            Line other;
            other.raw = lines[i];
            target.push_back(other);
            continue;
        }
        if (content[start] == '[') {
            const size_t close = content.rfind(']');
            if (close == std::string::npos || close < start) throw ParseError(number, "a key line must end with ']'");
            Section section;
            section.raw = lines[i];
            section.key = content.substr(start + 1, close - start - 1);
            CheckKeyText(section.key, number);
            doc.sections.push_back(section);
            continue;
        }
        if (content[start] != '"' && content[start] != '@') {
            throw ParseError(number, "expected [KEY], \"name\"=value or @=value");
        }
        if (doc.sections.empty()) throw ParseError(number, "a value before the first [KEY] line");

        Line value;
        value.kind = Line::kValue;
        value.raw = lines[i];
        size_t pos = start;
        if (content[pos] == '@') {
            ++pos;
        } else {
            value.name = ParseQuoted(content, &pos, number);
        }
        pos = SkipBlanks(content, pos);
        if (pos >= content.size() || content[pos] != '=') throw ParseError(number, "expected '=' after the value name");
        pos = SkipBlanks(content, pos + 1);
        if (pos < content.size() && content[pos] == '"') {
            value.is_string = true;
            value.data = ParseQuoted(content, &pos, number);
            if (SkipBlanks(content, pos) != content.size()) {
                throw ParseError(number, "unexpected text after the closing quote");
            }
        } else {
            // Typed data may go on over lines that end in a backslash.
            std::string data = content.substr(pos);
            while (!data.empty() && data.back() == '\\' && i + 1 < lines.size()) {
                data.pop_back();
                ++i;
                value.raw += lines[i];
                const std::string more = TrimRight(lines[i]);
                data += more.substr(SkipBlanks(more, 0));
            }
            CheckTypedData(data, number);
        }
        doc.sections.back().lines.push_back(value);
    }
    return doc;
}

std::string Quote(const std::string& text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '\\' || c == '"') out.push_back('\\');
        out.push_back(c);
    }
    out.push_back('"');
    return out;
}

std::string Format(const Document& doc) {
    std::string text;
    if (doc.has_header) {
        text = doc.header;
    } else {
        text = std::string(kHeader5) + doc.eol + doc.eol;
    }
    auto put_lines = [&](const std::vector<Line>& lines) {
        for (const Line& line : lines) {
            if (!line.changed && !line.raw.empty()) {
                text += line.raw;
            } else if (line.kind == Line::kValue) {
                text += (line.name.empty() ? std::string("@") : Quote(line.name)) + "=" + Quote(line.data) + doc.eol;
            } else {
                text += doc.eol;
            }
        }
    };
    put_lines(doc.preamble);
    for (const Section& section : doc.sections) {
        text += section.raw.empty() ? "[" + section.key + "]" + doc.eol : section.raw;
        put_lines(section.lines);
    }
    switch (doc.encoding) {
        case Encoding::kUtf16: return "\xFF\xFE" + EncodeUtf16(text);
        case Encoding::kUtf8Bom: return kUtf8ByteOrderMark + text;
        case Encoding::kAnsi: break;
    }
    return text;
}

// Where a section's key stands to the key asked for.
enum class Relation { kOther, kSame, kBelow };

Relation Relate(const std::string& section_key, RegistryRoot root, const std::string& path) {
    const size_t slash = section_key.find('\\');
    const std::string section_root = section_key.substr(0, slash);
    if (!EqualsIgnoringCase(section_root, RegistryRootName(root))) return Relation::kOther;
    const std::string rest = slash == std::string::npos ? std::string() : section_key.substr(slash + 1);
    if (EqualsIgnoringCase(rest, path)) return Relation::kSame;
    if (path.empty()) return Relation::kBelow;
    if (StartsWithIgnoringCase(rest, path + "\\")) return Relation::kBelow;
    return Relation::kOther;
}

bool KeyExists(const Document& doc, RegistryRoot root, const std::string& path) {
    if (path.empty()) return true;
    for (const Section& section : doc.sections) {
        if (Relate(section.key, root, path) != Relation::kOther) return true;
    }
    return false;
}

std::string KeyName(RegistryRoot root, const std::string& path) {
    return path.empty() ? std::string(RegistryRootName(root)) : std::string(RegistryRootName(root)) + "\\" + path;
}

bool HasLineEnd(const std::string& text) { return text.find_first_of("\r\n") != std::string::npos; }

}  // namespace
}  // namespace reg_file

using namespace reg_file;

RegistryFile::RegistryFile(FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

// One key of the file; every call reads the file again.
class RegistryFile::Key final : public RegistryKey {
public:
    Key(RegistryFile& file, RegistryRoot root, std::string path)
        : file_(file), root_(root), path_(std::move(path)) {}

    bool ReadString(const std::string& name, std::string* value) override {
        Document doc;
        if (!file_.Load(&doc)) return false;
        const Line* found = nullptr;
        for (const Section& section : doc.sections) {
            if (Relate(section.key, root_, path_) != Relation::kSame) continue;
            for (const Line& line : section.lines) {
                if (line.kind == Line::kValue && EqualsIgnoringCase(line.name, name)) found = &line;
            }
        }
        if (found == nullptr || !found->is_string) {
            file_.last_error_ = file_.path_ + ": " + KeyName(root_, path_) + " holds no text value " +
                                (name.empty() ? std::string("@") : "\"" + name + "\"");
            return false;
        }
        *value = found->data;
        return true;
    }

    bool WriteString(const std::string& name, const std::string& value) override {
        if (HasLineEnd(name) || HasLineEnd(value)) {
            file_.last_error_ = file_.path_ + ": a registry file cannot hold a line end in a name or value";
            return false;
        }
        Document doc;
        if (!file_.Load(&doc)) return false;
        Line* found = nullptr;
        Section* last_section = nullptr;
        for (Section& section : doc.sections) {
            if (Relate(section.key, root_, path_) != Relation::kSame) continue;
            last_section = &section;
            for (Line& line : section.lines) {
                if (line.kind == Line::kValue && EqualsIgnoringCase(line.name, name)) found = &line;
            }
        }
        Line fresh;
        fresh.kind = Line::kValue;
        fresh.name = name;
        fresh.is_string = true;
        fresh.data = value;
        fresh.changed = true;
        if (found != nullptr) {
            fresh.name = found->name;  // the name keeps its spelling
            *found = fresh;
        } else if (last_section != nullptr) {
            // Behind the section's last value, before blank and comment lines.
            auto& lines = last_section->lines;
            size_t at = 0;
            for (size_t i = 0; i < lines.size(); ++i) {
                if (lines[i].kind == Line::kValue) at = i + 1;
            }
            lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), fresh);
        } else {
            file_.AppendSection(&doc, root_, path_);
            doc.sections.back().lines.insert(doc.sections.back().lines.begin(), fresh);
        }
        return file_.Save(doc);
    }

    bool ListValues(std::vector<RegistryValue>* values) override {
        values->clear();
        Document doc;
        if (!file_.Load(&doc)) return false;
        for (const Section& section : doc.sections) {
            if (Relate(section.key, root_, path_) != Relation::kSame) continue;
            for (const Line& line : section.lines) {
                if (line.kind != Line::kValue) continue;
                RegistryValue v;
                v.name = line.name;
                v.is_string = line.is_string;
                v.data = line.data;
                bool replaced = false;
                for (RegistryValue& seen : *values) {
                    if (EqualsIgnoringCase(seen.name, v.name)) {
                        v.name = seen.name;
                        seen = v;
                        replaced = true;
                    }
                }
                if (!replaced) values->push_back(v);
            }
        }
        return true;
    }

    bool DeleteValue(const std::string& name) override {
        Document doc;
        if (!file_.Load(&doc)) return false;
        bool removed = false;
        for (Section& section : doc.sections) {
            if (Relate(section.key, root_, path_) != Relation::kSame) continue;
            auto& lines = section.lines;
            for (size_t i = lines.size(); i-- > 0;) {
                if (lines[i].kind == Line::kValue && EqualsIgnoringCase(lines[i].name, name)) {
                    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
                    removed = true;
                }
            }
        }
        if (!removed) {
            file_.last_error_ = file_.path_ + ": " + KeyName(root_, path_) + " has no value " +
                                (name.empty() ? std::string("@") : "\"" + name + "\"");
            return false;
        }
        return file_.Save(doc);
    }

private:
    RegistryFile& file_;
    RegistryRoot root_;
    std::string path_;
};

bool RegistryFile::Load(reg_file::Document* doc) {
    std::string bytes;
    if (!files_.ReadFile(path_, &bytes)) {
        if (files_.PathExists(path_)) {
            last_error_ = path_ + ": cannot read the registry file";
            return false;
        }
        *doc = Document();  // no file yet: an empty registry
        return true;
    }
    try {
        *doc = Parse(bytes);
    } catch (const ParseError& e) {
        last_error_ = path_ + ":" + std::to_string(e.line()) + ": " + e.reason();
        return false;
    }
    return true;
}

void RegistryFile::AppendSection(reg_file::Document* doc, RegistryRoot root, const std::string& path) {
    // A blank line before the new key, unless one is there already.
    if (doc->has_header) {
        std::vector<Line>& before = doc->sections.empty() ? doc->preamble : doc->sections.back().lines;
        const bool blank = !before.empty() && before.back().kind == Line::kOther &&
                           TrimRight(before.back().raw).empty();
        if (!blank) before.push_back(Line());
    }
    Section section;
    section.key = KeyName(root, path);
    section.lines.push_back(Line());  // the blank line that ends a key
    doc->sections.push_back(section);
}

bool RegistryFile::Save(const reg_file::Document& doc) {
    MakeFoldersOf(files_, path_);
    std::string error;
    if (!files_.WriteFileAtomically(path_, Format(doc), &error)) {
        last_error_ = error;
        return false;
    }
    return true;
}

std::unique_ptr<RegistryKey> RegistryFile::OpenKey(RegistryRoot root, const std::string& path) {
    Document doc;
    if (!Load(&doc)) return nullptr;
    if (!KeyExists(doc, root, path)) {
        last_error_ = path_ + ": no key " + KeyName(root, path);
        return nullptr;
    }
    return std::make_unique<Key>(*this, root, path);
}

std::unique_ptr<RegistryKey> RegistryFile::CreateKey(RegistryRoot root, const std::string& path) {
    if (HasLineEnd(path)) {
        last_error_ = path_ + ": a registry file cannot hold a line end in a key";
        return nullptr;
    }
    Document doc;
    if (!Load(&doc)) return nullptr;
    if (!KeyExists(doc, root, path)) {
        AppendSection(&doc, root, path);
        if (!Save(doc)) return nullptr;
    }
    return std::make_unique<Key>(*this, root, path);
}

bool RegistryFile::DeleteKey(RegistryRoot root, const std::string& path) {
    if (path.empty()) {
        last_error_ = path_ + ": a root key cannot be deleted";
        return false;
    }
    Document doc;
    if (!Load(&doc)) return false;
    bool removed = false;
    for (size_t i = doc.sections.size(); i-- > 0;) {
        if (Relate(doc.sections[i].key, root, path) != Relation::kOther) {
            doc.sections.erase(doc.sections.begin() + static_cast<std::ptrdiff_t>(i));
            removed = true;
        }
    }
    if (!removed) {
        last_error_ = path_ + ": no key " + KeyName(root, path);
        return false;
    }
    return Save(doc);
}

std::string DefaultRegistryFilePath(Environment& environment) {
    std::string value;
    if (environment.Get("ORVANE_REGISTRY", &value) && !value.empty()) return value;
    if (environment.Get("XDG_CONFIG_HOME", &value) && !value.empty()) return value + "/orvane/registry.reg";
    if (environment.Get("HOME", &value) && !value.empty()) return value + "/.config/orvane/registry.reg";
    return std::string();
}

}  // namespace ads::platform
