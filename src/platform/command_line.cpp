// Command lines as the Microsoft C runtime reads them, and the quoting that
// writes one argument so that it reads back unchanged. Both backends use the
// splitter: the POSIX runner to build argv, the tests to check the quoting.
#include "platform/platform.h"

#include <cstdio>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

#include "platform/text.h"

namespace ads::platform {

std::vector<std::string> SplitCommandLine(const std::string& command_line) {
    std::vector<std::string> words;
    if (command_line.empty()) return words;

    const size_t size = command_line.size();
    size_t i = 0;

    // The program name: quotes switch quoting on and off and are dropped, a
    // backslash is an ordinary character (it is a path), and a blank outside
    // quotes ends the word. A command line that starts with a blank has an
    // empty program name, as it has for the runtime.
    std::string program;
    bool in_quotes = false;
    for (; i < size; ++i) {
        const char c = command_line[i];
        if (c == '"') {
            in_quotes = !in_quotes;
        } else if (!in_quotes && IsSpaceOrTab(c)) {
            ++i;  // the blank belongs to neither word
            break;
        } else {
            program += c;
        }
    }
    words.push_back(program);

    // The arguments.
    for (;;) {
        while (i < size && IsSpaceOrTab(command_line[i])) ++i;
        if (i >= size) break;

        std::string word;
        in_quotes = false;
        while (i < size) {
            size_t backslashes = 0;
            while (i < size && command_line[i] == '\\') {
                ++backslashes;
                ++i;
            }
            if (i < size && command_line[i] == '"') {
                word.append(backslashes / 2, '\\');
                if (backslashes % 2 == 1) {
                    word += '"';  // an escaped quote
                } else if (in_quotes && i + 1 < size && command_line[i + 1] == '"') {
                    // A doubled quote inside quotes is one literal quote and
                    // quoting goes on: the rule of the runtimes since 2008
                    // (the older msvcrt left quoting after it).
                    word += '"';
                    ++i;
                } else {
                    in_quotes = !in_quotes;
                }
                ++i;
                continue;
            }
            // Backslashes that do not lead up to a quote are literal.
            word.append(backslashes, '\\');
            if (i >= size) break;
            const char c = command_line[i];
            if (!in_quotes && IsSpaceOrTab(c)) break;
            word += c;
            ++i;
        }
        words.push_back(word);
    }
    return words;
}

std::string QuoteArgument(const std::string& argument) {
    const bool needs_quotes =
        argument.empty() || argument.find_first_of(" \t\"") != std::string::npos;
    if (!needs_quotes) return argument;  // backslashes are literal without a quote

    std::string quoted = "\"";
    size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '\\') {
            ++backslashes;
            continue;
        }
        if (c == '"') {
            // 2n+1 backslashes: n of them and a literal quote.
            quoted.append(backslashes * 2 + 1, '\\');
        } else {
            quoted.append(backslashes, '\\');
        }
        backslashes = 0;
        quoted += c;
    }
    // Backslashes before the closing quote are doubled so that it still closes.
    quoted.append(backslashes * 2, '\\');
    quoted += '"';
    return quoted;
}

bool IsAbsolutePath(const std::string& path) {
    return path.find(':') != std::string::npos || (!path.empty() && path[0] == '/');
}

void UseBinaryStandardStreams() {
#ifdef _WIN32
    std::fflush(stdout);
    std::fflush(stderr);
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
}

bool StandardOutputIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stdout)) != 0;
#else
    return isatty(fileno(stdout)) != 0;
#endif
}

}  // namespace ads::platform
