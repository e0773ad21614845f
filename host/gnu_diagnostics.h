// The output pane's diagnostics in the form that editors and terminals
// jump from: the plug-in writes "src\util.c(12): Error: C2456E: ..." and
// orvhost prints "src/util.c:12: error: C2456E: ...".
//
// A line is a diagnostic when it starts with a file name, "(", a line
// number, "):" and a severity word: "Warning:" becomes "warning:",
// "Error:", "Serious error:" and "Fatal error:" become "error:". The name
// gets the machine's separators; a relative name is taken from the project
// folder and shown relative to the folder orvhost was started in when it
// lies below it, else in full. Every other line stays as written, and so
// does every line end.
#pragma once

#include <string>
#include <utility>

#include "platform/platform.h"

namespace ads::host {

class GnuDiagnostics {
public:
    // Both folders full paths.
    GnuDiagnostics(platform::FileSystem& files, std::string project_folder, std::string current_folder);

    std::string Rewrite(const std::string& pane) const;

private:
    std::string RewriteLine(const std::string& line) const;
    std::string DisplayPath(const std::string& name) const;

    platform::FileSystem& files_;
    std::string project_;
    std::string current_;
};

}  // namespace ads::host
