#include "data/data_pass.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/text.h"
#include "data/element_file.h"
#include "data/response_file.h"
#include "data/unread_lines.h"
#include "report/format/join_number.h"
#include "spec/file_names.h"

namespace flanks {
namespace {

constexpr int kLinesBetweenTicks = 4096;
constexpr std::ptrdiff_t kDigitsOfElement = 9;  // longer numbers are looked at closely
constexpr std::ptrdiff_t kDigitsOfResponse = 3;

// Reads digits from `at` on, at most `most` of them.  False without a digit, or with more.
inline bool TakeDigits(const char*& at, const char* end, std::ptrdiff_t most,
                       std::uint32_t& number) {
  const char* const start = at;
  number = 0;
  for (; at != end; ++at) {
    const std::uint32_t digit = static_cast<std::uint32_t>(*at) - '0';
    if (digit > 9) break;
    if (at - start == most) return false;
    number = number * 10 + digit;
  }
  return at != start;
}

// Bytes that a line with commas holds as they are: no separators, nothing that is replaced.
constexpr std::array<bool, 256> MakePlainBytes() {
  std::array<bool, 256> plain{};
  for (std::size_t code = ' '; code < plain.size(); ++code) plain[code] = true;
  for (const char c : {',', '=', '"', '\'', '_'}) plain[static_cast<unsigned char>(c)] = false;
  return plain;
}
constexpr std::array<bool, 256> kPlainBytes = MakePlainBytes();

// Reads plain bytes to the next comma or the end; false when there is anything else, or nothing, or
// blanks to be trimmed.
inline bool TakePlainText(const char*& at, const char* end, std::string_view& field) {
  const char* const start = at;
  while (at != end && kPlainBytes[static_cast<unsigned char>(*at)]) ++at;
  field = std::string_view(start, static_cast<std::size_t>(at - start));
  return !field.empty() && field.front() != ' ' && field.back() != ' ' && (at == end || *at == ',');
}

}  // namespace

DataPassParts DataPassPartsOf(Run& run) {
  Analysis& analysis = run.analysis;
  return {analysis.design,  analysis.settings, run.process.control,
          analysis.reading, analysis.counts,   analysis.structures,
          analysis.work,    run.console,       run.dialogs};
}

DataPass::DataPass(const DataPassParts& parts, SpecificationSource& source, PlainLines plainLines)
    : parts_(parts),
      source_(source),
      rules_(SplitRulesOf(parts.design, parts.settings)),
      finder_(parts.design.flanks, parts.design.elements),
      labels_(parts.design.flanks, parts.design.elements, parts.console),
      resolver_(parts.design, parts.settings.NullElement, rules_, finder_, labels_, parts.counts),
      structures_(parts.design, parts.structures),
      categories_(parts.design),
      messages_(parts.design, parts.settings, parts.console, parts.dialogs, source.name(),
                parts.placeInSource),
      linesUntilTick_(kLinesBetweenTicks) {
  const Design& design = parts_.design;
  parts_.counts.ModelCounter.assign(design.ModelLast + 1, 0);
  parts_.counts.flankLookedUp.assign(design.FlankCount, 0);
  elements_.PositionElement.assign(design.ModelFlankCount, kNoElementNumber);
  elements_.PositionStatus.assign(design.ModelFlankCount, kStatusNullElement);
  elements_.active.assign(design.ModelFlankCount, 1);
  for (const DataPosition p : Upward(design.maps.ActiveMap))
    if (const Position a = design.maps.ActiveMap[p]; elements_.active.has(a))
      elements_.active[a] = design.maps.DataPositionActive[p] != 0;
  for (int number = 0; number < kCategories; ++number)
    missingNumber_[static_cast<std::size_t>(number)] =
        IsListed(parts_.settings.Missing, std::to_string(number));
  shortCut_ = plainLines == PlainLines::shortCut && resolver_.ReadsPlainFields();
}

void DataPass::ReadLines() {
  parts_.console.TickStart();
  std::string_view text;
  while (source_.NextSpecificationLine(parts_.console, BlankLines::keep, nullptr, text)) {
    parts_.counts.FileLines.increment();
    parts_.reading.LineNumber = source_.lineNumber();
    if (--linesUntilTick_ == 0 && TickOver()) break;
    if (plainLinesNow_ && ReadPlainLine(text)) continue;
    if (!ReadLine(text)) break;
  }
  parts_.console.TickEnd();
  if (source_.fault() == Fault::none) return;
  FaultParticulars particulars = TextAtFault(source_.faultText());
  particulars.name = "Data line in " + source_.name();
  particulars.lineNumber = source_.lineNumber();
  SetFault(parts_.reading, source_.fault(), std::move(particulars));
}

// True when the run is to stop.
bool DataPass::TickOver() {
  linesUntilTick_ = kLinesBetweenTicks;
  parts_.console.Tick(parts_.reading.LineNumber);
  return parts_.console.YieldToWindow();
}

void DataPass::Finish() {
  if (!parts_.settings.labelsNobuild) {
    UnspecifiedElements& unspecified = resolver_.unspecified();
    parts_.counts.UnspecifiedListCut = unspecified.cut();
    parts_.counts.UnspecifiedList =
        unspecified.Take(parts_.design.flanks, finder_, parts_.settings.NullElement);
  }
  FlushElementRecords(parts_.work);
  FlushResponseRecords(parts_.work);
}

// The short cut.  Nothing is counted or written before the whole line is known to be plain.
bool DataPass::ReadPlainLine(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  if (BeginsWithNoField(text) || !TakePlainElements(at, end) || !TakePlainResponses(at, end))
    return false;
  const StatementSearch search = FindStatement(parts_.design, elements_);
  if (search.fate != ResponseFate::valid) return false;
  for (std::int16_t& response : plainResponses_) {
    response = categories_.Of(search.model, response);
    if (response == CategoryTable::kLookClosely) return false;
  }
  const auto responses = static_cast<std::int64_t>(plainResponses_.size());
  DataCounts& counts = parts_.counts;
  counts.DataLines.increment();
  counts.NonBlankResponses += FixedCount::Of(responses);
  counts.ModelCounter[search.model] += responses;
  line_.Replication = 1.0f;
  for (const std::int16_t category : plainResponses_) WriteRecords(search.model, category);
  return true;
}

// Whether the first item is no field: the end of the data, or a replication.
bool DataPass::BeginsWithNoField(std::string_view text) const {
  if (text.empty() || text.front() == '*') return true;
  float replication;
  return UpperCase(text.front()) == rules_.Replication.front() &&
         ReadReplication(text.substr(0, text.find(',')), rules_.Replication, replication);
}

bool DataPass::TakePlainElements(const char*& at, const char* end) {
  elements_.rangePosition = Position();
  for (DataPosition p(1); p.number() <= rules_.DataFlankCount; ++p, ++at) {
    const ElementResolver::PlainField kind = resolver_.plainField(p);
    if (kind == ElementResolver::PlainField::digits) {
      std::uint32_t number = 0;
      if (!TakeDigits(at, end, kDigitsOfElement, number) || at == end || *at != ',') return false;
      if (!resolver_.TakePlainNumber(p, static_cast<std::int32_t>(number), elements_)) return false;
    } else {
      std::string_view field;
      if (!TakePlainText(at, end, field) || at == end) return false;
      if (kind == ElementResolver::PlainField::label &&
          !resolver_.TakePlainLabel(p, field, elements_))
        return false;
    }
  }
  return true;
}

// Responses of the line: whole numbers to 255 as they are usually written, none of them missing.
bool DataPass::TakePlainResponses(const char* at, const char* end) {
  plainResponses_.clear();
  std::uint32_t number = 0;
  while (true) {
    const char* const start = at;
    if (!TakeDigits(at, end, kDigitsOfResponse, number) || number > kLargestCategory) return false;
    if (*start == '0' && at - start > 1) return false;
    if (missingNumber_[number]) return false;
    plainResponses_.push_back(static_cast<std::int16_t>(number));
    if (at == end) break;
    if (*at != ',') return false;
    ++at;
  }
  return static_cast<int>(plainResponses_.size()) + rules_.DataFlankCount <= kMostFields;
}

// The general procedure.  False at the end of the data.
bool DataPass::ReadLine(std::string_view text) {
  if (const Fault fault = SplitDataLine(text, rules_, line_); fault != Fault::none)
    return Fail({fault, 0, {}});
  if (line_.FieldCount() == 0 && line_.replicationField.empty()) {
    parts_.counts.BlankLines.add(eventLine());
    if (querying()) messages_.QueryBlank();
    return true;
  }
  // Kept: in a data file too (docs/quirks.md).
  if (line_.FieldCount() == 1 && line_.Field(1) == "*") {
    TellUnreadLines(source_, parts_.console);
    return false;
  }
  if (line_.FieldCount() < parts_.design.FirstResponseField())
    return Fail({Fault::tooFewDataFields, 0, {}});
  const bool first = parts_.counts.DataLines.isZero();
  parts_.counts.DataLines.increment();
  if (first) messages_.ShowFirstLine(place());
  const LineProblem problem =
      resolver_.ResolveElements(line_, parts_.reading.LineNumber, elements_);
  if (const auto unspecified = resolver_.TakeFirstUnspecified())
    messages_.TellUnspecified(*unspecified, line_, place());
  if (problem.fault != Fault::none) return Fail(problem);
  const int fieldCount = FieldsInUse();
  if (first) messages_.ShowProcessed(line_, elements_);
  // Kept: only now, when the elements have been looked up (docs/quirks.md).
  if (line_.Replication > 0.0f) {
    ReadResponses(fieldCount);
  } else {
    parts_.counts.R0Lines.add(eventLine());
    if (querying()) messages_.QueryR0(line_.Replication);
  }
  if (querying()) messages_.QueryEnd();
  plainLinesNow_ = shortCut_ && !querying();
  return !parts_.console.stopping();
}

bool DataPass::Fail(const LineProblem& problem) {
  parts_.reading.SourceLine = source_.original();
  // Line numbers run on through include files: the user is told where this one stands.
  if (const FilePlace at = source_.PlaceOf(source_.lineNumber()); at.file != source_.name())
    parts_.console.WarnLine(JoinNumber("Reading line", at.line) + " of % include file " +
                            InQuotes(at.file) + ":");
  SetFault(parts_.reading, problem.fault, messages_.ParticularsOf(problem, place()));
  return false;
}

// Where the first event of a kind is noted.
std::int32_t DataPass::eventLine() const {
  constexpr std::int64_t kLast = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(source_.lineNumber(), kLast));
}

