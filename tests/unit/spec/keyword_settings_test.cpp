#include "spec/keyword_settings.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "base/text.h"
#include "run/messages.h"
#include "spec/report_settings.h"
#include "support/spec_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Applies a handler to a line and gives the settings.
Settings After(KeywordHandler handler, const std::string& line) {
  SpecRun test;
  SpecContext context = test.context();
  SplitIntoFields(context, line);
  context.reading.CurrentLine = UpperCase(context.reading.Fields[0]);
  context.reading.SourceLine = line;
  handler(context);
  EXPECT_EQ(test.fault(), Fault::none) << line;
  return test.analysis.settings;
}

// The value of one field of Settings behind a line, for a table of cases.
template <class T>
struct SettingCase {
  KeywordHandler handler;
  std::string line;
  T Settings::*field;
  T expected;
};
template <class T>
void Check(std::initializer_list<SettingCase<T>> cases) {
  for (const SettingCase<T>& c : cases)
    EXPECT_EQ(After(c.handler, c.line).*c.field, c.expected) << c.line;
}

TEST(Switches, AreYesForYAndNothingElse) {
  Check<bool>({
      {SetBeep, "Beep=Y", &Settings::Beep, true},
      {SetBeep, "Beep=yes", &Settings::Beep, true},
      {SetBeep, "Beep=", &Settings::Beep, false},
      {SetBatch, "Batch=Y", &Settings::Batch, true},
      {SetBatch, "Batch=hey", &Settings::Batch, true},
      {SetBatch, "Batch=No", &Settings::Batch, false},
      {SetHeadingLines, "Heading lines=N", &Settings::IncludeHeadings, false},
      {SetHeadingLines, "Heading lines=Y", &Settings::IncludeHeadings, true},
      {SetLeftHand, "Left-hand=Y", &Settings::LeftHand, true},
      {SetOmitUnobserved, "Omit-unobserved=N", &Settings::OmitUnobserved, false},
      {SetShowUnobserved, "Show-unobserved=Y", &Settings::OmitUnobserved, false},
      {SetShowUnobserved, "Show-unobserved=N", &Settings::OmitUnobserved, true},
      {SetQuery, "Query=Y", &Settings::Query, true},
      {SetReversed, "Reversed=N", &Settings::Reversed, false},
      {SetReversed, "Reversed=", &Settings::Reversed, false},
      {SetTotalscore, "Totalscore=No", &Settings::TotalScoreMode, false},
      {SetTotalscore, "Totalscore=1", &Settings::TotalScoreMode, false},
      {SetWrite, "Write=Y", &Settings::Write, true},
      {SetStandardErrors, "Standard errors=Real", &Settings::RealStandardErrors, true},
      {SetStandardErrors, "Standard errors=Enlarged", &Settings::RealStandardErrors, true},
      {SetStandardErrors, "Standard errors=Model", &Settings::RealStandardErrors, false},
  });
}

TEST(Letters, AreJudgedByTheFirst) {
  Check<char>({
      {SetAscii, "ASCII=Webpage", &Settings::Ascii, 'W'},
      {SetAscii, "ASCII=n", &Settings::Ascii, 'N'},
      {SetAscii, "ASCII=x", &Settings::Ascii, 'Y'},
      {SetAscii, "ASCII=", &Settings::Ascii, 'Y'},
      {SetBox, "Box=N", &Settings::BoxShow, 'N'},
      {SetBox, "Box=Yes", &Settings::BoxShow, 'Y'},
      {SetFair, "Fair=Zero", &Settings::FairAverageKind, 'Z'},
      {SetFair, "Fair=x", &Settings::FairAverageKind, 'M'},
      {SetPtBiserial, "Pt-biserial=Y", &Settings::PointCorrelationKind, 'Y'},
      {SetPtBiserial, "Pt-biserial=B", &Settings::PointCorrelationKind, 'Y'},
      {SetPtBiserial, "Pt-biserial=P", &Settings::PointCorrelationKind, 'Y'},
      {SetPtBiserial, "Pt-biserial=Omit", &Settings::PointCorrelationKind, 'Y'},
      {SetPtBiserial, "Pt-biserial=All", &Settings::PointCorrelationKind, 'I'},
      {SetPtBiserial, "Pt-biserial=Measure", &Settings::PointCorrelationKind, 'M'},
      {SetPtBiserial, "Pt-biserial=No", &Settings::PointCorrelationKind, 'N'},
      {SetSubsets, "Subsets=Y", &Settings::Subsets, 'Y'},
      {SetSubsets, "Subsets=Report", &Settings::Subsets, 'R'},
      {SetSubsets, "Subsets=List", &Settings::Subsets, 'L'},
      {SetSubsets, "Subsets=", &Settings::Subsets, 'N'},
      {SetWhexact, "Whexact=N", &Settings::Whexact, 'N'},
      {SetWhexact, "Whexact=", &Settings::Whexact, 'N'},
      {SetWhexact, "Whexact=y", &Settings::Whexact, 'Y'},
  });
  Check<int>({
      {SetBarchart, "Barchart=Y", &Settings::Barchart, 1},
      {SetBarchart, "Barchart=All", &Settings::Barchart, 2},
      {SetBarchart, "Barchart=N", &Settings::Barchart, 0},
      {SetBias, "Bias=Difficulty", &Settings::Bias, -1},
      {SetBias, "Bias=-", &Settings::Bias, -1},
      {SetBias, "Bias=Ability", &Settings::Bias, 1},
      {SetBias, "Bias=+", &Settings::Bias, 1},
      {SetBias, "Bias=Omit", &Settings::Bias, 0},
      {SetBias, "Bias=", &Settings::Bias, 1},
  });
}

