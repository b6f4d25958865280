#include "output/simulate.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "data/data_pass.h"
#include "data/matching.h"
#include "data/record_reader.h"
#include "estimate/block_kernel.h"
#include "estimate/observation.h"
#include "output/dvalue_check.h"
#include "output/random.h"
#include "report/format/join_number.h"
#include "run/program_mark.h"
#include "run/progress_bar.h"
#include "spec/delements.h"

namespace flanks {
namespace {

constexpr std::size_t kBytesOfAWrite = std::size_t{1} << 16;
constexpr std::int64_t kLinesAbove = 4;  // comments in front of the data lines

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

  LabelFinder& labels() { return labels_; }

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

// What stands on a line for a category.
struct ResponseText {
  std::string text;
  bool isRead = true;  // false: no text leads to the category, and this is its number
};

// A response that the data reader takes for category `raw` of a statement.
ResponseText ResponseFor(const Design& design, const Settings& settings, ModelRow model, int raw) {
  const auto leadsThere = [&](const std::string& text) {
    if (IsListed(settings.Missing, text)) return false;
    const ScoredResponse scored = ScoreResponse(design, model, text);
    return scored.fate == ResponseFate::valid && scored.category == raw;
  };
  const std::string plain = std::to_string(raw);
  if (leadsThere(plain)) return {plain};
  const ScaleDefinitionRow definition = design.models.ModelScale[model];
  if (!design.scales.has(definition)) return {plain, false};
  for (const RecodeItem& item : design.scales[definition].recodes) {
    const std::string text(item.isRange ? item.text.substr(0, item.text.find('-', 1)) : item.text);
    if (item.category == plain && leadsThere(text)) return {text};
  }
  return {plain, false};
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
        rules_(SplitRulesOf(run.analysis.design, run.analysis.settings)),
        responses_(run.analysis.design.ModelLast + 1),
        uniform_(kKernelBlock),
        drawn_(kKernelBlock),
        expected_(kKernelBlock),
        replication_(kKernelBlock),
        structure_(kKernelBlock),
        response_(kKernelBlock),
        slots_(run.analysis.work.layout.fields.size(), std::vector<std::int32_t>(kKernelBlock)) {}

  void Write();

 private:
  void MapPositions();
  void ReadRecords(const ObservationBlock& block);
  void DrawBlock(const ObservationBlock& block);
  void WriteLines(const ObservationBlock& block);
  void AddLine(std::size_t i);
  void AddItems(std::size_t i);
  const ResponseText& Response(std::size_t i, int raw);
  bool GivesBackElements(std::string_view line, std::size_t i);
  void TellLosses();

  const Analysis& analysis_;
  Console& console_;
  Destination& out_;
  ObservationReader reader_;
  BlockKernel kernel_;
  KernelWork work_;  // of its own: later passes read what earlier ones left in the run's
  UniformNumbers numbers_;
  Identifiers identifiers_;
  SplitRules rules_;
  std::unique_ptr<DvalueCheck> check_;  // null without `Dvalues=`
  // By statement and category, made when first wanted.
  Column<ModelRow, std::vector<std::optional<ResponseText>>> responses_;
  std::vector<double> uniform_;      // by entry of a block
  std::vector<std::int16_t> drawn_;  // likewise, raw categories; -1: not used in the estimation
  std::vector<float> expected_;      // by lane
  // The records as they were read, by entry.
  std::vector<float> replication_;
  std::vector<std::int32_t> structure_;
  std::vector<std::int16_t> response_;
  std::vector<std::vector<std::int32_t>> slots_;  // by field
  // By data position: the field with its element; -1 for none.
  std::vector<int> fieldOfPosition_;
  std::string text_;
  std::int64_t lines_ = 0;
  std::int64_t misread_ = 0;  // lines that Dvalues= leads elsewhere
  std::int64_t lost_ = 0;     // responses that are not read again
  std::string firstLost_;
};

const ResponseText& Simulation::Response(std::size_t i, int raw) {
  const ModelRow model = analysis_.structures.structureModel[StructureRow(structure_[i])];
  std::vector<std::optional<ResponseText>>& texts = responses_[model];
  if (texts.empty()) texts.resize(kCategories);
  std::optional<ResponseText>& text = texts[static_cast<std::size_t>(raw)];
  if (!text) text = ResponseFor(analysis_.design, analysis_.settings, model, raw);
  return *text;
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
  MapPositions();
  if (!rules_.dvalues.empty())
    check_ = std::make_unique<DvalueCheck>(analysis_.design, analysis_.settings, rules_,
                                           identifiers_.labels());
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
  TellLosses();
}

void Simulation::TellLosses() {
  const std::string ofAll = " of " + std::to_string(lines_);
  if (misread_ > 0)
    console_.ShowFlagged("Dvalues= gives " + std::to_string(misread_) + ofAll +
                         " simulated lines other elements than the data had");
  if (lost_ > 0)
    console_.ShowFlagged(std::to_string(lost_) + ofAll +
                         " simulated responses will not be read, the first \"" + firstLost_ +
                         "\": see Missing= and the recodes of its scale");
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
      // A Poisson scale goes on above its highest count, as far as the kernel does.
      const bool poisson = scale.type == ScaleType::poisson;
      const int most = analysis_.scales.scaleMaximum[run.scale];
      const int top = poisson ? std::min(scale.filled, most) : scale.top;
      const int k = DrawCategory(uniform_[i], first + lane, oneByOne ? 1 : kKernelStride, top);
      drawn_[i] = poisson ? static_cast<std::int16_t>(k)
                          : analysis_.scales.rawCategory.at(ScaleRow(block.scale[i]), k);
    }
  }
}

