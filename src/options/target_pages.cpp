#include "options/target_pages.h"

#include <cstdio>

#include "config/defaults.h"
#include "config/node_text.h"
#include "config/target_settings.h"
#include "options/path_check.h"
#include "options/text_page.h"
#include "platform/text.h"

namespace ads::options {

namespace {

using config::Text;

// --- Target Settings -------------------------------------------------------

enum TargetSettingsControl { kLinker, kPostLinker, kRunBatch, kBatchCommand, kOutputDir };

class TargetSettingsPage : public TextPage {
public:
    TargetSettingsPage()
        : TextPage({kTargetSettingsItem, -1, 0,
                    {ComboControl("Linker:", {config::kLinkerArmlink, config::kLinkerArmar}),
                     ComboControl("Post-linker:",
                                  {kPostLinkNone, config::kPostLinkFromElf, config::kPostLinkBatchFile}),
                     CheckControl("Run batch file", config::kPostLinkBatchFile),
                     EditControl("Batch file command:", config::kPostLinkBatchFile),
                     EditControl("Output Directory:")}}) {}

    bool Enabled(int control) const override {
        if (control == kRunBatch || control == kBatchCommand) return Value(kPostLinker) == config::kPostLinkBatchFile;
        return true;
    }

    void Load(const DialogContext& context) override {
        const ConfigNode* c = context.configuration;
        const bool library = platform::EqualsIgnoringCase(Text(c, config::kLinkerNameKey), config::kLinkerArmar);
        Put(kLinker, library ? config::kLinkerArmar : config::kLinkerArmlink);
        const std::string post = Text(c, config::kPostLinkKey);
        Put(kPostLinker, platform::EqualsIgnoringCase(post, config::kPostLinkFromElf)     ? config::kPostLinkFromElf
                         : platform::EqualsIgnoringCase(post, config::kPostLinkBatchFile) ? config::kPostLinkBatchFile
                                                                                          : kPostLinkNone);
        const BatchFile batch = ReadBatchFile(Text(c, config::kBatchFileParamsKey));
        Put(kRunBatch, batch.flag == 1 ? "1" : "0");
        Put(kBatchCommand, batch.command);
        Put(kOutputDir, Text(c, config::kOutputDirKey));
        TakeAsLoaded();
    }

    void Default() override {
        const config::OptionModel defaults = config::BuiltinDefaults();
        Put(kLinker, defaults.linker_name);
        Put(kPostLinker, defaults.post_link);
        const BatchFile batch = ReadBatchFile(defaults.batch_file_params);
        Put(kRunBatch, batch.flag == 1 ? "1" : "0");
        Put(kBatchCommand, batch.command);
        Put(kOutputDir, defaults.output_dir);
    }

    std::string Validate() const override {
        if (Value(kPostLinker) == config::kPostLinkBatchFile && Value(kRunBatch) == "1" &&
            Value(kBatchCommand).find_first_not_of(' ') == std::string::npos) {
            return "Enter the command that the batch file runner runs after the link.";
        }
        if (Value(kOutputDir).empty()) return {};
        return PathProblem(Value(kOutputDir), PathUse::kFolder, "The output directory");
    }

    void Save(const DialogContext& context) override {
        std::vector<std::pair<const char*, std::string>> changed;
        if (ControlChanged(kLinker)) changed.emplace_back(config::kLinkerNameKey, Value(kLinker));
        if (ControlChanged(kPostLinker)) changed.emplace_back(config::kPostLinkKey, Value(kPostLinker));
        if (ControlChanged(kRunBatch) || ControlChanged(kBatchCommand)) {
            changed.emplace_back(config::kBatchFileParamsKey,
                                 WriteBatchFile({Value(kRunBatch) == "1" ? 1 : 0, Value(kBatchCommand)}));
        }
        if (ControlChanged(kOutputDir)) changed.emplace_back(config::kOutputDirKey, Value(kOutputDir));
        CommitAttributes(context.host, context.configuration, changed);
        TakeAsLoaded();
    }

protected:
    std::string Check(int control, const std::string& value) const override {
        if (control == kBatchCommand && value.find(')') != std::string::npos) {
            return "A batch file command can't hold ')': the command ends at the first one.";
        }
        return {};
    }
};

// --- Select CPU ------------------------------------------------------------

class SelectCpuPage : public TextPage {
public:
    SelectCpuPage() : TextPage({kSelectCpuItem, -1, 0, {ComboControl("CPU:", {})}}) {}

