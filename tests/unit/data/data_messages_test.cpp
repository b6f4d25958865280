#include "data/data_messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/data_design.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;

// Columns of Dvalues= count bytes: one byte of a letter that has two.
TEST(DataMessages, HalfACharacterIsNotShown) {
  DataRun run;
  run.Flank({{1, "Ann"}}, "L.");
  run.Flank({{1, "i1"}}, "L.");
  run.Model("?,?,R5");
  run.Dvalue(
      {.position = 2, .text = "", .fromPosition = 1, .start = 1, .length = 1, .asWritten = ""});
  run.Read("\xC3\x89-Ann,3\n");
  EXPECT_THAT(run.Screen(), HasSubstr(" label: "));
  EXPECT_THAT(run.Screen(), HasSubstr(",?,3\n"));
  DataRun number;
  number.Flank({{1, "Ann"}}, "N.");
  number.Flank({{1, "i1"}}, "L.");
  number.Model("?,?,R5");
  number.Dvalue(
      {.position = 1, .text = "", .fromPosition = 2, .start = 1, .length = 1, .asWritten = ""});
  number.Read("\xC3\x89-Ann,3\n");
  EXPECT_THAT(number.Fault(), HasSubstr("\"?\" at flank location in data: 1"));
}

}  // namespace
}  // namespace flanks
