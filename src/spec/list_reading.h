// What the handlers of lists share: fields that may be missing, the lines of a list, faults with
// their place, and the text files that keep a list.
#ifndef FLANKS_SPEC_LIST_READING_H
#define FLANKS_SPEC_LIST_READING_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/text_work_file.h"
#include "run/faults.h"
#include "spec/spec_context.h"

namespace flanks {

constexpr std::string_view kSpecificationName = "Specification";  // in faults
constexpr std::string_view kExtraSpecificationsName = "Extra specifications";

// As much of a line as a message shows.
std::string_view ShownPart(std::string_view line);

// Field `index` of the current line, or nothing when the line has fewer.
std::string_view FieldAt(const ReadState& reading, int index);

// Fetches the next line of a list.  False when there is none: at "*", which is taken; at a line
// with a keyword, which stays in the fields for the main loop; at the end of the Specification; and
// on a fault.
bool NextListLine(SpecContext& context);

// Makes `fault` the pending one, with `text`, or when that is empty the current line, in front.
void SetSpecificationFault(ReadState& reading, Fault fault, std::string_view text = {});
// Likewise with a number within its words.
void SetNumberedFault(ReadState& reading, Fault fault, std::int64_t number,
                      std::string_view text = {});

// Likewise for a fault that shows when the lists are put together: `line` is where its entry stands
// in the Specification; 0 when it stands in no line.
void SetFaultOfLine(ReadState& reading, Fault fault, std::int64_t line, std::string_view text);

// The text work file of a list, made when it is not there yet.  `caller` is named when that fails,
// which ends the run.
TextWorkFile& OpenListFile(SpecContext& context, std::unique_ptr<TextWorkFile>& file,
                           std::string_view title, std::string_view caller);

}  // namespace flanks

#endif  // FLANKS_SPEC_LIST_READING_H
