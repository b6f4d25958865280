// What the report must know of UTF-8: whether a text is in it, and how many columns it takes.
//
// Texts stay bytes everywhere and pass unchanged; only widths need to know more.  A text is UTF-8
// when it has a byte of 128 or above and all of it follows the lead and continuation bytes of the
// encoding.  Only the ranges of bytes are looked at: overlong forms and surrogates are not told
// apart.  A character of three bytes is most often a wide one (Chinese, Japanese, Korean) and takes
// 1.8 columns of a fixed-pitch report; others take one.
//
// Tested by tests/unit/base/utf8_test.cpp.
#ifndef FLANKS_BASE_UTF8_H
#define FLANKS_BASE_UTF8_H

#include <cstdint>
#include <string_view>

namespace flanks {

// UTF8encoded= of the Specification: absent, "Y", "N".
enum class Utf8Encoded : std::uint8_t { detect, yes, no };

// True for a text with a byte of 128 or above that is valid UTF-8.  With Utf8Encoded::yes the user
// vouches for it and the bytes are not examined.
// Kept: Utf8Encoded::no is the same as detect (docs/quirks.md).
bool IsUtf8(std::string_view text, Utf8Encoded encoded = Utf8Encoded::detect);

// The columns that the text takes in a report: its bytes, or for UTF-8 the sum over its characters,
// rounded.
int DisplayWidth(std::string_view text, Utf8Encoded encoded = Utf8Encoded::detect);

}  // namespace flanks

#endif  // FLANKS_BASE_UTF8_H
