// Texts of the user's as messages show them: cut where they are long, and whole characters only.
//
// Columns count bytes, so a text that `$2` or `Dvalues=` takes out of a label may begin or end
// within a character of UTF-8.  Matching works with its bytes; only what is shown is mended.
//
// Tested by tests/unit/base/shown_text_test.cpp.
#ifndef FLANKS_BASE_SHOWN_TEXT_H
#define FLANKS_BASE_SHOWN_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace flanks {

// At most `most` bytes of `text`, cut between characters of UTF-8.
std::string_view CutBetweenCharacters(std::string_view text, std::size_t most);

// `part`, taken out of `source`, with a "?" for each byte that belongs to no whole character of
// UTF-8.  When `source` is in a one-byte code page, so is `part`, which is then as it was.
std::string WholeCharacters(std::string_view part, std::string_view source);

}  // namespace flanks

#endif  // FLANKS_BASE_SHOWN_TEXT_H
