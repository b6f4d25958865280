// Which model statement takes a response, and what the response then is.
//
// The first statement, in the order of the Specification, that fits the line's elements takes the
// response.  Positions are compared from the last to the first: in the usual design the last one
// varies fastest.  A position that is known must lie in the statement's bounds; a position without
// element (the null element) fits "any element" and no number; X and an empty reference fit
// anything.  An unspecified element fits no number, and where "any element" would have to take it
// the search ends: the response counts as unspecified.
//
// The statement found, the response's text is recoded by the statement's scale, looked at for a
// sign, and read as a whole number within the statement's maximum.
//
// The search compares integers only.  Responses that are whole numbers up to 255 without leading
// zeros (nearly all there are) take their category from a table that is filled, statement by
// statement, by the very procedure that reads the texts.
//
// Tested by tests/unit/data/matching_test.cpp.
#ifndef FLANKS_DATA_MATCHING_H
#define FLANKS_DATA_MATCHING_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/column.h"
#include "data/line_elements.h"
#include "run/design.h"
#include "run/scale_tables.h"

namespace flanks {

// What becomes of a response that is neither blank nor a missing code.
enum class ResponseFate : std::uint8_t {
  valid,
  invalid,       // too big, or no whole number
  negative,      // holds a sign
  invalidModel,  // its statement is of type M
  unmatched,     // no statement fits
  unspecified,   // because of an element that is not in Labels=
};

struct StatementSearch {
  ResponseFate fate = ResponseFate::unmatched;  // valid: `model` takes the response
  ModelRow model;
};

// The first statement that fits the elements of the line.
StatementSearch FindStatement(const Design& design, const LineElements& elements);

// A response's text turned into a category.
struct ScoredResponse {
  ResponseFate fate = ResponseFate::invalid;  // valid, invalid, negative or invalidModel
  std::int32_t category = 0;
  std::string_view recodedTo;  // "" when the scale left the text alone; lives in the design
};

// Recoding, sign and number, by the rules of statement `model`.
ScoredResponse ScoreResponse(const Design& design, ModelRow model, std::string_view text);

// Categories of responses that are whole numbers from 0 to 255, by statement.
class CategoryTable {
 public:
  static constexpr std::int16_t kLookClosely = -1;

  explicit CategoryTable(const Design& design);

  // The category of response `number` (0 to 255) under `model`, or kLookClosely when the response
  // is not plainly valid: ScoreResponse knows more then.
  std::int16_t Of(ModelRow model, std::int32_t number) {
    if (rows_[model].empty()) Fill(model);
    return rows_[model][static_cast<std::size_t>(number)];
  }

 private:
  void Fill(ModelRow model);

  const Design& design_;
  Column<ModelRow, std::vector<std::int16_t>> rows_;  // empty: not yet filled
};

}  // namespace flanks

#endif  // FLANKS_DATA_MATCHING_H
