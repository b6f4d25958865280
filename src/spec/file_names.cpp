#include "spec/file_names.h"

#include <filesystem>
#include <system_error>

#include "base/text.h"

namespace flanks {
namespace {

constexpr std::string_view kFolderEnds = "\\/";
constexpr std::string_view kOutputEnding = ".out.txt";
constexpr std::string_view kTextEnding = ".txt";

// How much of the name is its folder, with the mark at its end.
std::size_t FolderLength(std::string_view name) {
  const std::size_t end = name.find_last_of(kFolderEnds);
  return end == std::string_view::npos ? 0 : end + 1;
}

bool IsThere(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::exists(name, ignored);
}

}  // namespace

Fault CheckFileName(std::string_view name) {
  if (name.empty()) return Fault::noFileName;
  if (name.find_first_of("*?") != std::string_view::npos) return Fault::badFileName;
  const char last = name.back();
  return last == '\\' || last == '/' || last == ':' ? Fault::badFileName : Fault::none;
}

std::string FindFileToRead(const std::string& name, const std::string& specificationFile) {
  const std::size_t folder = FolderLength(specificationFile);
  if (folder == 0 || std::filesystem::path(name).is_absolute() || IsThere(name)) return name;
  const std::string beside = specificationFile.substr(0, folder) + name;
  return IsThere(beside) ? beside : name;
}

std::string DefaultOutputName(std::string_view specificationFile) {
  const std::size_t folder = FolderLength(specificationFile);
  const std::size_t dot = specificationFile.rfind('.');
  const bool hasExtension = dot != std::string_view::npos && dot > folder;
  return std::string(hasExtension ? specificationFile.substr(0, dot) : specificationFile) +
         std::string(kOutputEnding);
}

std::string MakeOutputFileName(std::string_view name, int flank) {
  std::string complete(name);
  if (name.find('.', FolderLength(name)) == std::string_view::npos) complete += kTextEnding;
  const std::size_t afterDot = complete.rfind('.') + 1;
  return complete.insert(afterDot, std::to_string(flank) + ".");
}

bool SameFile(const std::string& a, const std::string& b) {
  if (a == b) return true;
  std::error_code notThere;
  const bool same = std::filesystem::equivalent(a, b, notThere);
  return !notThere && same;
}

std::string_view WithoutSheetList(std::string_view name) {
  const std::string upper = UpperCase(name);
  std::size_t length = std::string::npos;
  for (const std::string_view opening : {".XLS(", ".XLSX("})
    if (const std::size_t at = upper.rfind(opening);
        at != std::string::npos &&
        (length == std::string::npos || at + opening.size() > length + 1))
      length = at + opening.size() - 1;
  return name.substr(0, length);
}

std::string WorkbookName(const std::string& name) {
  if (!UpperCase(name).ends_with(".XLS")) return name;
  return name + (name.ends_with('S') ? "X" : "x");
}

std::string InQuotes(std::string_view name) {
  return '"' + std::string(name) + '"';
}

}  // namespace flanks
