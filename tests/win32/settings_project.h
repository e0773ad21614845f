// The plug-in with a fake host and a project (target Debug, a C file in a
// folder and an assembler file), whose settings window a second thread drives while the
// plug-in's ShowSettings runs it.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "plugin/application.h"
#include "support/fake_host.h"
#include "support/fake_platform.h"
#include "win32/window_driver.h"

namespace ads::testing {

class SettingsProject {
public:
    SettingsProject() {
        fake.libraries.free_null_succeeds = true;  // no service module: the table stays zeroed
        project = std::make_unique<ConfigNode>("OrvaneProject");
        project->SetAttribute("Name", "demo");
        auto* configs = new ConfigNode("Configurations");
        project->AppendChild(configs);
        auto* debug = new ConfigNode("Configuration");
        debug->SetAttribute("Name", "Debug");
        // The tool-wide strings a new target gets, as in the example project.
        for (const char* key : {"ADS_GArmCCParam", "ADS_GArmCppParam", "ADS_GThmCCParam", "ADS_GThmCppParam"}) {
            debug->SetAttribute(key, " -O0 -g+");
        }
        debug->SetAttribute("ADS_GArmAsmParam", " -keep -split_ldm -g");
        debug->SetAttribute("ADS_FromELFParam", " -elf");
        debug->SetAttribute("SIMCLK", "12.000000");
        const char* const storage[][5] = {{"0", "0", "8000", "c:\\boot.bin", "Yes"},
                                          {"1", "20000000", "10000", "c:\\Data.bin", "No"}};
        for (size_t i = 0; i < 2; ++i) {
            auto* row = new ConfigNode("StorageNode" + std::to_string(i));
            const char* const keys[] = {"Type", "StartAddress", "Size", "LoadFile", "ShouldDownLoad"};
            for (size_t k = 0; k < 5; ++k) row->SetAttribute(keys[k], storage[i][k]);
            debug->AppendChild(row);
        }
        configs->AppendChild(debug);
        auto* files = new ConfigNode("Files");
        project->AppendChild(files);
        folder = new ConfigNode("Filter");
        folder->SetAttribute("Name", "Sources");
        files->AppendChild(folder);
        c_file = AddFile(folder, "src\\main.c", 1);
        asm_file = AddFile(files, "src\\boot.s", 2);
        app = std::make_unique<plugin::Application>(fake.platform);
        table = app->GetInterface();
        host.FillSlots(table);
        table->InstallTool(project.get());
        table->SetCurrentTarget(1, "Debug");
        target = debug;
    }

    // ShowSettings on `node` while `drive` runs on a second thread once the
    // window is visible (or with no window after 20 s). Returns the slot's
    // answer; *shown_after is the time from the call to the visible window.
    int Show(ConfigNode* node, const std::function<void(WindowDriver&)>& drive, double* shown_after,
             bool* seen = nullptr) {
        const auto start = std::chrono::steady_clock::now();
        bool found = false;
        std::thread driver([&] {
            WindowDriver d;
            found = d.Wait("ADS ARM Settings", 20);
            if (shown_after != nullptr) {
                *shown_after = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            }
            if (found) drive(d);
        });
        const int answer = table->ShowSettings(node);
        driver.join();
        if (seen != nullptr) *seen = found;
        return answer;
    }

    FakeHost host;
    FakePlatform fake;
    std::unique_ptr<ConfigNode> project;
    ConfigNode* target = nullptr;
    ConfigNode* folder = nullptr;  // "Sources", which holds the C file
    ConfigNode* c_file = nullptr;
    ConfigNode* asm_file = nullptr;
    std::unique_ptr<plugin::Application> app;
    PluginInterface* table = nullptr;

private:
    static ConfigNode* AddFile(ConfigNode* files, const char* path, int type) {
        auto* f = new ConfigNode("File");
        f->SetAttribute("RelativePath", path);
        f->SetAttributeInt("FileType", type);
        files->AppendChild(f);
        return f;
    }
};

}  // namespace ads::testing