// The number of fields of the line, less those behind the last response that a range can take.
int DataPass::FieldsInUse() {
  int count = line_.FieldCount();
  if (!elements_.hasRange()) return count;
  const int room = rules_.DataFlankCount + static_cast<int>(elements_.RangeList.size());
  if (count <= room) return count;
  while (count > rules_.DataFlankCount && line_.Field(count).empty()) --count;
  if (count <= room) return count;
  messages_.TellExcess(count - room, place());
  return room;
}

void DataPass::ReadResponses(int fieldCount) {
  searched_ = false;
  for (int field = parts_.design.FirstResponseField(); field <= fieldCount; ++field) {
    datumNumber_ = field - rules_.DataFlankCount;
    if (elements_.hasRange()) {
      resolver_.TakeRangeElement(static_cast<std::size_t>(datumNumber_ - 1), line_, elements_);
      searched_ = false;
    }
    ReadResponse(field);
  }
}

void DataPass::ReadResponse(int field) {
  const std::string_view text = line_.Field(field);
  DataCounts& counts = parts_.counts;
  const std::int32_t line = eventLine();
  if (text.empty() || IsListed(parts_.settings.Missing, text)) {
    (text.empty() ? counts.MissingNullResponses : counts.MissingCodeResponses).add(line);
    if (querying()) messages_.QueryMissing(text, datumNumber_, line_, elements_);
    return;
  }
  counts.NonBlankResponses.increment();
  switch (MatchResponse(text)) {
    case ResponseFate::valid:
      break;
    case ResponseFate::invalid:
      counts.InvalidResponses.add(line);
      messages_.TellInvalid(field, line_, elements_, place());
      break;
    case ResponseFate::negative:
      counts.NegativeResponses.add(line);
      break;
    case ResponseFate::invalidModel:
      counts.InvalidModelResponses.add(line);
      break;
    case ResponseFate::unmatched:
      counts.UnmatchedResponses.add(line);
      break;
    case ResponseFate::unspecified:
      counts.UnspecifiedResponses.add(line);
      break;
  }
}

