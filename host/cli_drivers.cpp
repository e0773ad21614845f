// orvhost drivers: the user's list of debugger target drivers, kept in the
// registry where the host's debugger reads it (shared by every project).
// A library is added under the smallest number its kind has free, its kind
// told by its exports; a driver is removed only while it still names the
// library the user gives.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>

#include "ads/debugger_drivers.h"
#include "cli_commands.h"
#include "cli_support.h"
#include "platform/registry.h"

namespace ads::host {

namespace {

using platform::RegistryRoot;

std::string KindKey(int kind) { return std::string(kDriverListKey) + "\\" + kDriverKindSubKeys[kind]; }

platform::Registry& DriverRegistry(platform::Platform& platform) {
    if (platform.registry == nullptr) platform.registry = &platform::SystemRegistry();
    return *platform.registry;
}

std::unique_ptr<platform::RegistryKey> OpenKind(platform::Registry& registry, int kind) {
    auto key = registry.CreateKey(RegistryRoot::kCurrentUser, KindKey(kind));
    if (key == nullptr) Fail(registry.LastError());
    return key;
}

// -1 when the library does not load or proves no kind.
int Probe(platform::Libraries& libraries, const std::string& path) {
    platform::LibraryHandle library = path.empty() ? nullptr : libraries.Load(path);
    if (library == nullptr) return -1;
    int kind = -1;
    for (int candidate : kDriverProbeOrder) {
        if (libraries.Symbol(library, kDriverKindExports[candidate]) != nullptr) {
            kind = candidate;
            break;
        }
    }
    libraries.Free(library);
    return kind;
}

int KindNamed(const std::string& text) {
    for (int kind = 0; kind < kDriverKindCount; ++kind) {
        if (text == kDriverKindTexts[kind]) return kind;
    }
    Fail("no driver kind '" + text + "' (RDI, JDI or AGDI)");
}

}  // namespace

int CommandDriversList(const Arguments&, platform::Platform& platform) {
    platform::Registry& registry = DriverRegistry(platform);
    std::string out;
    for (int kind : kDriverListOrder) {
        std::vector<platform::RegistryValue> values;
        if (!OpenKind(registry, kind)->ListValues(&values)) Fail(registry.LastError());
        for (const platform::RegistryValue& v : values) {
            out += std::string(kDriverKindTexts[kind]) + " " + std::to_string(std::atoi(v.name.c_str())) + "\t" +
                   v.data + "\n";
        }
    }
    std::fputs(out.c_str(), stdout);
    return 0;
}

int CommandDriversAdd(const Arguments& args, platform::Platform& platform) {
    const std::string path = platform.files->FullPath(args[0]);
    const int kind = Probe(*platform.libraries, path);
    if (kind < 0) Fail(args[0] + ": Target Driver Type Unknown!!!", 1);
    auto key = OpenKind(DriverRegistry(platform), kind);
    std::vector<platform::RegistryValue> values;
    if (!key->ListValues(&values)) Fail(platform.registry->LastError());
    std::set<int> used;
    for (const platform::RegistryValue& v : values) used.insert(std::atoi(v.name.c_str()));
    int number = 0;
    while (used.count(number) != 0) ++number;
    if (!key->WriteString(std::to_string(number), path)) Fail(platform.registry->LastError());
    std::printf("%s %d\t%s\n", kDriverKindTexts[kind], number, path.c_str());
    return 0;
}

int CommandDriversRemove(const Arguments& args, platform::Platform& platform) {
    const int kind = KindNamed(args[0]);
    const std::string name = std::to_string(std::atoi(args[1].c_str()));
    auto key = OpenKind(DriverRegistry(platform), kind);
    std::string stored;
    if (!key->ReadString(name, &stored)) Fail("no driver " + args[0] + " " + name, 1);
    if (args.Has("--path") && stored != platform.files->FullPath(args.Value("--path"))) {
        Fail("driver " + args[0] + " " + name + " is " + stored + ", not " + args.Value("--path"), 1);
    }
    if (!key->DeleteValue(name)) Fail(platform.registry->LastError());
    return 0;
}

}  // namespace ads::host
