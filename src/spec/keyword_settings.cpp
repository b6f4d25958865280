#include "spec/keyword_settings.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/parse_integer.h"
#include "base/text.h"
#include "report/format/delimited.h"
#include "run/messages.h"
#include "spec/file_names.h"
#include "spec/flank_maps.h"
#include "spec/keyword_table.h"
#include "spec/list_reading.h"
#include "spec/setting_values.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr float kNewtonOfYes = 0.5f;

bool UnitsAreLocked(SpecContext& context) {
  if (context.state.labelsLine == 0 && context.design.ScaleLast < 0) return false;
  SetFault(context.reading, Fault::unitsTooLate);
  return true;
}

// The list of sheets behind a spreadsheet's name has commas, at which the line was split.
void JoinSheetList(SpecContext& context) {
  ReadState& reading = context.reading;
  std::string& name = reading.Fields[1];
  if (WithoutSheetList(name).size() == name.size()) return;
  for (int field = 2; field <= reading.FieldCount; ++field)
    name += "," + Value(context, static_cast<std::size_t>(field));
  name = std::string(WithoutQuotes(name));
}

}  // namespace

// ---- Files

void SetData(SpecContext& context) {
  Settings& settings = context.settings;
  if (Value(context).empty()) {
    // The mark goes, so that an empty one among the Extra specifications says nothing.
    ForgetSeen(context.state, keyword_code::kData);
    if (context.state.ReadingExtras) return;
    settings.dataSource = DataSource::inlineData;
    context.state.InlineData = true;
    return;
  }
  JoinSheetList(context);
  TakeName(context, 1, settings.dataFile);
  settings.dataSource = DataSource::file;
}

void SetOutput(SpecContext& context) {
  TakeName(context, 1, context.settings.OutputFile);
  TakeName(context, 2, context.settings.AnchorFile);
  TakeName(context, 3, context.settings.ResidualFile);
  TakeName(context, 4, context.settings.GraphFile);
}

void SetAnchorfile(SpecContext& context) {
  TakeName(context, 1, context.settings.AnchorFile);
}
void SetGraphfile(SpecContext& context) {
  TakeName(context, 1, context.settings.GraphFile);
}
void SetResidualfile(SpecContext& context) {
  TakeName(context, 1, context.settings.ResidualFile);
}
void SetScorefile(SpecContext& context) {
  TakeName(context, 1, context.settings.ScoreFile);
}
void SetSimulated(SpecContext& context) {
  TakeName(context, 1, context.settings.SimulatedFile);
}

// ---- Estimation

void SetConvergence(SpecContext& context) {
  for (std::size_t i = 0; i < context.settings.Convergence.size(); ++i)
    TakeNumber(context, i + 1, context.settings.Convergence[i]);
}

void SetHardware(SpecContext& context) {
  TakeInRange(context, 1, context.settings.Hardware, [](float value) { return value > 0.0f; });
}

void SetIterations(SpecContext& context) {
  TakeWhole(context, 1, context.settings.Iterations);
}

void SetNewton(SpecContext& context) {
  if (IsYes(context))
    context.settings.Newton = kNewtonOfYes;
  else if (Letter(context) == 'N')
    context.settings.Newton = 0.0f;
  else
    TakeNumber(context, 1, context.settings.Newton);
}

void SetSubsets(SpecContext& context) {
  const char letter = Letter(context);
  context.settings.Subsets = IsOneOf(letter, "YRL") ? letter : 'N';
  if (context.settings.Subsets != 'N') return;
  std::vector<std::string>& notes = context.console.report().closingNotes;
  std::erase(notes, message::kSubsetsNotVerified);
  notes.emplace_back(message::kSubsetsBypassed);
}

void SetWhexact(SpecContext& context) {
  context.settings.Whexact = IsYes(context) ? 'Y' : 'N';
}

void SetXtreme(SpecContext& context) {
  for (std::size_t i = 0; i < context.settings.Xtreme.size(); ++i)
    TakeInRange(context, i + 1, context.settings.Xtreme[i],
                [](float value) { return value > 0.0f && value < 1.0f; });
}

// ---- Data

void SetMissing(SpecContext& context) {
  std::string codes;
  for (int field = 1; field <= context.reading.FieldCount; ++field) {
    // Every code, not the last one alone: those of the data lose their quotes too.
    const std::string_view code = WithoutQuotes(Value(context, static_cast<std::size_t>(field)));
    if (!code.empty()) codes += "," + std::string(code);
  }
  if (!codes.empty()) context.settings.Missing = codes + ",";
}

// The one whole number with a sign: -1 is no null element.
void SetNull(SpecContext& context) {
  const std::string& text = Value(context);
  if (text.empty()) return;
  const NumericPrefix number = ReadNumericPrefix(text);
  const bool inRange =
      number.value >= -1.0 && number.value <= static_cast<double>(kLargestElementNumber);
  if (number.length == 0 || !inRange || number.value != std::floor(number.value))
    return SetFault(context.reading, Fault::nullElementRange, TextAtFault(text));
  context.settings.NullElement = static_cast<std::int64_t>(number.value);
}

void SetQuery(SpecContext& context) {
  context.settings.Query = IsYes(context);
}

void SetReplication(SpecContext& context) {
  const std::string text = UpperCase(Value(context));
  context.settings.Replication = text.empty() ? "R" : text;
}

// ---- User units

void SetUmean(SpecContext& context) {
  if (UnitsAreLocked(context)) return;
  TakeNumber(context, 1, context.settings.Umean);
  TakeNonZero(context, 2, context.settings.Uscale);
  TakeDecimals(context, 3, context.settings.Udecimals);
}

void SetUscale(SpecContext& context) {
  if (!UnitsAreLocked(context)) TakeNonZero(context, 1, context.settings.Uscale);
}

void SetUdecimals(SpecContext& context) {
  TakeDecimals(context, 1, context.settings.Udecimals);
}

// ---- The run and its output files

// As on the command line, where it is asked for before anything else: a Y anywhere in the value.
void SetBatch(SpecContext& context) {
  context.settings.Batch = UpperCase(JoinFields(context, ",")).find('Y') != std::string::npos;
}

void SetBeep(SpecContext& context) {
  context.settings.Beep = IsYes(context);
}

void SetCsv(SpecContext& context) {
  context.settings.OutputSeparator = SeparatorNamed(Value(context), Value(context));
}

void SetHeadingLines(SpecContext& context) {
  context.settings.IncludeHeadings = IsYes(context);
}

void SetQuoteMarks(SpecContext& context) {
  if (Letter(context) == '\0') return;
  context.settings.OutputQuote = QuoteNamed(Value(context), Value(context));
}

}  // namespace flanks
