// Configuring a target driver through the host's simulator library: the
// library comes from the host's installation folder, its ConfigXDI gets the
// driver's kind and library, the mode (0 "config", 1 "flash") and the
// target's driver configuration text, which it may rewrite.
#pragma once

#include <string>

#include "ads/plugin_abi.h"
#include "debug/driver_list.h"
#include "platform/platform.h"

namespace ads::debug {

// True when ConfigXDI ran: *text is then what it left in the request. A
// missing library or export does nothing, silently, and leaves *text.
bool ConfigureDriver(platform::Libraries& libraries, const AdsHostContext& host, const DriverEntry& driver, int mode,
                     std::string* text);

}  // namespace ads::debug
