// The boundary between the Orvane host and the ADS toolchain plug-in.
//
// The module exports one function, GetInterface, which returns the table of
// 38 pointer-sized slots below. The plug-in writes its own slots on every call;
// the host stores its callbacks in the host slots afterwards. Idle slots are
// neither written nor read by the plug-in.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ads/config_node.h"

#if defined(_WIN32) && !defined(_WIN64)
#define ADS_CALL __cdecl
#else
#define ADS_CALL
#endif

#if defined(_WIN32)
#define ADS_EXPORT __declspec(dllexport)
#else
#define ADS_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

// One slot word: 32-bit in the 32-bit build, 64-bit in the 64-bit build.
typedef uintptr_t AdsWord;

// What the host knows about its devices (word 6 of the host context).
struct AdsHostDefaults {
    const char* vendor;              // default vendor text
    const char* device;              // default device text
    AdsWord reserved1;
    const char* const* processors;   // processor texts, ended by a null entry
    AdsWord reserved2;
};

// The simulator the host offers (word 5 of the host context, may be null).
struct AdsHostSimulator {
    int32_t has_clock;   // non-zero when clock holds the simulator's clock
    double clock;        // in MHz
};

// The nine words the host hands to Attach.
struct AdsHostContext {
    AdsWord instance;                 // 0: the host's module handle
    AdsWord main_window;              // 1: the host's main window
    const char* install_dir;          // 2: the host's installation folder
    const char* executable;           // 3: path of the host's executable
    AdsWord reserved4;                // 4
    const AdsHostSimulator* simulator;// 5: the host's simulator description or null
    const AdsHostDefaults* defaults;  // 6: default vendor, device, processors
    AdsWord reserved7;                // 7
    AdsWord reserved8;                // 8
};

// Fourteen words filled by the host's build-service module: the toolchain's
// name in words 0 to 2, the module's handle in words 3 and 4, and the
// service module's own words 5 to 13.
struct AdsHostServices {
    char name[3 * sizeof(AdsWord)];
    AdsWord module[2];
    AdsWord service[9];
};

// The record handed to the host's toolchain registration (host slot 30).
struct AdsToolchainRecord {
    const char* text[15];
};

typedef void (ADS_CALL *AdsServiceEntry)(AdsHostServices* services);

typedef ads::ConfigNode AdsNode;

// How the host slots answer:
//   CommitNode        node takes the edited copy's attributes and children; 1 done
//   FindSettingNode   the child named key, created (tagged flag_key = 1) when missing
//   RunTool           runs the command line in the current folder; the buffer gets at
//                     most size - 1 bytes of its output and a terminator, *exit_code
//                     its exit code; 1 when it ran, 0 when it could not be started
//   WriteOutput       appends the text to the pane (0: build output); 1 done
//   RegisterToolchain 1 when the host accepts the fifteen texts
//   IsOutOfDate       non-zero when the file must be translated
//   TranslateFile     non-zero when the host translated the file
//   MakeTarget        non-zero when the host built the target
// ParseOutput's integer is the length of the text in bytes.
//
// LookupKeyed (slot 20) is how the host reads the dependency sets the
// plug-in collected with the compilers' -M scans: the key is a source's
// "RelativePath"; when the plug-in holds a set for it, it writes the
// dependencies (full paths, one per line, each ended by "\n") into the
// buffer at word 1 (size in word 2, the text always terminated, cut at a
// line end when it does not fit) and returns their number; 0 when the key
// is absent. Word 3 is reserved (0).

