// libFuzzer target of the debug options: the packed "ADS_OPTDBG" text, a
// storage node's attributes and a chosen-driver text, taken from the input
// as pieces separated by zero bytes.
//
// Besides not crashing, it checks what must hold for any input:
//   - the options read; the driver library is either the two double quotes
//     or the one registered library, never the text as it stood otherwise;
//   - replacing field 7 keeps fields 1 to 6 and reads back as the library
//     wrapped in parentheses (a library without a comma);
//   - a storage node reads a download flag of 0 or 1, and the row written
//     back reads the same again;
//   - a chosen-driver text of a known kind prints and parses to itself.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "debug/debug_options.h"
#include "support/fake_platform.h"

namespace {

using namespace ads;
using namespace ads::debug;

void Require(bool condition) {
    if (!condition) std::abort();
}

const char kRegistered[] = "C:\\drv\\rdi.dll";

bool SameRow(const StorageRow& a, const StorageRow& b) {
    return a.type == b.type && a.start == b.start && a.size == b.size && a.load_file == b.load_file &&
           a.download == b.download;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<std::string> pieces(1);
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            pieces.emplace_back();
        } else {
            pieces.back() += static_cast<char>(data[i]);
        }
    }
    pieces.resize(8);
    const std::string& packed = pieces[0];

    static ads::testing::FakePlatform fake;
    static bool registered = false;
    if (!registered) {
        fake.registry.Set(platform::RegistryRoot::kCurrentUser, KindKey(DriverKind::kRdi), "0", kRegistered);
        registered = true;
    }
    DriverList drivers(fake.registry, fake.ui);

    ConfigNode target("Configuration");
    target.SetAttribute("ADS_OPTDBG", packed);
    auto* node = new ConfigNode("StorageNode3");
    const char* const keys[] = {"Type", "StartAddress", "Size", "LoadFile", "ShouldDownLoad"};
    for (size_t i = 0; i < 5; ++i) node->SetAttribute(keys[i], pieces[1 + i]);
    target.AppendChild(node);

    DebugOptions options;
    Require(ReadDebugOptions(target, drivers, &options));
    Require(options.driver_library == kNoDriverLibrary || options.driver_library == kRegistered);
    Require(options.has_storage[3]);
    Require(options.storage[3].download == 0 || options.storage[3].download == 1);

    const std::string& library = pieces[6];
    if (library.find(',') == std::string::npos) {
        const std::string replaced = WithDriverLibrary(packed, library);
        std::string field;
        Require(PackedField(replaced, 7, &field) && field == "(" + library + ")");
        for (int n = 1; n < 7; ++n) {
            std::string before;
            std::string after;
            if (PackedField(packed, n, &before)) Require(PackedField(replaced, n, &after) && after == before);
        }
    }

    WriteStorageRows(&target, {options.storage[3]});
    const std::vector<StorageRow> back = ReadStorageRows(target);
    Require(back.size() == 1 && SameRow(back[0], options.storage[3]));

    DriverKind kind = DriverKind::kUnknown;
    int number = 0;
    if (ParseChosenDriver(pieces[7], &kind, &number) && kind != DriverKind::kUnknown) {
        DriverKind again = DriverKind::kUnknown;
        int number_again = -1;
        Require(ParseChosenDriver(FormatChosenDriver(kind, number), &again, &number_again));
        Require(again == kind && number_again == number);
    }
    return 0;
}
