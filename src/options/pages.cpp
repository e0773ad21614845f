#include "options/pages.h"

#include <cctype>

#include "options/compiler_options.h"
#include "options/option_tables.h"

namespace ads::options {

namespace {

std::vector<Choice> ChoicesOf(const OptionRow& row, bool c_language) {
    std::vector<Choice> choices;
    const auto add = [&choices](const char* label) {
        choices.push_back({label, static_cast<int>(choices.size())});
    };
    switch (row.source) {
        case ChoiceSource::kListed:
            for (const OptionChoice* c = row.choices; c != nullptr && c->label != nullptr; ++c) add(c->label);
            break;
        case ChoiceSource::kProcessors:
            for (const char* name : kProcessors) add(name);
            break;
        case ChoiceSource::kFpus:
            for (const FpuEntry& fpu : kFpus) add(fpu.combo_text);
            break;
        case ChoiceSource::kLanguages:
            if (c_language) {
                for (const LanguageEntry& language : kCLanguages) add(language.combo_text);
            } else {
                for (const LanguageEntry& language : kCppLanguages) add(language.combo_text);
            }
            break;
    }
    return choices;
}

}  // namespace

PageDescription DescribePage(const PageTable& page, bool c_language, PageVariant variant) {
    PageDescription d{page.title, page.slot, page.value_count, {}};
    for (int i = 0; i < page.row_count; ++i) {
        const OptionRow& row = page.rows[i];
        const bool kept = row.position != kNoPosition;
        Control c{row.kind, row.label, row.group, kept ? page.slot : row.text_slot, row.position,
                  ChoicesOf(row, c_language), row.default_text, row.filter};
        if (variant == PageVariant::kPerTarget && row.kind == ControlKind::kRadioGroup && kept) {
            c.choices.push_back({kDefaultLastLevel, kUnset});
        }
        d.controls.push_back(std::move(c));
    }
    return d;
}

PageDescription DescribeCompilerPage(CompilerPage page, bool c_language, PageVariant variant) {
    return DescribePage(PageOf(page), c_language, variant);
}

PageDescription DescribeAssemblerPage(AssemblerPage page, PageVariant variant) {
    return DescribePage(PageOf(page), true, variant);
}

std::vector<PageDescription> DescribePages(Family family, PageVariant variant) {
    std::vector<PageDescription> pages;
    if (IsAssembler(family)) {
        for (const PageTable& page : kAssemblerPages) pages.push_back(DescribePage(page, true, variant));
    } else {
        const bool c_language = family == Family::kArmC || family == Family::kThumbC;
        for (const PageTable& page : kCompilerPages) pages.push_back(DescribePage(page, c_language, variant));
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
