#include "output/simulate.h"

#include <charconv>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "data/data_pass.h"
#include "data/matching.h"
#include "data/record_reader.h"
#include "estimate/block_kernel.h"
#include "estimate/observation.h"
#include "output/file_mark.h"
#include "output/random.h"
#include "report/format/join_number.h"
#include "run/progress_bar.h"
#include "spec/delements.h"

namespace flanks {
namespace {

constexpr std::size_t kBytesOfAWrite = std::size_t{1} << 16;

void AddWhole(std::string& text, std::int64_t number) {
  char digits[24];
  const auto written = std::to_chars(digits, digits + sizeof digits, number);
  text.append(digits, written.ptr);
}

// What a data line calls each element.
class Identifiers {
 public:
  Identifiers(const Design& design, Console& console)
      : design_(design), labels_(design.flanks, design.elements, console) {}

  void Add(std::string& line, ElementSlot slot) {
    const FlankNo flank = design_.elements.ElementFlank[slot];
    // The identifier begins in a later column of the field.
    for (std::int32_t column = 1; column < design_.flanks.identifierStart[flank]; ++column)
      line += '0';
    if (design_.flanks.FlankDelements[flank].starts_with('L')) {
      if (const std::string label = LabelOf(slot, flank); !label.empty()) {
        line += label;
        return;
      }
    }
    AddWhole(line, design_.elements.ElementNumber[slot]);
  }

 private:
  // The part of the label that data name, when that leads back to the element.
  std::string LabelOf(ElementSlot slot, FlankNo flank) {
    const std::string& label = design_.elements.ElementLabel[slot];
    std::string key(TrimRight(std::string_view(label).substr(0, label.find(':'))));
    ReplaceCharacter(key, '_', '-');
    return labels_.FindElementByLabel(key, flank) == slot ? key : std::string();
  }

  const Design& design_;
  LabelFinder labels_;
};

bool IsMissingCode(const std::string& missing, std::string_view text) {
  return missing.find("," + std::string(text) + ",") != std::string::npos;
}

// A response that the data reader takes for category `raw` of a statement.
std::string ResponseFor(const Design& design, const Settings& settings, ModelRow model, int raw) {
  const auto leadsThere = [&](const std::string& text) {
    if (IsMissingCode(settings.Missing, text)) return false;
    const ScoredResponse scored = ScoreResponse(design, model, text);
    return scored.fate == ResponseFate::valid && scored.category == raw;
  };
  const std::string plain = std::to_string(raw);
  const ScaleDefinitionRow definition = design.models.ModelScale[model];
  if (leadsThere(plain) || !design.scales.has(definition)) return plain;
  for (const RecodeItem& item : design.scales[definition].recodes) {
    const std::string text(item.isRange ? item.text.substr(0, item.text.find('-', 1)) : item.text);
    if (item.category == plain && leadsThere(text)) return text;
  }
  return plain;
}

class Simulation {
 public:
  Simulation(Run& run, std::uint32_t seed, Destination& out)
      : analysis_(run.analysis),
        console_(run.console),
        out_(out),
        reader_(PassPartsOf(run.analysis, run.console)),
        kernel_(run.analysis.scales.scales()),
        numbers_(seed),
        identifiers_(run.analysis.design, run.console),
        uniform_(kKernelBlock),
        drawn_(kKernelBlock),
        expected_(kKernelBlock),
        replication_(kKernelBlock),
        structure_(kKernelBlock),
        response_(kKernelBlock),
        slots_(run.analysis.work.layout.fields.size(), std::vector<std::int32_t>(kKernelBlock)) {}

  void Write();

 private:
  void MakeResponses();
  void MapPositions();
  void ReadRecords(const ObservationBlock& block);
  void DrawBlock(const ObservationBlock& block);
  void WriteLines(const ObservationBlock& block);
  void AddLine(const ObservationBlock& block, std::size_t i);
  const std::string& Response(std::size_t i) const;

