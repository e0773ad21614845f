#include "import/export_reader.h"

#include <tinyxml.h>

#include <memory>
#include <utility>

#include "config/path_macros.h"
#include "import/export_filter.h"
#include "import/panel_readers.h"
#include "import/panel_text.h"
#include "import/project_files.h"
#include "platform/platform.h"
#include "platform/text.h"

namespace ads::import {

namespace {

// The text of an element's text child, "" when it has none.
std::string TextOf(const TiXmlElement* element) {
    const char* text = element != nullptr ? element->GetText() : nullptr;
    return text != nullptr ? text : "";
}

std::string ChildText(const TiXmlElement* element, const char* child) {
    return element != nullptr ? TextOf(element->FirstChildElement(child)) : std::string();
}

bool Is(const TiXmlElement* element, const char* value) { return element->ValueStr() == value; }

// The macro a "PathRoot" value stands for, or null.
const char* MacroOfRoot(const std::string& root) {
    if (root == "CodeWarrior") return config::kCompilerMacro;
    if (root == "Project") return config::kProjectMacro;
    if (root == "System") return config::kSystemMacro;
    return nullptr;
}

// The macro and the path with one backslash between them, added only where
// neither side has one.
std::string JoinMacro(const std::string& macro, const std::string& path) {
    if (macro.empty()) return path;
    const bool has = (!macro.empty() && macro.back() == '\\') || (!path.empty() && path.front() == '\\');
    return has ? macro + path : macro + "\\" + path;
}

bool BeginsWith(const std::string& text, const char* prefix) {
    return text.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

class Reader {
public:
    Reader(const ReaderOptions& options, const std::string& export_folder, ImportModel* model)
        : options_(options), model_(model) {
        folder_ = export_folder;
        model_->folder = export_folder;
        if (options_.files != nullptr) {
            macros_ = config::MakePathMacros(export_folder, options_.compiler_home, *options_.files);
        } else {
            macros_.project = config::WithTrailingBackslash(export_folder);
            macros_.compiler = config::CompilerMacroValue(options_.compiler_home);
            macros_.system = "\\";
        }
    }

    void ScanFolder() {
        if (options_.files != nullptr) files_.Scan(*options_.files, folder_);
    }

    // The file's text goes once it is filtered, and the filtered copy once
    // TinyXML has parsed it: an export is held once at a time.
    bool Read(std::string text) {
        FilteredExport filtered;
        if (!FilterExport(text, &filtered, &model_->failure)) return false;
        std::string().swap(text);
        if (ElementDepth(filtered.text, kMaxElementDepth) > kMaxElementDepth) {
            return Fail("elements are nested more than " + std::to_string(kMaxElementDepth) + " levels deep");
        }
        // Texts are 8-bit and pass through as they stand: read as UTF-8, a
        // Latin-1 byte before a '<' would swallow the tag.
        if (platform::StartsWithByteOrderMark(filtered.text)) filtered.text.erase(0, 3);
        // Element by element when the text allows: TinyXML's tree of a whole
        // export is many times its size, one target or group is small.
        const ImportModel before = *model_;
        if (ReadInPieces(filtered.text)) return true;
        *model_ = before;
        // Created after the filter, gone when the read returns, either way.
        auto document = std::make_unique<TiXmlDocument>();
        document->Parse(filtered.text.c_str(), nullptr, TIXML_ENCODING_LEGACY);
        std::string().swap(filtered.text);
        if (document->Error()) {
            const int row = document->ErrorRow();
            const size_t index = row > 0 ? static_cast<size_t>(row - 1) : 0;
            const int line = index < filtered.source_lines.size() ? filtered.source_lines[index] : row;
            return Fail(std::string("not readable as XML: ") + document->ErrorDesc() + " (line " +
                        std::to_string(line) + ")");
        }
        const TiXmlElement* project = document->FirstChildElement("PROJECT");
        if (project == nullptr) return Fail("no PROJECT element");
        for (const TiXmlElement* e = project->FirstChildElement(); e != nullptr; e = e->NextSiblingElement()) {
            if (Is(e, "TARGETLIST")) {
                ReadTargets(e);
            } else if (Is(e, "TARGETORDER")) {
                for (const TiXmlElement* o = e->FirstChildElement(); o != nullptr; o = o->NextSiblingElement()) {
                    model_->target_order.push_back(ChildText(o, "NAME"));
                }
            } else if (Is(e, "GROUPLIST")) {
                ReadGroups(e);
            }
        }
        return true;
    }

    // The lists' entries (targets, order entries, groups) are cut out of the
    // text and the rest is parsed; then each entry is parsed and read alone.
    // False, with the model part-filled, when any of these parses is not
    // clean: the whole text is parsed then, for the message it gives.
    bool ReadInPieces(const std::string& text) {
        std::vector<std::vector<TextRange>> entries;
        if (!ThirdLevelElements(text, &entries)) return false;
        std::string outline;
        size_t from = 0;
        for (const auto& list : entries) {
            for (const TextRange& r : list) {
                outline.append(text, from, r.begin - from);
                from = r.end;
            }
        }
        outline.append(text, from, std::string::npos);
        TiXmlDocument document;
        document.Parse(outline.c_str(), nullptr, TIXML_ENCODING_LEGACY);
        const TiXmlElement* project = document.RootElement();
        if (document.Error() || project == nullptr || !Is(project, "PROJECT")) return false;
        size_t index = 0;
        for (const TiXmlElement* e = project->FirstChildElement(); e != nullptr; e = e->NextSiblingElement()) {
            if (index >= entries.size() || e->FirstChildElement() != nullptr) return false;
            const std::vector<TextRange>& list = entries[index++];
            const bool targets = Is(e, "TARGETLIST");
            bool list_ended = false;  // the entries after it are still parsed: the text must be clean
            for (size_t i = 0; i < list.size(); ++i) {
                TiXmlDocument piece;
                piece.Parse(text.substr(list[i].begin, list[i].end - list[i].begin).c_str(), nullptr,
                            TIXML_ENCODING_LEGACY);
                const TiXmlElement* entry = piece.RootElement();
                if (piece.Error() || entry == nullptr || entry->NextSiblingElement() != nullptr) return false;
                if (list_ended) continue;
                if (targets) {
                    std::string why;
                    if (ReadTarget(entry, &why)) continue;
                    NoteTargetListEnd(why, list.size() - i - 1);
                    list_ended = true;
                } else if (Is(e, "TARGETORDER")) {
                    model_->target_order.push_back(ChildText(entry, "NAME"));
                } else if (Is(e, "GROUPLIST")) {
                    ReadEntries(entry, nullptr, &model_->groups);
                }
            }
        }
        return index == entries.size();
    }

    bool Fail(const std::string& why) {
        model_->failure = why;
        return false;
    }

private:
    void Note(const std::string& text) { model_->notes.push_back(text); }
    static bool Failed(const std::string& text, std::string* why) {
        *why = text;
        return false;
    }

    // A target that fails to read ends the list: the targets before it stay.
    void ReadTargets(const TiXmlElement* list) {
        for (const TiXmlElement* t = list->FirstChildElement(); t != nullptr; t = t->NextSiblingElement()) {
            std::string why;
            if (ReadTarget(t, &why)) continue;
            size_t after = 0;
            for (const TiXmlElement* n = t->NextSiblingElement(); n != nullptr; n = n->NextSiblingElement()) ++after;
            NoteTargetListEnd(why, after);
            return;
        }
    }

    void NoteTargetListEnd(const std::string& why, size_t after) {
        Note(why + "; the target list ends there: " +
             (after == 0 ? std::string("it is left out")
                         : "it and the " + std::to_string(after) + " target(s) after it are left out"));
    }

    bool ReadTarget(const TiXmlElement* element, std::string* why) {
        ImportTarget target;
        target.name = TextOf(element->FirstChildElement());
        const std::string which = "target " + std::to_string(model_->targets.size() + 1) + " ('" + target.name + "')";
        const TiXmlElement* list = element->FirstChildElement("SETTINGLIST");
        if (list == nullptr) return Failed(which + " has no SETTINGLIST", why);
        for (const TiXmlElement* e = list->FirstChildElement(); e != nullptr; e = e->NextSiblingElement()) {
            if (Is(e, "SETTING")) {
                const std::string name = ChildText(e, "NAME");
                if (name.empty()) return Failed(which + ": a SETTING without NAME", why);
                if (name == "UserSearchPaths") {
                    ReadSearchPaths(e, target, &target.user_paths);
                } else if (name == "SystemSearchPaths") {
                    ReadSearchPaths(e, target, &target.system_paths);
                } else if (name == "Linker") {
                    ReadLinker(e, &target.linker);
                } else if (name == "FileMappings") {
                    ReadMappings(e, &target.mappings);
                }
            } else if (Is(e, "PANELDATA")) {
                const std::string name = ChildText(e, "NAME");
                if (name.empty()) return Failed(which + ": a PANELDATA without NAME", why);
                ReadPanelData(e, name, target);
            }
        }
        if (target.name.empty()) Note(which + " has no name");
        model_->targets.push_back(std::move(target));
        model_->target_count = model_->targets.size();
        return true;
    }

    void ReadPanelData(const TiXmlElement* e, const std::string& name, ImportTarget& target) {
        const std::string value = ChildText(e, "VALUE");
        if (name == kDebugChoicePanel) {
            target.debug_choice += DecodePanelText(value, kDebugChoiceHexName);
            return;
        }
        const PanelKind kind = PanelOfName(name);
        if (kind == kPanelCount) {
            Note("target '" + target.name + "': panel '" + name + "' is not an ADS panel; left out");
            return;
        }
        const std::string text = DecodePanelText(value, kPanelHexNames[kind]);
        if (text.empty()) {
            Note("target '" + target.name + "': panel '" + name + "' holds no " + kPanelToolNames[kind] +
                 " options; the panel's defaults are used");
        }
        target.panels[kind] = ReadPanel(kind, text);
        for (const std::string& line : target.panels[kind].unknown) {
            Note("target '" + target.name + "', " + kPanelToolNames[kind] + ": option '" + line +
                 "' is not known; left out");
        }
    }

    // Each child SETTING is one entry, made of SETTINGs with NAME and VALUE.
    void ReadSearchPaths(const TiXmlElement* list, const ImportTarget& target, std::vector<SearchPath>* out) {
        for (const TiXmlElement* entry = list->FirstChildElement("SETTING"); entry != nullptr;
             entry = entry->NextSiblingElement("SETTING")) {
            std::string path, root;
            bool recursive = false;
            for (const TiXmlElement* part = entry->FirstChildElement("SETTING"); part != nullptr;
                 part = part->NextSiblingElement("SETTING")) {
                const std::string name = ChildText(part, "NAME");
                if (name == "SearchPath") {
                    // Path and PathRoot nest in SearchPath in real exports.
                    for (const TiXmlElement* s = part->FirstChildElement("SETTING"); s != nullptr;
                         s = s->NextSiblingElement("SETTING")) {
                        const std::string inner = ChildText(s, "NAME");
                        if (inner == "Path") path = ChildText(s, "VALUE");
                        if (inner == "PathRoot") root = ChildText(s, "VALUE");
                    }
                } else if (name == "PathRoot") {
                    root = ChildText(part, "VALUE");
                } else if (name == "Recursive") {
                    const std::string value = ChildText(part, "VALUE");
                    if (value == "true") recursive = true;
                    if (value == "false") recursive = false;
                }
            }
            const char* macro = MacroOfRoot(root);
            std::string joined = JoinMacro(macro != nullptr ? macro : "", path);
            if (joined.empty()) {
                Note("target '" + target.name + "': a search path without a path; left out");
                continue;
            }
            out->push_back(SearchPath{std::move(joined), recursive});
        }
    }

    // The VALUE texts of "Linker" and of the three SETTINGs after it.
    void ReadLinker(const TiXmlElement* setting, LinkerSetting* linker) {
        std::string values[4];
        const TiXmlElement* e = setting;
        for (int i = 0; i < 4 && e != nullptr; ++i, e = e->NextSiblingElement("SETTING")) {
            values[i] = ChildText(e, "VALUE");
        }
        linker->present = true;
        // "None" names no linker; as a post-linker it is the plug-in's own
        // word for no step after the link, and stays.
        linker->linker = values[0] == "None" ? std::string() : values[0];
        linker->pre_linker = values[1];
        linker->post_linker = values[2];
        linker->output = values[3].empty() || values[3] == "None" ? config::kProjectMacro : values[3];
    }

    // The first three child SETTINGs of each mapping, by position.
    void ReadMappings(const TiXmlElement* list, std::vector<FileMapping>* out) {
        for (const TiXmlElement* m = list->FirstChildElement("SETTING"); m != nullptr;
             m = m->NextSiblingElement("SETTING")) {
            std::string fields[3];
            int count = 0;
            for (const TiXmlElement* f = m->FirstChildElement("SETTING"); f != nullptr && count < 3;
                 f = f->NextSiblingElement("SETTING")) {
                fields[count++] = ChildText(f, "VALUE");
            }
            if (count < 3) return;
            out->push_back(FileMapping{fields[0], fields[1], fields[2]});
        }
    }

    void ReadGroups(const TiXmlElement* list) {
        ReadEntries(list->FirstChildElement(), nullptr, &model_->groups);
    }

    // FILEREF elements are files; at the top every other element is a group,
    // inside a group (`group` its path, "A/B") only GROUP elements are. A
    // group's first child holds its name, and is a file too when it is a
    // FILEREF. The nesting is bounded by kMaxElementDepth.
    void ReadEntries(const TiXmlElement* first, const std::string* group, std::vector<GroupEntry>* out) {
        const std::string where = group != nullptr ? *group : std::string();
        for (const TiXmlElement* e = first; e != nullptr; e = e->NextSiblingElement()) {
            if (Is(e, "FILEREF")) {
                GroupEntry file;
                if (ReadFileRef(e, where, &file.file)) out->push_back(std::move(file));
                continue;
            }
            if (group != nullptr && !Is(e, "GROUP")) continue;
            GroupEntry inner;
            inner.is_group = true;
            const TiXmlElement* name = e->FirstChildElement();
            inner.name = TextOf(name);
            const std::string path = where.empty() ? inner.name : where + "/" + inner.name;
            if (name != nullptr && Is(name, "FILEREF")) {
                GroupEntry file;
                if (ReadFileRef(name, path, &file.file)) inner.entries.push_back(std::move(file));
            }
            if (name != nullptr) ReadEntries(name->NextSiblingElement(), &path, &inner.entries);
            out->push_back(std::move(inner));
        }
    }

    bool ReadFileRef(const TiXmlElement* ref, const std::string& group, FileRef* out) {
        const std::string name = ChildText(ref, "PATH");
        const std::string where = group.empty() ? std::string() : " in group '" + group + "'";
        if (name.empty()) {
            Note("a file reference without PATH" + where + " is left out");
            return false;
        }
        const std::string access = ChildText(ref, "ACCESSPATH");
        if (!access.empty()) {
            *out = FileRef{name, access + name};
            return true;
        }
        if (const std::string* full = files_.Find(name)) {
            *out = FileRef{name, files_.Relative(*full)};
            return true;
        }
        std::string found;
        if (FindOnSearchPaths(name, &found)) {
            *out = FileRef{name, found};
            return true;
        }
        Note("file '" + name + "'" + where + " is neither below the export's folder nor on a user search path; left out");
        return false;
    }

    // Each user search path in turn, as folder, backslash, name; the first
    // that exists. A path from the project's folder is written from ".".
    bool FindOnSearchPaths(const std::string& name, std::string* found) {
        if (options_.files == nullptr) return false;
        for (const ImportTarget& target : model_->targets) {
            for (const SearchPath& search : target.user_paths) {
                const std::string candidate = search.path + "\\" + name;
                std::string on_disk = config::ReplaceOneMacroKind(candidate, macros_);
                const bool relative = on_disk == candidate && !platform::IsAbsolutePath(candidate) &&
                                      (candidate.empty() || candidate[0] != '\\');
                if (relative) on_disk = platform::JoinPath(folder_, candidate);
                // A macro's value ends with a backslash and the join adds one.
                on_disk = options_.files->FullPath(on_disk);
                if (!options_.files->FileExists(on_disk)) continue;
                if (BeginsWith(candidate, config::kProjectMacro)) {
                    *found = "." + candidate.substr(std::char_traits<char>::length(config::kProjectMacro));
                } else if (relative) {
                    *found = ".\\" + candidate;
                } else {
                    *found = on_disk;
                }
                return true;
            }
        }
        return false;
    }

    const ReaderOptions& options_;
    ImportModel* model_;
    std::string folder_;
    config::PathMacros macros_;
    ProjectFiles files_;
};

void Clear(ImportModel* model) {
    model->targets.clear();
    model->target_count = 0;
    model->target_order.clear();
    model->groups.clear();
    model->notes.clear();
}

}  // namespace

bool ReadExportText(const std::string& text, const std::string& export_folder, const ReaderOptions& options,
                    ImportModel* model) {
    *model = ImportModel();
    Reader reader(options, export_folder, model);
    reader.ScanFolder();
    if (reader.Read(text)) return true;
    Clear(model);
    return false;
}

bool ReadExport(const std::string& path, const ReaderOptions& options, ImportModel* model) {
    *model = ImportModel();
    if (options.files == nullptr) {
        model->failure = "cannot read the file";
        return false;
    }
    const std::string full = options.files->FullPath(path);
    const std::string folder = platform::DirectoryOf(full);
    Reader reader(options, folder, model);
    reader.ScanFolder();
    std::string text;
    if (!options.files->ReadFile(full, &text)) {
        Clear(model);
        return reader.Fail("cannot read the file");
    }
    if (reader.Read(std::move(text))) return true;
    Clear(model);
    return false;
}

}  // namespace ads::import
