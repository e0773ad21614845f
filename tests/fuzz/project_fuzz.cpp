// libFuzzer target of orvhost's project file: the reader on arbitrary bytes,
// and the writer on trees of arbitrary names and values.
//
// Besides not crashing, it checks what must hold for any input:
//   - a text that reads is written, and the written text reads back to the
//     same tree and is written again byte for byte the same;
//   - a text that does not read says why, on a line of the text;
//   - any tree, whatever bytes its names and values hold, is written and
//     read back to the same tree.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "ads/config_node.h"
#include "project_file.h"

namespace {

using ads::ConfigNode;

void Require(bool condition) {
    if (!condition) std::abort();
}

// Names, attributes in order and children in order, without recursion.
bool SameTree(const ConfigNode& a, const ConfigNode& b) {
    std::vector<std::pair<const ConfigNode*, const ConfigNode*>> pending{{&a, &b}};
    while (!pending.empty()) {
        const auto [x, y] = pending.back();
        pending.pop_back();
        if (x->Name() != y->Name()) return false;
        const auto* ax = x->FirstAttribute();
        const auto* ay = y->FirstAttribute();
        for (; ax != nullptr && ay != nullptr; ax = x->NextAttribute(ax), ay = y->NextAttribute(ay)) {
            if (ax->Name() != ay->Name() || ax->Value() != ay->Value()) return false;
        }
        if (ax != nullptr || ay != nullptr) return false;
        const ConfigNode* cx = x->FirstChild();
        const ConfigNode* cy = y->FirstChild();
        for (; cx != nullptr && cy != nullptr; cx = cx->NextSibling(), cy = cy->NextSibling()) {
            pending.push_back({cx, cy});
        }
        if (cx != nullptr || cy != nullptr) return false;
    }
    return true;
}

void WrittenTreeReadsBack(const ConfigNode& tree) {
    const std::string written = ads::host::SerializeProject(tree);
    std::string error;
    const std::unique_ptr<ConfigNode> again = ads::host::ParseProject(written, &error);
    Require(again != nullptr);
    Require(SameTree(tree, *again));
    Require(ads::host::SerializeProject(*again) == written);
}

void ReadText(const std::string& text) {
    std::string error;
    const std::unique_ptr<ConfigNode> tree = ads::host::ParseProject(text, &error);
    if (tree == nullptr) {
        // "line N: reason", N within the text.
        Require(error.compare(0, 5, "line ") == 0);
        const size_t line = std::strtoul(error.c_str() + 5, nullptr, 10);
        size_t lines = 1;
        for (size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'))) ++lines;
        }
        Require(line >= 1 && line <= lines);
        return;
    }
    WrittenTreeReadsBack(*tree);
}

// A tree built from the input by a few operations, so that names and values
// hold any byte: the input is cut at 0xFF bytes, and each piece's first byte
// says what its rest is.
void BuildAndWrite(const std::string& input) {
    auto root = std::make_unique<ConfigNode>();
    ConfigNode* at = root.get();
    size_t start = 0;
    while (start <= input.size()) {
        size_t end = input.find('\xFF', start);
        if (end == std::string::npos) end = input.size();
        if (end > start) {
            const std::string rest = input.substr(start + 1, end - start - 1);
            switch (static_cast<unsigned char>(input[start]) % 4) {
                case 0: {  // a child, which later pieces go into
                    auto* child = new ConfigNode(rest);
                    at->AppendChild(child);
                    at = child;
                    break;
                }
                case 1:  // back up one level
                    if (at->Parent() != nullptr) at = at->Parent();
                    break;
                case 2: {  // an attribute: name, a 0 byte, value
                    const size_t cut = rest.find('\0');
                    const std::string name = rest.substr(0, cut);
                    const std::string value = cut == std::string::npos ? std::string() : rest.substr(cut + 1);
                    at->SetAttribute(name, value);  // C strings: both end at a 0 byte
                    break;
                }
                default:  // a node without children beside the current one
                    at = at->Parent() != nullptr ? at->Parent() : at;
                    at->AppendChild(new ConfigNode(rest));
            }
        }
        start = end + 1;
    }
    WrittenTreeReadsBack(*root);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    ReadText(input);
    BuildAndWrite(input);
    return 0;
}
