// SpecificationSource: the physical lines of a text file and the files that it includes.
#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>

#include "base/text.h"
#include "base/utf8.h"
#include "spec/file_names.h"
#include "spec/included_files.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr std::string_view kIncludeKind = "% include file";
constexpr char kIncludeMark = '%';
constexpr char kCommentMark = ';';
constexpr char kNoBreakSpace = '\xA0';
constexpr char kNoBreakSpaceLead = '\xC2';  // of the two bytes that UTF-8 makes of it
constexpr int kChangedFileExit = 1;

// What the bytes of a line are, so that one look over a line finds all that is special in it.
enum ByteClass : std::uint8_t {
  kIsControl = 1,  // below blank; not the tab
  kIsComment = 2,
  kIsInclude = 4,
  kIsNoBreak = 8,
  kIsContent = 16,  // neither blank nor comma nor tab
};

constexpr std::array<std::uint8_t, 256> MakeByteClasses() {
  std::array<std::uint8_t, 256> classes{};
  for (std::size_t code = 0; code < classes.size(); ++code)
    classes[code] = code < ' ' ? kIsControl : kIsContent;
  classes[' '] = classes[','] = classes['\t'] = 0;
  classes[';'] |= kIsComment;
  classes['%'] |= kIsInclude;
  classes[0xA0] |= kIsNoBreak;
  return classes;
}
constexpr std::array<std::uint8_t, 256> kByteClasses = MakeByteClasses();

unsigned ClassesIn(std::string_view line) {
  unsigned classes = 0;
  for (const char c : line) classes |= kByteClasses[static_cast<unsigned char>(c)];
  return classes;
}

Utf8Encoded EncodedSetting(const Settings& settings) {
  if (settings.UTF8enc == "Y") return Utf8Encoded::yes;
  return settings.UTF8enc == "N" ? Utf8Encoded::no : Utf8Encoded::detect;
}

// A text file that changes while it is read.
[[noreturn]] void EndOnChangedFile(Console& console, const TextFile& file) {
  console.ShowFlagged(file.FaultText());
  EndProcess(kChangedFileExit);
}

}  // namespace

Fault SpecificationSource::OpenLevel(const std::string& name, std::string_view kind,
                                     Console& console) {
  faultText_ = InQuotes(name);
  const TextFileCheck check = CheckTextFile(name);
  if (check.error == std::errc::no_such_file_or_directory) return Fault::fileNotFound;
  if (check.error) {
    faultText_ += " (" + check.error.message() + ")";
    return Fault::fileNotFound;
  }
  if (check.refused()) {
    console.WarnLine(std::string(kind) + " file - " + name + " - has " +
                     std::string(TextFileClass(check.kind)) + " format. Please re-format.");
    return Fault::badFileFormat;
  }
  TextFile file;
  if (const std::error_code error = file.Open(name)) {
    faultText_ += " (" + error.message() + ")";
    return Fault::fileNotFound;
  }
  levels_.push_back(std::move(file));
  faultText_.clear();
  return Fault::none;
}

Fault SpecificationSource::Open(const std::string& name, std::string_view kind,
                                const std::string& specificationFile, Console& console) {
  levels_.clear();
  name_ = openedName_ = name;
  specificationFile_ = specificationFile;
  lineNumber_ = 0;
  goesOn_.clear();
  stretches_.assign(1, {1, {name, 1}});
  fault_ = OpenLevel(name, kind, console);
  return fault_;
}

void SpecificationSource::TellAs(const std::string& name) {
  name_ = name;
  stretches_.front().place.file = name;
}

bool SpecificationSource::Fail(Fault fault, std::string text) {
  fault_ = fault;
  faultText_ = std::move(text);
  levels_.clear();
  return false;
}

// The next line of the innermost file that has one.
bool SpecificationSource::ReadPhysicalLine(Console& console, std::string_view& line) {
  while (!levels_.empty()) {
    if (levels_.back().ReadLine(line)) {
      ++lineNumber_;
      return true;
    }
    if (levels_.back().fault() != TextFileFault::none) EndOnChangedFile(console, levels_.back());
    levels_.pop_back();
    if (goesOn_.empty()) continue;
    stretches_.push_back({lineNumber_ + 1, goesOn_.back()});
    goesOn_.pop_back();
  }
  line = original_ = {};
  return false;
}

