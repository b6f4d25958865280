#include "run/progress_bar.h"

#include <gtest/gtest.h>
#include <string>

#include "support/recording_shell.h"

namespace flanks {
namespace {

struct Bar {
  RunControl control;
  RecordingShell shell{control};
  RecordingDialogs dialogs;
  Settings settings;
  ReportState report;
  Console console{shell, dialogs, control, settings, report};
};

std::string Marks(std::size_t count) {
  return std::string(count, '=');
}

TEST(ProgressBar, ShowsTheShareThatIsDone) {
  Bar bar;
  ProgressBar progress(bar.console, 1000);
  EXPECT_EQ(bar.shell.progress, ">");
  progress.Advance(19);
  EXPECT_EQ(bar.shell.progress, ">");
  progress.Advance(20);
  EXPECT_EQ(bar.shell.progress, ">=");
  progress.Advance(500);
  EXPECT_EQ(bar.shell.progress, ">" + Marks(25));
  progress.End();
  EXPECT_EQ(bar.shell.progress, ">" + Marks(50) + "<");
}

TEST(ProgressBar, IsFullAtTheEndWhateverTheTotal) {
  for (const std::int64_t total : {0, 1, 7, 49, 50, 51, 99, 101, 12345}) {
    Bar bar;
    ProgressBar progress(bar.console, total);
    for (std::int64_t done = 1; done <= total; ++done) {
      progress.Advance(done);
      const auto marks = static_cast<std::int64_t>(bar.shell.progress.size()) - 1;
      EXPECT_EQ(marks, done * 50 / total) << done << " of " << total;
    }
    progress.End();
    EXPECT_EQ(bar.shell.progress, ">" + Marks(50) + "<") << total;
  }
}

TEST(ProgressBar, TakesTheLargestTotals) {
  Bar bar;
  ProgressBar progress(bar.console, 9'000'000'000'000'000'000);
  progress.Advance(4'500'000'000'000'000'000);
  EXPECT_EQ(bar.shell.progress, ">" + Marks(25));
}

TEST(ProgressBar, BrokenOffItStaysAsLongAsItIs) {
  Bar bar;
  ProgressBar progress(bar.console, 10);
  progress.Advance(3);
  progress.Break();
  EXPECT_EQ(bar.shell.progress, ">" + Marks(15) + "<");
}

}  // namespace
}  // namespace flanks
