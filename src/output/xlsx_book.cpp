#include "output/xlsx_book.h"

#ifdef FLANKS_HAS_XLSXWRITER

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

#include "base/positioned_file.h"
#include "base/shown_text.h"
#include "output/xlsx_writer.h"

namespace flanks {
namespace {

constexpr off_t kRoomForParts = off_t{1} << 20;  // headings, styles, properties

// Whether a temporary file of this length can be written now.
void TryForRoom(off_t length) {
  TempFile trial;
  if (const std::error_code error = trial.Create("Room", "tmp"))
    ThrowFileFailure("write", trial.name(), error);
  const int descriptor = open(trial.name().c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) ThrowFileFailure("write", trial.name(), LastFileError());
  const int failure = posix_fallocate(descriptor, 0, length);
  close(descriptor);
  if (failure != 0)
    ThrowFileFailure("write", trial.name(), std::error_code(failure, std::generic_category()));
}

}  // namespace

XlsxBook::XlsxBook(ReplacedFile& target, const FileStamp& stamp, const BookOptions& wanted)
    : target_(target), folder_(TempFolder()) {
  if (const std::error_code error = made_.Create("Workbook", "xlsx"))
    ThrowFileFailure("write", made_.name(), error);
  lxw_workbook_options options{};
  options.constant_memory = wanted.rowsOnDisk ? LXW_TRUE : LXW_FALSE;
  options.tmpdir = folder_.data();
  options.use_zip64 = wanted.isVast ? LXW_TRUE : LXW_FALSE;
  book_ = workbook_new_opt(made_.name().c_str(), &options);
  if (book_ == nullptr) throw std::runtime_error("a workbook cannot be made");
  bold_ = workbook_add_format(book_);
  format_set_bold(bold_);
  boldRight_ = workbook_add_format(book_);
  format_set_bold(boldRight_);
  format_set_align(boldRight_, LXW_ALIGN_RIGHT);
  constexpr std::uint8_t kFilterButton = 2;  // keeps the text clear of it
  format_set_indent(boldRight_, kFilterButton);
  lxw_doc_properties properties{};
  const std::string date = StampDate(stamp);
  std::string title = stamp.title, comments = stamp.program + ", " + date;
  std::string program = stamp.program;
  constexpr std::size_t kLongestProperty = 255;
  title = CutBetweenCharacters(title, kLongestProperty);
  properties.title = title.data();
  properties.comments = comments.data();
  properties.author = program.data();
  properties.created = static_cast<time_t>(stamp.time);
  workbook_set_properties(book_, &properties);
}

XlsxBook::~XlsxBook() {
  // Frees sheets and temporary files.
  if (book_ != nullptr) lxw_workbook_free(book_);
}

lxw_worksheet* XlsxBook::AddSheet(const std::string& name) {
  const std::string first = SheetName(name);
  std::string sheet = first;
  constexpr std::size_t kLongest = 31;
  for (int i = 2; workbook_get_worksheet_by_name(book_, sheet.c_str()) != nullptr; ++i) {
    const std::string end = " (" + std::to_string(i) + ")";
    sheet = std::string(CutBetweenCharacters(first, kLongest - end.size())) + end;
  }
  lxw_worksheet* made = workbook_add_worksheet(book_, sheet.c_str());
  if (made == nullptr) throw std::runtime_error("the sheet \"" + sheet + "\" cannot be made");
  sheets_.push_back(made);
  return made;
}

void XlsxBook::Check(lxw_error error) {
  if (error == LXW_NO_ERROR) return;
  throw std::runtime_error(lxw_strerror(error));
}

void XlsxBook::CheckSheetFiles() {
  off_t longest = 0;
  for (const lxw_worksheet* sheet : sheets_) {
    std::FILE* file = sheet->optimize_tmpfile;
    if (file == nullptr) continue;
    const bool failed = std::fflush(file) != 0 || std::ferror(file) != 0;
    if (failed) ThrowFileFailure("write", folder_ + "...", LastFileError());
    longest = std::max(longest, ftello(file));
  }
  TryForRoom(longest + kRoomForParts);
}

void XlsxBook::Close() {
  CheckSheetFiles();
  lxw_workbook* book = book_;
  book_ = nullptr;
  Check(workbook_close(book));
  CopyIntoTarget();
}

void XlsxBook::CopyIntoTarget() {
  constexpr std::size_t kBlockBytes = std::size_t{1} << 18;
  std::ifstream made(made_.name(), std::ios::binary);
  std::vector<char> block(kBlockBytes);
  while (made.read(block.data(), static_cast<std::streamsize>(block.size())) || made.gcount() > 0)
    target_.Write({block.data(), static_cast<std::size_t>(made.gcount())});
  if (made.bad() || !made.eof()) ThrowFileFailure("read", made_.name(), LastFileError());
}

}  // namespace flanks

#endif  // FLANKS_HAS_XLSXWRITER
