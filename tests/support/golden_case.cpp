#include "support/golden_case.h"

#include <algorithm>
#include <stdexcept>

#include "support/source_tree.h"
#include "support/text_compare.h"

namespace flanks {
namespace {

namespace fs = std::filesystem;

constexpr const char* kScreen = "screen.txt";

// "a "b c" d" is three arguments: a, b c, d; "" is an empty one.
std::vector<std::string> CutArguments(const std::string& text) {
  std::vector<std::string> arguments;
  bool quoted = false, inside = false;
  for (const char c : text) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c == ' ' && !quoted) {
      inside = false;
      continue;
    }
    if (!inside) arguments.emplace_back();
    inside = true;
    if (c != '"') arguments.back() += c;
  }
  return arguments;
}

std::pair<std::string, std::string> ReadPair(const std::string& value) {
  const std::size_t arrow = value.find(" => ");
  if (arrow == std::string::npos) throw std::runtime_error("two texts with => between expected");
  return {value.substr(0, arrow), value.substr(arrow + 4)};
}

void TakeLine(const std::string& line, GoldenCase& golden) {
  const std::size_t colon = std::min(line.find(':'), line.size());
  const std::string word = line.substr(0, colon);
  const std::string value = line.substr(std::min(colon + 2, line.size()));
  if (word == "use") {
    golden.inputs.push_back(fs::path(FLANKS_SOURCE_DIR) / value);
  } else if (word == "run") {
    golden.arguments = CutArguments(value);
  } else if (word == "exit") {
    golden.exitStatus = std::stoi(value);
  } else if (word == "mask") {
    const auto [pattern, text] = ReadPair(value);
    golden.masks.emplace_back(std::regex(pattern), text);
  } else if (word == "cut") {
    golden.cuts.push_back(ReadPair(value));
  } else {
    throw std::runtime_error("unknown word \"" + word + "\"");
  }
}

std::vector<std::pair<std::regex, std::string>> CommonMasks() {
  std::vector<std::pair<std::regex, std::string>> masks;
  for (const auto& [pattern, text] : std::initializer_list<std::pair<const char*, const char*>>{
           {R"(Version \d+\.\d+\.\d+)", "Version #.#.#"},
           {R"(\d{4}-\d{2}-\d{2})", "YYYY-MM-DD"},
           {R"(\b\d{1,2}:\d{2}(:\d{2})?\b)", "HH:MM:SS"},
           {R"(Analyzed in time of [ \d:]+)", "Analyzed in time of HH:MM:SS"},
           {R"(>\.+)", ">."},  // a dot more for each five seconds of a slow machine
       })
    masks.emplace_back(pattern, text);
  return masks;
}

void ReplaceAll(const std::string& from, const std::string& to, std::string& text) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at))
    text.replace(at, from.size(), to);
}

void CutBetween(const std::string& from, const std::string& to, std::string& text) {
  const std::size_t begin = text.find(from);
  if (begin == std::string::npos) return;
  const std::size_t after = begin + from.size(), end = text.find(to, after);
  if (end != std::string::npos) text.replace(after, end - after, "(cut)");
}

std::string Masked(std::string text, const GoldenCase& golden, const fs::path& top) {
  ReplaceAll((top / "run").string(), "FOLDER", text);
  ReplaceAll((top / "temporary").string(), "TEMPORARY", text);
  ReplaceAll(top.string(), "SANDBOX", text);
  for (const auto& [from, to] : golden.cuts) CutBetween(from, to, text);
  for (const auto& [pattern, replacement] : golden.masks)
    text = std::regex_replace(text, pattern, replacement);
  return text;
}

}  // namespace

std::vector<std::string> GoldenCaseNames(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder))
    if (fs::exists(entry.path() / "case.txt")) names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  return names;
}

GoldenCase ReadGoldenCase(const fs::path& folder) {
  GoldenCase golden;
  golden.folder = folder;
  golden.masks = CommonMasks();
  for (const auto& entry : fs::directory_iterator(folder))
    if (entry.is_regular_file() && entry.path().filename() != "case.txt")
      golden.inputs.push_back(entry.path());
  int number = 0;
  for (const std::string& line : LinesOf(ReadWholeFile(folder / "case.txt"))) {
    ++number;
    if (line.empty() || line.starts_with(';')) continue;
    try {
      TakeLine(line, golden);
    } catch (const std::exception& fault) {
      throw std::runtime_error((folder / "case.txt").string() + ":" + std::to_string(number) +
                               ": " + fault.what());
    }
  }
  return golden;
}

GoldenAnswer RunGoldenCase(const GoldenCase& golden, const std::string& program) {
  const FlanksSandbox sandbox;
  for (const fs::path& input : golden.inputs) sandbox.CopyIn(input);
  const std::vector<std::string> before = sandbox.Files();
  GoldenAnswer answer;
  answer.result = RunProgram(sandbox.Call(program, golden.arguments));
  answer.files[kScreen] = Masked(answer.result.output, golden, sandbox.Top());
  for (const std::string& name : sandbox.Files())
    if (!std::ranges::binary_search(before, name))
      answer.files[name] = Masked(sandbox.Read(name), golden, sandbox.Top());
  answer.temporaryFiles = sandbox.TemporaryFiles();
  return answer;
}

std::vector<std::string> FaultsOf(const GoldenCase& golden, const GoldenAnswer& answer) {
  std::vector<std::string> faults;
  const ProgramResult& result = answer.result;
  if (result.timedOut) faults.push_back("the run did not end in time");
  if (result.signal != 0) faults.push_back("ended by signal " + std::to_string(result.signal));
  if (result.exitStatus != golden.exitStatus)
    faults.push_back("exit status " + std::to_string(result.exitStatus) + " in place of " +
                     std::to_string(golden.exitStatus));
  if (!result.errors.empty()) faults.push_back("standard error: " + result.errors);
  for (const std::string& name : answer.temporaryFiles)
    faults.push_back("a work file was left behind: " + name);

  const fs::path expected = golden.folder / "expected";
  GoldenFiles wanted;
  for (const std::string& name : FilesBelow(expected))
    wanted[name] = ReadWholeFile(expected / name);
  for (const auto& [name, text] : wanted) {
    const auto found = answer.files.find(name);
    if (found == answer.files.end()) {
      faults.push_back("the run left no file " + name);
    } else if (const auto difference = FirstDifference(text, found->second); !difference.empty()) {
      faults.push_back(name + ", " + difference);
    }
  }
  for (const auto& [name, text] : answer.files)
    if (!wanted.contains(name)) faults.push_back("not expected: the file " + name);
  return faults;
}

void RewriteExpected(const GoldenCase& golden, const GoldenAnswer& answer) {
  const fs::path expected = golden.folder / "expected";
  fs::remove_all(expected);
  for (const auto& [name, text] : answer.files) WriteWholeFile(expected / name, text);
}

}  // namespace flanks
