// The fields of the Score file: a row for each element, 28 fields that can be selected.
//
// Field n stands at place n of `ScoreSelection`.  The words of the SPSS form differ from those of
// the others: the two lists are distinct.  Place 29 is no field: it moves the element number from
// the front of the row to its place behind the statistics.
//
// Tested by tests/unit/output/score_file_test.cpp.
#ifndef FLANKS_OUTPUT_SCORE_FIELDS_H
#define FLANKS_OUTPUT_SCORE_FIELDS_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "run/analysis.h"

namespace flanks {

enum class ScoreForm : std::uint8_t {
  two,    // two decimals
  four,   // four decimals
  user,   // the decimals of `Udecimals=`
  whole,  // no decimals
  text,
};

constexpr int kScoreFields = 28;
constexpr int kScoreMeasure = 5;
constexpr int kScoreElementNumber = 25;
constexpr int kScoreElementLabel = 26;
constexpr int kScoreFlankNumber = 27;
constexpr int kScoreFlankLabel = 28;
constexpr int kScoreNumberInPlace = 29;

struct ScoreField {
  int position = 0;     // 1 to 28
  std::string caption;  // in the dialog that selects fields
  std::string heading;
  std::string spssName, spssLabel;
  ScoreForm form = ScoreForm::two;
};

// All fields in the order of their positions, with the words that the settings and the Flank give
// them.
std::vector<ScoreField> ScoreFieldsOf(const Settings& settings, const FlankTable& flanks,
                                      FlankNo flank);

// The positions of a selection in the order of the row.
std::vector<int> SelectedScoreFields(std::string_view selection);

// The numbers of a row by position; those of the texts are 0.  Measures are user units.
using ScoreValues = std::array<double, kScoreFields + 1>;
ScoreValues ScoreValuesOf(const Analysis& analysis, ElementSlot slot);

// Columns of the longest label of a Flank.
int LabelWidth(const Analysis& analysis, FlankNo flank);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_SCORE_FIELDS_H
