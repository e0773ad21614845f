// The build engine: the command of every node, the single-file compile,
// the target build with its post-link step, and cleaning. The plug-in's
// slots call into it; it reaches the host only through HostApi.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ads/config_node.h"
#include "build/messages.h"
#include "build/output_location.h"
#include "build/output_parser.h"
#include "config/host_api.h"
#include "config/path_macros.h"
#include "platform/platform.h"

namespace ads::build {

// The located tools, in the order the toolchain keeps them.
enum Executable : int { kExeArmasm = 0, kExeArmcc, kExeArmcpp, kExeTcc, kExeTcpp, kExeArmlink, kExeFromelf, kExeArmar };

struct Tools {
    std::array<std::string, 8> paths;
    bool found = false;
    std::string arm_home;  // for "{Compiler}"
};

// What the engine needs of the plug-in's state for one call.
struct BuildContext {
    ConfigNode* project_root = nullptr;
    ConfigNode* configuration = nullptr;  // the current target's node
    std::string target;                   // the current target's name
    std::string project_dir;              // the project's folder, with a trailing backslash
    Tools tools;
};


class BuildEngine {
public:
    BuildEngine(config::HostApi* host, platform::Platform* platform, OutputParser* parser)
        : host_(host), platform_(platform), parser_(parser) {}

    // The per-node update run over the tree when targets change: a "File"
    // gets its tool and option text for every target that has none yet.
    bool UpdateNode(const BuildContext& context, ConfigNode* node);
    // The command for a node into *text: a file's compile or assemble
    // command, or for the project root the link or archive command. False,
    // with *text empty, when there is none.
    bool CommandFor(const BuildContext& context, ConfigNode* node, std::string* text);
    // The host's single-file compile: 1 when handled, 0 otherwise.
    int CompileFile(const BuildContext& context, ConfigNode* file);
    // Builds the current target: 1 when built without errors and the
    // post-link step, when one was due, succeeded; else 0.
    int BuildTarget(const BuildContext& context, uintptr_t arg);
    void Clean(const BuildContext& context);

    // The dependency sets of the sources scanned with -M, by "RelativePath".
    const std::set<std::string>* Dependencies(const std::string& source) const;

    // The image the last link command named, as a full path.
    const std::string& application_file() const { return application_file_; }

private:
    bool FileCommand(const BuildContext& c, ConfigNode* file, std::string* text);
    bool RootCommand(const BuildContext& c, std::string* text);
    std::string CommandTemplate(const BuildContext& c, const char* key, const char* fallback);
    std::string IncludeSwitches(const BuildContext& c, bool only_when_set);
    std::string ExpandIncludeSwitches(const BuildContext& c, const char* search_path);
    void ForgetIncludeSwitches() { include_cache_valid_ = false; }
    config::PathMacros Macros(const BuildContext& c) const;
    void ScanDependencies(const BuildContext& c, const std::string& compiler, const std::string& source);
    std::string ObjectList(const BuildContext& c);
    OutputLocation Location(const BuildContext& c) const;
    // Makes the output folder, with every folder above it that is missing.
    void MakeOutputFolder(const OutputLocation& location);
    // Gives a source that shares its object with an earlier one of the tree
    // an object of its own, committed, with a note in the pane.
    void GiveDistinctObjects(const BuildContext& c);
    // The single-file assembly; `file` is an assembler source.
    int AssembleFile(const BuildContext& c, ConfigNode* file);
    // The post-link step after a build without errors; `linked`: the link
    // or archive command was given during this build. False when it failed.
    bool PostLink(const BuildContext& c, bool linked);
    bool RunFromElf(const BuildContext& c, bool linked);
    bool RunBatchFile(const BuildContext& c);
    // The fromelf command line for the image, and the file it writes.
    std::string FromElfCommand(const BuildContext& c, std::string* output) const;
    // True when `output` is missing or older than the image.
    bool OlderThanImage(const std::string& output) const;
    void Write(const std::string& text) { host_->Write(text); }

    config::HostApi* host_;
    platform::Platform* platform_;
    OutputParser* parser_;
    std::map<std::string, std::set<std::string>> dependencies_;
    std::string application_file_;
    // Set when the root's command was given during the current build.
    bool link_given_ = false;
    bool include_cache_valid_ = false;
    std::string include_cache_key_;
    std::string include_cache_;
};

// The extension fromelf's output gets for the given switches: the first of
// -aif, -aifbin, -bin, -m32, -i32, -ihf, -elf, -bhx, -fieldoffsets, -vhx
// found, "text" when none is.
std::string FromElfExtension(const std::string& switches);

// Replaces every occurrence of `macro` in `text`.
std::string ReplaceAll(std::string text, const std::string& macro, const std::string& value);
// printf into a std::string.
std::string Format(const char* format, ...);

}  // namespace ads::build
