#include "spec/given_value.h"

#include <gtest/gtest.h>
#include <string>

#include "support/spec_bench.h"

namespace flanks {
namespace {

TEST(GivenValue, ZeroCountsOnlyWhenItIsWritten) {
  SpecBench bench("", SpecBench::Through::reading);
  struct Case {
    std::string text;
    float value;
    bool given;
  };
  for (const Case& c :
       {Case{"2.5", 2.5f, true}, Case{" -1", -1.0f, true}, Case{"0", 0.0f, true},
        Case{"(1-1)*0", 0.0f, true}, Case{"1-1", 0.0f, false}, Case{"", 0.0f, false},
        Case{"x", 0.0f, false}, Case{"+x", 0.0f, false}, Case{"early", 0.0f, false},
        Case{"D", 0.0f, false}, Case{".5", 0.5f, true}, Case{"2*3", 6.0f, true}}) {
    const GivenValue read = EvaluateGiven(bench.console, c.text);
    EXPECT_EQ(read.value, c.value) << c.text;
    EXPECT_EQ(read.given, c.given) << c.text;
  }
}

}  // namespace
}  // namespace flanks
