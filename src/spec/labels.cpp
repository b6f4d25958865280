#include "spec/labels.h"

#include <string>
#include <string_view>

#include "base/text.h"
#include "report/format/join_number.h"
#include "run/messages.h"
#include "run/work_files.h"
#include "spec/label_list.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

// What stands behind "Labels=": a first Flank line, or the option Nobuild.
std::string FirstLine(SpecContext& context) {
  const ReadState& reading = context.reading;
  const std::string_view value = FieldAt(reading, 1);
  if (value.empty()) return {};
  if (UpperCase(value.front()) == 'N') context.settings.labelsNobuild = true;
  if (!IsDigit(value.front())) return {};
  std::string line(value);
  for (int field = 2; field <= reading.FieldCount; ++field)
    line += "," + std::string(FieldAt(reading, field));
  return line;
}

bool BelongsToLabels(std::string_view line) {
  return !line.empty() && (IsDigit(line.front()) || line.front() == '*');
}

void WarnOfListEnd(Console& console, const ReadState& reading) {
  console.ShowLine("");
  console.WarnLine(JoinNumber(message::kLabelsListEnd, reading.LineNumber) + " \"" +
                   std::string(ShownPart(reading.CurrentLine)) + "\" * or number = value expected");
}

}  // namespace

void CopyLabels(SpecContext& context) {
  ReadState& reading = context.reading;
  if (context.state.ReadingExtras) return SetSpecificationFault(reading, Fault::extraInvalid);
  if (context.design.FlankCount == 0) return SetSpecificationFault(reading, Fault::flanksFirst);
  if (context.state.labelsLine != 0) return SetSpecificationFault(reading, Fault::labelsTwice);
  context.state.labelsLine = reading.LineNumber;
  TextWorkFile& file = OpenListFile(context, context.work.labelsFile, "labels", "CopyLabels");
  file.WriteLine(LabelRecord(FirstLine(context), reading.LineNumber));
  bool lastWasStar = false;
  while (FetchText(context) && BelongsToLabels(reading.CurrentLine)) {
    file.WriteLine(LabelRecord(reading.CurrentLine, reading.LineNumber));
    lastWasStar = reading.CurrentLine.front() == '*';
  }
  if (reading.faulty()) return;
  if (!lastWasStar) WarnOfListEnd(context.console, reading);
  const std::string line = reading.CurrentLine;  // empty at the end of the Specification
  SplitIntoFields(context, line);
  if (!line.empty()) LeaveLine(context);
}

}  // namespace flanks
