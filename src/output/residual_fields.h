// The fields of the Residual file: a row for each observation.
//
// A field stands at its place of `ResponseSelection`, but the row has an order of its own.  The
// last three fields are one column for each active position.  Place 12 is no field but the number
// of decimals.
//
// Tested by tests/unit/output/residual_file_test.cpp.
#ifndef FLANKS_OUTPUT_RESIDUAL_FIELDS_H
#define FLANKS_OUTPUT_RESIDUAL_FIELDS_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "run/analysis.h"

namespace flanks {

enum class ResponseForm : std::uint8_t {
  whole,
  decimals,  // as many as place 12 says
  user,      // the same, in user units
  text,
};

// The places of ResponseSelection.
enum class ResponsePlace : std::uint8_t {
  observation = 1,
  step = 2,
  expected = 3,
  residual = 4,
  variance = 5,
  standardized = 6,
  weight = 7,
  logProbability = 8,
  measure = 9,
  elementNumbers = 10,
  elementLabels = 11,
  decimals = 12,
  status = 13,
  displacement = 14,
  elementMeasures = 15,
  mostProbable = 16,
};

struct ResponseField {
  ResponsePlace place;
  ResponseForm form;
  std::string_view caption;  // in the dialog that selects fields
  // Empty where each position has a column with words of its own.
  std::string_view heading, spssName, spssLabel;
};

// All fields in the order of the row.
std::span<const ResponseField> ResponseFields();
std::vector<ResponseField> SelectedResponseFields(std::string_view selection);
// Place 12; 2 where it is no digit.
int ResponseDecimals(std::string_view selection);

// A column of the file.
struct ResponseColumn {
  ResponsePlace place;
  ResponseForm form;
  Position position;  // of the element that it is about; position 0: of none
  std::string heading, spssName, spssLabel;
};
std::vector<ResponseColumn> ResponseColumnsOf(const Design& design, std::string_view selection);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_RESIDUAL_FIELDS_H
