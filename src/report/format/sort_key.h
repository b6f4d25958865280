// Sort keys: texts that compare as bytes in the order that is wanted.
//
// A key is made by joining pieces, so that one comparison of texts does the work of comparing field
// by field:
//
//   whole number, ascending     Swapl(MKLhex(n))   8 hexadecimal digits, most significant first
//   whole number, descending    Swapl(MKLhex(-n))  for n of 1 and more; 0 comes first
//   real number, ascending      FloatKey(v)        9 characters; descending: FloatKey(-v)
//   text, descending            Complement(text)
//
// The last piece of a key is the number of its record: it leads back to the row, and equal keys
// stay in the order of their records.
//
// MKIhex and MKLhex give the bytes of a 16-bit and a 32-bit number in memory order (least
// significant first), two hexadecimal digits each; CVIhex and CVLhex read them back.  A text of
// the wrong length is a fault of the program (ProgramFault).
//
// Tested by tests/unit/report/format/sort_key_test.cpp and, as laws,
// tests/properties/report/format_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_SORT_KEY_H
#define FLANKS_REPORT_FORMAT_SORT_KEY_H

#include <cstdint>
#include <string>
#include <string_view>

namespace flanks {

std::string MKIhex(std::int16_t value);
std::string MKLhex(std::int32_t value);
std::int16_t CVIhex(std::string_view text);
std::int32_t CVLhex(std::string_view text);

// The byte pairs of an 8- or a 4-character key in reverse: "AABBCCDD" becomes "DDCCBBAA".
std::string Swapl(std::string_view text);
std::string iSwap(std::string_view text);

// Zero is "1" and eight zeros.  A positive number is "1" and its bits, most significant first.  A
// negative one is "0" and the bits of its reciprocal, which turns the order of sizes round, so all
// keys ascend with the numbers; near neighbours below zero may share a key.
std::string FloatKey(float value);

// Each character c becomes 255 - c: texts ascend by it when they descend.
std::string Complement(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_SORT_KEY_H
