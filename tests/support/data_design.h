// A small design for the tests of the data pass, built by hand, and a run of the pass over lines.
//
//   DataRun run;
//   run.Flank({{1, "Ann"}, {2, "Bob"}});
//   run.Flank({{1, "i1"}, {2, "i2"}});
//   run.Model("?,?,R5");
//   run.Read("1,1,3\n1,2,4\n");            // Table 2's head, the data pass, Table 2's body
//   run.counts().ValidResponses ...
//
// Every Flank is a data position and an active position, in order, unless `Entered` says otherwise.
// Line numbers of the data begin behind `linesBefore`.
#ifndef FLANKS_TESTS_SUPPORT_DATA_DESIGN_H
#define FLANKS_TESTS_SUPPORT_DATA_DESIGN_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/data_pass.h"
#include "data/record_reader.h"
#include "support/run_bench.h"

namespace flanks {

class DataRun : public RunBench {
 public:
  using Elements = std::vector<std::pair<std::int32_t, std::string>>;  // ascending numbers

  int linesBefore = 0;  // lines of the Specification in front of the data

  DataRun();

  Design& design() { return analysis.design; }
  DataCounts& counts() { return analysis.counts; }
  Settings& settings() { return analysis.settings; }

  // Flanks first, then the entry maps, then statements and scales, in this order.
  FlankNo Flank(const Elements& elements, const std::string& delements = "N.");
  void Entered(const std::vector<int>& flankOfPosition);
  ScaleDefinitionRow Scale(const std::string& name, const std::string& type,
                           std::vector<RecodeItem> recodes, bool specific = false);
  // "?,1-2,R5": references, then the type or a scale's name.
  ModelRow Model(const std::string& statement);
  void Dvalue(DvalueEntry entry);

  // The lines as in-line data of "s.txt"; the whole of Table 2.
  void Read(const std::string& lines);
  // The same with a file as `Data=`.
  void ReadFile(const std::string& name);
  // The data pass alone, through the short cut or not; the work files stay open.
  void Pass(const std::string& lines, PlainLines plainLines);

  std::string Screen() const { return shell.Screen(); }
  std::string Report() const { return folder.read("report.txt"); }
  std::string Fault() const {
    return FaultLine(analysis.reading.FaultCode, analysis.reading.fault);
  }
  // "structure replication category : slot slot" for each record.
  std::vector<std::string> Records();
  // All that a pass leaves behind: two passes with one outcome did the same.
  std::string Outcome();

 private:
  void EnterInOrder();
  void RunSteps();
  std::unique_ptr<SpecificationSource> OpenLines(const std::string& lines);
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_DATA_DESIGN_H
