#include "command_line.h"

#include <cctype>

#include "paths.h"

namespace fakeads {
namespace {

constexpr int kViaDepthLimit = 8;

// How many leading characters of a name an abbreviation must keep: its capitals.
size_t MandatoryLength(const char* name) {
    size_t length = 0;
    while (name[length] != '\0' && !std::islower(static_cast<unsigned char>(name[length]))) ++length;
    return length;
}

// The word after its "-" names the whole switch.
bool NamesSwitch(const SwitchTable& table, const Switch& entry, const std::string& word) {
    const std::string name = entry.name;
    switch (table.spelling) {
        case Spelling::kExact: return word == name;
        case Spelling::kCaseless: return Lower(word) == Lower(name);
        case Spelling::kAbbreviated:
            return word.size() >= MandatoryLength(entry.name) && word.size() <= name.size() &&
                   Lower(name).compare(0, word.size(), Lower(word)) == 0;
    }
    return false;
}

// The word after its "-" starts with the switch's name (its mandatory part
// for an abbreviated table) and goes on with a value.
bool StartsWithSwitch(const SwitchTable& table, const Switch& entry, const std::string& word,
                      std::string* value) {
    std::string name = entry.name;
    if (table.spelling == Spelling::kAbbreviated) name = name.substr(0, MandatoryLength(entry.name));
    if (word.size() <= name.size()) return false;
    const std::string head = word.substr(0, name.size());
    const bool match = table.spelling == Spelling::kExact ? head == name : Lower(head) == Lower(name);
    if (match) *value = word.substr(name.size());
    return match;
}

bool HasValue(Value value) { return value != Value::kNone; }

bool IsAttached(Value value) {
    return value == Value::kAttached || value == Value::kAttachedOptional || value == Value::kAttachedOrNext;
}

class Reader {
public:
    Reader(const SwitchTable& table, CommandLine* out, std::string* error)
        : table_(table), out_(out), error_(error) {}

    bool Read(const std::vector<std::string>& words, int depth) {
        for (size_t i = 0; i < words.size(); ++i) {
            const std::string& word = words[i];
            if (word.size() < 2 || word[0] != '-') {
                out_->inputs.push_back(word);
                continue;
            }
            const std::string name = word.substr(1);
            const Switch* entry = nullptr;
            std::string value;
            bool attached = false;
            for (const Switch& candidate : table_.switches) {
                if (NamesSwitch(table_, candidate, name)) {
                    entry = &candidate;
                    break;
                }
            }
            if (entry == nullptr) {
                size_t longest = 0;
                for (const Switch& candidate : table_.switches) {
                    std::string glued;
                    const size_t length = std::string(candidate.name).size();
                    if (IsAttached(candidate.value) && length > longest &&
                        StartsWithSwitch(table_, candidate, name, &glued)) {
                        entry = &candidate;
                        value = glued;
                        attached = true;
                        longest = length;
                    }
                }
            }
            if (entry == nullptr) {
                if (table_.letters_cluster && ReadCluster(word)) continue;
                *error_ = "Unrecognised option '" + word + "'.";
                return false;
            }
            if (!attached) {
                const bool has_next = i + 1 < words.size();
                switch (entry->value) {
                    case Value::kNone:
                    case Value::kAttachedOptional: break;
                    case Value::kAttached:
                        *error_ = "Option '" + word + "' needs an argument.";
                        return false;
                    case Value::kNext:
                    case Value::kNextMayBeEmpty:
                    case Value::kAttachedOrNext:
                        if (!has_next) {
                            *error_ = "Option '" + word + "' needs an argument.";
                            return false;
                        }
                        value = words[++i];
                        break;
                    case Value::kOptionalNext:
                        if (has_next && entry->takes_next != nullptr && entry->takes_next(words[i + 1])) {
                            value = words[++i];
                        }
                        break;
                }
            }
            // A glued value is named after its switch ("-O"), a separate one
            // after the word as written ("-CPU").
            if (!Check(*entry, attached ? "-" + std::string(entry->name) : word, value)) return false;
            if (Lower(entry->name) == "via") {
                if (!ReadVia(value, depth)) return false;
                continue;
            }
            out_->options.push_back(Option{Key(*entry), word, value});
        }
        return true;
    }

private:
    std::string Key(const Switch& entry) const {
        return table_.spelling == Spelling::kExact ? std::string(entry.name) : Lower(entry.name);
    }

