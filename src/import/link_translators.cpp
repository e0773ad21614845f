// The linker and fromELF records as the switches their pages write: the
// linker's in the order of its five pages (Output, Option, Layout, Listing,
// Extras), the fromELF format and output file as the fromELF page writes them.
#include <cstring>

#include "config/defaults.h"
#include "import/panel_translators.h"
#include "import/panel_values.h"
#include "options/option_text.h"

namespace ads::import {

namespace opt = ads::options;

// Carried over when armlink 1.2 takes the switch (ads-tools.md) and a linker
// page writes it.
const CarryOver kLinkerSwitches[] = {
    {link_row::kLinkType, ".linktype", "-partial, -reloc", ""},
    {link_row::kEntry, "-entry", "-entry", ""},
    {link_row::kScatter, "-scatter", "-scatter", ""},
    {link_row::kRoBase, "-ro-base", "-ro-base", ""},
    {link_row::kRwBase, "-rw-base", "-rw-base", ""},
    {link_row::kFirst, "-first", "-first", ""},
    {link_row::kLast, "-last", "-last", ""},
    {link_row::kRemoveRo, "-remove.ro", "-remove (ro/.../dbg)", ""},
    {link_row::kRemoveRw, "-remove.rw", "-remove (rw/.../dbg)", ""},
    {link_row::kRemoveZi, "-remove.zi", "-remove (zi/.../dbg)", ""},
    {link_row::kDebug, ".debug", "-nodebug (when off)", ""},
    {link_row::kScanLib, ".scanlib", "-noscanlib (when off)", ""},
    {link_row::kArmLib, ".armlib", "",
     "-armlib is not an armlink switch of ADS 1.2 (it finds its libraries through ARMLIB)"},
    {link_row::kLocals, ".locals", "-nolocals (when off)", ""},
    {link_row::kVerbose, ".verbose", "-verbose", ""},
    {link_row::kStrict, ".strict", "-strict", ""},
    {link_row::kMap, ".map", "-map", ""},
    {link_row::kSymbols, ".symbols", "-symbols", ""},
    {link_row::kMangling, ".mangling", "", "-mangled is not an armlink switch of ADS 1.2"},
    {link_row::kXref, ".xref", "-xref", ""},
    {link_row::kList, "-list", "-list", ""},
    {link_row::kCallgraph, ".callgraph", "-callgraph", ""},
    {link_row::kInfoSizes, "-info.size", "-info sizes", ""},
    {link_row::kInfoTotals, "-info.total", "-info totals", ""},
    {link_row::kInfoUnused, "-info.unused", "-info unused", ""},
    {link_row::kInfoVeneers, "-info.veneers", "-info veneers", ""},
    {link_row::kUnresolved, "-unresolved", "-unresolved", ""},
    {link_row::kVia, "-via", "-via", ""},
};
const int kLinkerSwitchCount = sizeof kLinkerSwitches / sizeof kLinkerSwitches[0];

namespace {

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

const char* PanelSwitch(int row) {
    for (const CarryOver& c : kLinkerSwitches) {
        if (c.row == row) return c.panel_switch;
    }
    return "";
}

// A switch row of the linker panel; an unknown value is noted and counts as
// not set.
Flag LinkFlag(const PanelRecord& r, int row, const char* on_switch, const NoteSink& notes,
              const char* off_switch = "") {
    const std::string& value = r.rows[static_cast<size_t>(row)];
    const Flag flag = ReadFlag(value, on_switch, off_switch);
    if (flag != Flag::kUnknown) return flag;
    notes.Add(std::string(PanelSwitch(row)) + " " + Quoted(value) + " is neither on nor off; left out");
    return Flag::kUnset;
}

std::string Value(const std::string& row) { return opt::Unquote(Trimmed(row)); }

}  // namespace

std::string TranslateLinker(const PanelRecord& r, const std::string& folder, const NoteSink& notes) {
    const auto row = [&r](int i) -> const std::string& { return r.rows[static_cast<size_t>(i)]; };
    std::string out;

    // Output: the link type, then the layout it asks for.
    const std::string type = Trimmed(row(link_row::kLinkType));
    const std::string scatter = Value(row(link_row::kScatter));
    const std::string ro_base = Trimmed(row(link_row::kRoBase));
    const std::string rw_base = Trimmed(row(link_row::kRwBase));
    const bool partial = type == "-partial";
    const bool relocatable = type == "-reloc";
    if (!type.empty() && !partial && !relocatable && type != "-elf") {
        notes.Add("link type " + Quoted(type) + " is not known; a simple image is linked");
    }
    if (partial) {
        out += " -partial";
        if (!scatter.empty() || !ro_base.empty() || !rw_base.empty()) {
            notes.Add("the scatter file and the base addresses are left out: a partial link places nothing");
        }
    } else if (!scatter.empty()) {
        if (!ro_base.empty() || !rw_base.empty()) {
            notes.Add("the base addresses are left out: the scatter file places the regions");
        }
        out += " -scatter \"" + InputFile(scatter, "scatter file", folder, notes) + "\"";
    } else {
        // armlink's own read-only base is not written.
        if (!ro_base.empty() && ro_base != "0x8000") out += " -ro-base " + ro_base;
        if (!rw_base.empty() && relocatable) {
            notes.Add("the read-write base " + rw_base + " is left out: a relocatable image is one region");
        } else if (!rw_base.empty()) {
            out += " -rw-base  " + rw_base;  // two blanks, as the Output page writes it
        }
    }
    if (relocatable) out += " -reloc";

    // Option: the removal switch when any kind is to be removed.
    const Flag ro = LinkFlag(r, link_row::kRemoveRo, "ro", notes);
    const Flag rw = LinkFlag(r, link_row::kRemoveRw, "rw", notes);
    const Flag zi = LinkFlag(r, link_row::kRemoveZi, "zi", notes);
    if (ro == Flag::kOn || rw == Flag::kOn || zi == Flag::kOn) {
        out += " -remove (";
        if (ro == Flag::kOn) out += "ro/";
        if (rw == Flag::kOn) out += "rw/";
        if (zi == Flag::kOn) out += "zi/";
        out += "dbg)";
    } else if (ro == Flag::kOff || rw == Flag::kOff || zi == Flag::kOff) {
        notes.Add("keeping unused sections is not taken over: armlink removes them unless told which to keep");
    }
    if (LinkFlag(r, link_row::kDebug, "-debug", notes, "-nodebug") == Flag::kOff) out += " -nodebug";
    if (LinkFlag(r, link_row::kLocals, "-locals", notes, "-nolocals") == Flag::kOff) out += " -nolocals";
    if (LinkFlag(r, link_row::kScanLib, "-scanlib", notes, "-noscanlib") == Flag::kOff) out += " -noscanlib";
    if (LinkFlag(r, link_row::kVerbose, "-verbose", notes) == Flag::kOn) out += " -verbose";
    if (LinkFlag(r, link_row::kStrict, "-strict", notes) == Flag::kOn) out += " -strict";
    const std::string entry = Value(row(link_row::kEntry));
    if (!entry.empty()) out += " -entry " + opt::QuoteIfNeeded(entry);

    // Layout
    const std::string first = Value(row(link_row::kFirst));
    if (!first.empty()) out += " -first " + opt::QuoteIfNeeded(first);
    const std::string last = Value(row(link_row::kLast));
    if (!last.empty()) out += " -last " + opt::QuoteIfNeeded(last);

    // Listing
    const std::string list = Value(row(link_row::kList));
    if (ReadFlag(list) == Flag::kOn) {
        notes.Add("-list names no file; left out");
    } else if (!list.empty() && ReadFlag(list) != Flag::kOff) {
        out += " -list " + opt::QuoteIfNeeded(list);
    }
    const struct {
        int row;
        const char* text;
    } kListing[] = {
        {link_row::kMap, "-map"},           {link_row::kSymbols, "-symbols"},
        {link_row::kXref, "-xref"},         {link_row::kCallgraph, "-callgraph"},
        {link_row::kInfoSizes, "-info sizes"},     {link_row::kInfoTotals, "-info totals"},
        {link_row::kInfoUnused, "-info unused"},   {link_row::kInfoVeneers, "-info veneers"},
    };
    for (const auto& l : kListing) {
        if (LinkFlag(r, l.row, l.text, notes) == Flag::kOn) out += std::string(" ") + l.text;
    }

    // Extras
    const std::string unresolved = Value(row(link_row::kUnresolved));
    if (!unresolved.empty()) out += " -unresolved " + opt::QuoteIfNeeded(unresolved);
    const std::string via = InputFile(row(link_row::kVia), "via file", folder, notes);
    if (!via.empty()) out += " -via " + opt::QuoteIfNeeded(via);

    for (const CarryOver& c : kLinkerSwitches) {
        if (*c.not_carried == '\0') continue;
        const Flag flag = ReadFlag(row(c.row));
        if (flag != Flag::kUnset && flag != Flag::kOff) {
            notes.Add(std::string(PanelSwitch(c.row)) + " " + Quoted(row(c.row)) + " is not taken over: " + c.not_carried);
        }
    }
    return out;
}

namespace {

// The formats of the fromELF page with the switch each writes.
const char* const kFormats[] = {"-aif", "-aifbin", "-bin", "-m32", "-i32", "-ihf",
                                "-elf", "-bhx", "-fieldoffsets", "-vhx"};
// The text format's flags in the order the page writes them.
const char kTextFlags[] = "vdgztscr";

}  // namespace

std::string TranslateFromElf(const PanelRecord& r, const NoteSink& notes) {
    const std::string format = Trimmed(r.rows[elf_row::kFormat]);
    std::string out;
    bool known = false;
    for (const char* f : kFormats) {
        if (format == f || format == f + 1) {
            out = std::string(" ") + f;
            known = true;
        }
    }
    if (!known && (format.compare(0, 5, ".text") == 0 || format.compare(0, 5, "-text") == 0)) {
        // ".text.c": the text format with its flag letters; no format switch.
        known = true;
        const std::string letters = format.substr(5);
        for (const char* f = kTextFlags; *f != '\0'; ++f) {
            if (letters.find(*f) != std::string::npos) out += std::string(" -") + *f;
        }
        for (char c : letters) {
            if (c != '.' && c != '/' && std::strchr(kTextFlags, c) == nullptr) {
                notes.Add(std::string("text flag '") + c + "' is not known; left out");
            }
        }
    }
    if (!known) {
        if (!format.empty()) notes.Add("format " + Quoted(format) + " is not known; ELF is written");
        out = config::kDefaultFromElfParams;
    }
    const std::string output = Value(r.rows[elf_row::kOutput]);
    if (output.empty()) {
        notes.Add("no output file is named; fromelf names it after the image");
    } else {
        out += " -output \"" + output + "\"";
    }
    return out;
}

}  // namespace ads::import
