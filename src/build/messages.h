// What the build engine writes to the output pane and shows in message
// boxes: every text once, byte for byte, spelling included.
#pragma once

namespace ads::build {

// The title of the engine's message boxes.
inline constexpr char kMessageTitle[] = "ADS";

inline constexpr char kCreateFolderFailed[] = "\r\ncreat target file failed!\r\n";
inline constexpr char kNoToolsForCompile[] = "Could't find ADS compiler tools!";
inline constexpr char kNoToolsForBuild[] = "Couldn't find ADS compiler tools, fail to build!!";
inline constexpr char kTargetNotCreated[] = "Target not created\r\n";
inline constexpr char kNoProjectOrTarget[] = "current Project Name and current target can't be none!\n";

// Banners: project name and target; the build banner adds the target again.
inline constexpr char kBanner[] = "--------------------Configuration: %s - %s--------------------\r\n";
inline constexpr char kBuildTargetLine[] = "\r\nbuild target 'ADS-%s'\r\n";
inline constexpr char kCleanBanner[] = "--------------Deleting intermediate files: %s - %s-------------\r\n";
// The project name of the banner when the root has none.
inline constexpr char kUnnamedProject[] = "current project";

// One file. The make engine's command writes "compiling", the single-file
// compile "Compiling".
inline constexpr char kCompilingForMake[] = "compiling %s...\r\n";
inline constexpr char kCompiling[] = "Compiling %s...\r\n";
inline constexpr char kAssembling[] = "Assembling %s...\r\n";
inline constexpr char kSkipping[] = "skipping ... (no relevant changes detected)\r\n";
inline constexpr char kUpToDateSummary[] = "\r\n%s - %d error(s), %d warning(s)";
inline constexpr char kCreateSummary[] = "\r\nCreate %s - %d error(s), %d warning(s)";
// A failed tool that printed nothing: the source, then the exit code.
inline constexpr char kToolExitCode[] = "%s: exit code %d\r\n";
inline constexpr char kToolNotRun[] = "%s: the assembler could not be run\r\n";
// A source that wrote the same object as an earlier one: the source, the
// object, the earlier source, the source's new object.
inline constexpr char kObjectRenamed[] = "note: %s shared the object %s with %s; it now writes %s\r\n";

// The target.
inline constexpr char kArchiving[] = "\r\nlibrarian...\r\n";
inline constexpr char kLinking[] = "\r\nLinking...\r\n";
inline constexpr char kLibrarySummary[] = "\r\n\r\n%s.a created - %d error(s), %d warning(s)";
inline constexpr char kImageSummary[] = "\r\n\r\n%s.axf created - %d error(s), %d warning(s)";

// The post-link step.
inline constexpr char kFromElfStarted[] = "\n\nFromELF...";
// A library target that asks for fromelf: the archive's name.
inline constexpr char kFromElfSkipped[] = "\n\nFromELF skipped: %s is an archive, not an image.\r\n";
inline constexpr char kTranslationDone[] = "\n\nTranslation to %s format successful.";
inline constexpr char kTranslationFailed[] = "\n\n%s\nTranslation to %s format failed.";
inline constexpr char kUserCommand[] = "\n\nUser Command:%s\r\n";
inline constexpr char kUserCommandFailed[] = "--- Error: User command terminated, Exit code = %d\r\n";

// Cleaning: the file, then the system's reason.
inline constexpr char kDeleteFailed[] = "Error: Could not delete file \"%s\" : ";

}  // namespace ads::build
