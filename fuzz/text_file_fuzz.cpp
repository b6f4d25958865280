// The text file reader, the check of a file's kind, UTF-8 and its widths.
//
// The first two bytes of the input say how much stands before the rest, so that line ends come to
// lie at the ends of the reader's blocks.  The lines must be those of a reader that has the whole
// file in memory.
#include <algorithm>
#include <string>
#include <vector>

#include "base/text_file.h"
#include "base/text_work_file.h"
#include "base/utf8.h"
#include "fuzz_checks.h"
#include "report/format/clip_field.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

constexpr std::size_t kBlockBytes = 65536;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct Lines {
  std::vector<std::string> texts;
  bool firstEndsInLoneReturn = false;
};

// The lines of a text: a return, a line feed, or the two side by side end one.
Lines LinesOf(std::string_view bytes) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  Lines lines;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
    std::size_t next = end;
    if (end < bytes.size()) ++next;
    const bool two = next > end && next < bytes.size() && bytes[next] != bytes[end] &&
                     (bytes[next] == '\r' || bytes[next] == '\n');
    if (two) ++next;
    if (lines.texts.empty())
      lines.firstEndsInLoneReturn = end < bytes.size() && bytes[end] == '\r' && !two;
    lines.texts.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(next);
  }
  return lines;
}

TextFileKind KindOf(std::string_view bytes, const Lines& lines) {
  if (bytes.size() <= 1 || lines.texts.empty()) return TextFileKind::plain;
  const std::string start = lines.texts.front().substr(0, 2);
  if (start == "{\\") return TextFileKind::rtf;
  if (start == "\xFF\xFE" || start == "\xFE\xFF") return TextFileKind::unicode;
  for (const char c : lines.texts.front())
    if (c == 0) return TextFileKind::unicode;
  if (start == "\xEF\xBB") return TextFileKind::utf8;
  return lines.firstEndsInLoneReturn ? TextFileKind::incorrectEndOfLine : TextFileKind::plain;
}

void CheckFile(const std::string& name, const std::string& bytes) {
  const Lines expected = LinesOf(bytes);
  const TextFileCheck check = CheckTextFile(name);
  Require(!check.error, "the file is opened");
  Require(check.kind == KindOf(bytes, expected), "the kind of the file", bytes);
  Require(TextFileClass(check.kind).empty() == (check.kind == TextFileKind::plain),
          "a kind has a name", bytes);
  TextFile file;
  Require(!file.Open(name), "the file is opened again");
  std::vector<std::string> read;
  std::string_view line;
  while (file.ReadLine(line)) read.emplace_back(line);
  Require(file.fault() == TextFileFault::none && file.FaultText().empty(), "no fault of the file");
  Require(read == expected.texts, "the lines of the file", bytes);
}

// The lines come back from a work file as they went there.
void CheckWorkFile(const std::vector<std::string>& lines) {
  TextWorkFile file;
  Require(!file.Create("fuzz", "txt"), "a work file");
  for (const std::string& line : lines) file.WriteLine(line);
  file.Rewind();
  std::string_view line;
  for (const std::string& expected : lines)
    Require(file.ReadLine(line) && line == expected, "a line of a work file", expected);
  Require(!file.ReadLine(line), "the end of a work file");
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 128; });
}

// By the form of the encoding alone, a character at a time.
bool HasUtf8Form(std::string_view text) {
  bool beyondAscii = false;
  for (std::size_t at = 0; at < text.size();) {
    const auto lead = static_cast<unsigned char>(text[at++]);
    int following = 0;
    if (lead >= 128) {
      beyondAscii = true;
      if (lead < 194 || lead > 244) return false;
      following = lead < 224 ? 1 : lead < 240 ? 2 : 3;
    }
    for (; following > 0; --following, ++at)
      if (at == text.size() || (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) return false;
  }
  return beyondAscii;
}

void CheckWidths(const std::string& text) {
  Require(IsUtf8(text) == HasUtf8Form(text), "the form of UTF-8", text);
  for (const Utf8Encoded encoded : {Utf8Encoded::detect, Utf8Encoded::yes, Utf8Encoded::no}) {
    const int columns = DisplayWidth(text, encoded);
    Require(columns >= 0 && columns <= static_cast<int>(text.size()) + 1, "the columns of a text",
            text);
    if (!IsUtf8(text, encoded))
      Require(columns == static_cast<int>(text.size()), "the columns of one-byte texts", text);
    if (encoded == Utf8Encoded::yes) continue;  // the user vouches for what may be no UTF-8
    for (const int width : {0, 1, 7, 40}) {
      const std::string field = ClipField(text, width, encoded);
      Require(!IsUtf8(text) || IsAscii(field) || IsUtf8(field), "no character is split", text);
    }
  }
}

void CheckTextFiles(std::string_view input) {
  if (input.size() < 2) return;
  GoToScratchFolder();
  const auto byte = [&](std::size_t at) {
    return std::size_t{static_cast<unsigned char>(input[at])};
  };
  const std::size_t before = (byte(0) * 256 + byte(1)) % 8192;
  const std::string_view rest = input.substr(2);
  std::string bytes(rest);
  // Most files are as given; some have a first line that reaches nearly to the end of a block.
  if (before >= 4096) bytes.insert(0, kBlockBytes - (before - 4096), 'x');
  const ScratchFolder folder;
  CheckFile(folder.write("a.txt", bytes), bytes);
  const Lines lines = LinesOf(rest);
  CheckWorkFile(lines.texts);
  for (const std::string& line : lines.texts) CheckWidths(line);
  Require(folder.names().size() == 1, "a file is left behind");
}

}  // namespace
}  // namespace flanks

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  flanks::CheckTextFiles(flanks::TextOf(data, size));
  return 0;
}
