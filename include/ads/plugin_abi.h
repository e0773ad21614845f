// The boundary between the Orvane host and the ADS toolchain plug-in.
//
// The module exports one function, GetInterface, which returns the table of
// 38 pointer-sized slots below. The plug-in writes its own slots on every call;
// the host stores its callbacks in the host slots afterwards. Idle slots are
// neither written nor read by the plug-in.
//
// What a host owes the plug-in beyond the types below:
//   - Order: GetInterface, then every host slot filled (the plug-in calls
//     them without a null test), then Attach, then InstallTool for a node of
//     the project (the plug-in learns the project root from it) and
//     SetCurrentTarget; the other slots after that, in any order.
//   - One thread, one call at a time: every slot is called from the host's
//     user-interface thread, and none while another is running, except that
//     TranslateFile and MakeTarget, while the plug-in waits for them, ask it
//     for commands through slot 36 and for dependency sets through slot 20.
//     The plug-in keeps its state without locks.
//   - Working folder: while the module loads it is the host's installation
//     folder, where the plug-in loads the service module "Build\OrvMake.dll"
//     (a host ships that module there; it fills the fourteen service words).
//     Whenever the host calls a slot that works on a project (InstallTool,
//     SetCurrentTarget, ShowSettings, ImportProject, the build slots), the
//     working folder is the project's folder: the plug-in takes the
//     project's folder from it.
//     The plug-in may change the working folder while it looks for the
//     tools, so the host sets it again before each such call and keeps its
//     own paths absolute.
//   - Texts the plug-in returns are its own: the text of slot 36 stays valid
//     until the next call of any slot and must be copied before then; the
//     texts of a settings dialog (AdsSettingsDialog) until its next call.
//   - Texts the host passes in need only live for the call; the plug-in
//     copies what it keeps. Nodes are the host's: the plug-in remembers the
//     project root it was shown and never edits a node in place (it hands
//     an edited copy to CommitNode), so the tree must stay alive, and stay
//     the same tree, until the host shows it another one. The host context
//     itself is copied by Attach, but the records its words point to
//     (defaults, simulator, ui) must stay valid while the module is loaded.
//   - No exception leaves a slot in either direction: the plug-in catches
//     what its work throws, reports it on the trace channel (AdsHostUi) and
//     answers the slot's failure value; host slots must not throw either.
//   - Pane texts come with their own "\r\n" line ends: a host shows them as
//     they are.
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

// The answers of a modal dialog.
enum AdsDialogResult { kAdsIdOk = 1, kAdsIdCancel = 2 };

// The buttons of the settings dialog that leave it open.
enum AdsSettingsButton { kAdsButtonApply = 1, kAdsButtonDefault = 2 };

// What the plug-in hands a host without windows while its settings dialog
// runs (AdsHostUi::RunSettings). Valid only during that call. The host acts
// as a user would: it selects tree items and tabs, sets the shown page's
// controls by label, presses buttons, and answers kAdsIdOk (the changes are
// saved) or kAdsIdCancel (only what Apply saved is kept).
//
// A call that fails answers 0 with *error set to one line naming what was
// refused and the valid choices; nothing changed then. A page's own message
// (a value it refuses when it is saved) goes to AdsHostUi::Message as well.
// Every text handed back stays valid until the next call.
struct AdsSettingsDialog {
    void* self;
    // The "Equivalent Command Line" of one tool ("armasm", "armcc", "armcpp",
    // "tcc", "tcpp", "armlink", "fromelf") on the dialog's scope, as the
    // dialog's controls stand: 1 when it resolves; 0 when not, *text then
    // being the error text (such as "GetTempCCppOption Error") or, for a
    // tool the scope does not show, an empty text.
    int (ADS_CALL *CommandLine)(void* self, const char* tool, const char** text);
    // The tree, one line per item in the order shown: two blanks per level,
    // the image index, a blank, the label.
    const char* (ADS_CALL *Tree)(void* self);
    // Clicks the tree item labelled `item`.
    int (ADS_CALL *Select)(void* self, const char* item, const char** error);
    // Clicks the tab labelled `tab` of the shown tool.
    int (ADS_CALL *SelectTab)(void* self, const char* tab, const char** error);
    // Sets the control of the shown page named `label` (its label; a control
    // without one by its group's caption; "GROUP: LABEL" where a label occurs
    // twice) to `value`: a check box 0 or 1, a radio group or combo an
    // entry's text or index, an edit field its text, a list its entries
    // separated by ';'; a button the page acts on (the debugger page's
    // "config" and "flash") is pressed by any value.
    int (ADS_CALL *Set)(void* self, const char* label, const char* value, const char** error);
    // Presses a button (AdsSettingsButton).
    int (ADS_CALL *Press)(void* self, int button, const char** error);
    // Every page of the tree with each control's label, value and whether it
    // is enabled, then the "Equivalent Command Line" of each tool.
    const char* (ADS_CALL *Show)(void* self);
};

