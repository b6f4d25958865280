// Whatever stands in a list of a Specification, the reading ends in the tables or in a fault with
// words.
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "support/spec_bench.h"

namespace flanks {
namespace {

constexpr int kSpecifications = 400;

const std::vector<std::string> kPieces = {"Models=",
                                          "Labels=",
                                          "Rating scale=",
                                          "Delements=",
                                          "Flanks=2",
                                          "Entered-in-data=2,0,1",
                                          "Null=",
                                          "Umean=5",
                                          "*",
                                          "\n",
                                          "\n",
                                          "\n",
                                          "\n",
                                          ",",
                                          ",",
                                          ",",
                                          "=",
                                          "?",
                                          "#",
                                          "X",
                                          "-",
                                          "B",
                                          "R5",
                                          "R",
                                          "D",
                                          "M",
                                          "K",
                                          "1",
                                          "2",
                                          "3",
                                          "0",
                                          "10-12",
                                          "1-3",
                                          "$2W1",
                                          "A",
                                          "G",
                                          "D",
                                          "+",
                                          "_",
                                          "@",
                                          "Ann",
                                          "\"",
                                          "'",
                                          ";",
                                          ";;",
                                          "\t",
                                          "2147483646",
                                          "2147483647",
                                          "99999999999",
                                          ".5",
                                          "1.5",
                                          "-1",
                                          "  ",
                                          "\xC3\xA9",
                                          ":"};

std::string RandomSpecification(std::mt19937& random) {
  std::string text = "Flanks=2\n";
  const auto pieces = random() % 60;
  for (unsigned i = 0; i < pieces; ++i) text += kPieces[random() % kPieces.size()];
  return text;
}

TEST(SpecificationLists, EndInTablesOrInAFaultWithWords) {
  std::mt19937 random(20240229);
  for (int i = 0; i < kSpecifications; ++i) {
    const std::string text = RandomSpecification(random);
    SCOPED_TRACE(text);
    try {
      SpecBench bench(text, SpecBench::Through::matching);
      const Design& design = bench.design();
      if (bench.fault() != Fault::none) {
        EXPECT_NE(bench.faultText().find("Error F"), std::string::npos);
        EXPECT_EQ(bench.faultText().find("not understood"), std::string::npos);
      } else if (!bench.console.stopping()) {
        EXPECT_EQ(design.elements.ElementLabel.rows(), design.ElementTotal);
        EXPECT_EQ(design.models.ModelText.rows(), design.ModelLast + 1);
        EXPECT_EQ(design.scales.rows(), design.ScaleLast + 1);
      }
    } catch (const ProcessEnd&) {
      // A malformed number ends the process.
    }
  }
}

// Each form of a list is cut at every byte.
TEST(SpecificationLists, CutAnywhereEndInTablesOrInAFault) {
  const std::string text =
      "Flanks=2\nModels=\n?B,#,R5,2\n-1-3,X,Qual\n*\nRating scale=Qual,R3,S,K\n0=poor,,,9+7-8\n"
      "1=fair,.5,A\n*\nDelements=2LE1W3\nLabels=\n1,Persons,A,2\n1=Ann 7,1.5,$5,1,2\n2-9=Kid\n*\n"
      "2,Items\n1=i1\n*\n";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    SCOPED_TRACE(length);
    try {
      SpecBench bench(text.substr(0, length), SpecBench::Through::matching);
      const bool faulty = bench.fault() != Fault::none;
      EXPECT_TRUE(!faulty || bench.faultText().find("Error F") != std::string::npos);
    } catch (const ProcessEnd&) {
    }
  }
}

}  // namespace
}  // namespace flanks