struct PluginInterface {
    int (ADS_CALL *Attach)(const AdsHostContext* context);                        // 0
    void (ADS_CALL *InstallTool)(AdsNode* node);                                   // 1
    void (ADS_CALL *SetCurrentTarget)(AdsWord host_word, const char* target);      // 2
    int (ADS_CALL *ShowSettings)(AdsNode* node);                                   // 3
    int (ADS_CALL *ImportProject)(const char* path, int arg);                      // 4
    int (ADS_CALL *BuildTarget)(AdsWord arg);                                      // 5
    int (ADS_CALL *CompileFile)(AdsNode* file);                                    // 6
    AdsWord (ADS_CALL *HostCall34Forward)(AdsWord, AdsWord, AdsWord, AdsWord);     // 7
    void (ADS_CALL *Clean)(void);                                                  // 8
    void (ADS_CALL *OnEvent)(int32_t code, const char* text);                      // 9
    void* (ADS_CALL *GetDebugOptions)(AdsNode* node);                              // 10
    void (ADS_CALL *Reserved11)(void);                                             // 11
    void* idle12;                                                                  // 12
    AdsWord (ADS_CALL *CommitNode)(AdsNode* node, AdsNode* edited);                // 13 host
    AdsNode* (ADS_CALL *FindSettingNode)(AdsNode* node, const char* key,
                                         const char* flag_key);                    // 14 host
    void* idle15;                                                                  // 15
    AdsWord (ADS_CALL *RunTool)(const char* command, AdsWord handle, char* buffer,
                                int size, AdsWord* exit_code);                     // 16 host
    AdsWord (ADS_CALL *WriteOutput)(const char* text, AdsWord pane);               // 17 host
    void* idle18;                                                                  // 18
    void* idle19;                                                                  // 19
    int (ADS_CALL *LookupKeyed)(const char* key, AdsWord, AdsWord, AdsWord);       // 20
    AdsWord (ADS_CALL *GetSearchPath)(const char* text, int arg, AdsWord word);    // 21
    int (ADS_CALL *Reserved22)(AdsWord, AdsWord, AdsWord);                         // 22
    AdsWord (ADS_CALL *HostCall23)(AdsWord word);                                  // 23 host
    void* idle24;                                                                  // 24
    void* idle25;                                                                  // 25
    void* idle26;                                                                  // 26
    void* idle27;                                                                  // 27
    void* idle28;                                                                  // 28
    void* idle29;                                                                  // 29
    AdsWord (ADS_CALL *RegisterToolchain)(const AdsToolchainRecord* record);       // 30 host
    int (ADS_CALL *IsOutOfDate)(const char* target, AdsNode* file);                // 31 host
    int (ADS_CALL *TranslateFile)(const char* target, AdsNode* file);              // 32 host
    int (ADS_CALL *MakeTarget)(const char* target, AdsNode* project);              // 33 host
    AdsWord (ADS_CALL *HostCall34)(AdsWord, AdsWord, AdsWord, AdsWord);            // 34 host
    int (ADS_CALL *Reserved35)(void);                                              // 35
    const char* (ADS_CALL *GetFileBuildText)(char* text, AdsWord project,
                                             AdsNode* node, int flag);             // 36
    void (ADS_CALL *ParseOutput)(const char* text, int length);                    // 37
};

typedef PluginInterface* (ADS_CALL *GetInterfaceFn)(void);

}  // extern "C"

static_assert(sizeof(PluginInterface) == 38 * sizeof(void*), "38 slots");
static_assert(sizeof(AdsHostContext) == 9 * sizeof(AdsWord), "nine words");
static_assert(sizeof(AdsHostServices) == 14 * sizeof(AdsWord), "fourteen words");
static_assert(offsetof(PluginInterface, CommitNode) == 13 * sizeof(void*), "slot 13");
static_assert(offsetof(PluginInterface, RunTool) == 16 * sizeof(void*), "slot 16");
static_assert(offsetof(PluginInterface, HostCall23) == 23 * sizeof(void*), "slot 23");
static_assert(offsetof(PluginInterface, RegisterToolchain) == 30 * sizeof(void*), "slot 30");
static_assert(offsetof(PluginInterface, ParseOutput) == 37 * sizeof(void*), "slot 37");

// The slot numbers, for code that addresses the table as words.
enum AdsSlot {
    kSlotAttach = 0, kSlotInstallTool = 1, kSlotSetCurrentTarget = 2, kSlotShowSettings = 3,
    kSlotImportProject = 4, kSlotBuildTarget = 5, kSlotCompileFile = 6, kSlotHostCall34Forward = 7,
    kSlotClean = 8, kSlotOnEvent = 9, kSlotGetDebugOptions = 10, kSlotReserved11 = 11,
    kSlotCommitNode = 13, kSlotFindSettingNode = 14, kSlotRunTool = 16, kSlotWriteOutput = 17,
    kSlotLookupKeyed = 20, kSlotGetSearchPath = 21, kSlotReserved22 = 22, kSlotHostCall23 = 23,
    kSlotRegisterToolchain = 30, kSlotIsOutOfDate = 31, kSlotTranslateFile = 32,
    kSlotMakeTarget = 33, kSlotHostCall34 = 34, kSlotReserved35 = 35,
    kSlotGetFileBuildText = 36, kSlotParseOutput = 37, kSlotCount = 38
};
