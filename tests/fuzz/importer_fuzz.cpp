// libFuzzer target of the CodeWarrior export reader and the panel
// translators. The first byte chooses what the rest is:
//   0: a whole export file, as it stands;
//   1: the body of an export after its two header lines;
//   2: the option text of a panel, hex-dumped into every ADS panel of one
//      target, and also given to the decoder as a dump of its own.
//
// Besides not crashing, it checks what must hold for any input:
//   - a failed read leaves no target, no group and says why; a read that
//     succeeds counts its targets;
//   - every compiler and assembler string the translators make reads back
//     into the option pages and comes out of them unchanged.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "import/export_filter.h"
#include "import/export_reader.h"
#include "import/panel_readers.h"
#include "import/panel_text.h"
#include "import/panel_translators.h"
#include "options/assembler_options.h"
#include "options/compiler_options.h"

namespace {

using namespace ads::import;
namespace opt = ads::options;

void Require(bool condition) {
    if (!condition) std::abort();
}

const std::string kHeader = std::string("<?xml version=\"1.0\"?>\n") + kExportVersionLine + "\n";

std::string Dump(const std::string& tool, const std::string& text) {
    std::string data = std::string("\x00\x01", 2) + tool + std::string(8, '\0') + text;
    return HexOf(data);
}

std::string PanelExport(const std::string& options) {
    std::string panels;
    for (int i = 0; i < kPanelCount; ++i) {
        panels += std::string("<PANELDATA><NAME>") + kPanelDataNames[i] + "</NAME><VALUE>" +
                  Dump(kPanelToolNames[i], options) + "</VALUE></PANELDATA>\n";
    }
    return kHeader + "<PROJECT><TARGETLIST><TARGET><NAME>T</NAME><SETTINGLIST>\n" + panels +
           "</SETTINGLIST></TARGET></TARGETLIST></PROJECT>\n";
}

void CheckTranslations(const ImportModel& model) {
    for (const ImportTarget& target : model.targets) {
        for (PanelKind kind : {kPanelArmC, kPanelArmCpp, kPanelThumbC, kPanelThumbCpp}) {
            if (!target.panels[kind].present) continue;
            const bool c_language = kind == kPanelArmC || kind == kPanelThumbC;
            const std::string s =
                TranslateCompiler(target.panels[kind], c_language, model.folder, NoteSink{nullptr, ""});
            Require(opt::WriteCompilerOptions(opt::ReadCompilerSettings(s, c_language), c_language) == s);
        }
        if (target.panels[kPanelAssembler].present) {
            const std::string s =
                TranslateAssembler(target.panels[kPanelAssembler], model.folder, NoteSink{nullptr, ""});
            Require(opt::WriteAssemblerOptions(opt::ReadAssemblerSettings(s)) == s);
        }
        if (target.panels[kPanelLinker].present) {
            TranslateLinker(target.panels[kPanelLinker], model.folder, NoteSink{nullptr, ""});
        }
        if (target.panels[kPanelFromElf].present) TranslateFromElf(target.panels[kPanelFromElf], NoteSink{nullptr, ""});
    }
}

void Read(const std::string& text) {
    ImportModel model;
    const bool read = ReadExportText(text, "C:\\fuzz", ReaderOptions(), &model);
    if (!read) {
        Require(model.targets.empty() && model.groups.empty() && model.target_count == 0);
        Require(!model.failure.empty());
        return;
    }
    Require(model.target_count == model.targets.size());
    CheckTranslations(model);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const std::string rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 3) {
        case 0:
            Read(rest);
            break;
        case 1:
            Read(kHeader + rest);
            break;
        default:
            Read(PanelExport(rest));
            DecodePanelText(rest, kPanelHexNames[kPanelAssembler]);
            break;
    }
    return 0;
}
