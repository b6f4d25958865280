// A whole run and then the terms of its first interaction once more, to be looked at or changed and
// handed to a Table or a plot.
//
//   BiasRun run;
//   run.Prepare("Flanks=3\nModels=?,?B,?B,R\n...");     // all but the report's name
//   run.results->terms[BiasTermRow(1)].Bias = 0.8f;
//   run.ReportOf([&](Run& step) { WriteTable14(step, *run.results); })
#ifndef FLANKS_TESTS_SUPPORT_BIAS_RUN_H
#define FLANKS_TESTS_SUPPORT_BIAS_RUN_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "run/console.h"
#include "run/run.h"
#include "stats/bias_statistics.h"
#include "support/analysis_run.h"

namespace flanks {

class BiasRun : public AnalysisRun {
 public:
  std::optional<BiasResults> results;
  Console console{shell, dialogs, process.control, analysis.settings, analysis.report};
  Run step{process, analysis, console, dialogs, launcher};

  BiasRun();
  ~BiasRun();

  void Prepare(std::string_view specification, const std::string& extras = "");
  // What the procedure writes to the report.
  std::string ReportOf(const std::function<void(Run&)>& write);
  // The term of these element numbers, by position of the interaction.
  BiasTermRow TermOf(const std::vector<int>& numbers) const;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_BIAS_RUN_H