// In a UTF-8 line the pair C2 A0 is the no-break space, and A0 alone is part of another character.
std::string_view SpecificationSource::WithoutNoBreakSpaces(Console& console,
                                                           std::string_view line) {
  const bool pairs = IsUtf8(line, EncodedSetting(console.settings()));
  std::string text;
  text.reserve(line.size());
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool isPair = pairs && line[i] == kNoBreakSpaceLead && i + 1 < line.size() &&
                        line[i + 1] == kNoBreakSpace;
    text += isPair || (!pairs && line[i] == kNoBreakSpace) ? ' ' : line[i];
    if (isPair) ++i;
  }
  spaced_ = std::move(text);
  return spaced_;
}

bool SpecificationSource::OpenIncluded(Console& console, std::string_view line) {
  const std::string name(IncludedName(line));
  if (const Fault fault = CheckFileName(name); fault != Fault::none)
    return Fail(fault, std::string(line));
  console.ShowLine("Reading % include file: " + std::string(ShownPart(name)));
  const std::string found = FindFileToRead(name, specificationFile_);
  if (const Fault fault = OpenLevel(found, kIncludeKind, console); fault != Fault::none)
    return Fail(fault, faultText_);
  includedFiles_.push_back(found);
  FilePlace next = PlaceOf(lineNumber_);
  ++next.line;
  goesOn_.push_back(std::move(next));
  stretches_.push_back({lineNumber_ + 1, {found, 1}});
  return true;
}

FilePlace SpecificationSource::PlaceOf(std::int64_t lineNumber) const {
  // The last stretch that begins at the line or before it; an empty file leaves one without lines.
  const auto behind =
      std::upper_bound(stretches_.begin(), stretches_.end(), lineNumber,
                       [](std::int64_t number, const Stretch& s) { return number < s.first; });
  if (lineNumber < 1 || behind == stretches_.begin()) return {};
  FilePlace place = std::prev(behind)->place;
  place.line += lineNumber - std::prev(behind)->first;
  return place;
}

bool SpecificationSource::ReadRawLine(Console& console, std::string_view& line) {
  while (ReadPhysicalLine(console, line)) {
    classes_ = ClassesIn(line);
    if (classes_ & kIsNoBreak) {
      line = WithoutNoBreakSpaces(console, line);
      classes_ = ClassesIn(line);
    }
    original_ = line;
    const bool room =
        levels_.size() <= kIncludeLevels && includedFiles_.size() < kMostIncludedFiles;
    if (!(classes_ & kIsInclude) || !room) return true;
    const std::string_view trimmed = Trim(line);
    if (trimmed.empty() || trimmed.front() != kIncludeMark) return true;
    if (!OpenIncluded(console, trimmed)) break;
  }
  line = {};
  return false;
}

std::string_view SpecificationSource::WithoutControls(std::string_view line) {
  cleaned_.assign(line);
  for (char& c : cleaned_)
    if (kByteClasses[static_cast<unsigned char>(c)] & kIsControl) c = ' ';
  return cleaned_;
}

bool SpecificationSource::NextSpecificationLine(Console& console, BlankLines blankLines,
                                                KeptLines* shownComments, std::string_view& line) {
  while (ReadRawLine(console, line)) {
    unsigned classes = classes_;
    if (classes & kIsComment) {
      if (line.find(";;") != std::string_view::npos) {
        if (shownComments != nullptr)
          shownComments->Add(Trim(line));
        else
          console.WriteOutput(Trim(line));
      }
      line = line.substr(0, line.find(kCommentMark));
      classes = ClassesIn(line);
    }
    if (!(classes & kIsContent)) line = {};
    if (classes & kIsControl) line = WithoutControls(line);
    line = Trim(line);
    if (!line.empty() || blankLines == BlankLines::keep) return true;
  }
  return false;
}

}  // namespace flanks
