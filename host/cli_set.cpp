// orvhost set: changes one setting of a target, the way the settings
// dialog would: the value is stored as given and the next build of the
// target rebuilds everything.
#include <cstdio>

#include "cli_support.h"

namespace ads::host {

namespace {
const char kUsageSet[] = "usage: orvhost set PROJECT --target NAME KEY VALUE";
}

int CommandSet(const std::vector<std::string>& args, platform::Platform& platform) {
    std::string project, target;
    std::vector<std::string> rest;
    bool have_target = false;
    for (size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--target") {
            if (i + 1 >= args.size()) Fail("--target needs a name");
            target = args[++i];
            have_target = true;
        } else if (project.empty()) {
            project = args[i];
        } else {
            rest.push_back(args[i]);
        }
    }
    if (project.empty() || !have_target || rest.size() != 2) Fail(kUsageSet);
    const std::string& key = rest[0];
    const std::string& value = rest[1];
    if (key.empty() || key == "Name") Fail(project + ": '" + key + "' cannot be set this way");
    Session s(platform);
    s.Open(project);
    ConfigNode* configuration = s.FindTarget(target);
    if (configuration == nullptr) Fail(project + ": no target named '" + target + "'");
    configuration->SetAttribute(key.c_str(), value.c_str());
    if (key != "ADS_ReBuild") configuration->SetAttributeInt("ADS_ReBuild", 1);
    s.Save();
    std::printf("%s: %s = \"%s\"\n", target.c_str(), key.c_str(), Printable(value).c_str());
    return 0;
}

}  // namespace ads::host
