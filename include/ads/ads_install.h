// Facts of an ADS installation that the plug-in and a host both rely on:
// the registry entries the ADS installer writes and the tools' file names.
#pragma once

namespace ads {

// Under HKEY_LOCAL_MACHINE. The default value of the CurrentVersion key
// names the installed version; the key of that version (the prefix followed
// by the name) holds the installation's folder under kAdsHomeValue.
inline constexpr char kAdsCurrentVersionKey[] = "SOFTWARE\\ARM Limited\\ARM Developer Suite\\CurrentVersion";
inline constexpr char kAdsVersionKeyPrefix[] = "SOFTWARE\\ARM Limited\\ARM Developer Suite\\";
inline constexpr char kAdsHomeValue[] = "ARMHOME";

// The eight tools, in the order of the toolchain record (plugin_abi.h).
inline constexpr int kAdsToolCount = 8;
inline constexpr const char* kAdsToolExecutables[kAdsToolCount] = {
    "armasm.exe", "armcc.exe", "armcpp.exe", "tcc.exe", "tcpp.exe", "armlink.exe", "fromelf.exe", "armar.exe",
};

}  // namespace ads
