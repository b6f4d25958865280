#include "spec/keyword_table.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "base/text.h"
#include "report/format/join_number.h"
#include "spec/delements.h"
#include "spec/dvalues.h"
#include "spec/flank_maps.h"
#include "spec/group_labels.h"
#include "spec/keyword_settings.h"
#include "spec/labels.h"
#include "spec/list_reading.h"
#include "spec/models.h"
#include "spec/report_settings.h"
#include "spec/scales.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

using namespace keyword_code;

// The first row that fits wins: three letters, two, one.
constexpr KeywordRow kRows[] = {
    {"BAT", 41, "Batch=", SetBatch},
    {"BAD", 2, "Bias=", SetBias},
    {"BOX", 64, "Box=", SetBox},
    {"POI", 7, "Pt-biserial=", SetPtBiserial},
    {"NEW", 55, "Newton=", SetNewton},
    {"FAI", 40, "Fair=", SetFair},
    {"REP", 61, "Replication=", SetReplication},
    {"RES", 37, "Residualfile=", SetResidualfile},
    {"USO", 28, "Usort=", SetUsort},
    {"USC", 58, "Uscale=", SetUscale},
    {"REV", 67, "Reversed=", SetReversed},

    {"PT", 7, "Pt-biserial=", SetPtBiserial},
    {"ES", 5, "Entered-in-data=", SetEnteredInData},
    {"NU", 11, "Null=", SetNull},
    {"CE", 14, "Center=", SetCenter},
    {"NE", 16, "Negative=", SetNegative},
    {"SC", 27, "Scorefile=", SetScorefile},
    {"UM", 29, "Umean=", SetUmean},
    {"BA", 30, "Barchart=", SetBarchart},
    {"LE", 31, "Left-hand=", SetLeftHand},
    {"MI", 32, "Missing=", SetMissing},
    {"HS", 33, "HS="},
    {"SU", 34, "Subsets=", SetSubsets},
    {"GR", 35, "Graphfile=", SetGraphfile},
    {"AN", 36, "Anchorfile=", SetAnchorfile},
    {"YN", 37, "Residualfile=", SetResidualfile},
    {"CS", 38, "CSV=", SetCsv},
    {"BE", 39, "Beep=", SetBeep},
    {"IN", 42, "Inter-rater=", SetInterRater},
    {"WH", 43, "Whexact=", SetWhexact},
    {"HE", 44, "Heading lines=", SetHeadingLines},
    {"HL", 44, "Heading lines=", SetHeadingLines},
    {"DV", 45, "Dvalues=", SetDvalues},
    {"SI", 46, "Simulated=", SetSimulated},
    {"OM", 47, "Omit-unobserved=", SetOmitUnobserved},
    {"QM", 48, "QM=", SetQuoteMarks},
    {"TO", 49, "Totalscore=", SetTotalscore},
    {"T4", 50, "T4MAX=", SetT4MAX},
    {"TA", 51, "Tables=", SetTables},
    {"AS", 52, "ASCII=", SetAscii},
    {"T3", 53, "T3onscreen=", SetT3onscreen},
    {"T8", 54, "T8NBC=", SetT8NBC},
    {"GL", kGlabel, "Glabel=", ReadGroupLabels},
    {"DE", 57, "Delements=", SetDelements},
    {"UD", 59, "Udecimals=", SetUdecimals},
    {"SH", 60, "Show-unobserved=", SetShowUnobserved},
    {"UT", 65, "UTF8sub=", SetUtf8},
    {"PE", 68, "PE="},
    {"T7", 69, "T7LGS=", SetT7LGS},

    {"A", 1, "Arrange=", SetArrange},
    {"B", 2, "Bias=", SetBias},
    {"C", 3, "Convergence=", SetConvergence},
    {"D", kData, "Data=", SetData},
    {"E", kEnteredInData, "Entered-in-data=", SetEnteredInData},
    {"F", kFlanks, "Flanks=", SetFlanks},
    {"G", 7, "Pt-biserial=", SetPtBiserial},
    {"H", 8, "Hardware=", SetHardware},
    {"I", 9, "Iterations=", SetIterations},
    {"J", 10, "Juxtapose=", SetJuxtapose},
    {"K", 11, "Keepzero=", SetNull},
    {"L", kLabels, "Labels=", CopyLabels},
    {"M", kModels, "Models=", ReadModels},
    {"N", 14, "Noncenter=", SetNoncenter},
    {"O", kOutput, "Output=", SetOutput},
    {"P", 16, "Positive=", SetPositive},
    {"Q", 17, "Query=", SetQuery},
    {"R", kRatingScale, "Rating (or partial credit) scale=", ReadRatingScale},
    {"S", 19, "Standard errors=", SetStandardErrors},
    {"T", 20, "Title=", SetTitle},
    {"U", 21, "Unexpected=", SetUnexpected},
    {"V", 22, "Vertical=", SetVertical},
    {"W", 23, "Write=", SetWrite},
    {"X", 24, "Xtreme=", SetXtreme},
    {"Y", 25, "Yardstick=", SetYardstick},
    {"Z", 26, "Zscore=", SetZscore},
};

