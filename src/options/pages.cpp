#include "options/pages.h"

#include <cctype>

#include "options/compiler_options.h"
#include "options/option_tables.h"

namespace ads::options {

namespace {

Control Check(const std::string& label, const std::string& group, int slot, int position) {
    return Control{ControlKind::kCheckBox, label, group, slot, position, {}, {}};
}

Control Radio(const std::string& label, int slot, int position, std::vector<std::string> buttons,
              PageVariant variant, const std::string& group = std::string()) {
    Control c{ControlKind::kRadioGroup, label, group, slot, position, {}, {}};
    for (size_t i = 0; i < buttons.size(); ++i) {
        c.choices.push_back({buttons[i], static_cast<int>(i)});
    }
    if (variant == PageVariant::kPerTarget) c.choices.push_back({kDefaultLastLevel, kUnset});
    return c;
}

Control Combo(const std::string& label, int slot, int position, const std::vector<std::string>& entries,
              const std::string& group = std::string()) {
    Control c{ControlKind::kCombo, label, group, slot, position, {}, {}};
    for (size_t i = 0; i < entries.size(); ++i) c.choices.push_back({entries[i], static_cast<int>(i)});
    return c;
}

Control Text(ControlKind kind, const std::string& label, const std::string& group, int slot,
             const std::string& default_text = std::string()) {
    return Control{kind, label, group, slot, -1, {}, default_text};
}

Control Button(const std::string& label, const std::string& group = std::string()) {
    return Control{ControlKind::kButton, label, group, -1, -1, {}, {}};
}

std::vector<std::string> ProcessorNames() {
    return std::vector<std::string>(kProcessors, kProcessors + kProcessorCount);
}

std::vector<std::string> FpuTexts() {
    std::vector<std::string> texts;
    for (const FpuEntry& fpu : kFpus) texts.push_back(fpu.combo_text);
    return texts;
}

std::vector<std::string> LanguageTexts(bool c_language) {
    std::vector<std::string> texts;
    const LanguageEntry* table = c_language ? kCLanguages : kCppLanguages;
    const int count = c_language ? kCLanguageCount : kCppLanguageCount;
    for (int i = 0; i < count; ++i) texts.push_back(table[i].combo_text);
    return texts;
}

PageDescription ExtrasPage(int slot) {
    return {"Extras", -1, 0,
            {Text(ControlKind::kEdit, "Via file Name", "", slot), Button("Choose...")}};
}

}  // namespace

PageDescription DescribeCompilerPage(CompilerPage page, bool c_language, PageVariant variant) {
    switch (page) {
        case CompilerPage::kTargetAndSource:
            return {"Target and Source", kCcTar, 4,
                    {Combo("Architecture Or Processor", kCcTar, kTarProcessor, ProcessorNames()),
                     Combo("Floating Point", kCcTar, kTarFpu, FpuTexts()),
                     Radio("Byte Order", kCcTar, kTarByteOrder, {"Big Endian", "Little Endian"}, variant),
                     Combo("Source Language", kCcTar, kTarLanguage, LanguageTexts(c_language))}};
        case CompilerPage::kAtpcs: {
            PageDescription d{"ATPCS", kCcAtpcs, 4, {}};
            for (int i = 0; i < 4; ++i) {
                d.controls.push_back(Check(kCompilerAtpcsRows[i].label, kCompilerAtpcsGroup, kCcAtpcs, i));
            }
            return d;
        }
        case CompilerPage::kWarnings: {
            PageDescription d{"Warnings", kCcWarnings, 16, {}};
            for (int i = 0; i < 16; ++i) {
                d.controls.push_back(Check(kWarningRows[i].label, kWarningRows[i].group, kCcWarnings, i));
            }
            return d;
        }
        case CompilerPage::kErrors: {
            PageDescription d{"Errors", kCcErrors, 7, {}};
            for (int i = 0; i < 7; ++i) {
                d.controls.push_back(Check(kErrorRows[i].label, kErrorRows[i].group, kCcErrors, i));
            }
            return d;
        }
        case CompilerPage::kDebugOpt:
            return {"Debug/Opt", kCcDebugOpt, 5,
                    {Check("Enable debug table generation", "", kCcDebugOpt, kDbgTables),
                     Check("Include preprocessor symbol", "", kCcDebugOpt, kDbgPreproSymbols),
                     Check("Enable debug of inline function", "", kCcDebugOpt, kDbgInline),
                     Radio("", kCcDebugOpt, kDbgLevel,
                           {"Minimum (best debug view)", "Most (good debug view,good code)",
                            "ALL (poor debug view,best code)"},
                           variant),
                     Radio("", kCcDebugOpt, kDbgCriterion, {"For space ", "For time"}, variant)}};
        case CompilerPage::kPreprocessor:
            return {"Preprocessor", -1, 0,
                    {Text(ControlKind::kTextList, "List of #DEFINEs", "", kCcPrePro), Button("Add"),
                     Button("Replace"), Button("Delete")}};
        case CompilerPage::kCodeGen: {
            PageDescription d{"Code Gen", kCcCodeGen, 5, {}};
            for (int i = 0; i < 5; ++i) {
                d.controls.push_back(Check(kCodeGenRows[i].label, kCodeGenGroup, kCcCodeGen, i));
            }
            return d;
        }
        case CompilerPage::kExtras:
            return ExtrasPage(kCcExtras);
    }
    return {};
}

PageDescription DescribeAssemblerPage(AssemblerPage page, PageVariant variant) {
    switch (page) {
        case AssemblerPage::kTarget:
            return {"Target", kAsmTar, 4,
                    {Combo("Architecture Or Processor", kAsmTar, kAsmTarProcessor, ProcessorNames()),
                     Combo("Floating Point", kAsmTar, kAsmTarFpu, FpuTexts()),
                     Radio("Byte Order", kAsmTar, kAsmTarByteOrder, {"Big Endian", "Little Endian"}, variant),
                     Radio("Initial state", kAsmTar, kAsmTarInitialState, {"ARM", "Thumb"}, variant)}};
        case AssemblerPage::kAtpcs: {
            const std::string group = "Procedure Call Standard Option";
            return {"ATPCS", kAsmAtpcs, 6,
                    {Radio("Software stack", kAsmAtpcs, kAsmSoftwareStack, {"On", "Off", "Not Applicable"},
                           variant, group),
                     Radio("Calling Standard", kAsmAtpcs, kAsmCallingStandard, {"ATPCS", "None"}, variant, group),
                     Radio("Predeclared Reg Names", kAsmAtpcs, kAsmRegNames, {"ATPCS", "None"}, variant, group),
                     Check("ARM/Thumb interworking", group, kAsmAtpcs, kAsmInterwork),
                     Check("Read-only position independent", group, kAsmAtpcs, kAsmRopi),
                     Check("Read-write position independent", group, kAsmAtpcs, kAsmRwpi)}};
        }
        case AssemblerPage::kOption: {
            PageDescription d{"Option", kAsmOpt, 6, {}};
            for (int i = 0; i < 6; ++i) d.controls.push_back(Check(kAssemblerOptionRows[i].label, "", kAsmOpt, i));
            return d;
        }
        case AssemblerPage::kPredefines: {
            const std::string group = "Edit predefined variable";
            return {"Predefines", -1, 0,
                    {Text(ControlKind::kTextList, "List Of Predefines", "", kAsmPds),
                     Text(ControlKind::kEdit, "Variable", group, -1),
                     Combo("Directive", -1, -1, {"SETA", "SETL", "SETS"}, group),
                     Text(ControlKind::kEdit, "Numeric", group, -1),
                     Radio("Logical", -1, -1, {"{TRUE}", "{FALSE}"}, PageVariant::kToolWide, group),
                     Button("Add", group), Button("Replace", group), Button("Delete", group)}};
        }
        case AssemblerPage::kListingControl:
            return {"Listing Control", kAsmLc, 4,
                    {Check("Listing on", "Miscellaneous", kAsmLc, kAsmListOn),
                     Check("Terse", "Miscellaneous", kAsmLc, kAsmTerse),
                     Check("Cross-reference", "Miscellaneous", kAsmLc, kAsmXref),
                     Check("Continuous Page", "Dimensions", kAsmLc, kAsmContinuous),
                     Text(ControlKind::kEdit, "Page", "Dimensions", kAsmLcPg1, kDefaultListingWidth),
                     Text(ControlKind::kEdit, "Page", "Dimensions", kAsmLcPg2, kDefaultListingLength)}};
        case AssemblerPage::kExtras:
            return ExtrasPage(kAsmEts);
    }
    return {};
}

std::vector<PageDescription> DescribePages(Family family, PageVariant variant) {
    std::vector<PageDescription> pages;
    if (IsAssembler(family)) {
        for (int p = 0; p <= static_cast<int>(AssemblerPage::kExtras); ++p) {
            pages.push_back(DescribeAssemblerPage(static_cast<AssemblerPage>(p), variant));
        }
    } else {
        const bool c_language = family == Family::kArmC || family == Family::kThumbC;
        for (int p = 0; p <= static_cast<int>(CompilerPage::kExtras); ++p) {
            pages.push_back(DescribeCompilerPage(static_cast<CompilerPage>(p), c_language, variant));
        }
    }
    return pages;
}

const char* SheetTitle(Family family) {
    switch (family) {
        case Family::kArmC: return "ADS Tools Compiler Option--ARM C Compiler";
        case Family::kThumbC: return "ADS Tools Compiler Option--Thumb C Compiler";
        case Family::kArmCpp: return "ADS Tools Compiler Option--ARM C++ Compiler";
        case Family::kThumbCpp: return "ADS Tools Compiler Option--Thumb C++ Compiler";
        case Family::kArmAsm: return "ADS Tools Compiler Option--ARM Assembler";
    }
    return "";
}

PageModel::PageModel(PageDescription description)
    : description_(std::move(description)),
      values_(description_.value_count, kUnset),
      loaded_values_(values_) {}

void PageModel::Load(const PageStateSet& states) {
    values_.assign(description_.value_count, kUnset);
    if (description_.slot >= 0) {
        ScanPageState(states[description_.slot], values_.data(), description_.value_count);
    }
    for (const Control& c : description_.controls) {
        if (c.position < 0 && c.slot >= 0) texts_[c.slot] = states[c.slot];
    }
    loaded_values_ = values_;
    loaded_texts_ = texts_;
}

void PageModel::Store(PageStateSet& states) const {
    if (description_.slot >= 0) {
        states[description_.slot] = FormatPageState(values_.data(), description_.value_count);
    }
    for (const Control& c : description_.controls) {
        if (c.position < 0 && c.slot >= 0) states[c.slot] = texts_[c.slot];
    }
}

bool PageModel::Changed() const { return values_ != loaded_values_ || texts_ != loaded_texts_; }

int PageModel::Value(int position) const {
    return position >= 0 && position < static_cast<int>(values_.size()) ? values_[position] : kUnset;
}

void PageModel::SetValue(int position, int value) {
    if (position >= 0 && position < static_cast<int>(values_.size())) values_[position] = value;
}

const std::string& PageModel::Text(int slot) const {
    static const std::string kNone;
    return slot >= 0 && slot < kSlotCount ? texts_[slot] : kNone;
}

void PageModel::SetText(int slot, const std::string& text) {
    if (slot >= 0 && slot < kSlotCount) texts_[slot] = text;
}

std::vector<PageModel> MakePages(Family family, PageVariant variant) {
    std::vector<PageModel> models;
    for (PageDescription& d : DescribePages(family, variant)) models.emplace_back(std::move(d));
    return models;
}

std::vector<std::string> DefineEntries(const std::string& text) {
    std::vector<std::string> entries;
    size_t at = text.find(" -D");
    while (at != std::string::npos) {
        size_t pos = at + 3;
        std::string entry = ReadValue(text, pos);
        if (!entry.empty()) entries.push_back(entry);
        at = text.find(" -D", pos);
    }
    return entries;
}

std::string DefinesText(const std::vector<std::string>& definitions) {
    std::string text;
    for (const std::string& d : definitions) text += " -D" + QuoteIfNeeded(d);
    return text;
}

void EntryList::Select(int index) {
    selected_ = index >= 0 && index < static_cast<int>(entries_.size()) ? index : -1;
}

void EntryList::Add(const std::string& entry) {
    entries_.push_back(entry);
    selected_ = static_cast<int>(entries_.size()) - 1;
}

bool EntryList::Replace(const std::string& entry) {
    if (selected_ < 0) return false;
    entries_[selected_] = entry;
    return true;
}

bool EntryList::Delete() {
    if (selected_ < 0) return false;
    entries_.erase(entries_.begin() + selected_);
    selected_ = -1;
    return true;
}

void PredefinesEditor::Load(const std::string& text) {
    list_ = EntryList(PredefineEntries(text));
    add_enabled_ = true;
    delete_enabled_ = false;
}

PredefinesEditor::AddResult PredefinesEditor::Add(const std::string& variable, Directive directive,
                                                  const std::string& value) {
    add_enabled_ = false;
    if (VariableExists(list_.Entries(), variable)) return AddResult::kExists;
    if (!ValidVariable(variable) || !ValidValue(directive, value)) return AddResult::kInvalidValue;
    list_.Add(PredefineEntry(variable, directive, value));
    delete_enabled_ = true;
    return AddResult::kAdded;
}

bool PredefinesEditor::Replace(const std::string& variable, Directive directive,
                               const std::string& value) {
    if (!ValidVariable(variable) || !ValidValue(directive, value)) return false;
    return list_.Replace(PredefineEntry(variable, directive, value));
}

bool PredefinesEditor::Delete() {
    const bool deleted = list_.Delete();
    delete_enabled_ = list_.Selected() >= 0;
    return deleted;
}

void PredefinesEditor::Select(int index) {
    list_.Select(index);
    delete_enabled_ = list_.Selected() >= 0;
}

bool PredefinesEditor::ValidVariable(const std::string& variable) {
    return !variable.empty() && variable.find_first_of(" \t\"") == std::string::npos;
}

bool PredefinesEditor::ValidValue(Directive directive, const std::string& value) {
    switch (directive) {
        case Directive::kSeta: {
            size_t i = value.size() > 0 && value[0] == '-' ? 1 : 0;
            bool hex = false;
            if (value.compare(i, 2, "0x") == 0 || value.compare(i, 2, "0X") == 0) {
                i += 2;
                hex = true;
            } else if (value.compare(i, 1, "&") == 0) {
                i += 1;
                hex = true;
            }
            if (i >= value.size()) return false;
            for (; i < value.size(); ++i) {
                const unsigned char c = static_cast<unsigned char>(value[i]);
                if (!(hex ? std::isxdigit(c) : std::isdigit(c))) return false;
            }
            return true;
        }
        case Directive::kSetl: return value == "{TRUE}" || value == "{FALSE}";
        case Directive::kSets: return true;
    }
    return false;
}

}  // namespace ads::options
