// The data pass against a bare loop over the lines of the same file.
//
// Each round of a pass is the whole of it: opening the file, splitting, look-up, matching, writing
// both work files, and removing them.  `lines` is the number of lines; FLANKS_BENCH_LINES sets
// another.  The bare loop is std::getline into one string.  The aim: the plain file at no more than
// 8 times the bare loop, labels of a Flank of 100,000 at no more than 15 times theirs.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/temp_file.h"
#include "base/text_file.h"
#include "data/data_pass.h"
#include "data/element_file.h"
#include "data/response_file.h"
#include "silent_shell.h"

namespace flanks {
namespace {

constexpr std::int32_t kExaminees = 100000, kRaters = 50, kCriteria = 5, kCategoryCount = 5;

std::int64_t LineCount() {
  const char* given = std::getenv("FLANKS_BENCH_LINES");
  return given != nullptr ? std::atoll(given) : 1000000;
}

enum class Form { plain, blanks, labels, unusual };

std::string ExamineeLabel(std::int32_t number) {
  return "Examinee " + std::to_string(number * 7919 % kExaminees);
}

// A file of ratings, made once for each form and removed at the end.
class RatingFile {
 public:
  explicit RatingFile(Form form) {
    if (file_.Create("bench", "txt")) throw std::runtime_error("no temporary file");
    std::ofstream out(file_.name(), std::ios::binary);
    std::mt19937 random(1);
    const auto below = [&random](std::int32_t limit) {
      return static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(limit));
    };
    for (std::int64_t i = 0; i < LineCount(); ++i) {
      const std::int32_t examinee = static_cast<std::int32_t>(i / 10 % kExaminees) + 1;
      const char separator = form == Form::blanks ? ' ' : ',';
      if (form == Form::labels)
        out << ExamineeLabel(below(kExaminees) + 1);
      else
        out << examinee;
      out << separator << below(kRaters) + 1 << separator << below(kCriteria) + 1 << separator;
      if (form == Form::unusual && i % 3 == 0)
        out << "x\n";  // a missing code
      else
        out << below(kCategoryCount) << '\n';
    }
    if (!out.flush()) throw std::runtime_error("temporary file not written");
  }
  const std::string& name() const { return file_.name(); }

