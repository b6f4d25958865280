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
#include "support/finished_run.h"
#include "support/source_tree.h"  // LinesOf

namespace flanks {

class TextOfRun : public FinishedRun {
 public:
  explicit TextOfRun(AnalysisRun& done) : FinishedRun(done), folder_(done.folder) {}

  template <class Write>
  std::string Of(const Write& write) {
    ReplacedFile file;
    EXPECT_FALSE(file.Open(folder_.file("written.txt")));
    Destination out(file);
    write(run, out);
    file.Commit();
    return folder_.read("written.txt");
  }

 private:
  const ScratchFolder& folder_;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_TEXT_OF_RUN_H
