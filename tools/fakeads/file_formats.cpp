#include "file_formats.h"

#include <cstdlib>

#include "paths.h"

namespace fakeads {
namespace {

// The text's lines as "key rest" pairs, the magic and "end" checked.
class Lines {
public:
    Lines(const std::string& text, const char* magic) : text_(text) {
        const std::string first = Next();
        ok_ = first == magic;
    }

    bool ok() const { return ok_; }

    // The next line without its "\n"; false at "end" or when the text ends
    // without one (a cut-off file).
    bool Read(std::string* key, std::string* rest) {
        if (!ok_) return false;
        if (pos_ >= text_.size()) {
            ok_ = false;
            return false;
        }
        const std::string line = Next();
        if (line == "end") {
            ended_ = true;
            return false;
        }
        const size_t blank = line.find(' ');
        *key = line.substr(0, blank);
        *rest = blank == std::string::npos ? std::string() : line.substr(blank + 1);
        return true;
    }

    bool Ended() const { return ok_ && ended_; }
    void Fail() { ok_ = false; }
    size_t position() const { return pos_; }
    void Skip(size_t count) { pos_ += count; }
    const std::string& text() const { return text_; }

private:
    std::string Next() {
        const size_t end = text_.find('\n', pos_);
        const size_t stop = end == std::string::npos ? text_.size() : end;
        std::string line = text_.substr(pos_, stop - pos_);
        pos_ = end == std::string::npos ? text_.size() : end + 1;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return line;
    }

