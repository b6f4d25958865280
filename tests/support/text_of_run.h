// What a writer of output files makes of a run that is done.
//
//   AnalysisRun done;
//   done.Analyze("...");
//   TextOfRun text(done);
//   text.Of([](auto& run, Destination& out) { WriteResidualFile(run, OutputForm::text, {...}, out);
//   })
#ifndef FLANKS_TESTS_SUPPORT_TEXT_OF_RUN_H
#define FLANKS_TESTS_SUPPORT_TEXT_OF_RUN_H

#include <gtest/gtest.h>
#include <string>

#include "output/destination.h"
#include "run/console.h"
#include "support/analysis_run.h"
#include "support/source_tree.h"  // LinesOf

namespace flanks {

class TextOfRun {
 public:
  explicit TextOfRun(AnalysisRun& done)
      : done_(done),
        console_(done.shell, done.dialogs, done.process.control, done.analysis.settings,
                 done.analysis.report),
        run{done.process, done.analysis, console_, done.dialogs, done.launcher} {}

  template <class Write>
  std::string Of(const Write& write) {
    ReplacedFile file;
    EXPECT_FALSE(file.Open(done_.folder.file("written.txt")));
    Destination out(file);
    write(run, out);
    file.Commit();
    return done_.folder.read("written.txt");
  }

 private:
  AnalysisRun& done_;
  Console console_;

 public:
  Run run;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_TEXT_OF_RUN_H
