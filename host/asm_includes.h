// The files an assembler source pulls in with GET or INCLUDE. The assembler
// answers no -M, so orvhost reads the sources itself to know when an
// assembler file must be assembled again.
//
// A line is [label] [directive [operand]] [; comment]: a label starts in the
// first column, the directive is written in capitals or in small letters as
// the assembler accepts it (GET, get, INCLUDE, include), and the operand
// names the file, with or without double quotes. END ends a file.
//
// A name is looked for beside the file that names it, beside the source, in
// the project folder (the assembler's working folder) and in the -I and -J
// folders of the assembler's command line, in that order; an absolute name
// only where it says. Every file found is read in turn, each once.
#pragma once

#include <string>
#include <vector>

#include "platform/platform.h"

namespace ads::host {

// The full paths of the files that `source` (a full path) pulls in, directly
// or through other included files; a name found nowhere is left out.
// `command` is the command line that assembles the source.
std::vector<std::string> AssemblerIncludes(platform::FileSystem& files, const std::string& source,
                                           const std::string& project_folder, const std::string& command);

}  // namespace ads::host
