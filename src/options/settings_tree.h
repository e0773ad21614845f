// The tree of the settings dialog for each scope it is opened with, the
// caption of each page item and the tabs of the tool entries.
#pragma once

#include <string>
#include <vector>

namespace ads::options {

// What the dialog was opened on: a C file, an assembler file, a C++ file,
// a folder (all languages), the project (the whole target); any other
// number shows "Property" only. The same numbers are a file's "FileType".
enum DialogScope : int { kScopeC = 1, kScopeAssembler = 2, kScopeCpp = 3, kScopeAll = 7, kScopeTarget = 8 };

// The image of a tree item.
enum TreeImage : int { kImageGroup = 0, kImagePage = 1, kImageRoot = 2 };

struct TreeItem {
    std::string label;
    int image;
    int depth;  // 0: the root and the groups; 1: a page under the item above
};

std::vector<TreeItem> SettingsTree(int scope);

// The caption shown above the page of a tree item, found by comparing the
// item's text with the page names in their fixed order; null for a group,
// the root or a text that names no page.
const char* PageCaption(const std::string& item);

// The tool entries and their tabs.
extern const char* const kAssemblerTabs[];  // ended by a null entry
extern const char* const kCompilerTabs[];
extern const char* const kLinkerTabs[];

}  // namespace ads::options
