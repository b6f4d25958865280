#include "spec/list_reading.h"

#include <cstddef>
#include <utility>

#include "base/shown_text.h"
#include "base/text.h"
#include "run/work_files.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr std::size_t kShownOfLongLine = 500;  // bytes

}  // namespace

std::string_view ShownPart(std::string_view line) {
  return CutBetweenCharacters(Trim(line), kShownOfLongLine);
}

std::string_view FieldAt(const ReadState& reading, int index) {
  if (index > reading.FieldCount || static_cast<std::size_t>(index) >= reading.Fields.size())
    return {};
  return reading.Fields[static_cast<std::size_t>(index)];
}

bool NextListLine(SpecContext& context) {
  FetchLine(context);
  return !context.reading.faulty() && IsListLine(context);
}

void SetSpecificationFault(ReadState& reading, Fault fault, std::string_view text) {
  SetNumberedFault(reading, fault, 0, text);
}

void SetNumberedFault(ReadState& reading, Fault fault, std::int64_t number, std::string_view text) {
  FaultParticulars particulars;
  particulars.text = ShownPart(text.empty() ? reading.SourceLine : text);
  particulars.name = kSpecificationName;
  particulars.number = number;
  SetFault(reading, fault, std::move(particulars));
}

void SetFaultOfLine(ReadState& reading, Fault fault, std::int64_t line, std::string_view text) {
  FaultParticulars particulars;
  particulars.text = ShownPart(text);
  particulars.name = kSpecificationName;
  particulars.lineNumber = line > 0 ? line : kNoLineNumber;
  SetFault(reading, fault, std::move(particulars));
}

TextWorkFile& OpenListFile(SpecContext& context, std::unique_ptr<TextWorkFile>& file,
                           std::string_view title, std::string_view caller) {
  if (!file) file = OpenTextWorkFile(context.work, title, caller, context.reading.LineNumber);
  return *file;
}

}  // namespace flanks
