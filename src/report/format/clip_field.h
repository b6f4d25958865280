// Labels in fields of a fixed display width.
//
// A text in one-byte characters is cut or padded by bytes.  A UTF-8 text is copied character by
// character until the field is full, and a wide character that would cross the end of the field
// becomes a blank, so no character is ever split.
//
// Tested by tests/unit/report/format/clip_field_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_CLIP_FIELD_H
#define FLANKS_REPORT_FORMAT_CLIP_FIELD_H

#include <string>
#include <string_view>

#include "base/utf8.h"

namespace flanks {

// The text in `width` columns: cut on the right, or padded with blanks.
// Kept: only lead bytes 228 to 233 count as wide here, 224 to 239 in DisplayWidth (docs/quirks.md).
std::string ClipField(std::string_view text, int width, Utf8Encoded encoded = Utf8Encoded::detect);

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_CLIP_FIELD_H
