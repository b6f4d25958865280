// The fields of the elements of an observation, made once for each element: a row of the Residual
// file copies them.  CopyShort copies one: most are shorter than what it copies without a look.
//
// Tested by tests/unit/output/residual_file_test.cpp.
#ifndef FLANKS_OUTPUT_ELEMENT_TEXTS_H
#define FLANKS_OUTPUT_ELEMENT_TEXTS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "output/row_writer.h"
#include "run/analysis.h"

namespace flanks {

enum class ElementText : std::uint8_t { number, measure, label };
constexpr std::size_t kElementTexts = 3;

// What can be read behind each text and may be written behind a copy.
constexpr std::size_t kCopySlack = 16;

// Copies a text of ElementTexts to `to`; returns its end.
inline char* CopyShort(char* to, std::string_view text) {
  std::memcpy(to, text.data(), kCopySlack);
  if (text.size() > kCopySlack)
    std::memcpy(to + kCopySlack, text.data() + kCopySlack, text.size() - kCopySlack);
  return to + text.size();
}

// Which of them are wanted, and the decimals of the measures.
struct ElementTextOptions {
  std::array<bool, kElementTexts> wanted{};
  int decimals = 2;
};

class ElementTexts {
 public:
  ElementTexts(const Analysis& analysis, const RowForm& form, const ElementTextOptions& options);

  // The field of an element in a position; slot 0 is no element: 0, 0 and an empty label.
  std::string_view of(ElementText what, Position position, std::int32_t slot) const {
    const std::size_t cell =
        slot == 0 ? elements_ + position.offset() : static_cast<std::size_t>(slot) - 1;
    const std::size_t at = cell * kElementTexts + static_cast<std::size_t>(what);
    return {texts_.data() + begin_[at], begin_[at + 1] - begin_[at]};
  }
  // The longest of a kind, in bytes.
  std::size_t longest(ElementText what) const { return longest_[static_cast<std::size_t>(what)]; }
  // Columns of a Flank's labels in fixed form, without quote marks.
  int labelWidth(FlankNo flank) const { return labelWidth_[flank]; }

 private:
  std::size_t elements_;
  Column<FlankNo, int> labelWidth_;
  std::string texts_;
  std::vector<std::size_t> begin_;  // by cell and kind, and one more
  std::array<std::size_t, kElementTexts> longest_{};
};

}  // namespace flanks

#endif  // FLANKS_OUTPUT_ELEMENT_TEXTS_H
