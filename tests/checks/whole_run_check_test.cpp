// What holds for whole runs of the program, as a user starts it: the same report byte for byte on
// every run and vector width, and a memory that does not grow with the observations.
#include <array>
#include <gtest/gtest.h>
#include <random>
#include <regex>
#include <string>

#include "base/vector_width.h"
#include "support/flanks_sandbox.h"
#include "support/program_runner.h"

namespace flanks {
namespace {

constexpr int kRaters = 50;
constexpr int kCriteria = 5;
constexpr int kExaminees = 2000;

std::string LargeSpecification() {
  return "Flanks=3\nPositive=1\nNoncenter=1\nIterations=4\nModels=?,?,?,R4\nLabels=\n"
         "1,Examinees\n1-" +
         std::to_string(kExaminees) + "=Examinee\n*\n2,Raters\n1-" + std::to_string(kRaters) +
         "=Rater\n*\n3,Criteria\n1-" + std::to_string(kCriteria) + "=Criterion\n*\nData=data.txt\n";
}

// `count` ratings of the same elements, whatever the count.
std::string RatingLines(int count) {
  std::mt19937 random(7);
  std::string text;
  text.reserve(static_cast<std::size_t>(count) * 13);
  for (int i = 0; i < count; ++i) {
    const int examinee = i % kExaminees;
    const int rater = static_cast<int>(random() % kRaters);
    const int criterion = i % kCriteria;
    const int level = (examinee * 5 / kExaminees + static_cast<int>(random() % 5)) / 2;
    text += std::to_string(examinee + 1) + "," + std::to_string(rater + 1) + "," +
            std::to_string(criterion + 1) + "," + std::to_string(level > 4 ? 4 : level) + "\n";
  }
  return text;
}

std::string WithoutDate(const std::string& report) {
  return std::regex_replace(report, std::regex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}"),
                            "DATE");
}

TEST(WholeRun, TheReportIsTheSameOnEveryRunAndVectorWidth) {
  for (const std::string example : {"painters", "essays"}) {
    std::string first;
    for (const VectorWidth width : UsableVectorWidths()) {
      for (int repeat = 0; repeat < 2; ++repeat) {
        FlanksSandbox sandbox;
        const std::string folder = std::string(FLANKS_SOURCE_DIR) + "/examples/" + example + "/";
        sandbox.CopyIn(folder + example + ".txt");
        sandbox.CopyIn(folder + example + "-data.txt");
        ProgramCall call = sandbox.Call(FLANKS_PROGRAM, {example + ".txt", "report.txt"});
        call.environment["FLANKS_VECTOR_WIDTH"] = std::string(NameOf(width));
        const ProgramResult result = RunProgram(call);
        ASSERT_EQ(result.exitStatus, 0) << result.output << result.errors;
        const std::string report = WithoutDate(sandbox.Read("report.txt"));
        ASSERT_GT(report.size(), 1000u);
        if (first.empty()) first = report;
        EXPECT_TRUE(report == first) << example << " differs at width " << NameOf(width);
      }
    }
  }
}

std::int64_t PeakKilobytes(int observations) {
  FlanksSandbox sandbox;
  sandbox.Write("spec.txt", LargeSpecification());
  sandbox.Write("data.txt", RatingLines(observations));
  ProgramCall call = sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "report.txt"});
  call.timeLimit = std::chrono::minutes(20);
  const ProgramResult result = RunProgram(call);
  EXPECT_EQ(result.exitStatus, 0) << result.output << result.errors;
  EXPECT_TRUE(sandbox.TemporaryFiles().empty());
  return result.peakKilobytes;
}

constexpr std::int64_t kTenMegabytes = 10'000;

TEST(WholeRun, PeakMemoryDoesNotGrowWithTheObservations) {
  const std::int64_t small = PeakKilobytes(100'000);
  const std::int64_t large = PeakKilobytes(1'000'000);
  EXPECT_LE(large, small + kTenMegabytes) << "kilobytes: " << small << " and " << large;
}

TEST(SlowWholeRun, PeakMemoryIsFlatToTenMillionObservations) {
  const std::int64_t small = PeakKilobytes(100'000);
  const std::int64_t large = PeakKilobytes(10'000'000);
  std::cout << "peak memory: " << small << " kB at 100 thousand, " << large
            << " kB at 10 million observations\n";
  EXPECT_LE(large, small + kTenMegabytes);
}

}  // namespace
}  // namespace flanks
