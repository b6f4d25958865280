// The keywords of a Specification: one row for each prefix.
//
// At most three letters of a keyword count.  The rows stand in the order in which they are tried,
// three-letter prefixes first, then those of two letters, then single letters, and the first that
// fits wins: "Iterations" is "I", "Inter-rater" is "IN".  So every word that begins with F and not
// with FAI is `Flanks=`.
//
// A row has the keyword's code, its name and its handler.  docs/keywords.md tells users what each
// takes and sets.
//
// A keyword counts only once.  Extra specifications come first and so take the place of the same
// keyword in the file; a second one in the file is shown and ignored, but for `Labels=` and for a
// `Flanks=` that disagrees, which are faults.
//
// Tested by tests/unit/spec/keyword_table_test.cpp.
#ifndef FLANKS_SPEC_KEYWORD_TABLE_H
#define FLANKS_SPEC_KEYWORD_TABLE_H

#include <span>
#include <string_view>

#include "spec/spec_context.h"

namespace flanks {

struct KeywordRow {
  std::string_view prefix;  // upper case
  int code = 0;             // position in SeenCodes, from 1; shared by all rows of a setting
  std::string_view keyword;
  KeywordHandler handler = nullptr;  // null: the keyword is taken and ignored
};

// All rows in the order in which they are tried.
std::span<const KeywordRow> KeywordRows();

// The row of an upper-case word; null when it does not begin with a letter.
const KeywordRow* ResolveKeyword(std::string_view upperWord);

// Applies the specification in reading.Fields.  Faults: notSpecificationValue, labelsTwice,
// flanksConflict, and those of the handler.
void ApplySpecification(SpecContext& context);

// The mark of a keyword in SeenCodes.
enum class SeenIn : char { nowhere = ' ', extras = 'X', file = 'S' };
SeenIn WhereSeen(const SpecificationState& state, int code);
void MarkSeen(SpecificationState& state, int code, SeenIn where);
// For a keyword that may come again.
inline void ForgetSeen(SpecificationState& state, int code) {
  MarkSeen(state, code, SeenIn::nowhere);
}

// Codes that others than the table know.
namespace keyword_code {
constexpr int kData = 4;
constexpr int kEnteredInData = 5;
constexpr int kFlanks = 6;
constexpr int kLabels = 12;
constexpr int kModels = 13;
constexpr int kOutput = 15;
constexpr int kRatingScale = 18;
constexpr int kUmean = 29;
constexpr int kAnchorfile = 36;
constexpr int kDvalues = 45;
constexpr int kGlabel = 56;
}  // namespace keyword_code

}  // namespace flanks

#endif  // FLANKS_SPEC_KEYWORD_TABLE_H
