// The plug-in's entry points as the host sees them: plain functions that
// reach the active application object. No exception leaves the module: each
// slot catches what its work throws, says so on the trace channel
// ("ads_plugin: slot 36 GetFileBuildText: <what>") and answers as for a
// failure.
#include "plugin/slots.h"

#include <exception>
#include <string>

#include "plugin/application.h"

namespace ads::plugin {

namespace {

// A slot as the trace names it.
struct SlotName {
    int index;
    const char* name;
};

void ReportCaught(Application& app, SlotName slot, const char* what) {
    // The report must not throw in its turn.
    try {
        app.Trace("ads_plugin: slot " + std::to_string(slot.index) + " " + slot.name + ": " + what);
    } catch (...) {
    }
}

template <typename R, typename F>
R Guard(SlotName slot, R failure, F&& work) {
    Application* app = Application::Active();
    if (app == nullptr) return failure;
    try {
        return work(*app);
    } catch (const std::exception& e) {
        ReportCaught(*app, slot, e.what());
    } catch (...) {
        ReportCaught(*app, slot, "unknown exception");
    }
    return failure;
}

template <typename F>
void GuardVoid(SlotName slot, F&& work) {
    Guard(slot, 0, [&](Application& a) { return work(a), 0; });
}

int ADS_CALL SlotAttach(const AdsHostContext* context) {
    return Guard({0, "Attach"}, 0, [&](Application& a) { return a.Attach(context); });
}
void ADS_CALL SlotInstallTool(AdsNode* node) {
    GuardVoid({1, "InstallTool"}, [&](Application& a) { a.InstallTool(node); });
}
void ADS_CALL SlotSetCurrentTarget(AdsWord word, const char* target) {
    GuardVoid({2, "SetCurrentTarget"}, [&](Application& a) { a.SetCurrentTarget(word, target); });
}
int ADS_CALL SlotShowSettings(AdsNode* node) {
    return Guard({3, "ShowSettings"}, node ? 0 : -1, [&](Application& a) { return a.ShowSettings(node); });
}
int ADS_CALL SlotImportProject(const char* path, int arg) {
    return Guard({4, "ImportProject"}, 0, [&](Application& a) { return a.ImportProject(path, arg); });
}
int ADS_CALL SlotBuildTarget(AdsWord arg) {
    return Guard({5, "BuildTarget"}, 0, [&](Application& a) { return a.BuildTarget(arg); });
}
int ADS_CALL SlotCompileFile(AdsNode* file) {
    return Guard({6, "CompileFile"}, 0, [&](Application& a) { return a.CompileFile(file); });
}
AdsWord ADS_CALL SlotHostCall34Forward(AdsWord p, AdsWord q, AdsWord r, AdsWord s) {
    return Guard({7, "HostCall34Forward"}, AdsWord{0}, [&](Application& a) { return a.ForwardHostCall34(p, q, r, s); });
}
void ADS_CALL SlotClean(void) {
    GuardVoid({8, "Clean"}, [&](Application& a) { a.Clean(); });
}
void ADS_CALL SlotOnEvent(int32_t code, const char* text) {
    GuardVoid({9, "OnEvent"}, [&](Application& a) { a.OnEvent(code, text); });
}
int ADS_CALL SlotGetDebugOptions(AdsDebugRequest* request) {
    return Guard({10, "GetDebugOptions"}, 0, [&](Application& a) { return a.GetDebugOptions(request); });
}
// The callbacks slot 10 hands the debugger: traced under its number.
void ADS_CALL DebugSetDriverLibrary(const char* path) {
    GuardVoid({10, "SetDriverLibrary"}, [&](Application& a) { a.SetDebugDriverLibrary(path); });
}
void ADS_CALL DebugSetAppFile(const char* path) {
    GuardVoid({10, "SetAppFile"}, [&](Application& a) { a.SetDebugAppFile(path); });
}
void ADS_CALL DebugSetDebuggerText(const char* text) {
    GuardVoid({10, "SetDebuggerText"}, [&](Application& a) { a.SetDebuggerText(text); });
}
void ADS_CALL SlotReserved11(void) {}
int ADS_CALL SlotLookupKeyed(const char* key, AdsWord buffer, AdsWord size, AdsWord) {
    return Guard({20, "LookupKeyed"}, 0, [&](Application& a) { return a.LookupKeyed(key, buffer, size); });
}
AdsWord ADS_CALL SlotGetSearchPath(const char* text, int arg, AdsWord word) {
    return Guard({21, "GetSearchPath"}, AdsWord{0}, [&](Application& a) { return a.GetSearchPath(text, arg, word); });
}
int ADS_CALL SlotReserved22(AdsWord, AdsWord, AdsWord) { return 0; }
int ADS_CALL SlotReserved35(void) { return 0; }
const char* ADS_CALL SlotGetFileBuildText(char* text, AdsWord project, AdsNode* node, int flag) {
    return Guard({36, "GetFileBuildText"}, static_cast<const char*>(text),
                 [&](Application& a) { return a.GetFileBuildText(text, project, node, flag); });
}
void ADS_CALL SlotParseOutput(const char* text, int flags) {
    GuardVoid({37, "ParseOutput"}, [&](Application& a) { a.ParseOutput(text, flags); });
}

}  // namespace

void WriteDebugCallbacks(AdsDebugBlock* block) {
    block->SetDriverLibrary = DebugSetDriverLibrary;
    block->SetAppFile = DebugSetAppFile;
    block->SetDebuggerText = DebugSetDebuggerText;
}

void WritePluginSlots(PluginInterface* t) {
    t->Attach = SlotAttach;
    t->InstallTool = SlotInstallTool;
    t->SetCurrentTarget = SlotSetCurrentTarget;
    t->ShowSettings = SlotShowSettings;
    t->ImportProject = SlotImportProject;
    t->BuildTarget = SlotBuildTarget;
    t->CompileFile = SlotCompileFile;
    t->HostCall34Forward = SlotHostCall34Forward;
    t->Clean = SlotClean;
    t->OnEvent = SlotOnEvent;
    t->GetDebugOptions = SlotGetDebugOptions;
    t->Reserved11 = SlotReserved11;
    t->LookupKeyed = SlotLookupKeyed;
    t->GetSearchPath = SlotGetSearchPath;
    t->Reserved22 = SlotReserved22;
    t->Reserved35 = SlotReserved35;
    t->GetFileBuildText = SlotGetFileBuildText;
    t->ParseOutput = SlotParseOutput;
}

}  // namespace ads::plugin
