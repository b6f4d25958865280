#include "spec/not_built.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/spec_bench.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;

struct Parts {
  std::string models = "?,?,R5", scale = "", flank = "1,P", element = "2=Bob";
};

std::string Specification(const Parts& parts) {
  return "Flanks=2\nModels=\n1,1,R5\n" + parts.models + "\n*\n" + parts.scale + "Labels=\n" +
         parts.flank + "\n1=Ann\n" + parts.element + "\n*\n2,Q\n1=i\n*\n";
}

struct Case {
  Parts parts;
  std::string feature;  // with its place
};

TEST(NotBuilt, RefusesEachFeatureByNameAndPlace) {
  const std::string statement = " (statement 2)";
  const Case cases[] = {
      {{.models = "?,?,B5"}, "binomial scales (B)" + statement},
      {{.models = "?,?,P"}, "Poisson scales (P)" + statement},
      {{.models = "?,#,R5"}, "\"#\" in a model statement" + statement},
      {{.models = "?,?,S", .scale = "Rating scale=S,R5,Specific\n*\n"},
       "Specific rating scales" + statement},
      {{.models = "?,?,S", .scale = "Rating scale=S,R5\n1=a,,A\n*\n"}, "anchored categories"},
      {{.models = "?,?,S", .scale = "Rating scale=S,R5\n1=a,1.5\n*\n"}, "anchored categories"},
      {{.models = "?,?,S", .scale = "Rating scale=S,R5,G,Keep\n*\n"},
       "\"Keep\" of unobserved categories" + statement},
      {{.models = "?,?,R5K"}, "\"Keep\" of unobserved categories" + statement},
  };
  for (const Case& c : cases) {
    SpecBench bench(Specification(c.parts), SpecBench::Through::matching);
    EXPECT_EQ(bench.fault(), Fault::notBuiltYet) << c.feature;
    EXPECT_THAT(bench.faultText(), HasSubstr(": " + c.feature));
    EXPECT_THAT(bench.faultText(), HasSubstr("Error F300"));
  }
}

TEST(NotBuilt, LetsEverythingElsePass) {
  const Parts cases[] = {
      {},
      {.models = "X,?,R5"},
      {.models = ",?,D"},
      {.models = "1-2,?$,M"},
      {.models = "?,?,B1"},  // the same as D
      {.models = "?,?,S", .scale = "Rating scale=S,R5\n1=a,,,2-4+x\n-1=b,,,9\n*\n"},
      {.scale = "Rating scale=unused,R5,Specific,Keep\n1=a,2,A\n*\n"},
      {.flank = "1,P,A", .element = "2=Bob,1"},
      {.flank = "1,P,G", .element = "2=Bob,1,2"},
      {.flank = "1,P,D,2", .element = "2=Bob,,3,.5,1"},
      {.models = "-?,@1,R5,2"},
      {.models = "?B,?B,R5"},
  };
  for (const Parts& parts : cases) {
    SpecBench bench(Specification(parts), SpecBench::Through::matching);
    EXPECT_EQ(bench.fault(), Fault::none) << bench.faultText();
  }
}

}  // namespace
}  // namespace flanks