TEST(Numbers, MayBeExpressionsAndAreCutWhenWhole) {
  Check<std::int32_t>({
      {SetIterations, "Iterations=20", &Settings::Iterations, 20},
      {SetIterations, "Iterations=2*10.4", &Settings::Iterations, 20},
      {SetIterations, "Iterations=", &Settings::Iterations, 0},
      {SetJuxtapose, "Juxtapose=-5", &Settings::Juxtapose, 5},
      {SetJuxtapose, "Juxtapose=-10^11", &Settings::Juxtapose, 2147483647},
      {SetT4MAX, "T4MAX=7", &Settings::T4maximum, 7},
      {SetUdecimals, "Udecimals=1", &Settings::Udecimals, 1},
      {SetUdecimals, "Udecimals=-1", &Settings::Udecimals, 0},
      {SetUdecimals, "Udecimals=10^6", &Settings::Udecimals, 9},
  });
  Check<float>({
      {SetHardware, "Hardware=60", &Settings::Hardware, 60.0f},
      {SetHardware, "Hardware=-60", &Settings::Hardware, 80.0f},
      {SetHardware, "Hardware=0", &Settings::Hardware, 80.0f},
      {SetNewton, "Newton=Y", &Settings::Newton, 0.5f},
      {SetNewton, "Newton=.3", &Settings::Newton, 0.3f},
      {SetNewton, "Newton=No", &Settings::Newton, 0.0f},
      {SetUnexpected, "Unexpected=2", &Settings::Unexpected, 2.0f},
      {SetUscale, "Uscale=20/2", &Settings::Uscale, 10.0f},
      {SetUscale, "Uscale=0", &Settings::Uscale, 1.0f},
      {SetUscale, "Uscale=1E-40", &Settings::Uscale, 1.0f},
      {SetUscale, "Uscale=1E-7", &Settings::Uscale, 1E-7f},
      {SetUscale, "Uscale=-2", &Settings::Uscale, -2.0f},
  });
}

TEST(Numbers, OfAListAreTakenWhenTheyAreThere) {
  EXPECT_THAT(After(SetConvergence, "Convergence=.1,,.3").Convergence,
              ElementsAre(0.1f, 0.01f, 0.3f, 0.0f));
  EXPECT_THAT(After(SetConvergence, "Convergence=1,2,3,4,5").Convergence,
              ElementsAre(1.0f, 2.0f, 3.0f, 4.0f));
  EXPECT_THAT(After(SetXtreme, "Xtreme=.2,.4").Xtreme, ElementsAre(0.2f, 0.4f));
  EXPECT_THAT(After(SetXtreme, "Xtreme=0,1").Xtreme, ElementsAre(0.3f, 0.5f));
  EXPECT_THAT(After(SetXtreme, "Xtreme=-.1,.999").Xtreme, ElementsAre(0.3f, 0.999f));
  EXPECT_THAT(After(SetZscore, "Zscore=1,2").Zscore, ElementsAre(1.0f, 2.0f));
  const Settings units = After(SetUmean, "Umean=50,10,1");
  EXPECT_EQ(units.Umean, 50.0f);
  EXPECT_EQ(units.Uscale, 10.0f);
  EXPECT_EQ(units.Udecimals, 1);
  EXPECT_EQ(After(SetUmean, "Umean=5,,3").Uscale, 1.0f);
}

