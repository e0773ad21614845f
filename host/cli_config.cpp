// orvhost config ...: where orvhost and the plug-in find the ADS tools.
#include <cstdio>

#include "ads/ads_install.h"
#include "cli_commands.h"
#include "cli_support.h"
#include "host_config.h"
#include "platform/registry.h"
#include "plugin_host.h"

namespace ads::host {

namespace {

// The version name recorded when the registry names none yet.
const char kDefaultAdsVersion[] = "1.2";

// What the ADS installer recorded as the installation's folder; empty when
// it recorded none.
std::string RecordedArmHome(platform::Registry& registry) {
    std::string version, home;
    auto current = registry.OpenKey(platform::RegistryRoot::kLocalMachine, kAdsCurrentVersionKey);
    if (!current || !current->ReadString("", &version)) return std::string();
    auto installed = registry.OpenKey(platform::RegistryRoot::kLocalMachine, kAdsVersionKeyPrefix + version);
    if (!installed || !installed->ReadString(kAdsHomeValue, &home)) return std::string();
    return home;
}

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

}  // namespace

int CommandConfigSetToolsDir(const Arguments& args, platform::Platform& platform) {
    const std::string directory = FolderOrFail(platform, args[0]);
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

int CommandConfigSetAdsHome(const Arguments& args, platform::Platform& platform) {
    std::string version = args.Value("--version");
    if (args.Has("--version") && version.empty()) Fail("--version needs a name");
    const std::string home = FolderOrFail(platform, args[0]);
    platform::Registry& registry = UsableRegistry(platform);
    if (version.empty()) {
        // Keep the version the installer (or an earlier call) recorded.
        if (auto key = registry.OpenKey(platform::RegistryRoot::kLocalMachine, kAdsCurrentVersionKey)) {
            key->ReadString("", &version);
        }
        if (version.empty()) version = kDefaultAdsVersion;
    }
    auto current = registry.CreateKey(platform::RegistryRoot::kLocalMachine, kAdsCurrentVersionKey);
    if (!current || !current->WriteString("", version)) Fail(registry.LastError(), 1);
    auto installed =
        registry.CreateKey(platform::RegistryRoot::kLocalMachine, std::string(kAdsVersionKeyPrefix) + version);
    if (!installed || !installed->WriteString(kAdsHomeValue, home)) Fail(registry.LastError(), 1);
    std::printf("ADS home: %s (version %s)\n(saved in %s)\n", home.c_str(), version.c_str(),
                RegistryLocation(platform).c_str());
    if (!platform.files->FileExists(home + "\\Bin\\armasm.exe")) {
        std::printf("note: no Bin\\armasm.exe in %s: the plug-in will not take this installation\n", home.c_str());
    }
    return 0;
}

int CommandConfigShow(const Arguments&, platform::Platform& platform) {
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
    const std::string home = RecordedArmHome(registry);
    std::printf("  ARMHOME: %s\n", home.empty() ? "(none)" : home.c_str());

    // What the plug-in itself found: the record it registered when it was
    // attached (host slot 30).
    const std::string module = PluginModulePath(platform);
    PluginHost host(platform);
    if (!host.Load(module, &error)) Fail(error);
    std::printf("plug-in: %s\n", module.c_str());
    const std::vector<std::string>& record = host.toolchain();
    if (record.size() != kAdsRecordCount) {
        std::printf("  tool directory: (none)\n  found: no\n");
        return 1;
    }
    const bool found = record[kAdsRecordFound] == "1";
    std::printf("  tool directory: %s\n  found: %s\n", record[kAdsRecordDirectory].c_str(), found ? "yes" : "no");
    for (int i = 0; i < kAdsToolCount; ++i) {
        std::printf("  %s: %s\n", kAdsToolExecutables[i], record[kAdsRecordFirstTool + i].c_str());
    }
    return found ? 0 : 1;
}

}  // namespace ads::host
