#include "project_file.h"

#include <utility>
#include <vector>

#include "platform/platform.h"
#include "platform/text.h"

namespace ads::host {

namespace {

constexpr char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n";
constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr char kEmptyName[] = "_x_";

bool IsLetter(unsigned char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }

// What the writer keeps as it is.
bool IsPlainStart(unsigned char c) { return IsLetter(c) || c == '_'; }
bool IsPlainLater(unsigned char c) { return IsPlainStart(c) || IsDigit(c) || c == '.' || c == '-'; }

// What the reader takes as part of a name: the writer's characters, plus ':'
// and the bytes of non-ASCII letters that hand-written XML may hold.
bool IsNameByte(unsigned char c) { return IsPlainLater(c) || c == ':' || c >= 0x80; }

// What the reader must look at in a value; the rest is copied in runs.
bool EndsPlainRun(char c) {
    return c == '<' || c == '&' || c == '\0' || c == '\r' || c == '\n' || c == '\t';
}

int HexValue(unsigned char c) {
    if (IsDigit(c)) return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

void AppendHexByte(unsigned char c, std::string* out) {
    out->push_back(kHexDigits[c >> 4]);
    out->push_back(kHexDigits[c & 0x0F]);
}

void AppendName(std::string_view name, std::string* out) {
    if (name.empty()) {
        out->append(kEmptyName);
        return;
    }
    for (size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        bool plain = i == 0 ? IsPlainStart(c) : IsPlainLater(c);
        // Every "_x" of the file starts an escape, so a '_' of the name
        // that an 'x' follows must not be written as itself.
        if (c == '_' && i + 1 < name.size() && name[i + 1] == 'x') plain = false;
        if (plain) {
            out->push_back(static_cast<char>(c));
        } else {
            out->append("_x");
            AppendHexByte(c, out);
            out->push_back('_');
        }
    }
}

bool IsPlainValueByte(unsigned char c) {
    return c >= 0x20 && c != 0x7F && c != '&' && c != '<' && c != '>' && c != '"';
}

void AppendValue(const std::string& value, std::string* out) {
    size_t i = 0;
    while (i < value.size()) {
        // Runs of bytes that stand for themselves go in whole.
        const size_t run = i;
        while (i < value.size() && IsPlainValueByte(static_cast<unsigned char>(value[i]))) ++i;
        out->append(value, run, i - run);
        if (i == value.size()) break;
        const auto c = static_cast<unsigned char>(value[i++]);
        switch (c) {
            case '&': out->append("&amp;"); break;
            case '<': out->append("&lt;"); break;
            case '>': out->append("&gt;"); break;
            case '"': out->append("&quot;"); break;
            // A reader turns raw tabs and line ends of a value into blanks.
            case '\t': out->append("&#9;"); break;
            case '\n': out->append("&#10;"); break;
            case '\r': out->append("&#13;"); break;
            default:  // the other control bytes
                out->append("&#x");
                AppendHexByte(c, out);
                out->push_back(';');
        }
    }
}

void AppendIndent(size_t level, std::string* out) {
    out->append(2 * (level < kMaxIndentLevel ? level : kMaxIndentLevel), ' ');
}

// Pre-order step over the tree under root by its links: the next node to
// visit after `node`, or null at the end. on_close is called for each node
// whose subtree ends on the way, innermost first (for its end tag).
template <typename OnClose>
const ConfigNode* Next(const ConfigNode* node, const ConfigNode& root, OnClose on_close) {
    if (node->FirstChild() != nullptr) return node->FirstChild();
    while (node != &root && node->NextSibling() == nullptr) {
        node = node->Parent();
        on_close(node);
    }
    return node == &root ? nullptr : node->NextSibling();
}

// About the size of the file (a few bytes more when no name or value needs
// an escape), so that the text is allocated once.
size_t EstimateSize(const ConfigNode& root) {
    size_t size = sizeof kDeclaration;
    size_t level = 0;
    for (const ConfigNode* n = &root; n != nullptr;) {
        const size_t indent = 2 * (level < kMaxIndentLevel ? level : kMaxIndentLevel);
        size += indent + n->Name().size() + 4;  // "<name/>\n"
        if (n->FirstChild() != nullptr) size += indent + n->Name().size() + 4;  // "</name>\n"
        for (const auto* a = n->FirstAttribute(); a != nullptr; a = n->NextAttribute(a)) {
            size += a->Name().size() + a->Value().size() + 4;  // ' name="value"'
        }
        if (n->FirstChild() != nullptr) ++level;
        n = Next(n, root, [&level](const ConfigNode*) { --level; });
    }
    return size;
}

// ---------------------------------------------------------------------------
// The reader.

class Reader {
public:
    explicit Reader(const std::string& text) : text_(text) {}

    std::unique_ptr<ConfigNode> Parse(std::string* error);

private:
    struct OpenElement {
        ConfigNode* node;
        std::string_view raw_name;  // as written, to match the end tag
        size_t start;               // of the start tag
    };

    // Records the first error; returns false so callers can `return Fail(...)`.
    bool Fail(size_t pos, std::string reason);
    size_t LineAt(size_t pos) const;

    bool AtEnd() const { return pos_ >= text_.size(); }
    bool LookingAt(std::string_view what) const {
        return text_.compare(pos_, what.size(), what) == 0;
    }
    // Skips blanks; returns how many.
    size_t SkipBlanks();
    std::string_view ReadName();

    bool SkipMarkup(std::string_view open, std::string_view close, const char* what);
    bool ReadEndTag();
    bool ReadStartTag();
    bool ReadAttributeValue(std::string* value);
    bool ReadReference(std::string* value);

    const std::string& text_;
    size_t pos_ = 0;
    std::unique_ptr<ConfigNode> root_;
    std::vector<OpenElement> open_;
    size_t error_pos_ = 0;
    std::string error_;
};

bool Reader::Fail(size_t pos, std::string reason) {
    if (error_.empty()) {
        error_pos_ = pos;
        error_ = std::move(reason);
    }
    return false;
}

size_t Reader::LineAt(size_t pos) const {
    // CR LF, a lone LF and a lone CR each end a line.
    size_t line = 1;
    for (size_t i = 0; i < pos && i < text_.size(); ++i) {
        if (text_[i] == '\n' || (text_[i] == '\r' && (i + 1 >= text_.size() || text_[i + 1] != '\n'))) {
            ++line;
        }
    }
    return line;
}

size_t Reader::SkipBlanks() {
    const size_t start = pos_;
    while (!AtEnd() && platform::IsWhitespace(text_[pos_])) ++pos_;
    return pos_ - start;
}

std::string_view Reader::ReadName() {
    const size_t start = pos_;
    while (!AtEnd() && IsNameByte(static_cast<unsigned char>(text_[pos_]))) ++pos_;
    return std::string_view(text_).substr(start, pos_ - start);
}

std::unique_ptr<ConfigNode> Reader::Parse(std::string* error) {
    if (LookingAt(platform::kUtf8ByteOrderMark)) pos_ = 3;  // a byte order mark left by an editor
    bool ok = true;
    while (ok) {
        SkipBlanks();
        if (AtEnd()) break;
        if (text_[pos_] != '<') {
            if (!open_.empty()) {
                ok = Fail(pos_, "text is not allowed inside element '" +
                                    std::string(open_.back().raw_name) + "'");
            } else if (root_ == nullptr) {
                ok = Fail(pos_, "not a project file (no root element)");
            } else {
                ok = Fail(pos_, "text after the root element");
            }
        } else if (LookingAt("<!--")) {
            ok = SkipMarkup("<!--", "-->", "comment");
        } else if (LookingAt("<?")) {
            ok = SkipMarkup("<?", "?>", "processing instruction");
        } else if (LookingAt("<![CDATA[")) {
            ok = Fail(pos_, "CDATA sections are not supported");
        } else if (LookingAt("<!DOCTYPE")) {
            ok = Fail(pos_, "document type declarations are not supported");
        } else if (LookingAt("<!")) {
            ok = Fail(pos_, "'<!' does not start a comment");
        } else if (LookingAt("</")) {
            ok = ReadEndTag();
        } else {
            ok = ReadStartTag();
        }
    }
    if (ok && !open_.empty()) {
        ok = Fail(open_.back().start,
                  "element '" + std::string(open_.back().raw_name) + "' is not closed");
    }
    if (ok && root_ == nullptr) ok = Fail(pos_, "not a project file (no root element)");
    if (!ok) {
        if (error != nullptr) *error = "line " + std::to_string(LineAt(error_pos_)) + ": " + error_;
        return nullptr;
    }
    return std::move(root_);
}

bool Reader::SkipMarkup(std::string_view open, std::string_view close, const char* what) {
    // The close is searched after the whole opening: "<!-->" is not a comment.
    const size_t found = text_.find(close, pos_ + open.size());
    if (found == std::string::npos) return Fail(pos_, std::string(what) + " is not closed");
    pos_ = found + close.size();
    return true;
}

bool Reader::ReadEndTag() {
    const size_t start = pos_;
    pos_ += 2;
    const std::string name(ReadName());
    if (name.empty()) return Fail(start, "'</' is not followed by an element name");
    if (open_.empty()) {
        if (root_ != nullptr) return Fail(start, "end tag '" + name + "' after the root element");
        return Fail(start, "end tag '" + name + "' has no start tag");
    }
    SkipBlanks();
    if (AtEnd() || text_[pos_] != '>') return Fail(start, "end tag '" + name + "' is not closed");
    const OpenElement& open = open_.back();
    if (name != open.raw_name) {
        return Fail(start, "end tag '" + name + "' does not match start tag '" +
                               std::string(open.raw_name) + "' (line " +
                               std::to_string(LineAt(open.start)) + ")");
    }
    ++pos_;
    open_.pop_back();
    return true;
}

bool Reader::ReadStartTag() {
    const size_t start = pos_;
    ++pos_;
    const std::string_view raw_name = ReadName();
    if (raw_name.empty()) return Fail(start, "'<' is not followed by an element name");
    const auto quoted_name = [raw_name] { return "'" + std::string(raw_name) + "'"; };
    if (open_.empty() && root_ != nullptr) return Fail(start, "second root element " + quoted_name());

    // The node joins the tree at once, so the tree owns it whatever follows.
    auto* node = new ConfigNode(DecodeName(raw_name));
    if (open_.empty()) {
        root_.reset(node);
    } else {
        open_.back().node->AppendChild(node);
    }

    std::string value;
    for (;;) {
        const size_t blanks = SkipBlanks();
        if (AtEnd()) return Fail(start, "tag " + quoted_name() + " is not closed");
        const auto c = static_cast<unsigned char>(text_[pos_]);
        if (c == '>') {
            ++pos_;
            open_.push_back({node, raw_name, start});
            return true;
        }
        if (c == '/') {
            if (!LookingAt("/>")) return Fail(pos_, "'/' is not followed by '>' in tag " + quoted_name());
            pos_ += 2;
            return true;
        }
        if (!IsNameByte(c)) {
            return Fail(pos_, std::string("unexpected character '") + static_cast<char>(c) +
                                  "' in tag " + quoted_name());
        }
        if (blanks == 0) return Fail(pos_, "attributes must be separated by blanks");

        const size_t attribute_pos = pos_;
        const std::string raw_attribute(ReadName());
        SkipBlanks();
        if (AtEnd() || text_[pos_] != '=') {
            return Fail(attribute_pos, "attribute '" + raw_attribute + "' has no value");
        }
        ++pos_;
        SkipBlanks();
        value.clear();
        if (!ReadAttributeValue(&value)) return false;

        const std::string name = DecodeName(raw_attribute);
        // Attribute names are C strings in the tree; "_x00_" cannot be one.
        if (name.find('\0') != std::string::npos) {
            return Fail(attribute_pos, "attribute name '" + raw_attribute + "' holds a NUL byte");
        }
        // The empty name may repeat (the tree keeps every such attribute and
        // GetAttribute never finds them); any other name only once.
        if (node->GetAttribute(name.c_str()) != nullptr) {
            return Fail(attribute_pos, "attribute '" + raw_attribute + "' is repeated");
        }
        node->SetAttribute(name, value);
    }
}

bool Reader::ReadAttributeValue(std::string* value) {
    if (AtEnd() || (text_[pos_] != '"' && text_[pos_] != '\'')) {
        return Fail(pos_, "attribute value is not quoted");
    }
    const size_t start = pos_;
    const char quote = text_[pos_++];
    for (;;) {
        if (AtEnd()) return Fail(start, "attribute value is not closed");
        const char c = text_[pos_];
        if (c == quote) {
            ++pos_;
            return true;
        }
        switch (c) {
            case '<':
                // Without a closing quote anywhere later, the tag is what
                // the value ran into: point at the value that was left open.
                if (text_.find(quote, pos_) == std::string::npos) {
                    return Fail(start, "attribute value is not closed");
                }
                return Fail(pos_, "'<' is not allowed in an attribute value");
            case '\0': return Fail(pos_, "NUL byte in an attribute value");
            case '&':
                if (!ReadReference(value)) return false;
                break;
            // As any XML reader does: a raw line end (CR LF counts as one)
            // or tab in a value reads as a blank. Written values never hold
            // them raw.
            case '\r':
                value->push_back(' ');
                ++pos_;
                if (!AtEnd() && text_[pos_] == '\n') ++pos_;
                break;
            case '\n':
            case '\t':
                value->push_back(' ');
                ++pos_;
                break;
            default: {
                const size_t run = pos_++;
                while (!AtEnd() && text_[pos_] != quote && !EndsPlainRun(text_[pos_])) ++pos_;
                value->append(text_, run, pos_ - run);
            }
        }
    }
}

bool Reader::ReadReference(std::string* value) {
    // Long enough for any reference we decode, leading zeros included.
    constexpr size_t kMaxReference = 32;
    const size_t start = pos_;
    size_t end = pos_ + 1;
    while (end < text_.size() && end - start < kMaxReference &&
           (IsLetter(static_cast<unsigned char>(text_[end])) ||
            IsDigit(static_cast<unsigned char>(text_[end])) || text_[end] == '#')) {
        ++end;
    }
    if (end >= text_.size() || text_[end] != ';' || end == start + 1) {
        return Fail(start, "'&' does not start an entity or character reference");
    }
    const std::string_view reference = std::string_view(text_).substr(start, end + 1 - start);
    const std::string_view body = reference.substr(1, reference.size() - 2);
    pos_ = end + 1;

    if (body[0] != '#') {
        static const std::pair<std::string_view, char> kEntities[] = {
            {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
        for (const auto& [entity, ch] : kEntities) {
            if (body == entity) {
                value->push_back(ch);
                return true;
            }
        }
        return Fail(start, "unknown entity '" + std::string(reference) + "'");
    }

    const bool hex = body.size() > 1 && body[1] == 'x';
    const std::string_view digits = body.substr(hex ? 2 : 1);
    unsigned code = 0;
    for (const char d : digits) {
        const int v = hex ? HexValue(static_cast<unsigned char>(d))
                          : (IsDigit(static_cast<unsigned char>(d)) ? d - '0' : -1);
        if (v < 0) return Fail(start, "malformed character reference '" + std::string(reference) + "'");
        code = code * (hex ? 16 : 10) + static_cast<unsigned>(v);
        if (code > 255) code = 256;  // out of range whatever follows
    }
    if (digits.empty()) {
        return Fail(start, "malformed character reference '" + std::string(reference) + "'");
    }
    // Texts are 8-bit C strings: neither NUL nor anything above 255 fits.
    if (code == 0 || code > 255) {
        return Fail(start, "character reference '" + std::string(reference) + "' is out of range");
    }
    value->push_back(static_cast<char>(code));
    return true;
}

}  // namespace

std::string EncodeName(std::string_view name) {
    std::string out;
    out.reserve(name.size() + 8);
    AppendName(name, &out);
    return out;
}

std::string DecodeName(std::string_view text) {
    if (text == kEmptyName) return std::string();
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        if (text[i] == '_' && i + 4 < text.size() && text[i + 1] == 'x' && text[i + 4] == '_') {
            const int high = HexValue(static_cast<unsigned char>(text[i + 2]));
            const int low = HexValue(static_cast<unsigned char>(text[i + 3]));
            if (high >= 0 && low >= 0) {
                out.push_back(static_cast<char>(high * 16 + low));
                i += 5;
                continue;
            }
        }
        out.push_back(text[i++]);
    }
    return out;
}

std::string SerializeProject(const ConfigNode& root) {
    std::string out;
    out.reserve(EstimateSize(root));
    out.append(kDeclaration);
    size_t level = 0;
    const auto close = [&out, &level](const ConfigNode* node) {
        --level;
        AppendIndent(level, &out);
        out.append("</");
        AppendName(node->Name(), &out);
        out.append(">\n");
    };
    for (const ConfigNode* n = &root; n != nullptr;) {
        AppendIndent(level, &out);
        out.push_back('<');
        AppendName(n->Name(), &out);
        for (const auto* a = n->FirstAttribute(); a != nullptr; a = n->NextAttribute(a)) {
            out.push_back(' ');
            AppendName(a->Name(), &out);
            out.append("=\"");
            AppendValue(a->Value(), &out);
            out.push_back('"');
        }
        if (n->FirstChild() != nullptr) {
            out.append(">\n");
            ++level;
        } else {
            out.append("/>\n");
        }
        n = Next(n, root, close);
    }
    return out;
}

std::unique_ptr<ConfigNode> ParseProject(const std::string& text, std::string* error) {
    return Reader(text).Parse(error);
}

std::unique_ptr<ConfigNode> LoadProject(platform::FileSystem& files, const std::string& path,
                                        std::string* error) {
    std::string text;
    if (!files.ReadFile(path, &text)) {
        if (error != nullptr) *error = path + ": cannot read the project file";
        return nullptr;
    }
    std::string reason;
    std::unique_ptr<ConfigNode> root = ParseProject(text, &reason);
    if (root == nullptr && error != nullptr) *error = path + ": " + reason;
    return root;
}

bool SaveProject(platform::FileSystem& files, const std::string& path, const ConfigNode& root,
                 std::string* error) {
    std::string reason;
    if (files.WriteFileAtomically(path, SerializeProject(root), &reason)) return true;
    if (error != nullptr) {
        // The backends' texts name the path already ("cannot write <path>:
        // Access is denied."); a bare reason gets it.
        if (reason.empty()) {
            *error = path + ": cannot write the project file";
        } else if (reason.find(path + ":") != std::string::npos) {
            *error = reason;
        } else {
            *error = path + ": cannot write the project file: " + reason;
        }
    }
    return false;
}

}  // namespace ads::host
