#include "spec/group_labels.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/parse_integer.h"
#include "spec/element_values.h"
#include "spec/flank_maps.h"
#include "spec/keyword_table.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr int kFewestFieldsOfLine = 3;

void AddGroupLabel(SpecContext& context) {
  ReadState& reading = context.reading;
  Design& design = context.design;
  // The Flanks need not be known yet: CheckGroupLabels looks again.
  const int largestFlank = design.FlankCount == 0 ? kLargestFlankCount : design.FlankCount;
  const WholeNumber flank = ParseInteger(FieldAt(reading, 1), largestFlank);
  const WholeNumber group = ParseInteger(FieldAt(reading, 2), kLargestGroupNumber);
  if (reading.FieldCount < kFewestFieldsOfLine || flank.fault != NumberFault::none ||
      flank.value == 0 || group.fault != NumberFault::none)
    return SetSpecificationFault(reading, Fault::glabelForm);
  GroupLabel label{FlankNo(flank.value), group.value, std::string(FieldAt(reading, 3)),
                   context.state.ReadingExtras ? 0 : reading.LineNumber};
  const auto sameGroup = [&](const GroupLabel& other) {
    return other.flank == label.flank && other.group == label.group;
  };
  if (std::none_of(design.groupLabels.begin(), design.groupLabels.end(), sameGroup))
    design.groupLabels.push_back(std::move(label));
}

}  // namespace

void ReadGroupLabels(SpecContext& context) {
  ReadState& reading = context.reading;
  if (context.state.ReadingExtras) {
    if (reading.FieldCount == 0) return SetSpecificationFault(reading, Fault::extraInvalid);
    AddGroupLabel(context);
  } else {
    if (reading.FieldCount > 0) AddGroupLabel(context);
    while (!reading.faulty() && NextListLine(context)) AddGroupLabel(context);
  }
  ForgetSeen(context.state, keyword_code::kGlabel);  // another list may follow
}

void CheckGroupLabels(const Design& design, ReadState& reading) {
  if (design.FlankCount == 0 || reading.faulty()) return;
  const auto wrong = std::find_if(
      design.groupLabels.begin(), design.groupLabels.end(),
      [&design](const GroupLabel& label) { return label.flank.number() > design.FlankCount; });
  if (wrong == design.groupLabels.end()) return;
  SetFaultOfLine(reading, Fault::glabelForm, wrong->line,
                 "Glabel=" + std::to_string(wrong->flank.number()) + "," +
                     std::to_string(wrong->group) + "," + wrong->label);
}

}  // namespace flanks