  const Analysis& analysis_;
  Console& console_;
  Destination& out_;
  ObservationReader reader_;
  BlockKernel kernel_;
  KernelWork work_;  // of its own: later passes read what earlier ones left in the run's
  UniformNumbers numbers_;
  Identifiers identifiers_;
  std::vector<double> uniform_;      // by entry of a block
  std::vector<std::int16_t> drawn_;  // likewise; -1: not used in the estimation
  std::vector<float> expected_;      // by lane
  // The records as they were read, by entry.
  std::vector<float> replication_;
  std::vector<std::int32_t> structure_;
  std::vector<std::int16_t> response_;
  std::vector<std::vector<std::int32_t>> slots_;  // by field
  // By data position: the field with its element; -1 for none.
  std::vector<int> fieldOfPosition_;
  // By structure and ordered category.
  std::vector<std::vector<std::string>> responses_;
  std::string text_;
};

void Simulation::MakeResponses() {
  const ScaleTables& scales = analysis_.scales;
  for (const StructureRow row : Upward(analysis_.structures.structureModel)) {
    const ScaleRow scale = analysis_.structures.structureScale[row];
    std::vector<std::string>& responses = responses_.emplace_back();
    for (int k = 0; k <= scales.ScaleTopCategory[scale]; ++k)
      responses.push_back(ResponseFor(analysis_.design, analysis_.settings,
                                      analysis_.structures.structureModel[row],
                                      scales.rawCategory.at(scale, k)));
  }
}

void Simulation::MapPositions() {
  const EntryMaps& maps = analysis_.design.maps;
  const auto& fields = analysis_.work.layout.fields;
  for (const DataPosition p : Upward(maps.ActiveMap)) {
    int found = -1;
    for (std::size_t f = 0; f < fields.size(); ++f)
      if (maps.ActiveMap[p].number() > 0 && fields[f].position == maps.ActiveMap[p])
        found = static_cast<int>(f);
    fieldOfPosition_.push_back(found);
  }
}

void Simulation::Write() {
  MakeResponses();
  MapPositions();
  kernel_.Begin(analysis_.scales, analysis_.estimates.ExponentLimit);
  reader_.Begin(Categories::wanted);
  ProgressBar bar(console_, analysis_.work.records);
  while (reader_.Next()) {
    const ObservationBlock& block = reader_.block();
    ReadRecords(block);
    DrawBlock(block);
    WriteLines(block);
    bar.Advance(block.firstRecord + static_cast<std::int64_t>(block.count) - 1);
  }
  out_.Lines(text_);
  console_.stopping() ? bar.Break() : bar.End();
}

// The block has only the elements that measure and the weights of the estimation.
void Simulation::ReadRecords(const ObservationBlock& block) {
  const RecordBlock records = ReadRecordBlock(reader_.parts().work, block.firstRecord, block.count);
  DecodeResponses(records, structure_, replication_, response_);
  for (std::size_t f = 0; f < slots_.size(); ++f)
    DecodeElements(records, reader_.parts().work.layout.fields[f], slots_[f]);
}

// Random numbers are taken in the order of the records, so that a seed decides the file.
void Simulation::DrawBlock(const ObservationBlock& block) {
  for (std::size_t i = 0; i < block.count; ++i) {
    drawn_[i] = -1;
    if (FeedsEstimation(block.state[i])) uniform_[i] = numbers_.Next();
  }
  kernel_.Arrange(block, Lanes::mayBeMixed);
  for (const LaneRun& run : kernel_.runs()) {
    const bool oneByOne = kernel_.oneByOne();
    const KernelScale& scale = kernel_.scale(run.scale);
    if (oneByOne)
      EvaluateOne(scale, kernel_.measures()[run.first], work_);
    else
      kernel_.Evaluate(run, expected_.data(), nullptr);
    const float* first = oneByOne ? work_.CategoryProbability.data() : kernel_.probability(run, 0);
    for (std::size_t lane = 0; lane < run.count; ++lane) {
      const std::size_t i = kernel_.entry(run.first + lane);
      const int top = analysis_.scales.ScaleTopCategory[ScaleRow(block.scale[i])];
      drawn_[i] = static_cast<std::int16_t>(
          DrawCategory(uniform_[i], first + lane, oneByOne ? 1 : kKernelStride, top));
    }
  }
}

void Simulation::WriteLines(const ObservationBlock& block) {
  for (std::size_t i = 0; i < block.count; ++i)
    if (drawn_[i] >= 0) AddLine(block, i);
  if (text_.size() < kBytesOfAWrite) return;
  out_.Lines(text_);
  text_.clear();
}

void Simulation::AddLine(const ObservationBlock& block, std::size_t i) {
  if (replication_[i] != 1.0f)
    text_ += analysis_.settings.Replication + FreeNumber(replication_[i]) + ",";
  for (const int field : fieldOfPosition_) {
    const std::int32_t slot = field < 0 ? 0 : slots_[static_cast<std::size_t>(field)][i];
    if (slot > 0) identifiers_.Add(text_, ElementSlot(slot));
    text_ += ',';
  }
  text_ +=
      responses_[static_cast<std::size_t>(block.structure[i])][static_cast<std::size_t>(drawn_[i])];
  text_ += " ; ";
  AddWhole(text_, response_[i]);
  text_ += '\n';
}

}  // namespace

int DrawCategory(double uniform, const float* probability, std::size_t stride, int top) {
  double rest = uniform;
  for (int k = 0; k <= top; ++k) {
    rest -= probability[static_cast<std::size_t>(k) * stride];
    if (rest <= 0.0) return k;
  }
  return top;
}

void WriteSimulatedLines(Run& run, const SimulationOptions& options, Destination& out) {
  const Settings& settings = run.analysis.settings;
  out.Line(options.SimulateMatching ? "; Simulated data matching the empirical data structure"
                                    : "; Simulated fully-crossed complete data");
  out.Line("; " + settings.Title);
  out.Line("; matching: " + DataName(settings));
  if (!options.SimulateMatching) return;
  out.Line("; by " + ProgramAndDate());
  if (!settings.Dvalues.empty())
    out.Line("; leave out Dvalues= to read these data: every position is here");
  Simulation(run, options.seed.value_or(SeedOfClock()), out).Write();
}

bool WriteSimulatedData(Run& run, const std::string& name, const SimulationOptions& options) {
  run.console.ShowLine("Writing simulated data file ...");
  return WriteOutputFile(run, "WriteSimulatedData", name,
                         [&](Destination& out) { WriteSimulatedLines(run, options, out); });
}

void WriteSimulatedData(Run& run) {
  const std::string& name = run.analysis.settings.SimulatedFile;
  if (!name.empty()) WriteSimulatedData(run, name, {});
}

}  // namespace flanks