TEST(Texts, AreKeptInTheFormTheyAreUsed) {
  Check<std::string>({
      {SetTitle, "Title=One, two=three", &Settings::Title, "One, two, three"},
      {SetTitle, "Title=\"Quoted\"", &Settings::Title, "Quoted"},
      {SetReplication, "Replication=w", &Settings::Replication, "W"},
      {SetReplication, "Replication=", &Settings::Replication, "R"},
      {SetMissing, "Missing=9,x", &Settings::Missing, ",9,x,"},
      {SetMissing, "Missing=\"9\",\"x\"", &Settings::Missing, ",9,x,"},
      {SetMissing, "Missing='9', ' ',\"x\",3", &Settings::Missing, ",9,x,3,"},
      {SetMissing, "Missing=\"\",\"\"", &Settings::Missing, ""},
      {SetMissing, "Missing=", &Settings::Missing, ""},
      {SetMissing, "Missing=,", &Settings::Missing, ""},
      {SetT7LGS, "T7LGS=lg", &Settings::T7LGS, "LG"},
      {SetT7LGS, "T7LGS=", &Settings::T7LGS, "LGS"},
      {SetT8NBC, "T8NBC=n", &Settings::T8NBC, "N"},
      {SetT3onscreen, "T3onscreen=n", &Settings::T3onscreen, "N"},
      {SetT3onscreen, "T3onscreen=5", &Settings::T3onscreen, "Y"},
      {SetTables, "Tables=1", &Settings::Tables, "10000000000000"},
      {SetTables, "Tables=01", &Settings::Tables, "01000000000000"},
      {SetTables, "Tables=1,0,1", &Settings::Tables, "10100000000000"},
      {SetTables, "Tables=1111111111111111", &Settings::Tables, "11111111111111"},
      {SetTables, "Tables=No", &Settings::Tables, "N"},
      {SetTables, "Tables=2", &Settings::Tables, "Y"},
      {SetUsort, "Usort=(u),(Z)", &Settings::Usort, "(u),(Z)"},
      {SetUtf8, "UTF8sub=?!", &Settings::UTF8sub, "?"},
      {SetUtf8, "UTF8sub=\xC3\xA9x", &Settings::UTF8sub, "\xC3\xA9"},
      {SetUtf8, "UTF8encoded=yes", &Settings::UTF8enc, "Y"},
      {SetUtf8, "UTF8encoded=n", &Settings::UTF8enc, "N"},
      {SetVertical, "Vertical=1*,2A", &Settings::Vertical, "1*,2A"},
      {SetVertical, "Vertical=N", &Settings::Vertical, ""},
      {SetYardstick, "Yardstick=,80,-4", &Settings::Yardstick, ",80,-4"},
      {SetCsv, "CSV=Tab", &Settings::OutputSeparator, "\t"},
      {SetCsv, "CSV=Y", &Settings::OutputSeparator, ","},
      {SetCsv, "CSV=C", &Settings::OutputSeparator, ","},
      {SetCsv, "CSV=S", &Settings::OutputSeparator, ";"},
      {SetCsv, "CSV=Fixed", &Settings::OutputSeparator, " "},
      {SetCsv, "CSV=", &Settings::OutputSeparator, " "},
      {SetCsv, "CSV=|", &Settings::OutputSeparator, "|"},
      {SetQuoteMarks, "QM=D", &Settings::OutputQuote, "\""},
      {SetQuoteMarks, "QM=Q", &Settings::OutputQuote, "\""},
      {SetQuoteMarks, "QM=A", &Settings::OutputQuote, "'"},
      {SetQuoteMarks, "QM=B", &Settings::OutputQuote, " "},
      {SetQuoteMarks, "QM=N", &Settings::OutputQuote, ""},
      {SetQuoteMarks, "QM=|", &Settings::OutputQuote, "|"},
  });
  EXPECT_TRUE(After(SetVertical, "Vertical=n").verticalOff);
  EXPECT_FALSE(After(SetVertical, "Vertical=NA").verticalOff);
}

TEST(Arrange, IsAListOfFlankNumbersAndLetters) {
  Check<std::string>({
      {SetArrange, "Arrange=m", &Settings::Arrange, "m"},
      {SetArrange, "Arrange=1N,2mN,A", &Settings::Arrange, "1N,2mN,A"},
      {SetArrange, "Arrange=", &Settings::Arrange, ""},
  });
  EXPECT_TRUE(After(SetArrange, "Arrange=m").arrangeGiven);
  for (const std::string item : {"Q", "m,T", "z", "1", "N1", "m,,N"}) {
    SpecRun test;
    test.Read("Arrange=" + item + "\n");
    EXPECT_EQ(test.fault(), Fault::invalidArrange) << item;
    EXPECT_THAT(test.FaultText(), HasSubstr("Valid arrangements are flank number (optional) then "
                                            "A,F,M,N,P,a,m,f,n,p"));
    EXPECT_EQ(test.analysis.settings.Arrange, "mN,fN,N");
  }
}

