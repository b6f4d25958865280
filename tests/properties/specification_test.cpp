// Whatever the user writes, the reading of a Specification ends: settled, or with a fault that has
// words and a code, or with a number that ends the process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "spec/flank_maps.h"
#include "spec/keyword_table.h"
#include "spec/output_names.h"
#include "support/spec_run.h"

namespace flanks {
namespace {

constexpr int kTexts = 1500;
constexpr unsigned kSeed = 20240517;

class TextMaker {
 public:
  explicit TextMaker(unsigned seed) : random_(seed) {}

  std::string Text() {
    std::string text = Chance(3) ? "" : "Flanks=" + std::to_string(Below(4)) + "\n";
    for (int lines = Below(12); lines > 0; --lines) text += Line() + LineEnd();
    return text;
  }

  std::string Extras() {
    std::string text;
    for (int words = Below(3); words > 0; --words) text += " " + Line();
    return text;
  }

 private:
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  bool Chance(int oneIn) { return Below(oneIn) == 0; }

  std::string LineEnd() { return Chance(20) ? "\n\r" : Chance(20) ? "\r\n" : "\n"; }

  std::string Line() {
    if (Chance(8)) return Value();
    const auto rows = KeywordRows();
    const KeywordRow& row = rows[static_cast<std::size_t>(Below(static_cast<int>(rows.size())))];
    std::string line(Chance(2) ? row.prefix : row.keyword.substr(0, row.keyword.size() - 1));
    if (!Chance(10)) line += Chance(8) ? "," : "=";
    for (int values = Below(5); values > 0; --values) line += Value() + (Chance(6) ? "=" : ",");
    return line + Value();
  }

  std::string Value() {
    static const std::vector<std::string> kValues = {
        "",         "*",      "Y",     "N",      "0",           "1",          "2",        "3",
        "-1",       "255",    "256",   ".5",     "2*3",         "1/3",        "x",        "?",
        "?",        "R5",     "D",     "M",      "1-3",         "_",          "$S1",      "%",
        "% a",      "%s.txt", ";",     ";;note", "\"a\"",       "'",          "\t",       "\x01",
        "\xC2\xA0", "\xA0",   "\xE9",  "NL",     "2Z",          "mN",         "1N",       "10101",
        " ",        "1E+2",   "(1+1)", "-(2)",   "99999999999", "2147483647", "Ann, Bob", "d.txt",
        "a*",       "\\"};
    return kValues[static_cast<std::size_t>(Below(static_cast<int>(kValues.size())))];
  }

  std::mt19937 random_;
};

// What must hold behind any text.
void ExpectSettled(SpecRun& test, const std::string& text) {
  const Analysis& analysis = test.analysis;
  const Design& design = analysis.design;
  if (test.fault() != Fault::none) {
    EXPECT_THAT(test.FaultText(), testing::HasSubstr("Error F")) << text;
    EXPECT_THAT(test.FaultText(), testing::Not(testing::HasSubstr("not understood"))) << text;
    EXPECT_FALSE(analysis.reading.fault.name.empty()) << text;
    return;
  }
  EXPECT_FALSE(analysis.specification.ReadingExtras);
  EXPECT_EQ(design.flanks.FlankName.rows(), design.FlankCount) << text;
  EXPECT_EQ(design.flanks.FlankCenter.rows(), design.FlankCount) << text;
  EXPECT_EQ(design.maps.ActiveMap.rows(), design.maps.EntryMap.rows()) << text;
  for (const FlankNo flank : design.maps.EntryMap) EXPECT_LE(flank.number(), design.FlankCount);
  for (const FlankNo flank : design.maps.ModelFlank) {
    EXPECT_GE(flank.number(), 1);
    EXPECT_LE(flank.number(), design.FlankCount);
  }
}

TEST(AnySpecification, EndsSettledOrWithAFault) {
  TextMaker maker(kSeed);
  int settled = 0, faults = 0, ended = 0;
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = maker.Text(), extras = maker.Extras();
    SpecRun test;
    try {
      test.Read(text, extras);
      test.Do({MakeDefaultMaps, SettleOutputNames});
      ExpectSettled(test, text + "|" + extras);
      ++(test.fault() == Fault::none ? settled : faults);
    } catch (const ProcessEnd& end) {
      EXPECT_EQ(end.exitCode, 1);
      EXPECT_THAT(test.shell.Screen(), testing::HasSubstr("VLCOMPUTE: "));
      ++ended;
    }
  }
  // The texts reach each end many times, so that the law says something.
  EXPECT_GT(settled, 50);
  EXPECT_GT(faults, 50);
  EXPECT_GT(ended, 5);
}

}  // namespace
}  // namespace flanks
