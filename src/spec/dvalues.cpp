#include "spec/dvalues.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "base/text.h"
#include "report/format/join_number.h"
#include "spec/flank_maps.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr int kMostDvalueFields = 4;
constexpr std::string_view kGroupMark = "$G";

// A start column or a length.
std::int32_t ReadColumn(SpecContext& context, int field) {
  const std::int32_t column = ParseWhole(context, FieldAt(context.reading, field),
                                         std::numeric_limits<std::int16_t>::max());
  if (column < 1) SetFault(context.reading, Fault::dvaluesField);
  return column;
}

std::string EntryText(const DvalueEntry& entry) {
  return std::to_string(entry.position) + "," + std::string(ShownPart(entry.asWritten));
}

void KeepEntry(SpecContext& context, DvalueEntry entry) {
  std::vector<DvalueEntry>& entries = context.settings.Dvalues;
  const auto former = std::find_if(entries.begin(), entries.end(), [&](const DvalueEntry& e) {
    return e.position == entry.position;
  });
  if (former == entries.end()) {
    entries.push_back(std::move(entry));
    return;
  }
  context.console.ShowFlagged("Dvalues=" + EntryText(entry) + " replaces Dvalues=" +
                              EntryText(*former) + ": position " + std::to_string(entry.position) +
                              JoinNumber(" is given again in line", context.reading.LineNumber));
  *former = std::move(entry);
}

// "position, value" or "position, source, start, length" or "position, source, $G".
void ReadEntry(SpecContext& context) {
  const int count = context.reading.FieldCount;
  const bool byGroup = count == 3 && UpperCase(FieldAt(context.reading, 3)) == kGroupMark;
  if (count > kMostDvalueFields || (count == 3 && !byGroup) || FieldAt(context.reading, 2).empty())
    return SetFault(context.reading, Fault::dvaluesForm);
  DvalueEntry entry;
  entry.line = context.state.ReadingExtras ? 0 : context.reading.LineNumber;
  entry.position = ParseWhole(context, FieldAt(context.reading, 1), kLargestFlankCount);
  if (entry.position < 1) SetFault(context.reading, Fault::dvaluesField);
  for (int field = 2; field <= count; ++field)
    entry.asWritten += (field > 2 ? "," : "") + std::string(FieldAt(context.reading, field));
  if (count == 2) {
    entry.text = FieldAt(context.reading, 2);
  } else {
    entry.fromPosition = ParseWhole(context, FieldAt(context.reading, 2), kLargestFlankCount);
    if (entry.fromPosition < 1) SetFault(context.reading, Fault::dvaluesUndefinedFlank);
    if (!byGroup) entry.start = ReadColumn(context, 3);
    if (!byGroup) entry.length = ReadColumn(context, 4);
  }
  if (!context.reading.faulty()) KeepEntry(context, std::move(entry));
}

// Whether the sources of a position lead back to it, or to another circle.
bool IsCircular(const std::vector<DvalueEntry>& entries, const DvalueEntry& entry) {
  const DvalueEntry* at = &entry;
  for (std::size_t steps = 0; steps <= entries.size(); ++steps) {
    if (at->fromPosition == 0) return false;
    const auto source = std::find_if(entries.begin(), entries.end(), [at](const DvalueEntry& e) {
      return e.position == at->fromPosition;
    });
    if (source == entries.end()) return false;
    at = &*source;
  }
  return true;
}

Fault FaultOf(const Design& design, const std::vector<DvalueEntry>& entries,
              const DvalueEntry& entry) {
  if (entry.position > design.DataFlankCount) return Fault::dvaluesField;
  if (entry.fromPosition > design.DataFlankCount) return Fault::dvaluesUndefinedFlank;
  return IsCircular(entries, entry) ? Fault::dvaluesCircular : Fault::none;
}

}  // namespace

void SetDvalues(SpecContext& context) {
  if (context.design.FlankCount == 0) return SetFault(context.reading, Fault::flanksFirst);
  if (context.state.ReadingExtras && FieldAt(context.reading, 1).empty())
    return SetFault(context.reading, Fault::extraInvalid);
  FetchIfEmpty(context);
  while (IsListLine(context)) {
    ReadEntry(context);
    FetchLine(context);
  }
}

void PrepareDvalues(Run& run) {
  Analysis& analysis = run.analysis;
  const std::vector<DvalueEntry>& entries = analysis.settings.Dvalues;
  if (entries.empty()) return;
  MakeDefaultMaps(analysis.design);
  for (const DvalueEntry& entry : entries) {
    const Fault fault = FaultOf(analysis.design, entries, entry);
    if (fault == Fault::none) continue;
    return SetFaultOfLine(analysis.reading, fault, entry.line, "Dvalues=" + EntryText(entry));
  }
}

}  // namespace flanks
