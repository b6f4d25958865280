// Reading lines of text, whatever ends them, and telling what kind of file it is.
//
// A line ends at a carriage return, a line feed, or the two side by side in either order.  The last
// line needs no end.  A byte order mark EF BB BF at the start of a file is dropped; all other bytes
// pass unchanged, also code 0.  An empty file has no line.
//
//   const TextFileCheck check = CheckTextFile(name);      // once, before the reading
//   TextFile file;
//   if (const std::error_code error = file.Open(name)) ...
//   std::string_view line;
//   while (file.ReadLine(line)) ...                        // line is valid until the next read
//   if (file.fault() != TextFileFault::none) ...           // the file changed under the reader
//
// The file is read in large blocks, and a line is handed out where it lies in the block, so that
// reading costs little more than looking for the line ends once.  Memory is one block, or the
// longest line.
//
// Tested by tests/unit/base/text_file_test.cpp, tests/properties/text_file_test.cpp (against a
// reader that takes three bytes at a time) and tests/damage/failing_files_test.cpp.
#ifndef FLANKS_BASE_TEXT_FILE_H
#define FLANKS_BASE_TEXT_FILE_H

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/positioned_file.h"

namespace flanks {

// What a file is, by the first bytes of its first line and the first line end.
enum class TextFileKind : std::uint8_t {
  plain,
  rtf,                 // begins with "{\"
  unicode,             // begins with FF FE or FE FF, or has a code 0 in its first line
  utf8,                // begins with EF BB that is no byte order mark; read all the same
  incorrectEndOfLine,  // the first line ends in a carriage return alone
};

// "RTF", "Unicode", "UTF-8", "incorrect end-of-line"; empty for plain.
std::string_view TextFileClass(TextFileKind kind);

struct TextFileCheck {
  std::error_code error;  // the file cannot be opened
  TextFileKind kind = TextFileKind::plain;
  // A file of this kind is not read.
  bool refused() const { return kind != TextFileKind::plain && kind != TextFileKind::utf8; }
};

[[nodiscard]] TextFileCheck CheckTextFile(const std::string& name);

enum class TextFileFault : std::uint8_t {
  none,
  unexpectedEnd,  // the file is shorter than it was when it was opened
  readFailure,    // the system cannot read it
};

class TextFile {
 public:
  TextFile() = default;
  TextFile(TextFile&&) = default;
  TextFile& operator=(TextFile&&) = default;

  // Opens the file at its first line.  A folder is an error.
  [[nodiscard]] std::error_code Open(const std::string& name);
  void Close();
  bool isOpen() const { return file_.is_open(); }
  const std::string& name() const { return name_; }
  void Follow(FileFaultPlan* plan) { plan_ = plan; }

  // The next line, without its end.  At the end of the file, and on a fault, false and an empty
  // line.  The line is valid until the next call.
  bool ReadLine(std::string_view& line);
  // Whether `line`, just read, ended in a carriage return alone.
  bool EndedInLoneReturn(std::string_view line) const;

  TextFileFault fault() const { return fault_; }
  // The words of a fault, for the message that ends the process.
  std::string FaultText() const;

 private:
  void Fill();
  std::size_t ReadBlock(char* to, std::size_t room);
  void DropByteOrderMark();
  std::size_t Find(char mark, std::size_t from) const;

  std::filebuf file_;
  std::string name_;
  FileFaultPlan* plan_ = nullptr;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // next byte to hand out
  std::size_t end_ = 0;    // behind the last byte read
  std::size_t lineFeedAt_ =
      0;  // first of its kind from begin_ on, end_ for none; stale below begin_
  std::size_t returnAt_ = 0;
  std::int64_t fileLength_ = 0;  // at open; unlimited when it is no ordinary file
  std::int64_t taken_ = 0;       // bytes read from the file
  bool exhausted_ = true;        // all bytes are in the buffer
  bool lengthKnown_ = false;
  TextFileFault fault_ = TextFileFault::none;
};

}  // namespace flanks

#endif  // FLANKS_BASE_TEXT_FILE_H