 private:
  TempFile file_;
};

const RatingFile& FileOf(Form form) {
  static const RatingFile plain(Form::plain), blanks(Form::blanks), labels(Form::labels),
      unusual(Form::unusual);
  switch (form) {
    case Form::plain:
      return plain;
    case Form::blanks:
      return blanks;
    case Form::labels:
      return labels;
    case Form::unusual:
      break;
  }
  return unusual;
}

void AddFlank(Design& design, std::int32_t elements, const char* delements) {
  FlankTable& flanks = design.flanks;
  const FlankNo flank = flanks.FlankName.push("");
  design.FlankCount = design.DataFlankCount = design.ModelFlankCount = flank.number();
  flanks.FlankLow.push(1);
  flanks.FlankHigh.push(elements);
  flanks.FlankElementCount.push(elements);
  flanks.FlankFirstSlot.push(ElementSlot(design.ElementTotal + 1));
  flanks.FlankNullLabel.push("");
  flanks.FlankDelements.push(delements);
  flanks.identifierStart.push(0);
  flanks.identifierWidth.push(0);
  for (std::int32_t number = 1; number <= elements; ++number) {
    design.elements.ElementNumber.push(number);
    design.elements.ElementLabel.push(ExamineeLabel(number));
    design.elements.ElementFlank.push(flank);
  }
  design.ElementTotal += elements;
  design.maps.EntryMap.push(flank);
  design.maps.ActiveMap.push(design.maps.ModelFlank.push(flank));
  design.maps.DataPositionActive.push(1);
}

Design MakeDesign(Form form) {
  Design design;
  AddFlank(design, kExaminees, form == Form::labels ? "L." : "N.");
  AddFlank(design, kRaters, "N.");
  AddFlank(design, kCriteria, "N.");
  design.models.ModelText.push({"?", "?", "?", "R4", "1"});
  design.models.references.assign(1, 3, {});
  design.models.ModelScaleType.push(ScaleType::rating);
  design.models.ModelCategoryMax.push(kCategoryCount - 1);
  design.models.ModelKeep.push(0);
  design.models.ModelWeight.push(1.0f);
  design.models.ModelScale.push(ScaleDefinitionRow());
  design.ModelLast = 0;
  design.MaxCategory = kCategoryCount - 1;
  return design;
}

void ReadAll(benchmark::State& state, Form form, PlainLines plainLines) {
  const std::string& name = FileOf(form).name();
  const Design design = MakeDesign(form);
  for (auto _ : state) {
    Process process;
    Analysis analysis;
    SilentShell shell(process.control);
    Dialogs dialogs;
    Console console(shell, dialogs, process.control, analysis.settings, analysis.report);
    analysis.settings.Missing = form == Form::unusual ? ",x," : "";
    const DataPassParts parts{design,           analysis.settings, process.control,
                              analysis.reading, analysis.counts,   analysis.structures,
                              analysis.work,    console,           dialogs};
    OpenResponseFile(0, analysis.work);
    SpecificationSource source;
    if (PrepareElementFile(design, analysis.settings, 0, analysis.work) != Fault::none ||
        source.Open(name, "Data", "", console) != Fault::none)
      state.SkipWithError("files");
    DataPass pass(parts, source, plainLines);
    pass.ReadLines();
    pass.Finish();
    if (analysis.counts.DataLines.whole() != LineCount() || analysis.reading.faulty())
      state.SkipWithError("not all lines were read");
  }
  state.SetItemsProcessed(state.iterations() * LineCount());
}

void BareLoop(benchmark::State& state, Form form) {
  const std::string& name = FileOf(form).name();
  for (auto _ : state) {
    std::ifstream input(name, std::ios::binary);
    std::string line;
    std::size_t bytes = 0;
    while (std::getline(input, line)) bytes += line.size();
    benchmark::DoNotOptimize(bytes);
  }
  state.SetItemsProcessed(state.iterations() * LineCount());
}

// What of a pass is the text reader's.
void ReadTextFileLines(benchmark::State& state) {
  const std::string& name = FileOf(Form::plain).name();
  for (auto _ : state) {
    TextFile input;
    if (input.Open(name)) state.SkipWithError("file");
    std::string_view line;
    std::size_t bytes = 0;
    while (input.ReadLine(line)) bytes += line.size();
    benchmark::DoNotOptimize(bytes);
  }
  state.SetItemsProcessed(state.iterations() * LineCount());
}

void ReadBareLines(benchmark::State& state) {
  BareLoop(state, Form::plain);
}
void ReadPlainLines(benchmark::State& state) {
  ReadAll(state, Form::plain, PlainLines::shortCut);
}
void ReadPlainLinesGenerally(benchmark::State& state) {
  ReadAll(state, Form::plain, PlainLines::generalProcedure);
}
void ReadLinesOfBlanks(benchmark::State& state) {
  ReadAll(state, Form::blanks, PlainLines::shortCut);
}
void ReadLinesOneInThreeMissing(benchmark::State& state) {
  ReadAll(state, Form::unusual, PlainLines::shortCut);
}
void ReadBareLabels(benchmark::State& state) {
  BareLoop(state, Form::labels);
}
void ReadLabels(benchmark::State& state) {
  ReadAll(state, Form::labels, PlainLines::shortCut);
}

BENCHMARK(ReadBareLines)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadTextFileLines)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadPlainLines)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadPlainLinesGenerally)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadLinesOfBlanks)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadLinesOneInThreeMissing)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadBareLabels)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadLabels)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace flanks