    const std::string& text_;
    size_t pos_ = 0;
    bool ok_ = false;
    bool ended_ = false;
};

// "first rest": splits off the first blank-separated word.
std::string Split(const std::string& text, std::string* rest) {
    const size_t blank = text.find(' ');
    *rest = blank == std::string::npos ? std::string() : text.substr(blank + 1);
    return text.substr(0, blank);
}

bool ParseHex64(const std::string& text, uint64_t* value) {
    if (text.size() != 16 || text.find_first_not_of("0123456789abcdef") != std::string::npos) return false;
    *value = std::strtoull(text.c_str(), nullptr, 16);
    return true;
}

bool ParseUnsigned(const std::string& text, uint32_t* value) {
    if (text.empty() || text.size() > 10) return false;
    char* end = nullptr;
    const unsigned long long number = std::strtoull(text.c_str(), &end, 0);
    if (*end != '\0' || number > 0xffffffffull) return false;
    *value = static_cast<uint32_t>(number);
    return true;
}

bool ParseDependency(const std::string& rest, Dependency* dependency) {
    std::string path;
    const std::string hash = Split(rest, &path);
    dependency->path = path;
    return ParseHex64(hash, &dependency->hash) && !path.empty();
}

}  // namespace

std::string WriteObject(const ObjectFile& object) {
    std::string text = std::string(kObjectMagic) + "\n";
    text += "tool " + object.tool + "\n";
    text += "source " + object.source + "\n";
    text += "state " + object.state + "\n";
    text += "byte-order " + object.byte_order + "\n";
    for (const std::string& attribute : object.attributes) text += "attribute " + attribute + "\n";
    for (const std::string& define : object.defines) text += "define " + define + "\n";
    for (const Dependency& dependency : object.dependencies) {
        text += "depend " + Hex64(dependency.hash) + " " + dependency.path + "\n";
    }
    for (const std::string& symbol : object.symbols) text += "symbol " + symbol + "\n";
    for (const LinkMessage& message : object.link_messages) {
        text += std::string(LinkMarkerWord(message.kind)) + " " + message.text + "\n";
    }
    text += "code-size " + std::to_string(object.code_size) + "\n";
    return text + "end\n";
}

bool ReadObject(const std::string& text, ObjectFile* object) {
    Lines lines(text, kObjectMagic);
    *object = ObjectFile();
    std::string key, rest;
    while (lines.Read(&key, &rest)) {
        if (key == "tool") {
            object->tool = rest;
        } else if (key == "source") {
            object->source = rest;
        } else if (key == "state") {
            object->state = rest;
        } else if (key == "byte-order") {
            object->byte_order = rest;
        } else if (key == "attribute") {
            object->attributes.push_back(rest);
        } else if (key == "define") {
            object->defines.push_back(rest);
        } else if (key == "depend") {
            Dependency dependency;
            if (!ParseDependency(rest, &dependency)) return false;
            object->dependencies.push_back(dependency);
        } else if (key == "symbol") {
            object->symbols.push_back(rest);
        } else if (key == "code-size") {
            if (!ParseUnsigned(rest, &object->code_size)) return false;
        } else {
            const MarkerKind kind = LinkMarkerKind(key);
            if (kind != MarkerKind::kLinkWarning && kind != MarkerKind::kLinkError &&
                kind != MarkerKind::kLinkFatal) {
                return false;
            }
            object->link_messages.push_back(LinkMessage{kind, rest});
        }
    }
    return lines.Ended();
}

std::string WriteArchive(const std::vector<ArchiveMember>& members) {
    std::string text = std::string(kArchiveMagic) + "\n";
    for (const ArchiveMember& member : members) {
        text += "member " + std::to_string(member.data.size()) + " " + member.name + "\n";
        text += member.data + "\n";
    }
    return text + "end\n";
}

bool ReadArchive(const std::string& text, std::vector<ArchiveMember>* members) {
    Lines lines(text, kArchiveMagic);
    members->clear();
    std::string key, rest;
    while (lines.Read(&key, &rest)) {
        std::string name;
        uint32_t size = 0;
        if (key != "member" || !ParseUnsigned(Split(rest, &name), &size) || name.empty()) return false;
        const size_t start = lines.position();
        if (start + size + 1 > text.size() || text[start + size] != '\n') return false;
        members->push_back(ArchiveMember{name, text.substr(start, size)});
        lines.Skip(size + 1);
    }
    return lines.Ended();
}

std::string WriteImage(const ImageFile& image) {
    std::string text = std::string(kImageMagic) + "\n";
    text += "byte-order " + image.byte_order + "\n";
    text += "entry " + Hex32(image.entry) + "\n";
    for (const std::string& attribute : image.attributes) text += "attribute " + attribute + "\n";
    for (const Dependency& object : image.objects) {
        text += "object " + Hex64(object.hash) + " " + object.path + "\n";
    }
    for (const ImageRegion& region : image.regions) {
        text += "region " + region.name + " " + Hex32(region.base) + " " + std::to_string(region.size) + " " +
                Hex64(region.seed) + "\n";
    }
    for (const ImageSymbol& symbol : image.symbols) {
        text += "symbol " + Hex32(symbol.address) + " " + symbol.name + " " + symbol.object + "\n";
    }
    text += std::string("debug ") + (image.debug ? "on" : "off") + "\n";
    return text + "end\n";
}

bool ReadImage(const std::string& text, ImageFile* image) {
    Lines lines(text, kImageMagic);
    *image = ImageFile();
    std::string key, rest;
    while (lines.Read(&key, &rest)) {
        if (key == "byte-order") {
            image->byte_order = rest;
        } else if (key == "entry") {
            if (!ParseUnsigned(rest, &image->entry)) return false;
        } else if (key == "attribute") {
            image->attributes.push_back(rest);
        } else if (key == "object") {
            Dependency object;
            if (!ParseDependency(rest, &object)) return false;
            image->objects.push_back(object);
        } else if (key == "region") {
            ImageRegion region;
            std::string tail, size_tail, seed;
            region.name = Split(rest, &tail);
            const std::string base = Split(tail, &size_tail);
            const std::string size = Split(size_tail, &seed);
            if (!ParseUnsigned(base, &region.base) || !ParseUnsigned(size, &region.size) ||
                !ParseHex64(seed, &region.seed)) {
                return false;
            }
            image->regions.push_back(region);
        } else if (key == "symbol") {
            ImageSymbol symbol;
            std::string tail, object;
            const std::string address = Split(rest, &tail);
            symbol.name = Split(tail, &object);
            symbol.object = object;
            if (!ParseUnsigned(address, &symbol.address) || symbol.name.empty()) return false;
            image->symbols.push_back(symbol);
        } else if (key == "debug") {
            image->debug = rest == "on";
        } else {
            return false;
        }
    }
    return lines.Ended();
}

std::string ImageBytes(const ImageRegion& region) {
    std::string bytes;
    bytes.reserve(region.size);
    uint64_t state = region.seed | 1;
    while (bytes.size() < region.size) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        for (int shift = 0; shift < 64 && bytes.size() < region.size; shift += 8) {
            bytes += static_cast<char>((state >> shift) & 0xff);
        }
    }
    return bytes;
}

}  // namespace fakeads
