#include "debug/arm_debug_page.h"

#include <cstdlib>

#include "config/defaults.h"
#include "config/node_text.h"
#include "config/project_keys.h"
#include "debug/debug_options.h"
#include "debug/driver_config.h"
#include "options/target_pages.h"
#include "options/text_page.h"

namespace ads::debug {

namespace {

using config::Text;
using options::EditControl;

const char kHardwareEmulation[] = "Hardware Emulation";
const char kSoftwareSimulation[] = "Software Simulation";
const char kDriverFieldLabel[] = "Target Driver DLL:";
const char kNoDriver[] = "";

enum ArmDebugControl {
    kMode,
    kDriver,
    kDriverDll,
    kConfigure,
    kFlash,
    kDriverText,
    kEmuScript,
    kClock,
    kSimScript,
    kRowCount,
    kFirstCell
};

int CellControl(size_t row, int column) { return kFirstCell + static_cast<int>(row) * kColumnCount + column; }

options::PageDescription Describe() {
    options::PageDescription d{options::kArmDebugItem, -1, 0, {}};
    d.controls.push_back(options::ComboControl("Debug mode:", {kHardwareEmulation, kSoftwareSimulation}));
    d.controls.push_back(options::ComboControl("Target driver:", {kNoDriver}, kHardwareEmulation));
    d.controls.push_back(EditControl(kDriverFieldLabel, kHardwareEmulation));
    // The driver's own dialog, through the host's simulator library.
    for (const char* button : {"config", "flash"}) {
        options::Control c{};
        c.kind = options::ControlKind::kButton;
        c.label = button;
        c.group = kHardwareEmulation;
        d.controls.push_back(c);
    }
    d.controls.push_back(EditControl("Driver configuration:", kHardwareEmulation));
    d.controls.push_back(EditControl("Emulator init script:", kHardwareEmulation));
    d.controls.push_back(EditControl("Simulation clock:", kSoftwareSimulation));
    d.controls.push_back(EditControl("Simulator init script:", kSoftwareSimulation));
    d.controls.push_back(EditControl("Storage rows:", kSoftwareSimulation));
    for (size_t row = 0; row < kMaxStorageRows; ++row) {
        const std::string group = "Row " + std::to_string(row);
        for (int column = 0; column < kColumnCount; ++column) {
            options::Control cell = EditControl(StorageColumnTitle(column));
            cell.group = group;
            cell.cell_row = static_cast<int>(row);
            d.controls.push_back(cell);
        }
    }
    return d;
}

class ArmDebugPage : public options::TextPage {
public:
    ArmDebugPage(platform::Platform& platform, const AdsHostContext& host)
        : TextPage(Describe()), platform_(platform), host_(host) {}

    bool Enabled(int control) const override {
        if (control == kDriverDll || control == kDriverText) return false;  // show, never take
        if (control == kConfigure || control == kFlash) return ChosenDriver() != nullptr;
        if (control >= kFirstCell) return static_cast<size_t>((control - kFirstCell) / kColumnCount) < rows_.size();
        return true;
    }

    std::string Set(int control, const std::string& value) override {
        if (control < kFirstCell && control != kRowCount) {
            const std::string refused = TextPage::Set(control, value);
            if (refused.empty() && control == kDriver) ShowDriverLibrary();
            return refused;
        }
        if (!Enabled(control)) return "disabled";
        std::string message;
        if (control == kRowCount) {
            char* end = nullptr;
            const long count = std::strtol(value.c_str(), &end, 10);
            if (value.empty() || *end != '\0' || count < 0) return "takes a number of rows from 0 to 32";
            while (rows_.size() < static_cast<size_t>(count)) {
                if (!AddStorageRow(&rows_, &message)) return message;
            }
            rows_.resize(static_cast<size_t>(count));
        } else {
            const size_t row = static_cast<size_t>((control - kFirstCell) / kColumnCount);
            if (!EditStorageCell(&rows_[row], (control - kFirstCell) % kColumnCount, value, &message)) return message;
        }
        ShowRows();
        return {};
    }

    bool Presses(int control) const override { return control == kConfigure || control == kFlash; }

    // The configuration the library leaves becomes the target's on OK.
    std::string Press(int control) override {
        const DriverEntry* driver = ChosenDriver();
        if (!Presses(control) || driver == nullptr) return "choose a listed target driver first";
        std::string text = Value(kDriverText);
        if (ConfigureDriver(*platform_.libraries, host_, *driver, control == kFlash ? 1 : 0, &text)) {
            Put(kDriverText, text);
        }
        ShowDriverLibrary();
        return {};
    }

    std::string Check(int control, const std::string& value) const override {
        double clock = 0;
        if (control == kClock && !ReadClock(value, &clock)) return kClockInputError;
        return {};
    }