void Simulation::WriteLines(const ObservationBlock& block) {
  for (std::size_t i = 0; i < block.count; ++i)
    if (drawn_[i] >= 0) AddLine(i);
  if (text_.size() < kBytesOfAWrite) return;
  out_.Lines(text_);
  text_.clear();
}

void Simulation::AddLine(std::size_t i) {
  ++lines_;
  const std::size_t start = text_.size();
  AddItems(i);
  const std::string_view items = std::string_view(text_).substr(start);
  float weight = 1.0f;
  // A first item that looks like a replication is none behind another one.
  if (replication_[i] != 1.0f ||
      ReadReplication(items.substr(0, items.find(',')), rules_.Replication, weight))
    text_.insert(start, analysis_.settings.Replication + FreeNumber(replication_[i]) + ",");
  if (check_ != nullptr && !GivesBackElements(std::string_view(text_).substr(start), i)) ++misread_;
  text_ += " ; " + Response(i, response_[i]).text + "\n";
}

// The elements that the line is to name, and the response.
void Simulation::AddItems(std::size_t i) {
  for (std::size_t p = 0; p < fieldOfPosition_.size(); ++p) {
    if (rules_.dvalue(static_cast<int>(p) + 1) != nullptr) continue;
    const int field = fieldOfPosition_[p];
    const std::int32_t slot = field < 0 ? 0 : slots_[static_cast<std::size_t>(field)][i];
    if (slot > 0) identifiers_.Add(text_, ElementSlot(slot));
    text_ += ',';
  }
  const ResponseText& response = Response(i, drawn_[i]);
  text_ += response.text;
  if (!response.isRead && lost_++ == 0) firstLost_ = response.text;
}

bool Simulation::GivesBackElements(std::string_view line, std::size_t i) {
  if (!check_->Read(line, kLinesAbove + lines_)) return false;
  const auto& fields = analysis_.work.layout.fields;
  for (std::size_t f = 0; f < fields.size(); ++f)
    if (check_->SlotAt(fields[f].position) != std::max(slots_[f][i], 0)) return false;
  return true;
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
