#include "diagnostics.h"

namespace fakeads {

const char* SeverityWord(Severity severity) {
    switch (severity) {
        case Severity::kWarning: return "Warning";
        case Severity::kError: return "Error";
        case Severity::kSerious: return "Serious error";
        case Severity::kFatal: return "Fatal error";
    }
    return "Error";
}

std::string CountOf(int count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void Report::Count(Severity severity) {
    switch (severity) {
        case Severity::kWarning: ++warnings_; break;
        case Severity::kError: ++errors_; break;
        case Severity::kSerious: ++serious_; break;
        case Severity::kFatal: ++fatal_; break;
    }
}

void Report::AtLine(const std::string& file, int line, Severity severity, const std::string& message) {
    Count(severity);
    *out_ += "\"" + file + "\", line " + std::to_string(line) + ": " + SeverityWord(severity) + ": " +
             message + "\n";
}

void Report::General(Severity severity, const std::string& message) {
    Count(severity);
    *out_ += std::string(SeverityWord(severity)) + ": " + message + "\n";
}

void Report::Line(const std::string& text) { *out_ += text + "\n"; }

std::string Report::SummaryLine(const std::string& file) const {
    if (warnings_ == 0 && errors_ == 0 && serious_ == 0) return std::string();
    return file + ": " + CountOf(warnings_, "warning") + ", " + CountOf(errors_, "error") + ", " +
           CountOf(serious_, "serious error") + "\n";
}

std::string Report::FinishedLine() const {
    // The linker has no serious errors of its own: they count as errors.
    const int errors = errors_ + serious_;
    std::string line = "Finished: 0 information, " + std::to_string(warnings_) + " warning";
    if (fatal_ > 0) {
        line += ", " + std::to_string(errors) + " error and " + std::to_string(fatal_) + " fatal error";
    } else {
        line += " and " + std::to_string(errors) + " error";
    }
    return line + " messages.\n";
}

}  // namespace fakeads