    void Load(const DialogContext& context) override {
        description_.controls[0] = ComboControl("CPU:", context.processors);
        host_.processors = context.processors;
        const char* cpu = context.configuration ? context.configuration->GetAttribute(config::kCpuKey) : nullptr;
        Put(0, cpu != nullptr ? cpu : config::DefaultProcessor(host_));
        TakeAsLoaded();
    }

    void Default() override { Put(0, config::DefaultProcessor(host_)); }

    std::string Validate() const override {
        if (Value(0).empty()) return "Select a CPU.";
        for (const std::string& processor : host_.processors) {
            if (processor == Value(0)) return {};
        }
        return "The CPU \"" + Value(0) + "\" is not in the list of processors.";
    }

    void Save(const DialogContext& context) override {
        if (ControlChanged(0)) CommitAttributes(context.host, context.configuration, {{config::kCpuKey, Value(0)}});
        TakeAsLoaded();
    }

private:
    config::HostDefaults host_;
};

// --- ARM Target ------------------------------------------------------------

enum ArmTargetControl { kOutputName, kAppFile };

class ArmTargetPage : public TextPage {
public:
    ArmTargetPage()
        : TextPage({kArmTargetItem, -1, 0,
                    {EditControl("Output file name:"), EditControl("Application file:")}}) {}

    void Load(const DialogContext& context) override {
        project_name_ = Text(context.project, config::kNameKey);
        library_ = platform::EqualsIgnoringCase(Text(context.configuration, config::kLinkerNameKey),
                                                config::kLinkerArmar);
        const std::string user = Text(context.configuration, config::kUserAppFileKey);
        Put(kOutputName, user.empty() ? project_name_ : user);
        Put(kAppFile, Text(context.configuration, config::kAppFileKey));
        TakeAsLoaded();
    }

    void Default() override {
        Put(kOutputName, project_name_);
        Put(kAppFile, "");
    }

    std::string Validate() const override {
        const std::string& name = Value(kOutputName);
        if (std::string problem = PathProblem(name, PathUse::kFileName, "The output file name"); !problem.empty()) {
            return problem;
        }
        const char* extension = library_ ? ".a" : ".axf";
        const size_t n = std::string(extension).size();
        if (name.size() >= n && platform::EqualsIgnoringCase(name.substr(name.size() - n), extension)) {
            return std::string("The output file name is written without \"") + extension +
                   "\": the build adds it.";
        }
        if (Value(kAppFile).empty()) return {};
        return PathProblem(Value(kAppFile), PathUse::kFile, "The application file");
    }

    void Save(const DialogContext& context) override {
        std::vector<std::pair<const char*, std::string>> changed;
        if (ControlChanged(kOutputName)) {
            changed.emplace_back(config::kUserAppFileKey, Value(kOutputName) == project_name_ ? "" : Value(kOutputName));
        }
        if (ControlChanged(kAppFile)) changed.emplace_back(config::kAppFileKey, Value(kAppFile));
        CommitAttributes(context.host, context.configuration, changed);
        TakeAsLoaded();
    }

private:
    std::string project_name_;
    bool library_ = false;
};

}  // namespace

BatchFile ReadBatchFile(const std::string& value) {
    BatchFile batch;
    std::vector<char> text(value.size() + 2, '\0');
    // The captured text starts with the "(" the page writes.
    if (std::sscanf(value.c_str(), "%d,%[^)])", &batch.flag, text.data()) != 2) return {};
    batch.command = text.data() + 1;
    return batch;
}

std::string WriteBatchFile(const BatchFile& batch) {
    return std::to_string(batch.flag) + ",(" + batch.command + ")";
}

std::unique_ptr<StoredPage> MakeTargetSettingsPage() { return std::make_unique<TargetSettingsPage>(); }
std::unique_ptr<StoredPage> MakeSelectCpuPage() { return std::make_unique<SelectCpuPage>(); }
std::unique_ptr<StoredPage> MakeArmTargetPage() { return std::make_unique<ArmTargetPage>(); }

}  // namespace ads::options
