#include "report/table14.h"

#include <limits>
#include <memory>
#include <optional>
#include <system_error>

#include "base/external_sort.h"
#include "base/text_work_file.h"
#include "report/format/join_number.h"
#include "report/table13.h"
#include "report/table14_columns.h"
#include "report/table14_sort.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/progress_bar.h"
#include "run/report_page.h"
#include "stats/bias_measures.h"
#include "stats/bias_pairing.h"

namespace flanks {
namespace {

constexpr std::int64_t kPairsBetweenLooks = 1024;
constexpr std::int64_t kPairsOfABar = 100'000;  // what takes less than a second has no bar

// One target of the interaction.
struct Target {
  const BiasResults& results;
  std::size_t which;  // position of the interaction, from 0 on
  BiasPairing pairing;
};

enum class TableEnd : std::uint8_t { complete, empty, cancelled, stopping };

// The user's requests, looked at between rows, and a bar for what takes long.
class Watch {
 public:
  Watch(Console& console, std::int64_t total) : console_(console) {
    if (total >= kPairsOfABar) bar_.emplace(console, total);
  }
  // True when the work at hand is to end.
  bool IsEnded(std::int64_t done) {
    if (bar_) bar_->Advance(done);
    return console_.YieldToWindow() || console_.finishRequested();
  }
  void End() {
    if (bar_) bar_->End();
  }
  TableEnd Break() {
    if (bar_) bar_->Break();
    return console_.stopping() ? TableEnd::stopping : TableEnd::cancelled;
  }

