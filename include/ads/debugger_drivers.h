// Facts of the user's debugger driver list that the plug-in and a host both
// rely on: where the host's debugger keeps it in the registry (under
// HKEY_CURRENT_USER) and how a library shows which kind of driver it is.
#pragma once

namespace ads {

inline constexpr char kDebuggerKey[] = "Software\\Orvane\\Orvane3\\Debuggers\\ArmDebugger";
// The list key ends in a backslash, and a kind's key is the list key, one
// more backslash and the kind's sub-key: "...TargetDlls\\RDIs", the doubled
// backslash kept as the debugger writes it. In a kind's key each value is a
// driver: its name the driver's number in decimal, its data the library.
inline constexpr char kDriverListKey[] = "Software\\Orvane\\Orvane3\\Debuggers\\ArmDebugger\\TargetDlls\\";

// Indexed by kind: RDI 0, JDI 1, AGDI 2.
inline constexpr int kDriverKindCount = 3;
inline constexpr const char* kDriverKindSubKeys[kDriverKindCount] = {"RDIs", "JDIs", "AGDIs"};
inline constexpr const char* kDriverKindTexts[kDriverKindCount] = {"RDI", "JDI", "AGDI"};
// The export that proves a library to be of the kind.
inline constexpr const char* kDriverKindExports[kDriverKindCount] = {"WinRDI_GetRDIProcVec", "GetJDI", "AG_Init"};
// The host's simulator library, in the host's installation folder, and its
// export that configures a driver (see AdsDriverConfigRequest).
inline constexpr char kSimulatorLibrary[] = "SArm.dll";
inline constexpr char kConfigureDriverExport[] = "ConfigXDI";
// A library exporting several is of the first kind in this order.
inline constexpr int kDriverProbeOrder[kDriverKindCount] = {2, 0, 1};
// The order in which the kinds are listed.
inline constexpr int kDriverListOrder[kDriverKindCount] = {0, 2, 1};

}  // namespace ads
