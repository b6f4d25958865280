#include "data/unread_lines.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "base/text_file.h"
#include "report/format/join_number.h"
#include "spec/file_names.h"

namespace flanks {
namespace {

constexpr int kLinesLookedAt = 1000;  // behind the "*"; as a rule the first tells

bool HasContent(std::string_view line) {
  line = line.substr(0, line.find(';'));
  const std::size_t first = line.find_first_not_of(" ,\t");
  if (first == std::string_view::npos) return false;
  line = line.substr(first, line.find_last_not_of(" ,\t") - first + 1);
  return line != "*";
}

// Whether one of the lines behind `place` has content.
bool HasContentBehind(const SpecificationSource& source, const FilePlace& place) {
  std::error_code unknown;
  const std::string& name = source.FileBehind(place.file);
  if (!std::filesystem::is_regular_file(name, unknown)) return false;
  TextFile file;
  if (file.Open(name)) return false;
  std::string_view line;
  for (std::int64_t passed = 0; passed < place.line; ++passed)
    if (!file.ReadLine(line)) return false;
  for (int looked = 0; looked < kLinesLookedAt && file.ReadLine(line); ++looked)
    if (HasContent(line)) return true;
  return false;
}

// The last line of the top file that was read.
FilePlace PlaceInTopFile(const SpecificationSource& source) {
  for (std::int64_t number = source.lineNumber(); number > 0; --number)
    if (FilePlace place = source.PlaceOf(number); place.file == source.name()) return place;
  return {};
}

}  // namespace

void TellUnreadLines(const SpecificationSource& source, Console& console) {
  const FilePlace star = source.PlaceOf(source.lineNumber());
  const bool included = star.file != source.name();
  if (!HasContentBehind(source, star) &&
      !(included && HasContentBehind(source, PlaceInTopFile(source))))
    return;
  console.ShowFlagged(JoinNumber("The data end at \"*\" in line", star.line) + " of " +
                      InQuotes(star.file) + ": the lines behind it are not read.");
}

}  // namespace flanks
