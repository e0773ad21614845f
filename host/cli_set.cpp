// orvhost set: changes one setting of a target, the way the settings
// dialog would: the value is stored as given and the next build of the
// target rebuilds everything.
#include <cstdio>

#include "cli_commands.h"
#include "cli_support.h"

namespace ads::host {

int CommandSet(const Arguments& args, platform::Platform& platform) {
    const std::string& project = args[0];
    const std::string target = args.Value("--target");
    const std::string& key = args[1];
    const std::string& value = args[2];
    if (key.empty() || key == config::kNameKey) Fail(project + ": '" + key + "' cannot be set this way");
    Session s(platform);
    s.Open(project);
    ConfigNode* configuration = FindConfiguration(s.root_.get(), target);
    if (configuration == nullptr) Fail(project + ": no target named '" + target + "'");
    configuration->SetAttribute(key.c_str(), value.c_str());
    if (key != config::kRebuildKey) configuration->SetAttributeInt(config::kRebuildKey, 1);
    s.Save();
    std::printf("%s: %s = \"%s\"\n", target.c_str(), key.c_str(), Printable(value).c_str());
    return 0;
}

}  // namespace ads::host
