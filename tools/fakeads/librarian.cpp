// armar: armar -r|-d|-x|-t [-c] [-v] archive [members...]
#include "command_line.h"
#include "diagnostics.h"
#include "file_formats.h"
#include "paths.h"
#include "tools.h"

namespace fakeads {
namespace {

// Single letters that may be written together: "-rcv".
const SwitchTable& LibrarianSwitches() {
    static const SwitchTable table{
        {
            {"r"},  // add or replace members (creates the archive)
            {"d"},  // delete members
            {"x"},  // extract members
            {"t"},  // list members
            {"c"},  // create without complaint; alone it adds like -r
            {"v"},  // say what is done
            {"s"},  // keep a symbol table (always kept here)
            {"u"},  // replace only newer members (every member is replaced here)
            {"n"},  // no symbol table
            {"via", Value::kNext},
            {"vsn"},
        },
        Spelling::kCaseless,
        true,
    };
    return table;
}

class Librarian {
public:
    Librarian(const ToolInfo& tool, std::string* out) : tool_(tool), out_(out), report_(&diagnostics_) {}

    int Run(const std::vector<std::string>& words) {
        std::string error;
        if (!ReadCommandLine(LibrarianSwitches(), words, &line_, &error)) {
            report_.General(Severity::kFatal, "L6800U: " + error);
            return Finish(kExitFailure);
        }
        if (line_.Has("vsn")) *out_ += std::string(tool_.banner) + "\n";
        int commands = 0;
        for (const char* command : {"r", "d", "x", "t"}) commands += line_.Has(command) ? 1 : 0;
        if (commands == 0 && line_.Has("c")) commands = 1;
        if (commands != 1) {
            if (commands == 0 && line_.Has("vsn") && line_.inputs.empty()) return kExitSuccess;
            report_.General(Severity::kFatal, "L6801U: Give exactly one of -r, -d, -x and -t.");
            return Finish(kExitFailure);
        }
        if (line_.inputs.empty()) {
            report_.General(Severity::kFatal, "L6802U: No library file given.");
            return Finish(kExitFailure);
        }
        archive_ = line_.inputs[0];
        names_.assign(line_.inputs.begin() + 1, line_.inputs.end());
        // -c alone creates (and adds) as -r does.
        const bool adding = line_.Has("r") || (!line_.Has("d") && !line_.Has("x") && !line_.Has("t"));
        if (!LoadArchive(adding)) return Finish(kExitFailure);
        bool ok = true;
        if (adding) ok = Add();
        else if (line_.Has("d")) ok = Delete();
        else if (line_.Has("x")) ok = Extract();
        else List();
        return Finish(ok && !report_.Failed() ? kExitSuccess : kExitFailure);
    }

private:
    bool LoadArchive(bool may_create) {
        std::string text;
        if (!ReadFile(archive_, &text)) {
            if (may_create) return true;
            report_.General(Severity::kFatal, "L6803U: Could not open file " + archive_ + ": No such file or directory");
            return false;
        }
        if (!ReadArchive(text, &members_)) {
            report_.General(Severity::kFatal, "L6804U: " + archive_ + " is not a library of this toolchain.");
            return false;
        }
        return true;
    }

    bool Save() {
        if (!WriteFile(archive_, WriteArchive(members_))) {
            report_.General(Severity::kFatal, "L6805U: Could not write library " + archive_ + ".");
            return false;
        }
        return true;
    }

    bool Add() {
        for (const std::string& path : names_) {
            std::string data;
            if (!ReadFile(path, &data)) {
                report_.General(Severity::kFatal, "L6803U: Could not open file " + path + ": No such file or directory");
                return false;
            }
            ObjectFile object;
            if (!ReadObject(data, &object)) {
                report_.General(Severity::kFatal, "L6806U: " + path + " is not an object of this toolchain.");
                return false;
            }
            const std::string name = FileName(path);
            bool replaced = false;
            for (ArchiveMember& member : members_) {
                if (member.name == name) {
                    member.data = data;
                    replaced = true;
                }
            }
            if (!replaced) members_.push_back(ArchiveMember{name, data});
            if (line_.Has("v")) *out_ += std::string(replaced ? "r - " : "a - ") + name + "\n";
        }
        return Save();
    }

    bool Delete() {
        for (const std::string& path : names_) {
            const std::string name = FileName(path);
            bool found = false;
            for (size_t i = 0; i < members_.size(); ++i) {
                if (members_[i].name == name) {
                    members_.erase(members_.begin() + static_cast<long>(i));
                    found = true;
                    break;
                }
            }
            if (!found) report_.General(Severity::kWarning, "L6807W: " + name + " is not a member of " + archive_ + ".");
            if (found && line_.Has("v")) *out_ += "d - " + name + "\n";
        }
        return Save();
    }

    bool Extract() {
        for (const ArchiveMember& member : members_) {
            bool wanted = names_.empty();
            for (const std::string& path : names_) wanted = wanted || FileName(path) == member.name;
            if (!wanted) continue;
            if (!WriteFile(member.name, member.data)) {
                report_.General(Severity::kFatal, "L6808U: Could not write file " + member.name + ".");
                return false;
            }
            if (line_.Has("v")) *out_ += "x - " + member.name + "\n";
        }
        for (const std::string& path : names_) {
            bool found = false;
            for (const ArchiveMember& member : members_) found = found || member.name == FileName(path);
            if (!found) report_.General(Severity::kWarning, "L6807W: " + FileName(path) + " is not a member of " + archive_ + ".");
        }
        return true;
    }

    void List() {
        for (const ArchiveMember& member : members_) {
            *out_ += member.name;
            if (line_.Has("v")) *out_ += "  " + std::to_string(member.data.size());
            *out_ += "\n";
        }
    }

    // Messages end with the linker's closing line, so that the IDE counts
    // them the same way.
    int Finish(int status) {
        *out_ += diagnostics_;
        if (!report_.Empty()) *out_ += report_.FinishedLine();
        return status;
    }

    const ToolInfo& tool_;
    std::string* out_;
    std::string diagnostics_;
    Report report_;
    CommandLine line_;
    std::string archive_;
    std::vector<std::string> names_;
    std::vector<ArchiveMember> members_;
};

}  // namespace

int RunLibrarian(const ToolInfo& tool, const std::vector<std::string>& words, std::string* out) {
    return Librarian(tool, out).Run(words);
}

}  // namespace fakeads
