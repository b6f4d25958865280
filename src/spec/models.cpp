#include "spec/models.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "run/messages.h"
#include "run/work_files.h"
#include "spec/flank_maps.h"
#include "spec/given_value.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr std::string_view kDefaultWeight = "1";
constexpr std::string_view kDefaultReference = "?$";
constexpr std::string_view kDefaultType = "D";
constexpr std::int32_t kMostStatements = 100000;  // each is looked at for many a response

// ---- Models=

// Fetches a line of the list.  A statement may begin with X, which the splitting would take for
// the letter of a keyword, so such a line is split with another first character.
void FetchStatementLine(SpecContext& context) {
  ReadState& reading = context.reading;
  const bool fetched = FetchText(context);
  std::string line = reading.CurrentLine;
  const bool beginsWithX = fetched && !line.empty() && UpperCase(line.front()) == 'X';
  if (beginsWithX) line.front() = '!';
  SplitIntoFields(context, line);
  if (beginsWithX && !reading.Fields[1].empty()) reading.Fields[1].front() = 'X';
}

// Whether the list has ended: "*" is taken, a line with a keyword stays for the main loop.
// Kept: a line whose keyword begins with M is a statement, "Model=?,?,R" (docs/quirks.md).
bool StatementsEnd(SpecContext& context) {
  const ReadState& reading = context.reading;
  if (reading.faulty() || context.state.EndOfSpecification) return true;
  const std::string& keyword = reading.Fields[0];
  if (!keyword.empty() && UpperCase(keyword.front()) != 'M') {
    LeaveLine(context);
    return true;
  }
  return reading.Fields[1] == "*";
}

void SetWeightFault(ReadState& reading, std::string_view weight) {
  FaultParticulars particulars;
  particulars.text = ShownPart(reading.SourceLine);
  particulars.name = kSpecificationName;
  particulars.value = ShownPart(weight);
  SetFault(reading, Fault::nonNumericWeight, std::move(particulars));
}

void KeepStatement(SpecContext& context, TextWorkFile& file) {
  ReadState& reading = context.reading;
  Design& design = context.design;
  if (design.ModelLast + 1 >= kMostStatements)
    return SetSpecificationFault(reading, Fault::tooManyModels);
  if (reading.FieldCount < design.ModelTypeField())
    return SetNumberedFault(reading, Fault::tooFewModelFields, design.ModelFlankCount);
  if (reading.FieldCount > design.ModelMaxFields())
    return SetNumberedFault(reading, Fault::tooManyModelFields, design.ModelMaxFields());
  std::string statement;
  for (int field = 1; field <= design.ModelMaxFields(); ++field) {
    std::string_view text = FieldAt(reading, field);
    if (field == design.ModelWeightField()) {
      if (text.empty()) text = kDefaultWeight;
      if (!BeginsLikeNumber(text)) return SetWeightFault(reading, text);
    }
    statement += text;
    statement += kStatementSeparator;
  }
  file.WriteLine(statement);
  ++design.ModelLast;
  design.models.statementLine.push(reading.LineNumber);
}

// ---- BuildModelTable

std::vector<std::string> StatementFields(std::string_view statement, int count) {
  std::vector<std::string> fields;
  FieldCursor cursor(statement, kStatementSeparator);
  std::string_view field;
  while (static_cast<int>(fields.size()) < count && cursor.Next(field))
    fields.push_back(UpperCase(field));
  fields.resize(static_cast<std::size_t>(count));
  return fields;
}

// What a run without any statement has: every observation is a dichotomy.
void AddDefaultStatement(Design& design) {
  std::vector<std::string> fields(static_cast<std::size_t>(design.ModelMaxFields()));
  std::fill_n(fields.begin(), design.ModelFlankCount, kDefaultReference);
  fields[static_cast<std::size_t>(design.ModelTypeField() - 1)] = kDefaultType;
  fields[static_cast<std::size_t>(design.ModelWeightField() - 1)] = kDefaultWeight;
  design.models.ModelText.push(std::move(fields));
  design.models.statementLine.push(0);
  design.ModelLast = 0;
}

void SizeModelTable(Design& design) {
  ModelTable& models = design.models;
  const std::int32_t rows = design.ModelLast + 1;
  models.references.assign(rows, design.ModelFlankCount, PositionReference());
  models.ModelScaleType.assign(rows, ScaleType::missing);
  models.ModelCategoryMax.assign(rows, -1);
  models.ModelKeep.assign(rows, 0);
  models.ModelWeight.assign(rows, 1.0f);
  models.ModelScale.assign(rows, ScaleDefinitionRow(-1));
}

// A position of the data line is in use when a statement has anything but X there; the last
// statement that has decides whether it is a dummy.
void MarkDataPosition(EntryMaps& maps, Position position, bool dummy) {
  for (const DataPosition place : Upward(maps.ActiveMap))
    if (maps.ActiveMap[place] == position) maps.DataPositionActive[place] = dummy ? -1 : 1;
}

void SetStatementFault(Run& run, ModelRow model, Fault fault, std::string_view text) {
  run.analysis.reading.SourceLine = ShownPart(text);
  SetFaultOfLine(run.analysis.reading, fault, run.analysis.design.models.statementLine[model],
                 text);
}

