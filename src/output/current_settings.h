// Every setting with the value that it has now, as lines of a Specification that can be read again.
//
// Models, scales, labels and `Dvalues=` are not among them: the anchor file has blocks for these.
// The names of the report and of the anchor file stand behind ";", so that a run of the lines does
// not write over the files of this one.
//
// Tested by tests/unit/output/anchor_file_test.cpp.
#ifndef FLANKS_OUTPUT_CURRENT_SETTINGS_H
#define FLANKS_OUTPUT_CURRENT_SETTINGS_H

#include <string>

#include "output/specification_lines.h"
#include "run/design.h"
#include "run/settings.h"

namespace flanks {

void WriteCurrentSettings(const Settings& settings, const Design& design,
                          SpecificationLines& lines);

// "Umean = 50, 10, 1": mean, scale and decimals.
std::string UnitsLine(const Settings& settings);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_CURRENT_SETTINGS_H
