#include "options/linker_options.h"

#include <cctype>

#include "options/option_text.h"

namespace ads::options {

namespace {

std::string TextAfter(const std::string& options, const char* key) {
    return ReadValueAfter(options, key).value_or(std::string());
}

// The switch and the value, quoted when it holds a blank; nothing for an
// empty value.
void AppendValue(std::string& out, const char* name, const std::string& value) {
    if (!value.empty()) out += name + QuoteIfNeeded(value);
}

template <size_t N, size_t M>
void AppendChecks(std::string& out, const OptionRow (&rows)[N], const PageValues& v, const int (&positions)[M]) {
    for (int position : positions) {
        for (const OptionRow& row : rows) {
            if (row.position == position) out += SwitchOf(row, v.Value(position), true);
        }
    }
}

// --- Output ------------------------------------------------------------------

void ReadOutput(const std::string& s, PageValues& v) {
    v.values[kLinkTypeCombo] =
        Contains(s, " -partial") ? kLinkPartial : Contains(s, " -scatter ") ? kLinkScattered : kLinkSimple;
    v.texts[kRoBase] = TextAfter(s, " -ro-base ");
    v.texts[kRwBase] = TextAfter(s, " -rw-base ");
    v.texts[kScatterFile] = TextAfter(s, " -scatter ");
    v.texts[kSymdefsFile] = TextAfter(s, " -symdefs ");
    v.texts[kEditFile] = TextAfter(s, " -edit ");
}

std::string WriteOutput(const PageValues& v) {
    std::string out;
    const bool relocatable = v.Checked(kRelocatable);
    switch (v.Value(kLinkTypeCombo)) {
        case kLinkPartial:
            out += " -partial";
            break;
        case kLinkSimple: {
            const std::string& ro_base = v.Text(kRoBase);
            if (!ro_base.empty() && ro_base != kDefaultRoBase) AppendValue(out, " -ro-base ", ro_base);
            // A relocatable image has its read-write base only when split.
            // The two blanks after the switch are the page's own.
            if (!relocatable || v.Checked(kSplitImage)) AppendValue(out, " -rw-base  ", v.Text(kRwBase));
            break;
        }
        case kLinkScattered:
            // The scatter file is quoted whatever its name.
            if (!v.Text(kScatterFile).empty()) out += " -scatter " + Quoted(v.Text(kScatterFile));
            break;
    }
    if (relocatable) {
        out += " -reloc";
    } else {
        AppendChecks(out, kLinkerOutputRows, v, {kRopi, kRwpi});
    }
    AppendChecks(out, kLinkerOutputRows, v, {kSplitImage});
    AppendValue(out, " -symdefs ", v.Text(kSymdefsFile));
    AppendValue(out, " -edit ", v.Text(kEditFile));
    return out;
}

// The bases and the position independence are for a simple image that is
// not relocatable; a disabled field keeps its text, and a split relocatable
// image still writes its read-write base. An "Edit..." button opens a file
// that is named.
bool OutputEnabled(const PageValues& v, int index) {
    const OptionRow& row = kLinkerOutputRows[index];
    const int type = v.Value(kLinkTypeCombo);
    const bool relocatable = v.Checked(kRelocatable);
    if (row.position == kRopi || row.position == kRwpi) return !relocatable;
    const bool edit_button = row.kind == ControlKind::kButton && *row.filter == '\0';
    switch (row.position == kNoPosition ? row.text_slot : -1) {
        case kRoBase:
        case kRwBase:
            return type == kLinkSimple && !relocatable;
        case kScatterFile:
            return type == kLinkScattered && (!edit_button || !v.Text(kScatterFile).empty());
        case kSymdefsFile:
        case kEditFile:
            return !edit_button || !v.Text(row.text_slot).empty();
    }
    return true;
}

// --- Option ------------------------------------------------------------------

constexpr char kRemoveSwitch[] = " -remove (";
constexpr struct {
    int position;
    const char* kind;
} kRemovable[] = {{kRemoveRo, "ro"}, {kRemoveRw, "rw"}, {kRemoveZi, "zi"}};

// The kinds named in the list of the first " -remove (", up to its ")".
void ReadOption(const std::string& s, PageValues& v) {
    const size_t at = s.find(kRemoveSwitch);
    std::string list;
    if (at != std::string::npos) {
        const size_t begin = at + sizeof kRemoveSwitch - 1;
        list = s.substr(begin, s.find(')', begin) - begin);
        for (char& c : list) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    for (const auto& r : kRemovable) {
        bool named = false;
        for (size_t start = 0; !list.empty() && start <= list.size();) {
            size_t end = list.find('/', start);
            if (end == std::string::npos) end = list.size();
            named = named || list.compare(start, end - start, r.kind) == 0;
            start = end + 1;
        }
        v.values[r.position] = named ? 1 : 0;
    }
    v.texts[kEntryPoint] = TextAfter(s, " -entry ");
}

// The removal switch is written only when at least one kind is to be
// removed. With every box clear, " -remove (dbg)" would still ask for the
// unused debug sections to go, which is not what clearing the boxes says;
// and a string without the switch reads back with every box clear, so each
// string the page writes reads back to the boxes that wrote it.
std::string WriteOption(const PageValues& v) {
    std::string out;
    std::string kinds;
    for (const auto& r : kRemovable) {
        if (v.Checked(r.position)) kinds += std::string(r.kind) + "/";
    }
    if (!kinds.empty()) out += kRemoveSwitch + kinds + "dbg)";
    AppendChecks(out, kLinkerOptionRows, v, {kKeepDebug, kKeepLocals, kScanLibrary, kVerbose, kArmlib, kStrictChecks});
    AppendValue(out, " -entry ", v.Text(kEntryPoint));
    return out;
}

// --- Layout ------------------------------------------------------------------

// "object(section)" or "object".
void ReadPlacement(const std::string& s, const char* key, PageValues& v, int object, int section) {
    const std::string value = TextAfter(s, key);
    const size_t open = value.find('(');
    if (open != std::string::npos && value.size() > open + 1 && value.back() == ')') {
        v.texts[object] = value.substr(0, open);
        v.texts[section] = value.substr(open + 1, value.size() - open - 2);
    } else {
        v.texts[object] = value;
    }
}

void ReadLayout(const std::string& s, PageValues& v) {
    ReadPlacement(s, " -first ", v, kFirstObject, kFirstSection);
    ReadPlacement(s, " -last ", v, kLastObject, kLastSection);
}

void AppendPlacement(std::string& out, const char* name, const std::string& object, const std::string& section) {
    if (object.empty()) return;
    AppendValue(out, name, section.empty() ? object : object + "(" + section + ")");
}

std::string WriteLayout(const PageValues& v) {
    std::string out;
    AppendPlacement(out, " -first ", v.Text(kFirstObject), v.Text(kFirstSection));
    AppendPlacement(out, " -last ", v.Text(kLastObject), v.Text(kLastSection));
    return out;
}

// --- Listing and Extras --------------------------------------------------------

void ReadListing(const std::string& s, PageValues& v) { v.texts[kListFile] = TextAfter(s, " -list "); }

std::string WriteListing(const PageValues& v) {
    std::string out;
    AppendValue(out, " -list ", v.Text(kListFile));
    AppendChecks(out, kLinkerListingRows, v,
                 {kImageMap, kSymbolList, kMangled, kCrossReference, kCallgraph, kInfoSizes, kInfoTotals,
                  kInfoUnused, kInfoVeneers});
    return out;
}

void ReadExtras(const std::string& s, PageValues& v) {
    v.texts[kUnresolvedSymbol] = TextAfter(s, " -unresolved ");
    v.texts[kLinkerViaFile] = TextAfter(s, " -via ");
}

std::string WriteExtras(const PageValues& v) {
    std::string out;
    AppendValue(out, " -unresolved ", v.Text(kUnresolvedSymbol));
    AppendValue(out, " -via ", v.Text(kLinkerViaFile));
    return out;
}

}  // namespace

const SwitchPageRules kLinkerRules[kLinkerPageCount] = {
    {&kLinkerPages[0], ReadOutput, WriteOutput, OutputEnabled},
    {&kLinkerPages[1], ReadOption, WriteOption, nullptr},
    {&kLinkerPages[2], ReadLayout, WriteLayout, nullptr},
    {&kLinkerPages[3], ReadListing, WriteListing, nullptr},
    {&kLinkerPages[4], ReadExtras, WriteExtras, nullptr},
};

LinkerPages::LinkerPages() {
    for (const SwitchPageRules& rules : kLinkerRules) pages_.emplace_back(rules);
}

void LinkerPages::Open(const std::string& options) {
    for (SwitchPage& page : pages_) page.Open(options);
}

// The placements go with their tab: a partial link places nothing and a
// scatter file places everything, so "Layout" and its text are there only
// for a simple image.
bool LinkerPages::TabShown(LinkerPage page) const {
    return page != LinkerPage::kLayout || Page(LinkerPage::kOutput).Value(kLinkTypeCombo) == kLinkSimple;
}

std::vector<LinkerPage> LinkerPages::Tabs() const {
    std::vector<LinkerPage> tabs;
    for (int i = 0; i < kLinkerPageCount; ++i) {
        if (TabShown(static_cast<LinkerPage>(i))) tabs.push_back(static_cast<LinkerPage>(i));
    }
    return tabs;
}

std::string LinkerPages::Text() const {
    std::string text;
    for (LinkerPage tab : Tabs()) text += Page(tab).Built();
    return text;
}

bool LinkerPages::Changed() const {
    for (const SwitchPage& page : pages_) {
        if (page.Changed()) return true;
    }
    return false;
}

}  // namespace ads::options
