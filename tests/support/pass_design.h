// A small design with its work files, for tests of the passes over the observations: Flanks,
// statements, scales and observations in a few lines.
//
//   PassDesign d;
//   d.Flank(3, kPositiveOrientation).Flank(2, kNegativeOrientation);   // slots 1 to 3, 4 and 5
//   const int statement = d.Statement({"", "-"});      // by position: "", "-", "X", "@", "empty"; "B"
//   const int scale = d.Rating({-1.0f, 0.0f, 1.0f});
//   const int structure = d.Structure(statement, scale);
//   d.Build();
//   d.Observe({1, 4}, structure, 2);                   // slots by position, raw category
//   ObservationReader reader(d.parts());
#ifndef FLANKS_TESTS_SUPPORT_PASS_DESIGN_H
#define FLANKS_TESTS_SUPPORT_PASS_DESIGN_H

#include <cstdint>
#include <string>
#include <vector>

#include "estimate/observation.h"
#include "run/design.h"
#include "run/estimates.h"
#include "run/scale_tables.h"
#include "run/work_files.h"

namespace flanks {

class PassDesign {
 public:
  Design design;
  StructureTable structures;
  WorkFiles work;
  ScaleTables scales;
  Estimates estimates;
  Console* console = nullptr;

  // A Flank with a position of its own.
  PassDesign& Flank(std::int32_t elements, std::int16_t orientation);
  // A further position for a Flank that stands already.
  PassDesign& Repeat(std::int32_t flank);
  int Statement(const std::vector<std::string>& references, float weight = 1.0f);
  int Rating(const std::vector<float>& thresholds);  // T(1) .. T(m)
  int CountScale(ScaleType type, int top, float discrimination);
  int Structure(int statement, int scale);
  void Build();  // once; sizes the tables and opens the work files

  void Observe(const std::vector<std::int32_t>& slots, int structure, int response,
               float replication = 1.0f);
  // Ends the writing; parts() does it too.
  void EndOfData();
  PassParts parts();

  ElementState& element(std::int32_t slot) { return estimates.elements[ElementSlot(slot)]; }
  ElementScores& scores(std::int32_t slot) { return estimates.scores[ElementSlot(slot)]; }
  void SetMeasures(const std::vector<float>& measures);  // slots 1 ..

 private:
  struct ScaleRowData {
    ScaleType type;
    std::vector<float> thresholds;  // cell 0 the discrimination
  };
  std::vector<std::int32_t> elementCounts_;   // by Flank
  std::vector<std::int16_t> orientations_;    // by Flank
  std::vector<std::int32_t> positionFlanks_;  // by position
  std::vector<std::vector<std::string>> statements_;
  std::vector<float> statementWeights_;
  std::vector<ScaleRowData> scaleRows_;
  std::vector<std::pair<int, int>> structureRows_;
  bool open_ = false;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_PASS_DESIGN_H