// Reads the references of one statement; false when one is at fault.
bool ReadReferences(Run& run, ModelRow model) {
  Design& design = run.analysis.design;
  std::vector<std::string>& fields = design.models.ModelText[model];
  for (Position position(1); position.number() <= design.ModelFlankCount; ++position) {
    std::string& field = fields[position.offset()];
    const ElementReference read = ParseElementReference(field);
    if (read.fault != Fault::none) {
      std::string text;
      for (const std::string& part : fields) text += part + " ";
      SetStatementFault(run, model, read.fault, text + ": " + field);
      return false;
    }
    const bool dummy = field.find('@') != std::string::npos;
    field = read.normalised;
    design.models.references.at(model, position.number() - 1) = read.reference;
    design.models.anyReversed = design.models.anyReversed || read.reference.reversed;
    if (!read.reference.ignored) MarkDataPosition(design.maps, position, dummy);
  }
  return true;
}

// ---- MatchElementsToModels

struct NamedScale {
  std::string upperName;
  ScaleDefinitionRow row;
};

// The scales by name, in upper case; of equal names the one defined first stands first.
std::vector<NamedScale> SortedScales(const Design& design) {
  std::vector<NamedScale> sorted;
  for (const ScaleDefinitionRow row : Upward(design.scales))
    sorted.push_back({UpperCase(design.scales[row].name), row});
  std::stable_sort(sorted.begin(), sorted.end(), [](const NamedScale& a, const NamedScale& b) {
    return a.upperName < b.upperName;
  });
  return sorted;
}

void WarnOfEqualNames(const std::vector<NamedScale>& sorted, const Design& design,
                      Console& console) {
  for (std::size_t i = 1; i < sorted.size(); ++i)
    if (sorted[i].upperName == sorted[i - 1].upperName)
      console.WarnLine(std::string(message::kDuplicateScale) + design.scales[sorted[i].row].name);
}

// The scale of this name, or row -1.
ScaleDefinitionRow FindScale(const std::vector<NamedScale>& sorted, const std::string& upperName) {
  const auto found = std::lower_bound(
      sorted.begin(), sorted.end(), upperName,
      [](const NamedScale& scale, const std::string& name) { return scale.upperName < name; });
  if (found == sorted.end() || found->upperName != upperName) return ScaleDefinitionRow(-1);
  return found->row;
}

// Type, maximum, scale and weight of one statement.
void MatchStatement(Run& run, ModelRow model, const std::vector<NamedScale>& sorted) {
  Design& design = run.analysis.design;
  ModelTable& models = design.models;
  std::string& type = models.ModelText[model][std::size_t(design.ModelTypeField() - 1)];
  std::string& weight = models.ModelText[model][std::size_t(design.ModelWeightField() - 1)];
  const ScaleDefinitionRow scale = FindScale(sorted, type);
  models.ModelScale[model] = scale;
  bool keep = false;
  if (scale.number() >= 0) {
    keep = design.scales[scale].keep;
    type = UpperCase(design.scales[scale].type);
  }
  const ScaleTypeText read = ParseScaleType(type, kDefaultCategoryMaximum, kLargestCategoryMaximum);
  if (read.fault != Fault::none)
    return SetStatementFault(run, model, read.fault, StatementText(models, model));
  models.ModelKeep[model] = keep || read.keep;
  models.ModelScaleType[model] = read.type;
  models.ModelCategoryMax[model] = read.maximum;
  design.MaxCategory = std::max(design.MaxCategory, read.maximum);
  // A malformed weight ends the process here.
  std::int64_t& lineNumber = run.analysis.reading.LineNumber;
  const std::int64_t lastLine = std::exchange(lineNumber, models.statementLine[model]);
  const GivenValue value = EvaluateGiven(run.console, weight);
  lineNumber = lastLine;
  if (!value.given) weight = kDefaultWeight;
  models.ModelWeight[model] = value.given ? value.value : 1.0f;
}

}  // namespace

std::string StatementText(const ModelTable& models, ModelRow model) {
  std::string text;
  for (const std::string& field : models.ModelText[model]) text += field + ",";
  return text.substr(0, text.find_last_not_of(',') + 1);
}

void ReadModels(SpecContext& context) {
  ReadState& reading = context.reading;
  if (context.state.ReadingExtras) return SetSpecificationFault(reading, Fault::extraInvalid);
  if (context.design.FlankCount == 0) return SetSpecificationFault(reading, Fault::flanksFirst);
  MakeDefaultMaps(context.design);
  TextWorkFile& file =
      OpenListFile(context, context.work.statementsFile, "statements", "ReadModels");
  if (reading.FieldCount == 0) FetchStatementLine(context);
  while (!StatementsEnd(context)) {
    KeepStatement(context, file);
    if (reading.faulty()) return;
    FetchStatementLine(context);
  }
}

void BuildModelTable(Run& run) {
  Analysis& analysis = run.analysis;
  Design& design = analysis.design;
  if (design.FlankCount == 0) return;
  MakeDefaultMaps(design);
  if (design.ModelLast >= 0) {
    TextWorkFile& file = *analysis.work.statementsFile;
    file.Rewind();
    std::string_view statement;
    while (file.ReadLine(statement))
      design.models.ModelText.push(StatementFields(statement, design.ModelMaxFields()));
  } else {
    AddDefaultStatement(design);
  }
  SizeModelTable(design);
  design.maps.DataPositionActive.assign(design.DataFlankCount, 0);
  for (const ModelRow model : Upward(design.models.ModelText))
    if (!ReadReferences(run, model)) return;
}

void MatchElementsToModels(Run& run) {
  Design& design = run.analysis.design;
  run.console.ShowLine("Matching elements to models ");
  const std::vector<NamedScale> sorted = SortedScales(design);
  WarnOfEqualNames(sorted, design, run.console);
  for (const ModelRow model : Upward(design.models.ModelText)) {
    MatchStatement(run, model, sorted);
    if (run.analysis.reading.faulty()) return;
  }
}

}  // namespace flanks
