#include "spec/included_files.h"

#include <filesystem>
#include <set>
#include <system_error>

#include "base/text.h"
#include "base/text_file.h"
#include "run/faults.h"
#include "spec/file_names.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr char kIncludeMark = '%';
constexpr char kCommentMark = ';';
// The no-break space as UTF-8 and as a single byte: the reader takes both for blanks.
constexpr std::string_view kBlanks = " \xC2\xA0";

bool IsOrdinary(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(name, ignored);
}

// The line from its mark on; nothing when it begins with anything else.
std::string_view FromMark(std::string_view line) {
  const std::size_t first = line.find_first_not_of(kBlanks);
  if (first == std::string_view::npos || line[first] != kIncludeMark) return {};
  return line.substr(first);
}

// What the lines of one file name, as long as there is room.
void AddNames(const std::string& file, std::set<std::string>& names,
              std::vector<std::string>& newNames) {
  TextFile text;
  if (!IsOrdinary(file) || text.Open(file)) return;
  std::string_view line;
  while (names.size() < kMostIncludedFiles && text.ReadLine(line)) {
    const std::string_view include = FromMark(line);
    if (include.empty()) continue;
    std::string name(IncludedName(include));
    if (CheckFileName(name) == Fault::none && names.insert(name).second)
      newNames.push_back(std::move(name));
  }
}

}  // namespace

std::string_view IncludedName(std::string_view line) {
  const std::string_view afterMark = line.substr(1);
  return WithoutQuotes(afterMark.substr(0, afterMark.find(kCommentMark)));
}

std::vector<std::string> FindIncludedFiles(const std::string& top,
                                           const std::string& specificationFile) {
  std::set<std::string> names;
  std::vector<std::string> waiting;
  std::vector<std::string> found;
  AddNames(top, names, waiting);
  while (!waiting.empty()) {
    const std::string file = FindFileToRead(waiting.back(), specificationFile);
    waiting.pop_back();
    if (!IsOrdinary(file)) continue;
    found.push_back(file);
    AddNames(file, names, waiting);
  }
  return found;
}

}  // namespace flanks
