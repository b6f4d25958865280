#include "spec/specification_reader.h"

#include <memory>
#include <string>

#include "base/parse_integer.h"
#include "base/text.h"
#include "spec/group_labels.h"
#include "spec/keyword_table.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

char AsSeparator(char c) {
  return c == '=' || c == '\t' ? ',' : c;
}

// Room for fields 0 to `count`, and never less than what handlers may look at.
void MakeRoom(std::vector<std::string>& fields, int count) {
  const int needed = std::max(count + 1, kFewestFields);
  fields.resize(static_cast<std::size_t>(needed));
}

void ClearFrom(std::vector<std::string>& fields, std::size_t first) {
  for (std::size_t i = first; i < fields.size(); ++i) fields[i].clear();
}

// Fields as of a line "*".
void EndList(ReadState& reading) {
  reading.Fields[1] = "*";
  reading.FieldCount = 1;
}

// The reader's name, where the handler gave none, and the line at fault.
void CompleteFault(SpecContext& context) {
  ReadState& reading = context.reading;
  if (!reading.faulty()) return;
  if (reading.fault.name.empty()) reading.fault.name = kSpecificationName;
  ShowLineOfFault(reading);
}

void ApplyLines(SpecContext& context) {
  ReadState& reading = context.reading;
  SpecificationState& state = context.state;
  FetchLine(context);
  while (!state.EndOfSpecification && !reading.faulty()) {
    context.console.Tick(reading.LineNumber);
    ApplySpecification(context);
    if (state.InlineData || reading.faulty()) return;
    if (!state.lineLeft) FetchLine(context);
    state.lineLeft = false;
  }
}

}  // namespace

std::string_view WithoutQuotes(std::string_view text) {
  constexpr std::string_view kQuotesAndBlank = "\"' ";
  const std::size_t first = text.find_first_not_of(kQuotesAndBlank);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kQuotesAndBlank) - first + 1);
}

void ShowLineOfFault(ReadState& reading) {
  std::string& text = reading.fault.text;
  const std::string line(ShownPart(reading.SourceLine));
  const bool inLine = line.find(text) != std::string::npos && reading.fault.lineNumber >= 0;
  if (text.empty() || (inLine && reading.FieldCount < 2))
    text = line;
  else if (inLine && text != line)
    text += " in " + line;
}

SpecificationState::SpecificationState() = default;
SpecificationState::~SpecificationState() = default;
SpecificationState::SpecificationState(SpecificationState&&) noexcept = default;
SpecificationState& SpecificationState::operator=(SpecificationState&&) noexcept = default;

bool SplitSpecification(std::string_view line, std::vector<std::string>& fields, int& fieldCount) {
  fieldCount = 0;
  MakeRoom(fields, 0);
  ClearFrom(fields, 0);
  std::string text(Trim(line));
  for (char& c : text) c = AsSeparator(c);
  std::string_view rest = Trim(text);
  if (rest.empty()) return true;
  if (IsLetter(rest.front())) {
    const std::size_t comma = rest.find(',');
    fields[0] = TrimRight(rest.substr(0, comma));
    if (comma == std::string_view::npos) return true;
    rest = rest.substr(comma + 1);
    if (Trim(rest).empty()) return true;
  }
  FieldCursor cursor(rest);
  std::string_view field;
  while (cursor.Next(field)) {
    if (fieldCount == kLargestFieldCount) return false;
    ++fieldCount;
    if (static_cast<std::size_t>(fieldCount) < fields.size())
      fields[static_cast<std::size_t>(fieldCount)] = field;
    else
      fields.emplace_back(field);
  }
  std::string& last = fields[static_cast<std::size_t>(fieldCount)];
  last = std::string(WithoutQuotes(last));
  return true;
}

FaultParticulars TextAtFault(std::string_view text) {
  FaultParticulars particulars;
  particulars.text = text;
  return particulars;
}

bool FetchText(SpecContext& context) {
  ReadState& reading = context.reading;
  SpecificationState& state = context.state;
  reading.CurrentLine.clear();
  if (state.ReadingExtras) return false;
  std::string_view line;
  if (!state.EndOfSpecification && !reading.faulty() && state.source != nullptr &&
      !context.console.stopping() &&
      state.source->NextSpecificationLine(context.console, BlankLines::skip, &state.IgnoredLines,
                                          line)) {
    reading.CurrentLine = line;
    reading.SourceLine = state.source->original();
    reading.LineNumber = state.source->lineNumber();
    return true;
  }
  state.EndOfSpecification = true;
  if (reading.faulty()) return false;
  reading.SourceLine.clear();
  if (state.source != nullptr && state.source->fault() != Fault::none) {
    reading.LineNumber = state.source->lineNumber();
    SetFault(reading, state.source->fault(), TextAtFault(state.source->faultText()));
  }
  return false;
}

void SplitIntoFields(SpecContext& context, std::string_view line) {
  ReadState& reading = context.reading;
  if (!SplitSpecification(line, reading.Fields, reading.FieldCount))
    SetFault(reading, Fault::tooManyFields);
}

void FetchLine(SpecContext& context) {
  FetchText(context);
  SplitIntoFields(context, context.reading.CurrentLine);
  if (context.state.ReadingExtras) EndList(context.reading);
}

void FetchIfEmpty(SpecContext& context) {
  ReadState& reading = context.reading;
  while (reading.Fields[1].empty() && reading.FieldCount == 0) {
    FetchLine(context);
    if (context.state.EndOfSpecification) EndList(reading);
    if (!reading.Fields[0].empty()) return;
  }
}

bool IsListLine(SpecContext& context) {
  const ReadState& reading = context.reading;
  if (context.state.EndOfSpecification || reading.faulty()) return false;
  if (!reading.Fields[0].empty()) {
    LeaveLine(context);
    return false;
  }
  return reading.Fields[1] != "*";
}

std::int32_t ParseWhole(SpecContext& context, std::string_view text, std::int32_t limit) {
  const WholeNumber number = ParseInteger(text, limit);
  switch (number.fault) {
    case NumberFault::none:
      break;
    case NumberFault::notNumeric:
      SetFault(context.reading, Fault::notNumeric, TextAtFault(text));
      break;
    case NumberFault::tooLarge: {
      FaultParticulars particulars = TextAtFault(text);
      particulars.number = limit;
      SetFault(context.reading, Fault::numberTooLarge, std::move(particulars));
      break;
    }
    case NumberFault::notWhole:
      SetFault(context.reading, Fault::notWhole, TextAtFault(text));
      break;
  }
  return number.value;
}

void ReadSpecification(Run& run) {
  SpecContext context = SpecContextOf(run.analysis, run.process, run.console);
  SpecificationState& state = context.state;
  state.source = std::make_unique<SpecificationSource>();
  const std::string& name = context.settings.specificationFile;
  if (const Fault fault = state.source->Open(name, "Specification", name, run.console);
      fault != Fault::none) {
    SetFault(context.reading, fault, TextAtFault(state.source->faultText()));
    CompleteFault(context);
    return;
  }
  run.console.TickStart();
  ApplyLines(context);
  run.console.TickEnd();
  CheckGroupLabels(context.design, context.reading);
  CompleteFault(context);
  state.includedFiles = state.source->includedFiles();
}

}  // namespace flanks
