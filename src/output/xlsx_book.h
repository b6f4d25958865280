// A workbook of libxlsxwriter, owned: opened, named for its analysis, and closed with every error
// told.  Only the files that write workbooks include this, and only where the library is there.
//
// The library formats into temporary files and does not look at whether they could be written; a
// disk that is full would give a workbook cut in the middle.  So each sheet's file is looked at
// before the workbook is put together, and room for what the library then makes is tried for.  The
// workbook itself is made among the temporary files and copied: where it is to stand the disk may
// be full, too, and the library's words would not say so.
//
// Tested by tests/unit/output/hand_offs_test.cpp.
#ifndef FLANKS_OUTPUT_XLSX_BOOK_H
#define FLANKS_OUTPUT_XLSX_BOOK_H

#ifdef FLANKS_HAS_XLSXWRITER

#include <string>
#include <vector>
#include <xlsxwriter.h>

#include "base/replaced_file.h"
#include "base/temp_file.h"
#include "output/tab_text.h"

namespace flanks {

struct BookOptions {
  // Rows must then come one after the other: each goes to disk with the next.
  bool rowsOnDisk = true;
  // A part of the archive may have more than 4 GB, for which there is another form of archive; not
  // every program opens that.
  bool isVast = false;
};

class XlsxBook {
 public:
  // `target` must live as long as the workbook.
  XlsxBook(ReplacedFile& target, const FileStamp& stamp, const BookOptions& options);
  ~XlsxBook();
  XlsxBook(const XlsxBook&) = delete;
  XlsxBook& operator=(const XlsxBook&) = delete;

  // A sheet named `name`, or `name` and a number where that is taken.
  lxw_worksheet* AddSheet(const std::string& name);
  lxw_workbook* book() { return book_; }
  lxw_format* bold() { return bold_; }
  lxw_format* boldRight() { return boldRight_; }  // above numbers

  // Throws the library's error as a std::runtime_error.
  static void Check(lxw_error error);
  // Puts the workbook together and writes it into the target.
  void Close();

 private:
  void CheckSheetFiles();
  void CopyIntoTarget();

  ReplacedFile& target_;
  TempFile made_;
  std::string folder_;  // for the library's temporary files
  lxw_workbook* book_ = nullptr;
  lxw_format* bold_ = nullptr;
  lxw_format* boldRight_ = nullptr;
  std::vector<lxw_worksheet*> sheets_;
};

}  // namespace flanks

#endif  // FLANKS_HAS_XLSXWRITER

#endif  // FLANKS_OUTPUT_XLSX_BOOK_H
