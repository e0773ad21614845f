// Making the folders a file is to be written into.
#pragma once

#include <string>

#include "platform/platform.h"

namespace ads::platform {

// Makes every missing folder above the file at `path`, outermost first. It
// stops at the first folder that exists, at a drive ("C:") and at the
// root; a folder that cannot be made is left to the write that follows.
void MakeFoldersOf(FileSystem& files, const std::string& path);

}  // namespace ads::platform
