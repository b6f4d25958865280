#include "run/pipeline_bias.h"

#include <algorithm>
#include <string>

#include "estimate/bias.h"
#include "output/bias_plots.h"
#include "report/bias_tables.h"
#include "report/table13.h"
#include "report/table14.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/report_page.h"
#include "stats/bias_fit.h"

namespace flanks {
namespace {

constexpr int kBiasOmitted = 0;
constexpr int kBiasTables[] = {9, 11, 12, 13, 14};

bool IsAnyTableOn(Console& console) {
  return std::any_of(std::begin(kBiasTables), std::end(kBiasTables), [&](int table) {
    SelectTable(console, table);
    return !console.report().switchedOff;
  });
}

// `plotsPruned`: the run has said that plots are pruned.
void AnalyzeInteraction(Run& run, const BiasInteraction& interaction, bool& plotsPruned) {
  Analysis& analysis = run.analysis;
  Console& console = run.console;
  SelectTable(console, 9);
  BiasEstimates bias(PassPartsOf(analysis, console), interaction);
  if (!FindBiasTerms(bias, console)) return;
  EstimateBias(BiasOptionsOf(analysis.settings, analysis.estimates), bias, console);
  if (console.stopping()) return;
  const BiasResults results = FitBias(FitSettingsOf(analysis.settings).form, bias, console);
  if (console.stopping()) return;
  if (!HasEstimableTerms(results, console)) return;
  for (const auto write : {WriteTable11, WriteTable12, WriteTable13, WriteTable14}) {
    write(run, results);
    if (console.stopping()) return;
  }
  WriteBiasPlots(run, results, plotsPruned);
}

}  // namespace

void AnalyzeBias(Run& run) {
  if (run.analysis.settings.Bias == kBiasOmitted || !IsAnyTableOn(run.console)) return;
  run.at = "bias";
  bool plotsPruned = false;
  for (const BiasInteraction& interaction : BiasInteractionsOf(run.analysis.design)) {
    AnalyzeInteraction(run, interaction, plotsPruned);
    if (run.console.stopping()) return;
  }
}

}  // namespace flanks
