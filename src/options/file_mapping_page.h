// "File Mappings": which tool translates the files of each extension. The
// page owns the target's "ADS_FileMap".
//
// The page is one list, "Mappings", of entries "extension=tool": the
// extension with its dot, the tool by its name on this page ("ARM
// Assembler", "ARM C Compiler", "Thumb C Compiler", "ARM C++ Compiler",
// "Thumb C++ Compiler"), for example ".s=ARM Assembler;.c=ARM C Compiler".
// Every entry is a checked row; an extension the list does not hold is not
// mapped. The list is set whole (add, change, remove and reorder alike).
//
// The stored string holds three groups, assembler, C and C++, each its
// extensions joined by "&&" before "@" and the tool's word:
// "(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)". The list shows the entries
// group by group in the order the string names them, and writes them back
// in that order; a list set in another order (or with blanks around the
// '=') is shown at once as it will be stored. The C files of a target go to one C compiler and the C++
// files to one C++ compiler, so the page refuses a list that names both of
// a pair; a list without C entries makes the C group "@tcc" (and likewise
// "@tcpp"), which sends the target's C files to the Thumb compiler. A
// target whose list the user did not change keeps its text byte for byte.
#pragma once

#include <memory>
#include <string>

#include "options/dialog_page.h"

namespace ads::options {

inline constexpr char kFileMappingsItem[] = "File Mappings";

std::unique_ptr<StoredPage> MakeFileMappingsPage();

// The list's text of a mapping string, and the mapping string of a list.
std::string MappingList(const std::string& map);
std::string MappingString(const std::string& list);

}  // namespace ads::options
