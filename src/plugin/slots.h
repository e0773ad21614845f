#pragma once

#include "ads/plugin_abi.h"

namespace ads::plugin {

// Writes every plug-in slot of the table; host and idle slots are left as
// they are.
void WritePluginSlots(PluginInterface* table);

// Installs the debugger's three write-back callbacks in a debug block.
void WriteDebugCallbacks(AdsDebugBlock* block);

}  // namespace ads::plugin