    void Load(const options::DialogContext& context) override {
        const ConfigNode* c = context.configuration;
        DriverList list(*platform_.registry, *platform_.ui);
        drivers_ = list.Enumerate();
        std::vector<options::Choice> choices{{kNoDriver, 0}};
        for (const DriverEntry& e : drivers_) {
            choices.push_back({FormatChosenDriver(e.kind, e.number), static_cast<int>(choices.size())});
        }
        description_.controls[kDriver].choices = choices;

        const std::string packed = Text(c, config::kDebugOptionsKey);
        std::string field;
        const bool emulation = PackedField(packed, 1, &field) && std::atoi(field.c_str()) == 0;
        Put(kMode, emulation ? kHardwareEmulation : kSoftwareSimulation);
        std::string chosen = PackedField(packed, 2, &field) ? field : "";
        bool listed = false;
        for (const options::Choice& choice : choices) listed = listed || choice.label == chosen;
        Put(kDriver, listed ? chosen : kNoDriver);
        ShowDriverLibrary();
        Put(kDriverText, Text(c, config::kServeDebugOptionsKey));
        Put(kEmuScript, Text(c, config::kInitScriptEmuKey));
        Put(kClock, Text(c, config::kSimClockKey));
        Put(kSimScript, Text(c, config::kInitScriptSimKey));
        rows_ = c != nullptr ? ReadStorageRows(*c) : std::vector<StorageRow>{};
        ShowRows();
        TakeAsLoaded();
    }

    void Default() override {
        Put(kMode, kSoftwareSimulation);
        Put(kDriver, kNoDriver);
        ShowDriverLibrary();
        Put(kEmuScript, "");
        Put(kSimScript, "");
        rows_.clear();
        ShowRows();
    }

    void Save(const options::DialogContext& context) override {
        if (!Changed()) return;
        config::EditNode(*context.host, context.configuration, [&](ConfigNode* c) {
            std::string packed = Text(c, config::kDebugOptionsKey);
            if (packed.empty()) packed = config::kDefaultDebugOptions;
            std::string mode;
            PackedField(packed, 1, &mode);
            const bool emulation = Value(kMode) == kHardwareEmulation;
            if (emulation || std::atoi(mode.c_str()) == 0) mode = emulation ? "0" : "1";
            std::string fields[7];
            for (int n = 1; n <= 7; ++n) PackedField(packed, n, &fields[n - 1]);
            fields[0] = mode;
            if (ControlChanged(kDriver) && !Value(kDriver).empty()) fields[1] = Value(kDriver);
            packed = fields[0];
            for (int n = 1; n < 6; ++n) packed += "," + fields[n];
            const DriverEntry* driver = ChosenDriver();
            packed = WithDriverLibrary(packed, driver != nullptr ? driver->path
                                                                 : fields[6].size() >= 2
                                                                       ? fields[6].substr(1, fields[6].size() - 2)
                                                                       : std::string(kNoDriverLibrary));
            c->SetAttribute(config::kDebugOptionsKey, packed);
            if (ControlChanged(kDriverText)) c->SetAttribute(config::kServeDebugOptionsKey, Value(kDriverText));
            c->SetAttribute(config::kInitScriptEmuKey, Value(kEmuScript));
            c->SetAttribute(config::kInitScriptSimKey, Value(kSimScript));
            double clock = 0;
            if (ControlChanged(kClock) && ReadClock(Value(kClock), &clock)) {
                c->SetAttribute(config::kSimClockKey, config::FormatSimulatorClock(clock));
            }
            WriteStorageRows(c, rows_);
        });
        TakeAsLoaded();
    }

private:
    const DriverEntry* ChosenDriver() const {
        for (const DriverEntry& e : drivers_) {
            if (FormatChosenDriver(e.kind, e.number) == Value(kDriver)) return &e;
        }
        return nullptr;
    }

    // The library of the chosen driver when it loads, else "Invalid drive".
    void ShowDriverLibrary() {
        const DriverEntry* driver = ChosenDriver();
        platform::LibraryHandle library = driver != nullptr ? platform_.libraries->Load(driver->path) : nullptr;
        if (library == nullptr) {
            Put(kDriverDll, kInvalidDrive);
            return;
        }
        platform_.libraries->Free(library);
        Put(kDriverDll, driver->path + "\t");
    }

    void ShowRows() {
        Put(kRowCount, std::to_string(rows_.size()));
        for (size_t row = 0; row < kMaxStorageRows; ++row) {
            for (int column = 0; column < kColumnCount; ++column) {
                Put(CellControl(row, column), row < rows_.size() ? StorageCell(rows_[row], column) : "");
            }
        }
    }

    platform::Platform& platform_;
    const AdsHostContext& host_;
    std::vector<DriverEntry> drivers_;
    std::vector<StorageRow> rows_;
};

}  // namespace

std::unique_ptr<options::StoredPage> MakeArmDebugPage(platform::Platform& platform, const AdsHostContext& host) {
    return std::make_unique<ArmDebugPage>(platform, host);
}

}  // namespace ads::debug
