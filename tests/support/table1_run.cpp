#include "support/table1_run.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "spec/delements.h"
#include "spec/labels.h"
#include "spec/models.h"
#include "spec/output_names.h"
#include "spec/scales.h"
#include "spec/table1.h"

namespace flanks {

Table1Run::Table1Run(const std::string& text, const std::string& extras) {
  Read(text, extras);
  Do({BuildModelTable, LoadScales, LoadLabels, PrepareDelements, SettleOutputNames,
      MatchElementsToModels});
  EXPECT_EQ(fault(), Fault::none) << FaultText();
  analysis.settings.specificationFile = "s.txt";  // without the folder of the test
  analysis.report.runHeading = "Check ";
  if (!Halted(run)) WriteTable1(run);
  lines = shell.output;
  for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
}

Table1Run::~Table1Run() = default;

std::vector<std::string> Table1Run::From(std::string_view first) const {
  return {std::find(lines.begin(), lines.end(), first), lines.end()};
}

}  // namespace flanks
