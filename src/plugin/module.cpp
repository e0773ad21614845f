// The module's one application object and its one export. Only the plug-in
// module links this file: the object's destructor may end the process,
// which no test program must inherit.
#include "ads/plugin_abi.h"
#include "plugin/application.h"

namespace {
ads::plugin::Application g_application(ads::platform::System());
}  // namespace

extern "C" ADS_EXPORT PluginInterface* ADS_CALL GetInterface(void) {
    return g_application.GetInterface();
}
