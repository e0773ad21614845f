// "Access Paths": the folders the compilers and the linker search, as two
// lists: "User Paths" (the -I entries) and "System Paths" (the -J entries).
// The page owns the target's "SearchPath".
//
// An entry is the path as the target stores it between its quotes: it may
// start with "{Project}", "{Compiler}" or "{System}" (one kind per entry,
// because the build replaces only the first kind), and a final "*" asks
// for the folder and all its subfolders ("{Compiler}Include*"). A list is
// set whole, entries separated by ';' or by line ends, so adding, changing,
// removing and reordering are each one new list.
//
// The stored text is read the way the build reads it. The page writes the
// user entries, then the system entries, each as ` -I"path" ` or
// ` -J"path" `, which is the form of a new target's value
// (` -I".*"  -J"{Compiler}Include*"  -J"{Compiler}Lib*" `); a target whose
// lists the user did not change keeps its text byte for byte.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "options/dialog_page.h"

namespace ads::options {

inline constexpr char kAccessPathsItem[] = "Access Paths";

std::unique_ptr<StoredPage> MakeAccessPathsPage();

// The entries of a "SearchPath" text, and the text of two lists.
struct SearchPathLists {
    std::vector<std::string> user;    // -I
    std::vector<std::string> system;  // -J
};
SearchPathLists ReadSearchPathLists(const std::string& value);
std::string WriteSearchPathLists(const SearchPathLists& lists);

}  // namespace ads::options
