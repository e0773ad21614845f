// Running orvhost as a user does, for the end-to-end tests: the program
// beside the test program, its arguments quoted by Windows rules, standard
// output and standard error together.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "support/temp_folder.h"

namespace ads::testing {

struct Outcome {
    int status;
    std::string output;
};

inline std::string OrvhostExecutable() {
    return platform::System().files->ExecutableDirectory() + "/orvhost" +
           platform::test_support::kExecutableSuffix;
}

inline Outcome RunOrvhost(const std::string& exe, const std::vector<std::string>& args,
                          const std::string& working_directory, size_t limit = 1 << 22) {
    std::string line = platform::QuoteArgument(exe);
    for (const std::string& a : args) line += " " + platform::QuoteArgument(a);
    platform::RunResult r = platform::System().runner->Run(line, working_directory, limit);
    EXPECT_TRUE(r.started) << r.error;
    return {r.exit_code, r.output};
}

}  // namespace ads::testing
