#include "support/data_design.h"

#include <stdexcept>

#include "base/text.h"
#include "data/element_file.h"
#include "data/response_file.h"
#include "data/table2.h"
#include "report/format/join_number.h"
#include "run/report_page.h"
#include "spec/models.h"

namespace flanks {
namespace {

void Require(bool good, const std::string& what) {
  if (!good) throw std::logic_error("test design: " + what);
}

}  // namespace

DataRun::DataRun() {
  std::string reason;
  Require(OpenReport(console, folder.file("report.txt"), reason), reason);
}

FlankNo DataRun::Flank(const Elements& elements, const std::string& delements) {
  FlankTable& flanks = design().flanks;
  const FlankNo flank = flanks.FlankName.push("F" + std::to_string(design().FlankCount + 1));
  flanks.FlankOptions.push(" ");
  flanks.FlankLow.push(elements.empty() ? 0 : elements.front().first);
  flanks.FlankHigh.push(elements.empty() ? 0 : elements.back().first);
  flanks.FlankElementCount.push(static_cast<std::int32_t>(elements.size()));
  flanks.FlankFirstSlot.push(ElementSlot(elements.empty() ? 0 : design().ElementTotal + 1));
  flanks.FlankWeight.push(1.0f);
  flanks.FlankNullLabel.push("");
  flanks.FlankOrientation.push(kPositiveOrientation);
  flanks.FlankCenter.push(kCentered);
  flanks.FlankDelements.push(delements);
  flanks.FlankHighestGroup.push(0);
  flanks.identifierStart.push(0);
  flanks.identifierWidth.push(0);
  ElementTable& table = design().elements;
  for (const auto& [number, label] : elements) {
    table.ElementNumber.push(number);
    table.ElementLabel.push(label.empty() ? std::to_string(number) : label);
    table.ElementAnchor.push(AnchorKind::none);
    table.PresetMeasure.push(0.0f);
    table.ElementGroup.push(0);
    table.ElementWeight.push(1.0f);
    table.ElementTarget.push(ElementSlot(0));
    table.ElementFlank.push(flank);
    ++design().ElementTotal;
  }
  design().FlankCount = flank.number();
  EnterInOrder();
  return flank;
}

void DataRun::EnterInOrder() {
  std::vector<int> order;
  for (int f = 1; f <= design().FlankCount; ++f) order.push_back(f);
  Entered(order);
}

void DataRun::Entered(const std::vector<int>& flankOfPosition) {
  EntryMaps& maps = design().maps;
  maps = {};
  for (const int flank : flankOfPosition) {
    maps.EntryMap.push(FlankNo(flank));
    maps.ActiveMap.push(flank > 0 ? maps.ModelFlank.push(FlankNo(flank)) : Position(0));
    maps.DataPositionActive.push(0);
  }
  design().DataFlankCount = maps.EntryMap.rows();
  design().ModelFlankCount = maps.ModelFlank.rows();
}

ScaleDefinitionRow DataRun::Scale(const std::string& name, const std::string& type,
                                  std::vector<RecodeItem> recodes, bool specific) {
  ScaleDefinition definition;
  definition.name = name;
  definition.type = type;
  definition.specific = specific;
  definition.recodes = std::move(recodes);
  design().ScaleLast = design().scales.rows();
  return design().scales.push(definition);
}

ModelRow DataRun::Model(const std::string& statement) {
  std::vector<std::string> texts;
  for (const std::string_view field : CommaFields(statement)) texts.emplace_back(field);
  const auto positions = static_cast<std::size_t>(design().ModelFlankCount);
  Require(texts.size() == positions + 1, statement);
  ModelTable& models = design().models;
  const ModelRow model = models.ModelText.push({});
  if (model.number() == 0) models.references.assign(0, design().ModelFlankCount, {});
  models.references.resizeRows(model.number() + 1, {});
  for (std::size_t a = 0; a < positions; ++a) {
    const ElementReference reference = ParseElementReference(texts[a]);
    Require(reference.fault == Fault::none, statement);
    models.references.at(model, static_cast<std::int32_t>(a)) = reference.reference;
    texts[a] = reference.normalised;
    for (const DataPosition p : Upward(design().maps.ActiveMap))
      if (design().maps.ActiveMap[p] == Position(static_cast<std::int32_t>(a) + 1) &&
          !reference.reference.ignored)
        design().maps.DataPositionActive[p] = 1;
  }
  ScaleDefinitionRow scale;
  for (const ScaleDefinitionRow row : Upward(design().scales))
    if (design().scales[row].name == texts.back()) {
      scale = row;
      texts.back() = design().scales[row].type;
    }
  const ScaleTypeText type =
      ParseScaleType(texts.back(), kDefaultCategoryMaximum, kLargestCategoryMaximum);
  Require(type.fault == Fault::none, statement);
  texts.push_back("1");
  models.ModelText[model] = texts;
  models.ModelScaleType.push(type.type);
  models.ModelCategoryMax.push(type.maximum);
  models.ModelKeep.push(type.keep ? 1 : 0);
  models.ModelWeight.push(1.0f);
  models.ModelScale.push(scale);
  design().ModelLast = model.number();
  design().MaxCategory = std::max(design().MaxCategory, type.maximum);
  return model;
}

void DataRun::Dvalue(DvalueEntry entry) {
  settings().Dvalues.push_back(std::move(entry));
}

std::unique_ptr<SpecificationSource> DataRun::OpenLines(const std::string& lines) {
  std::string text;
  for (int i = 0; i < linesBefore; ++i) text += "Title=x\n";
  settings().specificationFile = folder.write("s.txt", text + lines);
  auto source = std::make_unique<SpecificationSource>();
  Require(source->Open(settings().specificationFile, "Specification", settings().specificationFile,
                       console) == Fault::none,
          "s.txt");
  std::string_view line;
  for (int i = 0; i < linesBefore; ++i) source->ReadRawLine(console, line);
  return source;
}

void DataRun::Read(const std::string& lines) {
  settings().dataSource = DataSource::inlineData;
  analysis.specification.source = OpenLines(lines);
  RunSteps();
}

void DataRun::ReadFile(const std::string& name) {
  settings().dataSource = DataSource::file;
  settings().dataFile = name;
  RunSteps();
}

void DataRun::RunSteps() {
  for (const auto step : {OpenWorkFiles, WriteTable2Head, ReadData, WriteTable2Body})
    if (!Halted(run)) step(run);
}

void DataRun::Pass(const std::string& lines, PlainLines plainLines) {
  const std::unique_ptr<SpecificationSource> source = OpenLines(lines);
  OpenResponseFile(0, analysis.work);
  Require(PrepareElementFile(design(), settings(), 0, analysis.work) == Fault::none, "work files");
  DataPass pass(DataPassPartsOf(run), *source, plainLines);
  pass.ReadLines();
  pass.Finish();
}

std::vector<std::string> DataRun::Records() {
  std::vector<std::string> records;
  RecordReader reader(analysis.work);
  ResponseRecord record;
  for (std::int64_t r = 1; r <= reader.records(); ++r) {
    reader.ReadResponseRecord(r, record);
    reader.ReadElementRecord(r);
    std::string text = std::to_string(record.structure.number()) + " " +
                       FreeNumber(record.replication) + " " + std::to_string(record.response) +
                       " :";
    for (const ElementSlot slot : reader.RecordElement) text += " " + std::to_string(slot.number());
    records.push_back(text);
  }
  return records;
}

std::string DataRun::Outcome() {
  const DataCounts& counts = analysis.counts;
  std::string all = Screen() + Report();
  for (const FixedCount count :
       {counts.FileLines, counts.DataLines, counts.NonBlankResponses, counts.ValidResponses})
    all += count.text() + " ";
  for (const CountedEvent& event :
       {counts.BlankLines, counts.MissingCodeResponses, counts.MissingNullResponses, counts.R0Lines,
        counts.InvalidResponses, counts.NegativeResponses, counts.InvalidModelResponses,
        counts.UnspecifiedResponses, counts.UnmatchedResponses})
    all += event.count.text() + "@" + std::to_string(event.firstLine) + " ";
  for (const std::int64_t matched : counts.ModelCounter) all += std::to_string(matched) + " ";
  // After a fault nobody asks which Flanks were looked up.
  if (!analysis.reading.faulty())
    for (const std::uint8_t lookedUp : counts.flankLookedUp) all += lookedUp != 0 ? "y" : "n";
  for (const UnspecifiedElement& element : counts.UnspecifiedList)
    all += "\n" + std::to_string(element.flank.number()) + ":" + std::to_string(element.number) +
           "=" + element.text;
  for (const std::string& record : Records()) all += "\n" + record;
  const StructureTable& structures = analysis.structures;
  for (const StructureRow row : Upward(structures.structureModel))
    for (int category = 0; category < structures.structureCount.width(); ++category)
      all += " " + std::to_string(structures.structureCount.at(row, category));
  all += "\n" + Fault() + analysis.reading.SourceLine;
  // The folder has another name in each run.
  for (std::size_t at; (at = all.find(folder.folder())) != std::string::npos;)
    all.erase(at, folder.folder().size());
  return all;
}

}  // namespace flanks
