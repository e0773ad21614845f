#include "cli_config.h"

#include <cstdio>

#include "host_config.h"
#include "platform/registry.h"
#include "plugin/toolchain.h"
#include "plugin_host.h"

namespace ads::host {

namespace {

const char kUsageSetToolsDir[] = "usage: orvhost config set-tools-dir DIR";
const char kUsageSetAdsHome[] = "usage: orvhost config set-ads-home DIR [--version NAME]";
const char kUsageShow[] = "usage: orvhost config show";
// The version name recorded when the registry names none yet.
const char kDefaultAdsVersion[] = "1.2";

struct Failure {
    int status;
    std::string message;
};

[[noreturn]] void Fail(const std::string& message, int status = 2) { throw Failure{status, message}; }

// The registry, when it can be read at all: a malformed registry file is
// bad input.
platform::Registry& UsableRegistry(platform::Platform& platform) {
    if (platform.registry == nullptr) platform.registry = &platform::SystemRegistry();
    if (!platform.registry->OpenKey(platform::RegistryRoot::kLocalMachine, "")) Fail(platform.registry->LastError());
    return *platform.registry;
}

// Where the registry lives, for the user's eyes.
std::string RegistryLocation(platform::Platform& platform) {
    std::string path;
#ifdef _WIN32
    if (platform.environment->Get("ORVANE_REGISTRY", &path) && !path.empty()) return path;
    return "the Windows registry";
#else
    path = platform::DefaultRegistryFilePath(*platform.environment);
    return path.empty() ? std::string("(none: set ORVANE_REGISTRY or HOME)") : path;
#endif
}

std::string ConfigPathOrFail(platform::Platform& platform) {
    const std::string path = HostConfigPath(*platform.environment);
    if (path.empty()) Fail("no place for orvhost's configuration: set ORVANE_CONFIG or HOME");
    return path;
}

std::string FolderOrFail(platform::Platform& platform, const std::string& argument) {
    const std::string full = platform.files->FullPath(argument);
    if (full.empty() || !platform.files->IsDirectory(full)) Fail(argument + ": no such folder");
    return full;
}

int SetToolsDir(const std::vector<std::string>& args, platform::Platform& platform) {
    if (args.size() != 3) Fail(kUsageSetToolsDir);
    const std::string directory = FolderOrFail(platform, args[2]);
    const std::string path = ConfigPathOrFail(platform);
    std::string error;
    if (!SetToolDirectory(*platform.files, path, directory, &error)) Fail(error);
    std::printf("tool directory: %s\n(saved in %s)\n", directory.c_str(), path.c_str());

    // What the plug-in will make of the folder.
    std::vector<platform::DirectoryEntry> entries;
    platform.files->ListDirectory(directory, &entries);
    bool examined = false;
    for (size_t i = 0; i + 1 < entries.size(); ++i) {
        examined = examined || entries[i].name.find("armcc.exe") != std::string::npos;
    }
    if (!examined) {
        if (!entries.empty() && entries.back().name.find("armcc.exe") != std::string::npos) {
            std::printf("note: armcc.exe is the last entry of the folder's listing, which the plug-in never "
                        "examines; any further file in the folder cures this\n");
        } else {
            std::printf("note: no armcc.exe in %s: the plug-in will not take this folder\n", directory.c_str());
        }
    } else if (!platform.files->FileExists(directory + "\\armasm.exe")) {
        std::printf("note: no armasm.exe in %s: the plug-in will look for the registry's installation instead\n",
                    directory.c_str());
    }
    return 0;
}

int SetAdsHome(const std::vector<std::string>& args, platform::Platform& platform) {
    std::string folder, version;
    for (size_t i = 2; i < args.size(); ++i) {
        if (args[i] == "--version") {
            if (i + 1 >= args.size() || args[i + 1].empty()) Fail("--version needs a name");
            version = args[++i];
        } else if (folder.empty()) {
            folder = args[i];
        } else {
            Fail(kUsageSetAdsHome);
        }
    }
    if (folder.empty()) Fail(kUsageSetAdsHome);
    const std::string home = FolderOrFail(platform, folder);
    platform::Registry& registry = UsableRegistry(platform);
    if (version.empty()) {
        // Keep the version the installer (or an earlier call) recorded.
        if (auto key = registry.OpenKey(platform::RegistryRoot::kLocalMachine, plugin::kAdsCurrentVersionKey)) {
            key->ReadString("", &version);
        }
        if (version.empty()) version = kDefaultAdsVersion;
    }
    auto current = registry.CreateKey(platform::RegistryRoot::kLocalMachine, plugin::kAdsCurrentVersionKey);
    if (!current || !current->WriteString("", version)) Fail(registry.LastError(), 1);
    auto installed =
        registry.CreateKey(platform::RegistryRoot::kLocalMachine, std::string(plugin::kAdsVersionKeyPrefix) + version);
    if (!installed || !installed->WriteString(plugin::kAdsHomeValue, home)) Fail(registry.LastError(), 1);
    std::printf("ADS home: %s (version %s)\n(saved in %s)\n", home.c_str(), version.c_str(),
                RegistryLocation(platform).c_str());
    if (!platform.files->FileExists(home + "\\Bin\\armasm.exe")) {
        std::printf("note: no Bin\\armasm.exe in %s: the plug-in will not take this installation\n", home.c_str());
    }
    return 0;
}

int Show(const std::vector<std::string>& args, platform::Platform& platform) {
    if (args.size() != 2) Fail(kUsageShow);

    // Bad input first, before anything is printed.
    const std::string config_path = ConfigPathOrFail(platform);
    HostConfig config;
    std::string error;
    if (!LoadHostConfig(*platform.files, config_path, &config, &error)) Fail(error);
    platform::Registry& registry = UsableRegistry(platform);

    std::printf("configuration: %s%s\n", config_path.c_str(),
                platform.files->PathExists(config_path) ? "" : " (not written yet)");
    for (const std::string& directory : config.tool_directories) std::printf("  tools-dir: %s\n", directory.c_str());
    if (config.tool_directories.empty()) std::printf("  tools-dir: (none)\n");
    std::printf("registry: %s\n", RegistryLocation(platform).c_str());
    const std::string home = plugin::ReadArmHomeFromRegistry(registry);
    std::printf("  ARMHOME: %s\n", home.empty() ? "(none)" : home.c_str());

    // What the plug-in itself found and registered.
    std::string module;
    if (!platform.environment->Get("ORVANE_PLUGIN", &module) || module.empty()) {
        module = platform.files->ExecutableDirectory() + "/" + ADS_PLUGIN_FILE;
    }
    PluginHost host(platform);
    if (!host.Load(module, &error)) Fail(error);
    std::printf("plug-in: %s\n", module.c_str());
    const std::vector<std::string>& record = host.toolchain();
    if (record.size() != plugin::kRecordCount) {
        std::printf("  tool directory: (none)\n  found: no\n");
        return 1;
    }
    const bool found = record[plugin::kRecordFound] == "1";
    std::printf("  tool directory: %s\n  found: %s\n", record[plugin::kRecordDirectory].c_str(), found ? "yes" : "no");
    for (int i = 0; i < plugin::kToolCount; ++i) {
        std::printf("  %s: %s\n", plugin::kToolExecutables[i], record[plugin::kRecordFirstTool + i].c_str());
    }
    return found ? 0 : 1;
}

}  // namespace

int RunConfigCommand(const std::vector<std::string>& args, platform::Platform& platform) {
    try {
        const std::string sub = args.size() > 1 ? args[1] : std::string();
        if (sub == "set-tools-dir") return SetToolsDir(args, platform);
        if (sub == "set-ads-home") return SetAdsHome(args, platform);
        if (sub == "show") return Show(args, platform);
        Fail(sub.empty() ? std::string("usage: orvhost config set-tools-dir|set-ads-home|show ...")
                         : "unknown config command '" + sub + "' (see orvhost --help)");
    } catch (const Failure& f) {
        std::fflush(stdout);
        std::fprintf(stderr, "orvhost: %s\n", f.message.c_str());
        return f.status;
    }
}

}  // namespace ads::host
