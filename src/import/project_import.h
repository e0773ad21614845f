// Import of a project exported by the CodeWarrior IDE.
#pragma once

#include "ads/config_node.h"
#include "config/host_api.h"

namespace ads::import {

// Imports the export at path into the project; 0 when it could not.
int ImportProject(config::HostApi& host, ConfigNode* project, const char* path, int arg);

}  // namespace ads::import
