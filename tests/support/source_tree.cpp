#include "support/source_tree.h"

#include <algorithm>
#include <filesystem>

#include "support/file_bytes.h"

namespace flanks {
namespace {

namespace fs = std::filesystem;

// In a linked working tree .git is a file.
bool IsLeftOut(const fs::path& path) {
  const std::string name = path.filename().string();
  return name == ".git" || name == ".cache" ||
         (name.starts_with("build") && fs::is_directory(path));
}

bool EndsInOneOf(const std::string& name, const std::vector<std::string>& endings) {
  return endings.empty() || std::ranges::any_of(endings, [&](const std::string& ending) {
           return name.ends_with(ending);
         });
}

// The end of the literal or comment that begins at `start`, or `start` when none begins there.
std::size_t EndOfOpaque(std::string_view text, std::size_t start) {
  const auto after = [&](std::string_view mark, std::size_t from) {
    const std::size_t found = text.find(mark, from);
    return found == std::string_view::npos ? text.size() : found + mark.size();
  };
  const std::string_view rest = text.substr(start);
  if (rest.starts_with("//")) return std::min(text.find('\n', start), text.size());
  if (rest.starts_with("/*")) return after("*/", start + 2);
  if (rest.starts_with("R\"")) {
    const std::size_t open = text.find('(', start);
    if (open == std::string_view::npos) return text.size();
    return after(")" + std::string(text.substr(start + 2, open - start - 2)) + "\"", open);
  }
  const char quote = rest.front();
  // 1'000'000: a quote behind a digit separates digits.
  const bool separator = quote == '\'' && start > 0 && std::isxdigit(text[start - 1]) != 0;
  if ((quote != '"' && quote != '\'') || separator) return start;
  std::size_t end = start + 1;
  while (end < text.size() && text[end] != quote) end += text[end] == '\\' ? 2 : 1;
  return std::min(end + 1, text.size());
}

}  // namespace

SourceTree ReadSourceTree(std::string_view folder, const std::vector<std::string>& endings) {
  const fs::path top = FLANKS_SOURCE_DIR;
  SourceTree tree;
  for (fs::recursive_directory_iterator at(top / folder), end; at != end; ++at) {
    if (IsLeftOut(at->path())) {
      if (at->is_directory()) at.disable_recursion_pending();
      continue;
    }
    const std::string name = at->path().lexically_relative(top).generic_string();
    if (at->is_regular_file() && EndsInOneOf(name, endings)) tree[name] = BytesOfFile(at->path());
  }
  return tree;
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string WithoutCommentsAndLiterals(std::string_view text) {
  std::string code(text);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = EndOfOpaque(text, at);
    for (std::size_t i = at; i < end; ++i)
      if (code[i] != '\n') code[i] = ' ';
    at = std::max(end, at + 1);
  }
  return code;
}

}  // namespace flanks