TEST(NullElement, HasASignAndARange) {
  Check<std::int64_t>({
      {SetNull, "Null=5", &Settings::NullElement, 5},
      {SetNull, "Keepzero=-1", &Settings::NullElement, -1},
      {SetNull, "Null=2147483646", &Settings::NullElement, 2147483646},
      {SetNull, "Null=", &Settings::NullElement, 0},
  });
  for (const std::string value : {"-2", "2147483647", "x", "1.5", "1E+400"}) {
    SpecRun test;
    test.Read("Keepzero=" + value + "\n");
    EXPECT_EQ(test.FaultText(), "Keepzero=" + value +
                                    " Specification is: Keepzero= value out of range: -1 to "
                                    "2147483646: 1 in line Error F76");
  }
}

TEST(InterRater, DropsRepeatedMatches) {
  EXPECT_THAT(After(SetInterRater, "Inter-rater=3,1,2,1,3").InterRaterSetting,
              ElementsAre(3, 1, 2, 3));
  EXPECT_THAT(After(SetInterRater, "Inter-rater=0,1").InterRaterSetting, ElementsAre(0));
  EXPECT_THAT(After(SetInterRater, "Inter-rater=").InterRaterSetting, ElementsAre(0));
}

TEST(FileNames, AreTakenOnceAndChecked) {
  EXPECT_EQ(After(SetOutput, "Output=o.txt,a.txt,r.txt,g.txt").GraphFile, "g.txt");
  EXPECT_EQ(After(SetScorefile, "Scorefile=s.txt").ScoreFile, "s.txt");
  SpecRun test;
  SpecContext context = test.context();
  context.settings.AnchorFile = "first.txt";
  SplitIntoFields(context, "Anchorfile=second.txt");
  SetAnchorfile(context);
  EXPECT_EQ(context.settings.AnchorFile, "first.txt");
  for (const std::string line : {"Output=a*.txt", "Data=folder/", "Data=C:"}) {
    SpecRun bad;
    bad.Read(line + "\n");
    EXPECT_THAT(bad.FaultText(),
                HasSubstr("Specification is: File name contains * or ?, or ends with \\ / or :"));
  }
}

TEST(Data, AreAFileOrTheLinesThatFollow) {
  EXPECT_EQ(After(SetData, "Data=d.txt").dataSource, DataSource::file);
  EXPECT_EQ(After(SetData, "Data=\"my data.txt\"").dataFile, "my data.txt");
  EXPECT_EQ(After(SetData, "Data=d.xlsx(A b, 3)").dataFile, "d.xlsx(A b,3)");
  EXPECT_EQ(After(SetData, "Data=\"my d.XLS(A,3)\"").dataFile, "my d.XLS(A,3)");
  EXPECT_EQ(After(SetData, "Data=d.txt, 3").dataFile, "d.txt");
  EXPECT_EQ(After(SetData, "Data=").dataSource, DataSource::inlineData);
}

TEST(UserUnits, MustComeBeforeLabelsAndScales) {
  const std::string labels = "Flanks=1\nLabels=\n1,A\n1=a\n*\n";
  const std::string scale = "Flanks=1\nRating scale=a,R3\n*\n";
  for (const std::string& before : {labels, scale})
    for (const std::string line : {"Umean=50", "Uscale=10"}) {
      SpecRun test;
      test.Read(before + line + "\n");
      EXPECT_EQ(test.fault(), Fault::unitsTooLate) << before << line;
      EXPECT_THAT(test.FaultText(),
                  HasSubstr("Umean= and Uscale= must be specified before Labels= and Rating="));
    }
  SpecRun test;
  test.Read(labels + "Udecimals=1\n");
  EXPECT_EQ(test.fault(), Fault::none);
}

TEST(Subsets, TurnedOffLeavesItsNote) {
  SpecRun test;
  test.analysis.report.closingNotes.emplace_back(message::kSubsetsNotVerified);
  test.Read("Subsets=No\n");
  EXPECT_THAT(test.analysis.report.closingNotes,
              ElementsAre("Warning (2)! Subset checking bypassed"));
}

TEST(MalformedNumbers, EndTheProcess) {
  SpecRun test;
  EXPECT_THROW(test.Read("Uscale=1E2\n"), ProcessEnd);
  EXPECT_THAT(test.shell.Screen(), HasSubstr("VLCOMPUTE: 1E2\n"));
}

}  // namespace
}  // namespace flanks
