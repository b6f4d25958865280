// A run whose Specification is a text in the test: reads it through the keyword table and calls the
// steps that make the design from it.
//
//   SpecBench bench("Flanks=2\nModels=?,?,R5\n");
//   EXPECT_EQ(bench.Fault(), Fault::none);
//   EXPECT_EQ(bench.design().ModelLast, 0);
#ifndef FLANKS_TESTS_SUPPORT_SPEC_BENCH_H
#define FLANKS_TESTS_SUPPORT_SPEC_BENCH_H

#include <string>
#include <string_view>

#include "run/faults.h"
#include "spec/delements.h"
#include "spec/labels.h"
#include "spec/models.h"
#include "spec/scales.h"
#include "spec/specification_reader.h"
#include "support/run_bench.h"

namespace flanks {

class SpecBench : public RunBench {
 public:
  // Reads the Specification; with `through` also makes the tables, as far as there is no fault.
  enum class Through { reading, tables, matching };

  explicit SpecBench(std::string_view text, Through through = Through::tables) {
    analysis.settings.specificationFile = folder.write("s.txt", text);
    ReadSpecification(run);
    if (through == Through::reading) return;
    for (void (*step)(Run&) : {BuildModelTable, LoadScales, LoadLabels, PrepareDelements})
      if (!Halted(run)) step(run);
    if (through == Through::matching && !Halted(run)) MatchElementsToModels(run);
  }

  Design& design() { return analysis.design; }
  FlankTable& flanks() { return analysis.design.flanks; }
  ElementTable& elements() { return analysis.design.elements; }
  ModelTable& models() { return analysis.design.models; }
  Fault fault() const { return analysis.reading.FaultCode; }
  std::int64_t faultLine() const { return analysis.reading.fault.lineNumber; }
  std::string faultText() const {
    return FaultLine(analysis.reading.FaultCode, analysis.reading.fault);
  }
  std::string screen() const { return shell.Screen(); }
  bool shows(std::string_view text) const { return screen().find(text) != std::string::npos; }
  // The slot of an element by its number; slot 0 when there is none.
  ElementSlot slot(int flank, int number) {
    return ElementFinder(flanks(), elements()).FindElementSlot(number, FlankNo(flank)).slot;
  }
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_SPEC_BENCH_H
