// The short cut of the data pass and the general procedure give the same, whatever the lines are.
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "support/data_design.h"

namespace flanks {
namespace {

constexpr unsigned kSeed = 1000;
constexpr int kDesigns = 300;
constexpr int kLinesOfARun = 60;

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int Below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
  bool OneIn(int n) { return Below(n) == 0; }
  const std::string& Of(const std::vector<std::string>& texts) {
    return texts[static_cast<std::size_t>(Below(static_cast<int>(texts.size())))];
  }

 private:
  std::mt19937 engine_;
};

// Element numbers 1 to 4 or, with gaps, 2, 5, 12; labels with blanks, a colon, "R" in front.
void AddFlank(DataRun& run, Random& random, bool mayBeEmpty) {
  const std::string letters = random.Of({"N.", "N.", "N.", "L.", "NL", "LN"});
  switch (random.Below(4)) {
    case 0:
      run.Flank({{2, "Ann"}, {5, "Bob B"}, {12, "5"}}, letters);
      break;
    case 1:
      run.Flank({{0, "zero"}, {1, "R2"}, {2, "Rob"}}, letters);
      break;
    case 2:
      run.Flank({{1, "x:long"}, {2, "y_y"}, {3, "3"}, {4, "1"}}, letters);
      break;
    default:
      mayBeEmpty&& random.OneIn(3) ? run.Flank({}, letters)
                                   : run.Flank({{1, ""}, {2, ""}, {3, ""}, {4, ""}}, letters);
  }
}

void Build(DataRun& run, unsigned seed) {
  Random random(seed);
  const int flanks = 1 + random.Below(3);
  for (int f = 0; f < flanks; ++f) AddFlank(run, random, /*mayBeEmpty=*/f > 0);
  if (random.OneIn(4)) run.Entered({1, 0, flanks});
  run.Scale("rs", "R6",
            {{"2", "3-5", true, 3, 5},
             {"1", "2", false, 0, 0},
             {"0", "x", false, 0, 0},
             {"-1", "9", false, 0, 0}});
  const int positions = run.design().ModelFlankCount;
  const int statements = 1 + random.Below(3);
  for (int m = 0; m < statements; ++m) {
    std::string statement;
    for (int a = 0; a < positions; ++a)
      statement += random.Of({"?", "?", "?", "1", "2-4", "X", "#", "-?", "@2", ""}) + ",";
    run.Model(statement + random.Of({"R5", "R", "D", "B3", "P", "M", "rs", "rs"}));
  }
  run.settings().NullElement = random.Below(4) - 1;
  if (random.OneIn(2)) run.settings().Missing = random.Of({",9,", ",x,0,", ",99,-1,"});
  if (random.OneIn(3)) run.settings().Replication = random.Of({"1", "1", "2", "W"});
  if (random.OneIn(8)) run.settings().labelsNobuild = true;
  if (random.OneIn(12)) run.design().flanks.identifierStart[FlankNo(1)] = 2;
}

// A field of any kind; with `numbersOnly` one that ends no run.
std::string Field(Random& random, bool numbersOnly) {
  if (numbersOnly)
    return random.Of({"1", "2", "3", "4", "5", "7", "0", "00", "02", "99", "1234567890",
                      "2147483646", "", " 2", "3 ", "\"1\""});
  return random.Of({"1",   "2", "3",   "4",   "5",     "7",  "0",   "02",    "1",
                    "2",   "9", "256", "Ann", "Bob B", "R2", "Rob", "x",     "y-y",
                    "y_y", "",  " 2",  "1-2", "2_1",   "-1", "1.5", "\"1\"", "zz"});
}

// Lines end the run only where `wild`.
std::string Line(Random& random, const Design& design, bool wild) {
  const int responses = 1 + random.Below(3);
  const bool replication = random.OneIn(15);
  std::string line = replication ? random.Of({"R2,", "r0,", wild ? "1," : "R3,"}) : "";
  const bool usual = !random.OneIn(3);
  for (int i = 0; i < design.DataFlankCount + responses; ++i) {
    if (i > 0) line += ',';
    const DataPosition position(i + 1);
    const bool element = design.maps.EntryMap.has(position);
    const FlankNo flank = element ? design.maps.EntryMap[position] : FlankNo();
    const bool byNumber =
        design.flanks.FlankDelements.has(flank) && design.flanks.FlankDelements[flank] == "N.";
    line += usual ? random.Of({"0", "1", "2", "3", "4", "5", "1", "2", "3", "12", "23"})
                  : Field(random, byNumber && !wild);
  }
  if (random.OneIn(12)) line += random.Of({",", " ; comment", "\t", "=3", " ", ",,"});
  if (random.OneIn(25)) line = random.Of({"", " ", ",,", ";; shown", wild ? "1\t2\t3" : ";"});
  return line;
}

std::string Lines(unsigned seed, const DataRun& run) {
  Random random(seed);
  const bool wild = random.OneIn(3);
  std::string lines;
  for (int i = 0; i < kLinesOfARun; ++i) lines += Line(random, run.analysis.design, wild) + "\n";
  return lines;
}

std::string OutcomeOf(unsigned seed, PlainLines plainLines) {
  DataRun run;
  Build(run, seed);
  run.Pass(Lines(seed + 1, run), plainLines);
  return run.Outcome();
}

TEST(DataPassProperty, TheShortCutGivesWhatTheGeneralProcedureGives) {
  for (unsigned i = 0; i < kDesigns; ++i) {
    const unsigned seed = kSeed + 2 * i;
    ASSERT_EQ(OutcomeOf(seed, PlainLines::shortCut), OutcomeOf(seed, PlainLines::generalProcedure))
        << "seed " << seed;
  }
}

TEST(SlowDataPassProperty, TheShortCutGivesWhatTheGeneralProcedureGives) {
  const unsigned start = std::random_device{}();
  for (unsigned i = 0; i < 50 * kDesigns; ++i) {
    const unsigned seed = start + 2 * i;
    ASSERT_EQ(OutcomeOf(seed, PlainLines::shortCut), OutcomeOf(seed, PlainLines::generalProcedure))
        << "seed " << seed;
  }
}

// Non-blank responses are valid, invalid, negative, unspecified, unmatched or of an unused model.
TEST(DataPassProperty, EveryResponseIsAccountedFor) {
  std::int64_t lines = 0, valid = 0;
  for (unsigned i = 0; i < kDesigns; ++i) {
    const unsigned seed = kSeed + 100000 + 2 * i;
    DataRun run;
    Build(run, seed);
    run.Pass(Lines(seed + 1, run), PlainLines::shortCut);
    const DataCounts& counts = run.analysis.counts;
    std::int64_t matched = 0;
    for (const std::int64_t count : counts.ModelCounter) matched += count;
    const std::int64_t dropped = counts.InvalidResponses.count.whole() +
                                 counts.NegativeResponses.count.whole() +
                                 counts.InvalidModelResponses.count.whole();
    EXPECT_EQ(matched, counts.ValidResponses.whole() + dropped) << "seed " << seed;
    EXPECT_EQ(counts.NonBlankResponses.whole(), matched +
                                                    counts.UnspecifiedResponses.count.whole() +
                                                    counts.UnmatchedResponses.count.whole())
        << "seed " << seed;
    EXPECT_EQ(run.analysis.work.records, counts.ValidResponses.whole()) << "seed " << seed;
    lines += counts.DataLines.whole();
    valid += counts.ValidResponses.whole();
  }
  // The random lines are of use: most are read, and many of them are used.
  EXPECT_GT(lines, kDesigns * kLinesOfARun / 2);
  EXPECT_GT(valid, kDesigns * kLinesOfARun / 5);
}

}  // namespace
}  // namespace flanks
