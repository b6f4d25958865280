// Cuts the elements of one name out of XML that is read piece by piece: the rows of a sheet, the
// strings of a workbook.  A sheet of a million rows is never in memory as a whole; each piece is
// small and is taken apart by the XML library.
//
// Comments, instructions and CDATA sections outside of the pieces are passed over.  The name may
// have a prefix ("x:row").  Elements of the name must not stand inside one another.  A text that
// ends before its first element has ended is broken off.
//
//   XmlPieces pieces(read, "row");
//   std::string piece;
//   while (pieces.Next(piece)) ...      // "<row r="1">...</row>"
//   if (!pieces.fault().empty()) ...    // in words
//
// Memory is a block and the longest piece.  Tested by tests/unit/import/import_text_test.cpp and
// fuzz/import_files_fuzz.cpp.
#ifndef FLANKS_IMPORT_XML_PIECES_H
#define FLANKS_IMPORT_XML_PIECES_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace flanks {

class XmlPieces {
 public:
  // Puts up to `room` bytes at `to` and gives their number: 0 at the end.
  using Read = std::function<std::size_t(char* to, std::size_t room)>;

  XmlPieces(Read read, std::string_view element) : read_(std::move(read)), element_(element) {}

  // The next element with its tags; false behind the last, and on a fault.
  bool Next(std::string& piece);
  const std::string& fault() const { return fault_; }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::string_view rest() const { return std::string_view(buffer_).substr(begin_); }
  bool Fill();
  bool Has(std::size_t bytes);
  std::size_t Find(std::string_view mark, std::size_t from);
  std::size_t FindTagEnd();
  bool Skip(std::string_view mark);
  bool TakePiece(std::size_t tagEnd, std::string_view name, std::string& piece);
  bool Fail(const char* words);

  Read read_;
  std::string element_;
  std::string buffer_;
  std::size_t begin_ = 0;  // of what has not been looked at
  std::string root_;       // name of the first element
  bool rootEnded_ = false;
  bool exhausted_ = false;
  std::string fault_;
};

}  // namespace flanks

#endif  // FLANKS_IMPORT_XML_PIECES_H
