// orvhost debug-options: what the host's debugger would receive for a
// target before a session, asked of the plug-in through its debug-options
// slot with a request block that orvhost owns, one "name=value" line each.
#include <cstdio>
#include <memory>

#include "cli_commands.h"
#include "cli_support.h"

namespace ads::host {

namespace {

std::string Line(const std::string& name, const std::string& value) { return name + "=" + value + "\n"; }

std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

std::string Hex(uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", static_cast<unsigned>(value));
    return text;
}

}  // namespace

int CommandDebugOptions(const Arguments& args, platform::Platform& platform) {
    const std::string& project = args[0];
    Session s(platform);
    s.Open(project);
    const std::string target = ChosenTarget(s.root_.get(), project, args.Has("--target"), args.Value("--target"));

    std::string pane;
    s.host_.SetOutput(&pane);
    s.LoadPlugin();
    s.EnterProject();
    s.host_.table()->SetCurrentTarget(reinterpret_cast<AdsWord>(s.root_.get()), target.c_str());

    auto request = std::make_unique<AdsDebugRequest>();
    *request = AdsDebugRequest{};
    double clock = 0;
    request->clock = &clock;
    s.EnterProject();
    const int answered = s.host_.table()->GetDebugOptions(request.get());
    if (!pane.empty()) std::fputs(pane.c_str(), stderr);
    if (answered == 0 || request->block == nullptr) Fail(project + ": target '" + target + "' has no debug options", 1);

    const AdsDebugBlock& block = *request->block;
    std::string out;
    out += Line("mode", std::to_string(request->mode));
    for (int i = 0; i < 4; ++i) out += Line("option" + std::to_string(i + 3), std::to_string(request->options[i]));
    out += Line("driver", block.driver);
    out += Line("driver-library", request->driver_library);
    out += Line("app-file", request->app_file);
    out += Line("init-script", block.init_script);
    out += Line("debugger-text", block.debugger_text);
    out += Line("update-before-debug", std::to_string(block.update_before_debug));
    for (int i = 0; i < kAdsDebugStorageCount; ++i) {
        const AdsStorageEntry& e = block.storage[i];
        // An entry the target does not hold is left all zero.
        if (e.type == 0 && e.start == 0 && e.size == 0 && e.load_file[0] == '\0' && e.download == 0) continue;
        out += Line("storage" + std::to_string(i), std::string(e.type == 0 ? "ROM" : "RAM") + " " + Hex(e.start) +
                                                       " " + Hex(e.size) + " " + (e.download ? "Yes" : "No") + " " +
                                                       e.load_file);
    }
    out += Line("clock", Number(clock));
    std::fputs(out.c_str(), stdout);
    return 0;
}

}  // namespace ads::host
