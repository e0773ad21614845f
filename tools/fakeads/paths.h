// Paths as the tools see them: spelled the Windows way on the command line
// (backslashes, relative to the working directory) and turned into the
// system's spelling only at the moment a file is opened.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/text.h"

namespace fakeads {

// The spelling the operating system takes: "\" becomes "/" except on Windows.
std::string SystemPath(const std::string& path);

// The directory part of a path as spelled, with its separator ("src\" for
// "src\main.c"), empty when the path has none.
std::string DirectoryPart(const std::string& path);
// The name after the last "\" or "/" (FileName) and that name without its
// last extension (StemOf: "main" for "src\main.c").
using ads::platform::FileName;
using ads::platform::StemOf;
// A directory joined with a name: a "\" goes between them unless the
// directory is empty or already ends in a separator.
using ads::platform::JoinPath;

bool FileExists(const std::string& path);
bool DirectoryExists(const std::string& path);
// The directory and every folder below it, the directory first, then depth
// first in name order, each spelled as the directory joined with the names.
std::vector<std::string> DirectoryTree(const std::string& directory);

bool ReadFile(const std::string& path, std::string* contents);
bool WriteFile(const std::string& path, const std::string& contents);
// Removes a stale output; a file that is not there is fine.
void RemoveFile(const std::string& path);

// FNV-1a, 64 bits: the same value on every host, unlike std::hash.
uint64_t Fingerprint(const std::string& data);
std::string Hex64(uint64_t value);
std::string Hex32(uint32_t value);  // "0x00008000"

}  // namespace fakeads