std::size_t SeenIndex(int code) {
  return static_cast<std::size_t>(code - 1);
}

void NoteDuplicate(SpecContext& context) {
  const std::string_view line = Trim(context.reading.SourceLine);
  if (line.empty()) return;
  const std::string note = "Duplicate specification ignored: " + std::string(line);
  context.console.ShowLine(note);
  context.state.IgnoredLines.Add(note);
}

// A keyword that was taken already.  `Data=` without a value ends the Specification all the same:
// what follows are data lines and not keywords.
void PassOver(SpecContext& context, const KeywordRow& row) {
  const ReadState& reading = context.reading;
  const bool bothInFile =
      !context.state.ReadingExtras && WhereSeen(context.state, row.code) == SeenIn::file;
  if (bothInFile && row.code == kLabels) return SetFault(context.reading, Fault::labelsTwice);
  if (bothInFile && row.code == kFlanks && FlanksDisagree(context))
    return SetFault(context.reading, Fault::flanksConflict);
  NoteDuplicate(context);
  if (row.code == kData && reading.Fields[1].empty() && !context.state.ReadingExtras)
    context.state.EndOfSpecification = true;
}

// A keyword that has a meaning without a value: its list, or the data, follow.
bool MayStandAlone(int code) {
  using namespace keyword_code;
  constexpr std::array kAlone = {kData, kLabels, kModels, kGlabel};
  return std::find(kAlone.begin(), kAlone.end(), code) != kAlone.end();
}

// "Umean 50" is a keyword without a value, and a stray word is one too: as a rule not what was
// meant.
void TellMissingSign(SpecContext& context, const KeywordRow& row) {
  const ReadState& reading = context.reading;
  const std::string_view source = reading.SourceLine;
  const std::string_view line = Trim(source.substr(0, source.find(';')));
  const bool twoWords = reading.CurrentLine.find(' ') != std::string::npos;
  if (line.find_first_of("=,\t") != std::string_view::npos) return;
  if (!twoWords && MayStandAlone(row.code)) return;
  context.console.ShowFlagged(
      JoinNumber("There is no \"=\" in line", reading.LineNumber) +
      ", so this is a keyword without a value: " + std::string(ShownPart(line)));
}

void NotUnderstood(SpecContext& context) {
  context.console.ShowFlagged("Specification not understood: " + context.reading.CurrentLine +
                              std::string(ShownPart(context.reading.SourceLine)));
  SetFault(context.reading, Fault::notSpecificationValue);
}

}  // namespace

std::span<const KeywordRow> KeywordRows() {
  return kRows;
}

const KeywordRow* ResolveKeyword(std::string_view upperWord) {
  for (const KeywordRow& row : kRows)
    if (upperWord.starts_with(row.prefix)) return &row;
  return nullptr;
}

SeenIn WhereSeen(const SpecificationState& state, int code) {
  return static_cast<SeenIn>(state.SeenCodes[SeenIndex(code)]);
}

void MarkSeen(SpecificationState& state, int code, SeenIn where) {
  state.SeenCodes[SeenIndex(code)] = static_cast<char>(where);
}

void ApplySpecification(SpecContext& context) {
  ReadState& reading = context.reading;
  SpecificationState& state = context.state;
  reading.CurrentLine = UpperCase(reading.Fields[0]);
  reading.Fields[0].clear();
  if (reading.CurrentLine.empty() && reading.Fields[1] == "*") return;
  const KeywordRow* row = ResolveKeyword(reading.CurrentLine);
  if (row == nullptr) return NotUnderstood(context);
  if (WhereSeen(state, row->code) != SeenIn::nowhere) return PassOver(context, *row);
  TellMissingSign(context, *row);
  MarkSeen(state, row->code, state.ReadingExtras ? SeenIn::extras : SeenIn::file);
  if (row->handler != nullptr) row->handler(context);
}

}  // namespace flanks