// The user interface of a host that shows no windows (word 4 of the host
// context): a headless host, a build server, a test. The IDE leaves the word
// null and the plug-in shows its own windows. A null callback is not called.
struct AdsHostUi {
    void* context;  // handed back to every callback
    // Runs the settings dialog; answers kAdsIdOk or kAdsIdCancel.
    int (ADS_CALL *RunSettings)(void* context, const AdsSettingsDialog* dialog);
    // A message box with an OK button.
    void (ADS_CALL *Message)(void* context, const char* text, const char* caption);
    // A line for the developer, not the user: such as a failure caught at
    // the boundary ("ads_plugin: slot 36 GetFileBuildText: ..."). Without a
    // table the plug-in uses the system's debug output (OutputDebugStringA on
    // Windows, standard error elsewhere).
    void (ADS_CALL *Trace)(void* context, const char* text);
};

// The nine words the host hands to Attach.
struct AdsHostContext {
    AdsWord instance;                 // 0: the host's module handle
    AdsWord main_window;              // 1: the host's main window
    const char* install_dir;          // 2: the host's installation folder, with
                                      //    its final separator ("C:\\Orvane\\")
    const char* executable;           // 3: path of the host's executable
    const AdsHostUi* ui;              // 4: a windowless host's UI, else null
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

// What each text of the record holds.
enum AdsToolchainText {
    kAdsRecordName = 0,        // "ADS"
    kAdsRecordDirectory = 1,   // the tool directory
    kAdsRecordFirstTool = 2,   // 2..9: the tool paths, in kAdsToolExecutables order (ads_install.h)
    kAdsRecordSuite = 10,      // "ARM Developer Suite"
    kAdsRecordVersion = 11,    // "1.2"
    kAdsRecordFound = 12,      // "1" when the tools were found, else "0"
    kAdsRecordObjectExt = 13,  // ".o"
    kAdsRecordImageExt = 14,   // ".axf"
    kAdsRecordCount = 15
};

// The debugger's options of the current target (slot 10).
//
// The host owns the request block and hands it to GetDebugOptions, which
// fills it from the current target's configuration and answers 1, or 0 when
// there is no current target or it holds no packed debug options. A null
// request answers 1 with nothing done. Every text is zero-terminated and cut
// to fit its field.
//
// The debug block the request points to is the plug-in's: it stays valid,
// and holds the texts of the last request, until the next call of slot 10.
// Through its three callbacks the host's debugger writes what the user
// changed during a session back into the target (each commits through host
// slot 13 at once); a null text changes nothing.
enum : int {
    kAdsDebugPathSize = 260,
    kAdsDebugDriverLibrarySize = 2048,
    kAdsDebugDriverSize = 255,
    kAdsDebugTextSize = 4097,
    kAdsDebugStorageCount = 32
};

// One area of the simulator's memory map, filled from a file when download is 1.
struct AdsStorageEntry {
    uint32_t type;      // 0 ROM, 1 RAM
    uint32_t start;
    uint32_t size;
    char load_file[kAdsDebugPathSize];
    int32_t download;
};

struct AdsDebugBlock {
    void (ADS_CALL *SetDriverLibrary)(const char* path);
    void (ADS_CALL *SetAppFile)(const char* path);
    void (ADS_CALL *SetDebuggerText)(const char* text);
    char init_script[kAdsDebugPathSize];       // of the mode: emulation (0) or simulation
    char driver[kAdsDebugDriverSize];          // the chosen driver, such as "RDI 0"
    char debugger_text[kAdsDebugTextSize];     // what the debugger keeps for itself
    int32_t update_before_debug;
    AdsStorageEntry storage[kAdsDebugStorageCount];
};

struct AdsDebugRequest {
    int32_t mode;                              // 0 hardware emulation, else simulation
    int32_t reserved;                          // left 0
    int32_t options[4];                        // options 3 to 6
    char driver_library[kAdsDebugDriverLibrarySize];  // two double quotes when none is registered
    char app_file[kAdsDebugPathSize];
    AdsDebugBlock* block;
    double* clock;                             // where the simulator's clock goes (MHz); may be null
};

// What the plug-in hands the host's simulator library ("SArm.dll", export
// "ConfigXDI") when the user configures a target driver: the library opens
// the driver's own dialog and may rewrite `text`, which the plug-in then
// keeps as the target's driver configuration ("ServeDebugOptions").
// Called as ConfigXDI(kind, mode, request): kind RDI 0, JDI 1, AGDI 2;
// mode 0 "config", 1 "flash".
struct AdsDriverConfigRequest {
    int32_t kind;
    int32_t mode;
    char library[kAdsDebugPathSize];   // the driver's library
    char text[kAdsDebugTextSize];      // the driver configuration, in and out
    AdsWord instance;                  // the host's module handle
    AdsWord main_window;               // the host's main window
    const char* install_dir;           // the host's installation folder
    const char* executable;            // the host's executable
};
typedef int (ADS_CALL *AdsConfigXdi)(int32_t kind, int32_t mode, AdsDriverConfigRequest* request);

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
//   TranslateFile     non-zero when the host ran the file's command, or found it
//                     could not, and handed the outcome to ParseOutput
//   MakeTarget        non-zero when the host built the target
// ParseOutput (slot 37) takes a zero-terminated text and a set of flags:
//   kAdsParseLinkStep  the text is a link or archive command's output (it is
//                      also read so after the plug-in gave the target's own
//                      command through slot 36)
//   kAdsParseFailed    the command that printed the text failed: it ended
//                      with an exit code other than 0, could not start or was
//                      never given. The text is its output, or the host's
//                      line naming the file and what happened. When the
//                      text holds no error the plug-in knows, the plug-in
//                      counts one error and shows the text as it stands, so
//                      that no failed command goes uncounted.
// A host reports every command it ran for a node through this slot, the
// failed ones with kAdsParseFailed.
//
// LookupKeyed (slot 20) is how the host reads the dependency sets the
// plug-in collected with the compilers' -M scans: the key is a source's
// "RelativePath"; when the plug-in holds a set for it, it writes the
// dependencies (full paths, one per line, each ended by "\n") into the
// buffer at word 1 (size in word 2, the text always terminated, cut at a
// line end when it does not fit) and returns their number; 0 when the key
// is absent. Word 3 is reserved (0).
// The key kAdsCountsKey, which no source path can be, answers the build
// counters instead: "errors=N warnings=M\n" and 1.

enum : int { kAdsParseLinkStep = 1, kAdsParseFailed = 2 };
static const char kAdsCountsKey[] = "<counts>";

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
    int (ADS_CALL *GetDebugOptions)(AdsDebugRequest* request);                     // 10
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
    void (ADS_CALL *ParseOutput)(const char* text, int flags);                     // 37
};

typedef PluginInterface* (ADS_CALL *GetInterfaceFn)(void);

}  // extern "C"

static_assert(sizeof(PluginInterface) == 38 * sizeof(void*), "38 slots");
static_assert(sizeof(AdsHostContext) == 9 * sizeof(AdsWord), "nine words");
static_assert(offsetof(AdsHostContext, ui) == 4 * sizeof(AdsWord), "word 4");
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
