#include "support/bias_run.h"

#include <gtest/gtest.h>

#include "run/report_page.h"
#include "stats/bias_fit.h"

namespace flanks {

BiasRun::BiasRun() = default;
BiasRun::~BiasRun() = default;

void BiasRun::Prepare(std::string_view specification, const std::string& extras) {
  ASSERT_EQ(Analyze(specification, extras), 0) << Screen();
  BiasEstimates bias(PassPartsOf(analysis, console), BiasInteractionsOf(analysis.design).at(0));
  ASSERT_TRUE(FindBiasTerms(bias, console));
  EstimateBias(BiasOptionsOf(analysis.settings, analysis.estimates), bias, console);
  results.emplace(FitBias(FitSettingsOf(analysis.settings).form, bias, console));
  shell.statuses.clear();
  shell.progress.clear();
}

std::string BiasRun::ReportOf(const std::function<void(Run&)>& write) {
  std::string reason;
  EXPECT_TRUE(OpenReport(console, folder.file("more.txt"), reason)) << reason;
  write(step);
  CloseReport(console);
  return folder.read("more.txt");
}

BiasTermRow BiasRun::TermOf(const std::vector<int>& numbers) const {
  for (const BiasTermRow term : Upward(results->terms)) {
    bool found = true;
    for (std::size_t which = 0; which < numbers.size(); ++which)
      found = found && analysis.design.elements.ElementNumber[results->list.element(term, which)] ==
                           numbers[which];
    if (found) return term;
  }
  ADD_FAILURE() << "there is no such term";
  return BiasTermRow(1);
}

}  // namespace flanks
