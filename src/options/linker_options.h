// The linker's five pages ("Output", "Option", "Layout", "Listing",
// "Extras", the tabs of "ARM Linker"). They keep no page state: each reads
// its controls out of the linker's option string by substring search and
// builds its part of the string from them; the parts, joined in tab order,
// are the new string.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "options/option_rows.h"
#include "options/switch_page.h"

namespace ads::options {

inline constexpr char kAllFilesFilter[] = "All Files (*.*)|*.*||";
inline constexpr char kScatterFilter[] = "Scf File (*.scf)|*.scf|All Files (*.*)|*.*||";
inline constexpr char kListFilter[] = "list File (*.lst)|*.lst|All Files (*.*)|*.*||";
inline constexpr char kViaFilter[] = "Via File (*.via)|*.via|All Files (*.*)|*.*||";
// armlink's own read-only base, never written.
inline constexpr char kDefaultRoBase[] = "0x8000";

// "Output". The bases, the scatter file and the symbol files are edit
// fields; a file field has a browse button and an "Edit..." button.
enum LinkType : int { kLinkPartial, kLinkSimple, kLinkScattered };
enum OutputPosition : int { kLinkTypeCombo, kRopi, kRwpi, kSplitImage, kRelocatable };
enum OutputText : int { kRoBase, kRwBase, kScatterFile, kSymdefsFile, kEditFile };
inline constexpr OptionChoice kLinkTypeChoices[] = {
    {"Partie", " -partial"}, {"Simple", ""}, {"Scattered", " -scatter "}, {}};
inline constexpr char kScatterGroup[] = "Scatter description file";
inline constexpr char kSymdefsGroup[] = "Symbol definitions file";
inline constexpr char kEditGroup[] = "Symbol editing file";
inline constexpr OptionRow kLinkerOutputRows[] = {
    Combo("Link type", "", kLinkTypeCombo, ChoiceSource::kListed, kLinkTypeChoices),
    TextRow(ControlKind::kEdit, "RO Base", "", kRoBase),
    TextRow(ControlKind::kEdit, "RW Base", "", kRwBase),
    Check("Ropi", "", kRopi, " -ropi"),
    Check("Rwpi", "", kRwpi, " -rwpi"),
    Check("Split Image", "", kSplitImage, " -split"),
    Check("Relocatable", "", kRelocatable, " -reloc"),
    TextRow(ControlKind::kEdit, "", kScatterGroup, kScatterFile),
    Browse("...", kScatterGroup, kScatterFile, kScatterFilter),
    Button("Edit...", kScatterGroup, kScatterFile),
    TextRow(ControlKind::kEdit, "", kSymdefsGroup, kSymdefsFile),
    Browse("...", kSymdefsGroup, kSymdefsFile, kAllFilesFilter),
    Button("Edit...", kSymdefsGroup, kSymdefsFile),
    TextRow(ControlKind::kEdit, "", kEditGroup, kEditFile),
    Browse("...", kEditGroup, kEditFile, kAllFilesFilter),
    Button("Edit...", kEditGroup, kEditFile),
};

// "Option". The three removal boxes make one " -remove (...)" switch; the
// debug, local-symbol and library-search boxes write their switch when
// cleared. The label "Include debugging informat" is cut short as the page
// shows it.
enum LinkerOptionPosition : int {
    kRemoveRo, kRemoveRw, kRemoveZi, kKeepDebug, kKeepLocals, kScanLibrary, kVerbose, kArmlib, kStrictChecks };
enum LinkerOptionText : int { kEntryPoint };
inline constexpr char kRemoveGroup[] = "Remove unused sections";
inline constexpr OptionRow kLinkerOptionRows[] = {
    Check("Read-only", kRemoveGroup, kRemoveRo, ""),
    Check("Read-write", kRemoveGroup, kRemoveRw, ""),
    Check("Zero-initials", kRemoveGroup, kRemoveZi, ""),
    Check("Include debugging informat", "", kKeepDebug, "", " -nodebug"),
    Check("Output local symbol", "", kKeepLocals, "", " -nolocals"),
    Check("Search standard library", "", kScanLibrary, "", " -noscanlib"),
    Check("Give progress information while", "", kVerbose, " -verbose"),
    Check("Use ARMLIB to find library", "", kArmlib, " -armlib"),
    Check("Report \"might fail\" conditions", "", kStrictChecks, " -strict"),
    TextRow(ControlKind::kEdit, "Image entry point", "", kEntryPoint),
};

// "Layout": what is placed first and last in the image, each an object or
// symbol with an optional section.
enum LayoutText : int { kFirstObject, kFirstSection, kLastObject, kLastSection };
inline constexpr char kFirstGroup[] = "Place at beginning of image";
inline constexpr char kLastGroup[] = "Place at end of image";
inline constexpr OptionRow kLinkerLayoutRows[] = {
    TextRow(ControlKind::kEdit, "Object/Symbol", kFirstGroup, kFirstObject),
    TextRow(ControlKind::kEdit, "Section", kFirstGroup, kFirstSection),
    TextRow(ControlKind::kEdit, "Object/Symbol", kLastGroup, kLastObject),
    TextRow(ControlKind::kEdit, "Section", kLastGroup, kLastSection),
};

// "Listing". The label "Section Cross-referer" is kept as the page shows it.
enum ListingPosition : int {
    kImageMap, kSymbolList, kMangled, kCrossReference, kCallgraph, kInfoSizes, kInfoTotals, kInfoUnused, kInfoVeneers };
enum ListingText : int { kListFile };
inline constexpr OptionRow kLinkerListingRows[] = {
    TextRow(ControlKind::kEdit, "List file", "", kListFile),
    Browse("...", "", kListFile, kListFilter),
    Check("Image map", "", kImageMap, " -map"),
    Check("Symbols", "", kSymbolList, " -symbols"),
    Check("Mangled C++", "", kMangled, " -mangled"),
    Check("Section Cross-referer", "", kCrossReference, " -xref"),
    Check("Static Callgraph", "", kCallgraph, " -callgraph"),
    Check("Sizes", "", kInfoSizes, " -info sizes"),
    Check("Totals", "", kInfoTotals, " -info totals"),
    Check("Unused", "", kInfoUnused, " -info unused"),
    Check("Veneers", "", kInfoVeneers, " -info veneers"),
};

// "Extras".
enum LinkerExtrasText : int { kUnresolvedSymbol, kLinkerViaFile };
inline constexpr OptionRow kLinkerExtrasRows[] = {
    TextRow(ControlKind::kEdit, "Unresolved symbol", "", kUnresolvedSymbol),
    TextRow(ControlKind::kEdit, "Via file Name", "", kLinkerViaFile),
    Browse("Choose...", "", kLinkerViaFile, kViaFilter),
};

enum class LinkerPage : int { kOutput, kOption, kLayout, kListing, kExtras };
constexpr int kLinkerPageCount = 5;
inline constexpr PageTable kLinkerPages[] = {
    Page("Output", -1, kLinkerOutputRows),
    Page("Option", -1, kLinkerOptionRows),
    Page("Layout", -1, kLinkerLayoutRows),
    Page("Listing", -1, kLinkerListingRows),
    Page("Extras", -1, kLinkerExtrasRows),
};
extern const SwitchPageRules kLinkerRules[kLinkerPageCount];

inline constexpr char kLinkerSheetTitle[] = "ADS Tools Compiler Option--ARM Linker";

// The five pages as the "ARM Linker" entry holds them.
class LinkerPages {
public:
    LinkerPages();

    // Every page reads the whole string.
    void Open(const std::string& options);

    SwitchPage& Page(LinkerPage page) { return pages_[static_cast<size_t>(page)]; }
    const SwitchPage& Page(LinkerPage page) const { return pages_[static_cast<size_t>(page)]; }

    // "Layout" is a tab only while the link type is "Simple".
    bool TabShown(LinkerPage page) const;
    std::vector<LinkerPage> Tabs() const;

    // The pages' texts joined in tab order, the shown tabs only.
    std::string Text() const;
    // Whether any page's text differs from the one it was opened with.
    bool Changed() const;

private:
    std::vector<SwitchPage> pages_;
};

}  // namespace ads::options
