// Whatever stands in a Specification, a run ends: completed, or in a numbered fault, "Execution
// halted" and exit status 1.  Never a crash, a hang, a leftover work file or an empty message.
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "support/analysis_run.h"
#include "support/file_bytes.h"

namespace flanks {
namespace {

std::string ReadSource(const std::string& name) {
  return BytesOfFile(std::string(FLANKS_SOURCE_DIR) + "/" + name);
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t from = 0;
  while (from < text.size()) {
    const std::size_t end = std::min(text.find('\n', from), text.size() - 1);
    lines.push_back(text.substr(from, end - from + 1));
    from = end + 1;
  }
  return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line;
  return text;
}

// Runs one Specification and says what is wrong with the way it ended; "" for nothing.
std::string Complaint(const std::string& example, const std::string& specification) {
  AnalysisRun run;
  run.Write(example + "-data.txt", ReadSource("examples/" + example + "/" + example + "-data.txt"));
  run.Analyze(specification);
  const std::string screen = run.Screen();
  run.analysis = Analysis{};
  if (!run.Leftovers().empty()) return "left behind: " + run.Leftovers().front();
  if (run.exitCode == 0) return "";
  if (run.exitCode != 1) return "exit status " + std::to_string(run.exitCode);
  if (run.processEnded)
    return screen.find("VLCOMPUTE: ") != std::string::npos ? "" : "ended without words: " + screen;
  if (screen.find("Execution halted") == std::string::npos) return "not halted: " + screen;
  const std::size_t error = screen.find("Error F");
  if (error == std::string::npos) return "no fault: " + screen;
  if (screen.find(": Error F") == std::string::npos &&
      screen.find("in line Error F") == std::string::npos)
    return "a fault without words: " + screen;
  return "";
}

class ExampleSpecification : public ::testing::TestWithParam<const char*> {
 protected:
  std::string Text() const {
    const std::string name = GetParam();
    return ReadSource("examples/" + name + "/" + name + ".txt");
  }
  void Expect(const std::string& specification, const std::string& what) const {
    const std::string complaint = Complaint(GetParam(), specification);
    EXPECT_EQ(complaint, "") << what;
  }
};

TEST_P(ExampleSpecification, EndsWhereverItIsCut) {
  const std::string text = Text();
  ASSERT_FALSE(text.empty());
  for (std::size_t length = 0; length < text.size(); ++length)
    Expect(text.substr(0, length), "cut after " + std::to_string(length) + " bytes");
}

TEST_P(ExampleSpecification, EndsWithoutAnyOneLine) {
  const std::vector<std::string> lines = LinesOf(Text());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::vector<std::string> changed = lines;
    changed.erase(changed.begin() + static_cast<std::ptrdiff_t>(i));
    Expect(Joined(changed), "without line " + std::to_string(i + 1));
  }
}

TEST_P(ExampleSpecification, EndsWithAnyOneLineDoubled) {
  const std::vector<std::string> lines = LinesOf(Text());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::vector<std::string> changed = lines;
    changed.insert(changed.begin() + static_cast<std::ptrdiff_t>(i), lines[i]);
    Expect(Joined(changed), "line " + std::to_string(i + 1) + " twice");
  }
}

TEST_P(ExampleSpecification, EndsWithAnyOneLineGarbled) {
  const std::vector<std::string> lines = LinesOf(Text());
  const unsigned seed = 20261120;
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> byte(0, 255);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    for (int variant = 0; variant < 4; ++variant) {
      std::vector<std::string> changed = lines;
      for (char& c : changed[i])
        if (c != '\n' && random() % 4 == 0) c = static_cast<char>(byte(random));
      Expect(Joined(changed), "line " + std::to_string(i + 1) + " garbled, variant " +
                                  std::to_string(variant) + ", seed " + std::to_string(seed) +
                                  ": " + changed[i]);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, ExampleSpecification, ::testing::Values("painters", "essays"),
                         [](const auto& example) { return std::string(example.param); });

}  // namespace
}  // namespace flanks
