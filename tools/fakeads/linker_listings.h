// What armlink prints on request (-info, -map, -symbols) and the side
// files it writes (-symdefs, -callgraph).
#pragma once

#include <string>
#include <vector>

#include "file_formats.h"

namespace fakeads {

// -info with a comma-separated list of topics.
std::string InfoListing(const std::string& topics, const ImageFile& image, const std::vector<ObjectFile>& objects);
std::string MapListing(const ImageFile& image);
std::string SymbolListing(const ImageFile& image, const std::vector<ObjectFile>& objects);
// "#<SYMDEFS># ARM Linker, ADS1.2 [Build 848]: Last Updated: <date>", then
// one "0x00008000 A main" line per global symbol (T for Thumb code).
std::string SymdefsFile(const std::string& banner, const std::string& date, const ImageFile& image,
                        const std::vector<ObjectFile>& objects);
std::string CallGraph(const std::string& image_name, const ImageFile& image);

}  // namespace fakeads
