// The option letters of a Flank line: how the measures of the Flank's elements are taken.
//
// Options are kept in upper case behind one blank: " A", " G", " " for none.
//
// Tested by tests/unit/spec/element_values_test.cpp.
#ifndef FLANKS_SPEC_ANCHORING_H
#define FLANKS_SPEC_ANCHORING_H

#include <cstddef>
#include <string_view>

namespace flanks {

// The option letter in place 1, 2, ...; a blank when there is none.
constexpr char OptionLetter(std::string_view options, std::size_t place) {
  return place < options.size() ? options[place] : ' ';
}

// A: elements with a measure are anchored at it.
constexpr bool IsAnchoring(std::string_view options) {
  return OptionLetter(options, 1) == 'A';
}

// D: every element is anchored at 0.
constexpr bool IsDummyFlank(std::string_view options) {
  return OptionLetter(options, 1) == 'D';
}

// G or X, as the first or the third letter: elements with a measure are anchored as groups.
constexpr bool IsGroupAnchoring(std::string_view options) {
  const auto isGroupLetter = [](char letter) { return letter == 'G' || letter == 'X'; };
  return isGroupLetter(OptionLetter(options, 1)) || isGroupLetter(OptionLetter(options, 3));
}

// G: extreme elements count for the mean of their group; X: they do not.
constexpr bool CountsExtremesInGroups(std::string_view options) {
  return OptionLetter(options, 1) == 'G' || OptionLetter(options, 3) == 'G';
}

}  // namespace flanks

#endif  // FLANKS_SPEC_ANCHORING_H
