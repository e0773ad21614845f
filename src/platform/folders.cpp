#include "platform/folders.h"

#include <vector>

namespace ads::platform {

void MakeFoldersOf(FileSystem& files, const std::string& path) {
    std::vector<std::string> missing;
    std::string folder = path;
    for (;;) {
        const size_t cut = folder.find_last_of("/\\");
        if (cut == std::string::npos || cut == 0) break;
        folder.resize(cut);
        if (folder.back() == ':' || files.IsDirectory(folder)) break;
        missing.push_back(folder);
    }
    for (size_t i = missing.size(); i-- > 0;) files.MakeDir(missing[i]);
}

}  // namespace ads::platform
