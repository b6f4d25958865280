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
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>

#include "run/console.h"
#include "run/report_page.h"
#include "run/run.h"
#include "stats/bias_fit.h"
#include "stats/bias_statistics.h"
#include "support/analysis_run.h"

namespace flanks {

class BiasRun : public AnalysisRun {
 public:
  std::optional<BiasResults> results;
  Console console{shell, dialogs, process.control, analysis.settings, analysis.report};
  Run step{process, analysis, console, dialogs, launcher};

  void Prepare(std::string_view specification, const std::string& extras = "") {
    ASSERT_EQ(Analyze(specification, extras), 0) << Screen();
    BiasEstimates bias(PassPartsOf(analysis, console), BiasInteractionsOf(analysis.design).at(0));
    ASSERT_TRUE(FindBiasTerms(bias, console));
    EstimateBias(BiasOptionsOf(analysis.settings, analysis.estimates), bias, console);
    results.emplace(FitBias(FitSettingsOf(analysis.settings).form, bias, console));
    shell.statuses.clear();
    shell.progress.clear();
  }

  // What the procedure writes to the report.
  std::string ReportOf(const std::function<void(Run&)>& write) {
    std::string reason;
    EXPECT_TRUE(OpenReport(console, folder.file("more.txt"), reason)) << reason;
    write(step);
    CloseReport(console);
    return folder.read("more.txt");
  }

  // The term of these element numbers, by position of the interaction.
  BiasTermRow TermOf(const std::vector<int>& numbers) const {
    for (const BiasTermRow term : Upward(results->terms)) {
      bool found = true;
      for (std::size_t which = 0; which < numbers.size(); ++which)
        found =
            found && analysis.design.elements.ElementNumber[results->list.element(term, which)] ==
                         numbers[which];
      if (found) return term;
    }
    ADD_FAILURE() << "there is no such term";
    return BiasTermRow(1);
  }
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_BIAS_RUN_H
