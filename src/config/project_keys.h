// The names of the project tree: element names, the attributes of files
// and targets, and the source kinds a file's "FileType" holds. Every part
// of the plug-in and orvhost writes these names through the constants here.
#pragma once

namespace ads::config {

// Source kinds of a "File" node ("FileType"). Folders and the project
// root have no "FileType"; the settings code uses their kinds to say which
// node a settings page edits.
enum SourceKind : int {
    kKindNone = 0,
    kKindC = 1,
    kKindAsm = 2,
    kKindCpp = 3,
    kKindFolder = 7,
    kKindProject = 8,
};

// Elements.
inline constexpr char kProjectNode[] = "OrvaneProject";
inline constexpr char kConfigurationsNode[] = "Configurations";
inline constexpr char kConfigurationNode[] = "Configuration";
inline constexpr char kFilesNode[] = "Files";
inline constexpr char kFilterNode[] = "Filter";
inline constexpr char kFileNode[] = "File";

// "ADS_AsmParam" and "ADS_CParam" name two things: on a "Configuration"
// the command template of the assembler and of the compilers; under a
// "File" its per-file settings child (assembler files the first, C and
// C++ files the second), created by the host and tagged with the flag key.
inline constexpr char kAsmParamKey[] = "ADS_AsmParam";
inline constexpr char kCParamKey[] = "ADS_CParam";
inline constexpr char kSettingsFlagKey[] = "ADS_CfgFlag";
// On a per-file settings child: target name + this holds the tool number.
inline constexpr char kToolSuffix[] = "_tool";
inline constexpr char kLocalConfigureKey[] = "LocalConfigure";

// Any node.
inline constexpr char kNameKey[] = "Name";

// A "File".
inline constexpr char kRelativePathKey[] = "RelativePath";
inline constexpr char kFileTypeKey[] = "FileType";
inline constexpr char kOutputKey[] = "Output";
inline constexpr char kGroupKey[] = "Group";

// A "Configuration".
inline constexpr char kLinkParamKey[] = "ADS_LinkParam";   // the link command template
inline constexpr char kLinkerParamsKey[] = "ADS_LNKPARAM";
inline constexpr char kDebugOptionsKey[] = "ADS_OPTDBG";
inline constexpr char kCpuKey[] = "CPU";
inline constexpr char kDeviceKey[] = "DEVICE";
inline constexpr char kVendorKey[] = "VENDOR";
inline constexpr char kAppFileKey[] = "AppFile";
inline constexpr char kUserAppFileKey[] = "ADS_USRAPPFILE";
inline constexpr char kOutputDirKey[] = "ADS_OUTPUT_DIR";
inline constexpr char kLinkerNameKey[] = "ADS_LinkerName";
inline constexpr char kFileMapKey[] = "ADS_FileMap";
inline constexpr char kArmAsmParamsKey[] = "ADS_GArmAsmParam";
inline constexpr char kArmCcParamsKey[] = "ADS_GArmCCParam";
inline constexpr char kArmCppParamsKey[] = "ADS_GArmCppParam";
inline constexpr char kThumbCcParamsKey[] = "ADS_GThmCCParam";
inline constexpr char kThumbCppParamsKey[] = "ADS_GThmCppParam";
inline constexpr char kFromElfParamsKey[] = "ADS_FromELFParam";
inline constexpr char kPostLinkKey[] = "ADS_PostLnk";
inline constexpr char kBatchFileParamsKey[] = "ADS_BatchFileParam";
inline constexpr char kSearchPathKey[] = "SearchPath";
inline constexpr char kSimClockKey[] = "SIMCLK";
inline constexpr char kInitScriptSimKey[] = "InitScriptForSim";
inline constexpr char kInitScriptEmuKey[] = "InitScriptForEmu";
inline constexpr char kServeDebugOptionsKey[] = "ServeDebugOptions";
inline constexpr char kUpdateBeforeDebugKey[] = "UpdateTgtBeforeDbg";
inline constexpr char kRebuildKey[] = "ADS_ReBuild";

// The values of "ADS_LinkerName" and "ADS_PostLnk" that the build acts on
// (compared without regard to case).
inline constexpr char kLinkerArmlink[] = "ARM Linker";
inline constexpr char kLinkerArmar[] = "ARM Librarian";
inline constexpr char kPostLinkFromElf[] = "ARM fromELF";
inline constexpr char kPostLinkBatchFile[] = "Batch File Runner";

}  // namespace ads::config
