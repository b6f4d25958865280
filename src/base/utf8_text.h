// Texts made UTF-8: those of files that are in UTF-8 or in the Windows code page 1252, and do not
// say which.
//
// Files of other programs want Unicode, and theirs may hold bytes of their own: what is UTF-8
// throughout is taken as it is, all else for that code page, which is what most such files are in.
// Overlong forms, surrogates, U+FFFE, U+FFFF and code 0, which XML refuses, are no UTF-8 here;
// base/utf8, which reports ask, is less strict.
//
// Tested by tests/unit/base/utf8_test.cpp.
#ifndef FLANKS_BASE_UTF8_TEXT_H
#define FLANKS_BASE_UTF8_TEXT_H

#include <string>
#include <string_view>

namespace flanks {

// Appends the character of this number; "?" for half of a pair, and for what is no character.
void AppendUtf8(char32_t code, std::string& text);

// The text in UTF-8: as it is, or what `kept` then holds, which was made anew.  "?" stands where
// the code page has no character.
std::string_view Utf8Text(std::string_view text, std::string& kept);

}  // namespace flanks

#endif  // FLANKS_BASE_UTF8_TEXT_H
