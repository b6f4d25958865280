// R itself: its script, where it is, running it.
//
// R is looked for on PATH, then in the folder that R_HOME names.  It runs as a child without a
// terminal: the script is its input, a log takes what it says.
//
// Tested by tests/unit/output/hand_offs_test.cpp.
#ifndef FLANKS_OUTPUT_R_PROGRAM_H
#define FLANKS_OUTPUT_R_PROGRAM_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

// The script that reads the tab-separated text with a heading line into the object and saves it.
// Columns of labels are read as text.
std::string RScript(std::string_view textName, std::string_view targetName,
                    std::string_view objectName, const std::vector<bool>& isLabel = {});

// The profile that loads the file when R starts, and removes itself.
std::string RProfile(std::string_view targetName, std::string_view profileName);

// The program; empty when there is none.
std::string FindR();

// Runs "R --no-restore --no-save" on the script and waits for it; `isStopped` is asked ten times a
// second, and ends R when true.  Gives its exit status, -1 when it could not be started or was
// ended.
int RunR(const std::string& program, const std::string& scriptName, const std::string& logName,
         const std::function<bool()>& isStopped);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_R_PROGRAM_H