    bool Check(const Switch& entry, const std::string& word, const std::string& value) {
        const bool needs_value = entry.value == Value::kNext || entry.value == Value::kAttached ||
                                 entry.value == Value::kAttachedOrNext;
        // A value that may be left out is checked only when it is there.
        const bool checked = entry.check != nullptr && HasValue(entry.value) && (needs_value || !value.empty());
        std::string why;
        if ((needs_value && value.empty()) || (checked && !entry.check(value, &why))) {
            *error_ = "Bad argument '" + value + "' for option '" + word + "'" +
                      (why.empty() ? std::string() : ": " + why) + ".";
            return false;
        }
        return true;
    }

    bool ReadCluster(const std::string& word) {
        std::vector<Option> letters;
        for (size_t k = 1; k < word.size(); ++k) {
            const std::string letter(1, word[k]);
            const Switch* found = nullptr;
            for (const Switch& candidate : table_.switches) {
                if (candidate.value == Value::kNone && NamesSwitch(table_, candidate, letter)) found = &candidate;
            }
            if (found == nullptr) return false;
            letters.push_back(Option{Key(*found), "-" + letter, std::string()});
        }
        out_->options.insert(out_->options.end(), letters.begin(), letters.end());
        return true;
    }

    bool ReadVia(const std::string& file, int depth) {
        std::string text;
        if (depth >= kViaDepthLimit) {
            *error_ = "Via files nested too deeply at '" + file + "'.";
            return false;
        }
        if (!ReadFile(file, &text)) {
            *error_ = "Could not open via file '" + file + "'.";
            return false;
        }
        return Read(SplitWords(text), depth + 1);
    }

    const SwitchTable& table_;
    CommandLine* out_;
    std::string* error_;
};

}  // namespace

bool CommandLine::Has(const std::string& key) const {
    for (const Option& option : options) {
        if (option.key == key) return true;
    }
    return false;
}

std::string CommandLine::Last(const std::string& key, const std::string& otherwise) const {
    std::string value = otherwise;
    for (const Option& option : options) {
        if (option.key == key) value = option.value;
    }
    return value;
}

std::vector<std::string> CommandLine::All(const std::string& key) const {
    std::vector<std::string> values;
    for (const Option& option : options) {
        if (option.key == key) values.push_back(option.value);
    }
    return values;
}

bool ReadCommandLine(const SwitchTable& table, const std::vector<std::string>& words, CommandLine* out,
                     std::string* error) {
    Reader reader(table, out, error);
    return reader.Read(words, 0);
}

std::vector<std::string> SplitWords(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    bool in_word = false;
    bool quoted = false;
    for (size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (!quoted && (c == ' ' || c == '\t' || c == '\r' || c == '\n')) {
            if (in_word) words.push_back(word);
            word.clear();
            in_word = false;
            ++i;
            continue;
        }
        in_word = true;
        if (c == '\\') {
            size_t count = 0;
            while (i < text.size() && text[i] == '\\') ++count, ++i;
            if (i < text.size() && text[i] == '"') {
                word.append(count / 2, '\\');
                if (count % 2 == 1) {
                    word += '"';
                    ++i;
                }
            } else {
                word.append(count, '\\');
            }
            continue;
        }
        if (c == '"') {
            // Inside quotes, "" is a literal quote (and the quoting ends).
            if (quoted && i + 1 < text.size() && text[i + 1] == '"') {
                word += '"';
                i += 2;
                quoted = false;
                continue;
            }
            quoted = !quoted;
            ++i;
            continue;
        }
        word += c;
        ++i;
    }
    if (in_word) words.push_back(word);
    return words;
}

bool IsNumber(const std::string& value, std::string* why) {
    size_t start = 0;
    int base = 10;
    if (value.size() > 2 && value[0] == '0' && (value[1] == 'x' || value[1] == 'X')) {
        start = 2;
        base = 16;
    } else if (!value.empty() && value[0] == '&') {  // the ARM tools' own hex prefix
        start = 1;
        base = 16;
    }
    if (start >= value.size()) {
        *why = "not a number";
        return false;
    }
    for (size_t i = start; i < value.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(value[i]);
        if (base == 16 ? !std::isxdigit(c) : !std::isdigit(c)) {
            *why = "not a number";
            return false;
        }
    }
    if (value.size() - start > (base == 16 ? 8u : 10u)) {
        *why = "out of range";
        return false;
    }
    if (base == 10 && std::stoull(value) > 0xffffffffull) {
        *why = "out of range";
        return false;
    }
    return true;
}

bool IsNonNegativeInteger(const std::string& value, std::string* why) {
    if (value.empty() || value.size() > 9 ||
        value.find_first_not_of("0123456789") != std::string::npos) {
        *why = "not a whole number";
        return false;
    }
    return true;
}

}  // namespace fakeads
