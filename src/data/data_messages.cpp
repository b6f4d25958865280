#include "data/data_messages.h"

#include <algorithm>
#include <utility>

#include "base/shown_text.h"
#include "base/text.h"
#include "report/format/join_number.h"
#include "run/messages.h"
#include "spec/models.h"

namespace flanks {
namespace {

constexpr int kInvalidDataTold = 10;     // Check (2) of a run
constexpr std::size_t kLineShown = 300;  // bytes of a line or datum in a message

// A text for a message: what is very long is cut, between characters of UTF-8.
std::string Shown(std::string_view text) {
  text = Trim(text);
  if (text.size() <= kLineShown) return std::string(text);
  return std::string(CutBetweenCharacters(text, kLineShown)) + "...";
}

// Likewise, of a text that `Dvalues=` may have cut out of the line by bytes.
std::string ShownPiece(std::string_view text, std::string_view line) {
  return Shown(WholeCharacters(text, line));
}

// The parts of `line` between the characters of `separators`, empty ones left out.
int PartsOf(std::string_view line, std::string_view separators) {
  int parts = 0;
  while (!line.empty()) {
    const std::size_t end = std::min(line.find_first_of(separators), line.size());
    parts += Trim(line.substr(0, end)).empty() ? 0 : 1;
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return parts;
}

// Why a line has other fields than its writer may think, and the cure; "" when nothing is known.
std::string_view SplitHint(std::string_view line, int fieldsNeeded) {
  if (line.find(';') != std::string_view::npos && PartsOf(line, ";,=\t") >= fieldsNeeded)
    return "  Is ; between fields here? It begins a comment: please separate fields by commas";
  line = line.substr(0, line.find(';'));
  if (PartsOf(line, ",=\t ") < fieldsNeeded) return "";
  if (line.find_first_of(",=") != std::string_view::npos)
    return "  This line holds commas (or =), so blanks and tabs separate nothing in it: please "
           "separate all fields by commas";
  if (line.find('\t') != std::string_view::npos)
    return "  This line holds tabs, so blanks separate nothing in it: please separate all fields "
           "by "
           "commas";
  return "";
}

}  // namespace

void DataMessages::ShowFirstLine(const LinePlace& place) {
  console_.ShowLine("First active data line is: " + Shown(place.original));
}

void DataMessages::ShowProcessed(const DataLine& line, const LineElements& elements) {
  std::string text = " Processed as: ";
  for (const DataPosition p : Upward(design_.maps.EntryMap)) {
    text += ElementText(p, line, elements);
    const bool last = p == design_.maps.EntryMap.lastRow();
    if (!last && !text.ends_with(' ')) text += ',';
  }
  text = std::string(TrimRight(text)) + "  ";
  for (int field = design_.FirstResponseField(); field <= line.FieldCount(); ++field) {
    if (field > design_.FirstResponseField()) text += ',';
    text += ShownPiece(line.Field(field), line.text);
  }
  console_.ShowLine(text);
}

// "1 (Ann)", "9 (?)" for an unknown number, "(zz, ?)" for an unknown label, "Null, ".
std::string DataMessages::ElementText(DataPosition position, const DataLine& line,
                                      const LineElements& elements) const {
  std::string field = ShownPiece(line.Field(position.number()), line.text);
  const Position active = design_.maps.ActiveMap[position];
  if (!elements.active.has(active) || elements.active[active] == 0) return field;
  if (elements.hasRange() && elements.rangePosition == active) return field;
  const std::int32_t status = elements.PositionStatus[active];
  if (status == kStatusNullElement) return "Null, ";
  const std::int32_t number = elements.PositionElement[active];
  if (status > 0)
    return std::to_string(number) + " (" + design_.elements.ElementLabel[ElementSlot(status)] + ")";
  return number == kNoElementNumber ? "(" + field + ", ?)" : std::to_string(number) + " (?)";
}

void DataMessages::TellUnspecified(const FirstUnspecified& first, const DataLine& line,
                                   const LinePlace& place) {
  std::string text = JoinNumber(message::kElementNotInLabels, first.flank.number());
  const std::string identifier = ShownPiece(first.identifier, place.original);
  text += " element: " + identifier;
  if (first.byLabel) text += " label: " + identifier;
  text += JoinNumber(" in line", place.number);
  text +=
      settings_.labelsNobuild ? " - Specify Labels=Build to list in Table 2." : " - see Table 2.";
  console_.WarnLine(text + " Delements = " + settings_.Delements);
  const std::string original = Shown(place.original),
                    processed = ShownPiece(line.Processed(), place.original);
  console_.WarnLine("In data: " + original);
  if (processed != original) console_.WarnLine("Processed: " + processed);
  TellPlaceInSource(place, first.position.number());
}

void DataMessages::TellExcess(int count, const LinePlace& place) {
  if (std::exchange(excessTold_, true)) return;
  console_.WarnLine(PlaceText(0, place));
  console_.WarnLine(Shown(place.original));
  console_.WarnLine(JoinNumber(message::kExcessResponses, count) + " excess responses ignored");
  TellPlaceInSource(place, 0);
}

void DataMessages::TellInvalid(int field, const DataLine& line, const LineElements& elements,
                               const LinePlace& place) {
  if (invalidTold_ >= kInvalidDataTold) return;
  ++invalidTold_;
  console_.WarnLine(std::string(message::kInvalidDatum) + ElementList(line, elements) +
                    JoinNumber(" at or near line", place.number) + ". Datum " +
                    Shown(line.Field(field)) +
                    " is too big or not a positive integer, treated as missing.");
  TellPlaceInSource(place, field);
}

void DataMessages::TellPlaceInSource(const LinePlace& place, int field) {
  if (!placeInSource_) return;
  if (const std::string text = placeInSource_(place.number, field); !text.empty())
    console_.WarnLine("  See " + text + ".");
}

FaultParticulars DataMessages::ParticularsOf(const LineProblem& problem,
                                             const LinePlace& place) const {
  FaultParticulars particulars;
  particulars.text = Shown(place.original);
  particulars.name = PlaceText(problem.position, place);
  particulars.lineNumber = place.number;
  const int fieldsNeeded = design_.FirstResponseField();
  switch (problem.fault) {
    case Fault::tooFewDataFields:
      particulars.number = design_.DataFlankCount;
      particulars.addition = SplitHint(place.original, fieldsNeeded);
      break;
    case Fault::twoRanges:
      if (!settings_.Dvalues.empty()) particulars.addition = ": could be a problem in Dvalues=";
      break;
    case Fault::invalidElementNumberInData:
      particulars.number = problem.position;
      particulars.addition = JoinNumber(" \"" + ShownPiece(problem.text, place.original) +
                                            "\" at flank location in data:",
                                        problem.position) +
                             "  Is this an element label? If so, Delements=LN";
      if (problem.text.find(' ') != std::string_view::npos)
        particulars.addition += SplitHint(place.original, fieldsNeeded);
      break;
    default:
      break;
  }
  return particulars;
}

// "Data line in d.txt(2) line: 5".
std::string DataMessages::PlaceText(int position, const LinePlace& place) const {
  std::string text = "Data line in " + fileName_;
  if (position > 0) text += "(" + std::to_string(position) + ")";
  return text + JoinNumber(" line:", place.number);
}

std::string DataMessages::ElementList(const DataLine& line, const LineElements& elements) const {
  std::string list;
  for (const DataPosition p : Upward(design_.maps.EntryMap)) {
    const Position active = design_.maps.ActiveMap[p];
    const bool known = elements.active.has(active) && elements.PositionStatus[active] > 0;
    if (p != design_.maps.EntryMap.firstRow()) list += ',';
    list += known ? std::to_string(elements.PositionElement[active])
                  : ShownPiece(line.Field(p.number()), line.text);
  }
  return list;
}

void DataMessages::QueryR0(float replication) {
  QueryShow(console_, QueryCode::r0, FreeNumber(replication) + " ");
}

void DataMessages::ShowDatum(const std::string& text, int datumNumber) {
  QueryShow(console_, QueryCode::text, text + JoinNumber(" ; datum number", datumNumber));
}

void DataMessages::QueryMissing(std::string_view datum, int datumNumber, const DataLine& line,
                                const LineElements& elements) {
  const std::string list = ElementList(line, elements) + " ";
  ShowDatum(QueryText(QueryCode::noDatum, list) + Shown(datum), datumNumber);
  ShowDatum(list + QueryText(QueryCode::missing, ""), datumNumber);
}

void DataMessages::QueryFate(std::string_view datum, int datumNumber, const StatementSearch& search,
                             const ScoredResponse& scored, const std::string& elementList) {
  const std::string list = elementList + " ";
  ShowDatum(QueryText(QueryCode::datum, list) + Shown(datum), datumNumber);
  if (search.fate == ResponseFate::valid) {
    const std::string statement = StatementText(design_.models, search.model);
    ShowDatum(
        QueryText(QueryCode::matched, QueryText(QueryCode::model, list) + " " + statement + " "),
        datumNumber);
  }
  if (!scored.recodedTo.empty())
    ShowDatum(list + QueryText(QueryCode::recoded, scored.recodedTo), datumNumber);
  switch (scored.fate) {
    case ResponseFate::valid:
      break;
    case ResponseFate::unspecified:
      ShowDatum(QueryText(QueryCode::unspecified, list), datumNumber);
      break;
    case ResponseFate::unmatched:
      ShowDatum(list + QueryText(QueryCode::noMatch, ""), datumNumber);
      break;
    case ResponseFate::invalidModel:
      ShowDatum(list + QueryText(QueryCode::invalidModel, ""), datumNumber);
      break;
    case ResponseFate::negative:
      ShowDatum(list + QueryText(QueryCode::negative, ""), datumNumber);
      break;
    case ResponseFate::invalid:
      ShowDatum(list + QueryText(QueryCode::nonNumeric, ""), datumNumber);
      break;
  }
}

}  // namespace flanks