// One response of the line: its statement, its category, its records.
ResponseFate DataPass::MatchResponse(std::string_view text) {
  // Without a range all responses of a line have the same elements, and so the same statement.
  if (!searched_) search_ = FindStatement(parts_.design, elements_);
  searched_ = true;
  ScoredResponse scored{search_.fate, 0, {}};
  if (search_.fate == ResponseFate::valid) {
    // Kept: before the response is looked at (docs/quirks.md).
    ++parts_.counts.ModelCounter[search_.model];
    scored = ScoreResponse(parts_.design, search_.model, text);
    if (scored.fate == ResponseFate::valid) WriteRecords(search_.model, scored.category);
  }
  if (querying())
    messages_.QueryFate(text, datumNumber_, search_, scored,
                        messages_.ElementList(line_, elements_));
  return scored.fate;
}

void DataPass::WriteRecords(ModelRow model, std::int32_t category) {
  const StructureRow row = structures_.Find(model, elements_.PositionStatus);
  structures_.Count(row, category);
  WriteResponseRecord({row, line_.Replication, static_cast<std::int16_t>(category)}, parts_.work);
  WriteElementRecord(elements_.PositionStatus, parts_.work);
  parts_.counts.ValidResponses.increment();
}

bool IsListed(std::string_view list, std::string_view text) {
  if (text.empty()) return false;
  for (std::size_t at = list.find(text); at != std::string_view::npos;
       at = list.find(text, at + 1)) {
    const std::size_t end = at + text.size();
    if (at > 0 && list[at - 1] == ',' && end < list.size() && list[end] == ',') return true;
  }
  return false;
}

