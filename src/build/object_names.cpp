// Every object lives in the target's one folder: two sources that write the
// same one would leave one of them out of the image. A project that already
// has such a pair keeps the earlier source's object; the later source gets
// one of its own, kept in the project.
#include <map>
#include <utility>
#include <vector>

#include "build/build_engine.h"
#include "build/node_text.h"
#include "config/defaults.h"

namespace ads::build {

void BuildEngine::GiveDistinctObjects(const BuildContext& c) {
    if (c.project_root == nullptr) return;
    std::map<std::string, std::string> writers;  // lowered object -> its first source
    std::vector<std::pair<ConfigNode*, std::string>> later;  // a source, the earlier one
    ForEachObject(c.project_root, [&](ConfigNode* node, const std::string& relative, const std::string& output, bool own) {
        if (own || output.empty()) return;
        auto first = writers.emplace(platform::Lower(output), relative);
        if (!first.second) later.emplace_back(node, first.first->second);
    });
    if (later.empty()) return;
    std::set<std::string> taken = config::ObjectsOfSources(c.project_root, nullptr);
    for (const auto& [node, earlier] : later) {
        const std::string relative = Text(node, config::kRelativePathKey);
        const std::string old_object = Text(node, config::kOutputKey);
        const std::string object = config::DistinctObjectFileName(relative, taken);
        taken.insert(platform::Lower(object));
        config::EditNode(*host_, node, [&](ConfigNode* e) { e->SetAttribute(config::kOutputKey, object.c_str()); });
        Write(Format(kObjectRenamed, relative.c_str(), old_object.c_str(), earlier.c_str(), object.c_str()));
    }
}

}  // namespace ads::build