 private:
  Console& console_;
  std::optional<ProgressBar> bar_;
};

std::unique_ptr<TextWorkFile> OpenPairFile(FileFaultPlan* plan) {
  auto file = std::make_unique<TextWorkFile>();
  if (const std::error_code error = file->Create("Pairs", "txt"))
    ThrowFileFailure("open", file->name(), error);
  file->Follow(plan);
  return file;
}

// A record for each pair that is shown.
TableEnd WriteRecords(Run& run, const Target& target, const std::string& letters,
                      TextWorkFile& file) {
  const Settings& settings = run.analysis.settings;
  PairRecords records(run.analysis, target.results, target.which, letters);
  Watch watch(run.console, target.pairing.pairs());
  std::int64_t done = 0;
  bool ended = false;
  target.pairing.ForEachPair([&](BiasPair pair) {
    const BiasContrast contrast =
        ContrastOf(target.results.terms[pair.first], target.results.terms[pair.second]);
    const PairFigures figures = FiguresOf(settings, contrast);
    if (IsPairShown(settings, figures)) file.WriteLine(records.RecordOf(pair, figures));
    if (++done % kPairsBetweenLooks == 0) ended = watch.IsEnded(done);
    return !ended;
  });
  if (ended) return watch.Break();
  watch.End();
  return file.lines() == 0 ? TableEnd::empty : TableEnd::complete;
}

TableEnd SortRecords(Run& run, std::unique_ptr<TextWorkFile>& file) {
  Console& console = run.console;
  console.ShowLine("Sorting...");
  Watch watch(console, 2 * file->lines());
  SortOptions options{.column = kPairSortColumn};
  options.plan = run.analysis.work.plan;
  options.isStopped = [&watch](std::int64_t done) { return watch.IsEnded(done); };
  if (!ExternalSort(options, file)) return watch.Break();
  watch.End();
  console.ShowLine("Sorted");
  return TableEnd::complete;
}

TableEnd WriteRows(Run& run, const Target& target, const Table14Layout& layout,
                   TextWorkFile& file) {
  Console& console = run.console;
  BeginBox(console, layout.headingRows, layout.rulePattern);
  Watch watch(console, file.lines());
  std::string_view record;
  for (std::int64_t row = 0; file.ReadLine(record); ++row) {
    if (watch.IsEnded(row)) return watch.Break();
    Juxtapose(console);
    WriteReportLine(console,
                    PairLine(run.analysis, layout, target.results, PairRecords::PairOf(record)));
  }
  watch.End();
  BottomRule(console);
  return TableEnd::complete;
}

// "Table 14.1.2" without the number of the order.
std::string TableName(const Target& target) {
  return "Table 14." + std::to_string(target.results.interaction.number) + "." +
         std::to_string(target.which + 1);
}

TableEnd WriteOrders(Run& run, const Target& target) {
  Console& console = run.console;
  const Table14Layout layout = LayOutTable14(run.analysis, target.results, target.which);
  int subtable = 0;
  for (const std::string& letters : BiasOrders(run.analysis.settings.Arrange)) {
    run.at = "pairing";
    std::unique_ptr<TextWorkFile> file = OpenPairFile(run.analysis.work.plan);
    TableEnd end = WriteRecords(run, target, letters, *file);
    if (end != TableEnd::complete) return end;
    run.at = "sorting";
    end = SortRecords(run, file);
    if (end != TableEnd::complete) return end;
    run.at = "writing";
    TableHeading(console, TableName(target) + "." + std::to_string(++subtable) +
                              "  Bias/Interaction Pairwise Report (arranged by " + letters + ")");
    end = WriteRows(run, target, layout, *file);
    if (end != TableEnd::complete) return end;
  }
  return TableEnd::complete;
}

TableEnd WriteTarget(Run& run, const Target& target) {
  Console& console = run.console;
  const Design& design = run.analysis.design;
  const BiasInteraction& interaction = target.results.interaction;
  console.WriteOutput("");
  console.ShowAndWrite(PairCountLine(design, interaction, target.which, target.pairing.pairs()));
  if (target.pairing.pairs() == 0) {
    const FlankNo flank = design.maps.ModelFlank[interaction.positions[target.which]];
    console.ShowAndWrite("Table 14: " + design.flanks.FlankName[flank] + " - No pairwise terms");
    return TableEnd::complete;
  }
  console.ShowLine("Press Ctrl+F to exit from Table 14 bias/interaction reporting.");
  const TableEnd end = WriteOrders(run, target);
  if (end == TableEnd::empty) console.ShowAndWrite("Table 14. Nothing to report");
  if (end == TableEnd::cancelled) console.ShowAndWrite("< Cancelled");
  return end;
}

void WriteTargets(Run& run, const BiasResults& results) {
  for (std::size_t which = 0; which < results.interaction.positions.size(); ++which) {
    const TableEnd end = WriteTarget(run, {results, which, BiasPairing(results, which)});
    if (end == TableEnd::cancelled || end == TableEnd::stopping) return;
  }
}

}  // namespace

std::string PairCountLine(const Design& design, const BiasInteraction& interaction,
                          std::size_t target, std::int64_t pairs) {
  constexpr std::int64_t kLargestCount = std::numeric_limits<std::int32_t>::max();
  const bool isFloor = pairs > kLargestCount;
  const auto flankAt = [&](std::size_t which) {
    return design.maps.ModelFlank[interaction.positions[which]];
  };
  const auto append = [&](const std::string& words, FlankNo flank) {
    return JoinNumber(words, flank.number()) + ". " + design.flanks.FlankName[flank];
  };
  std::string line =
      JoinNumber(isFloor ? " There are at least" : " There are", isFloor ? kLargestCount : pairs);
  line = append(line + " pairwise terms for", flankAt(target));
  line += " (with";
  for (std::size_t which = 0; which < interaction.positions.size(); ++which)
    if (which != target) line = append(line, flankAt(which));
  return line + ")";
}

void WriteTable14(Run& run, const BiasResults& results) {
  Console& console = run.console;
  SelectTable(console, 14);
  if (console.report().switchedOff) return;
  console.clearFinishRequest();
  try {
    WriteTargets(run, results);
  } catch (const std::system_error& failure) {
    // The temporary folder is full: what was not written is lost, and no more than that.
    console.WarnLine("Table 14 is not complete: " + std::string(failure.what()) + ".");
  }
  console.clearFinishRequest();
}

}  // namespace flanks
