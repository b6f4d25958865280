#include "output/bias_plots.h"

#include <fstream>

#include "base/text.h"
#include "output/destination.h"
#include "output/hand_offs.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/messages.h"
#include "run/report_page.h"
#include "spec/file_names.h"

namespace flanks {
namespace {

constexpr std::size_t kTermFlag = 12, kPairFlag = 13;  // places of `Tables=`, from 0 on

bool IsX(const std::string& flags, std::size_t place) {
  return place < flags.size() && (flags[place] == 'X' || flags[place] == 'x');
}

std::string WithoutEnd(const std::string& name, std::string_view end) {
  const bool has = UpperCase(name).ends_with(end);
  return has ? name.substr(0, name.size() - end.size()) : name;
}

// Whether something that is no workbook stands under the name: somebody's file, not ours.
bool IsOfAnotherKind(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  char first[2] = {};
  if (!file.is_open() || !file.read(first, sizeof first)) return false;  // none, or empty
  return first[0] != 'P' || first[1] != 'K';
}

// Why the file of this name is not to be replaced; empty when it may be.
std::string ReasonToKeep(const Settings& settings, const std::string& name) {
  const bool holdsData =
      settings.dataSource == DataSource::file &&
      SameFile(name, FindFileToRead(settings.dataFile, settings.specificationFile));
  if (holdsData) return "the data of this run stand in it";
  return IsOfAnotherKind(name) ? "it is no workbook, and is left alone" : "";
}

}  // namespace

BiasPlotChoice BiasPlotsAsked(const Settings& settings) {
  const std::string& flags = settings.Tables;
  const bool areFlags = !flags.empty() && (flags[0] == '0' || flags[0] == '1');
  return {areFlags && IsX(flags, kTermFlag), areFlags && IsX(flags, kPairFlag)};
}

std::string BiasPlotName(const Analysis& analysis, const BiasInteraction& interaction,
                         std::size_t target) {
  const Column<Position, FlankNo>& flanks = analysis.design.maps.ModelFlank;
  const FlankNo flank = flanks[interaction.positions[target]];
  std::size_t occurrence = 1;
  for (std::size_t which = 0; which < target; ++which)
    if (flanks[interaction.positions[which]] == flank) ++occurrence;
  return WithoutEnd(WithoutEnd(analysis.settings.OutputFile, ".TXT"), ".OUT") + ".bias" +
         std::to_string(interaction.number) + "." + std::to_string(flank.number()) +
         (occurrence > 1 ? "-" + std::to_string(occurrence) : "") + ".xlsx";
}

void WriteBiasPlots(Run& run, const BiasResults& results, bool& warned) {
  const BiasPlotChoice choice = BiasPlotsAsked(run.analysis.settings);
  if (!choice.any()) return;
  SelectTable(run.console, choice.terms ? 13 : 14);
  for (std::size_t target = 0; target < results.interaction.positions.size(); ++target) {
    if (run.console.YieldToWindow()) return;
    const BiasPlots plots = MakeBiasPlots(run.analysis, results, target, choice);
    if (plots.pruned && !warned) run.console.WarnLine(message::kPlotsPruned);
    warned = warned || plots.pruned;
    const std::string name = BiasPlotName(run.analysis, results.interaction, target);
    const std::string reason = ReasonToKeep(run.analysis.settings, name);
    if (!reason.empty()) {
      TellOpenFailure(run, name, reason);
    } else if (WriteChartWorkbook(run, name, plots.sheets)) {
      run.console.ShowLine("Bias/Interaction plots: " + name);
    }
  }
}

}  // namespace flanks