namespace {

// Opens the file of `Data=`, or the text that was made of it; false when it cannot be read.
bool OpenDataFile(Run& run, SpecificationSource& source) {
  const Settings& settings = run.analysis.settings;
  ReadState& reading = run.analysis.reading;
  reading.LineNumber = 0;
  const TempFile& imported = run.analysis.work.importedData;
  const std::string name = imported.exists()
                               ? imported.name()
                               : FindFileToRead(settings.dataFile, settings.specificationFile);
  const Fault fault = source.Open(name, "Data", settings.specificationFile, run.console);
  if (fault != Fault::none) {
    SetFault(reading, fault, TextAtFault(source.faultText()));
    return false;
  }
  if (imported.exists()) source.TellAs(settings.dataFile);
  return true;
}

void ReadSource(Run& run, SpecificationSource& source, const PlaceInSource& placeInSource) {
  DataPassParts parts = DataPassPartsOf(run);
  parts.placeInSource = placeInSource;
  DataPass pass(parts, source, PlainLines::shortCut);
  run.at = "reading the data";
  pass.ReadLines();
  if (Halted(run)) return;
  run.at = "writing the work files";
  pass.Finish();
  Analysis& analysis = run.analysis;
  LayOutScales(analysis.design, analysis.structures, analysis.scales);
  run.console.ShowAndWrite(
      JoinNumber("Total lines in data file =", analysis.counts.FileLines.text()));
}

}  // namespace

const std::string& DataName(const Settings& settings) {
  const bool inlineData = settings.dataSource == DataSource::inlineData;
  return inlineData ? settings.specificationFile : settings.dataFile;
}

void ReadData(Run& run) {
  ReadImportedData(run, {});
}

void ReadImportedData(Run& run, const PlaceInSource& placeInSource) {
  Analysis& analysis = run.analysis;
  const bool inlineData = analysis.settings.dataSource == DataSource::inlineData;
  run.console.ShowAndWrite("Assigning models to Data= " + InQuotes(DataName(analysis.settings)));
  run.process.control.QueryMode = analysis.settings.Query;
  if (inlineData) {
    if (analysis.specification.source) ReadSource(run, *analysis.specification.source, {});
  } else {
    SpecificationSource source;
    if (OpenDataFile(run, source)) ReadSource(run, source, placeInSource);
  }
  run.process.control.QueryMode = false;
}

}  // namespace flanks
