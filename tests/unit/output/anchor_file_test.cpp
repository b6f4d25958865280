#include "output/anchor_file.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "base/text.h"
#include "output/current_settings.h"
#include "support/anchored_again.h"
#include "support/finished_run.h"
#include "support/source_tree.h"
#include "support/text_compare.h"

namespace flanks {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Without the first line, which names the analysis, the program and the date.
std::string WithoutHead(const std::string& text) {
  return text.substr(text.find('\n') + 1);
}

// The file that a run writes of itself.
std::string AnchorFileOf(AnalysisRun& run, const std::string& specification,
                         const std::string& extras = "") {
  run.Analyze(specification, run.folder.file("anchor.txt") + " " + extras);
  EXPECT_EQ(run.exitCode, 0) << run.Screen();
  return run.folder.read("anchor.txt");
}

// Everything is anchored, so that the estimates are known: 63 is 1.3 logits, a threshold of 5 half
// a logit.
constexpr const char* kAnchored =
    "; the first session\n"
    "Title = A title\n"
    "Flanks=2 ; two\n"
    "Umean = 50,10\n"
    "Output=x\n"
    "Convergence=.1,,\n"
    "Omit-unobserved=Y\n"
    "Models=?,?B,Quality\n"
    "X,1,M\n"
    "*\n"
    "Rating scale=Quality,R3\n"
    "0=bad\n1=fair,-5,A,7+8\n2=good,5,A\n3=best,20,A\n-1=absent,,,9\n*\n"
    "Labels=\n1,Persons,A\n1=Cid,40\n2=Bob,55\n3=Ann,63,2\n4=Eve\n*\n2,Items,A\n1=i1,50\n2=i2,51\n*"
    "\n"
    "Data=\n1,1-2,1,0\n2,1-2,1,2 ; a comment of the data\n3,1-2,2,3\n2,1,\n";

TEST(AnchorFile, OfKnownMeasuresIsWorkedOutByHand) {
  AnalysisRun run;
  const std::string file = AnchorFileOf(run, kAnchored);
  EXPECT_THAT(file, StartsWith("; A title: anchor file by Flanks (Many-Flank Rasch Measurement) "));
  EXPECT_EQ(WithoutHead(file),
            "Title = A title\n"
            "Flanks=2 ; two\n"
            ";Output=x\n"
            "Convergence=.1\n"
            ";Omit-unobserved=Y\n"
            "Umean = 50, 10, 2\n"
            "Models =\n"
            "?,?B,Quality,1\n"
            "X,1,M,1\n"
            "*\n"
            "Rating (or partial credit) scale = Quality,R3,G,O\n"
            " -1= absent,,,9\n"
            "0=bad,0,A\n"
            "1=fair,-5,A,7+8\n"
            "2=good,5,A\n"
            "3=best,20,A\n"
            " ; Rasch-Andrich Thresholds = -5, 5, 20\n"
            "*\n"
            "Labels =\n"
            "1,Persons,A\n"
            "1=Cid,40\n"
            "2=Bob,55\n"
            "3=Ann,63,2\n"
            "4=Eve\n"
            "*\n"
            "2,Items,A\n"
            "1=i1,50\n"
            "2=i2,51\n"
            "*\n"
            "Data=\n"
            "1,1-2,1,0\n"
            "2,1-2,1,2 ; a comment of the data\n"
            "3,1-2,2,3\n"
            "2,1, ;\n");
  EXPECT_THAT(run.Screen(), HasSubstr("Writing anchor file: " + run.folder.file("anchor.txt")));
}

// The lines of the first part: what stands before "Models =".
std::string CopyOf(const std::string& lines) {
  AnalysisRun run;
  run.Write("more.txt", "Unexpected=2\n; of the include file\n");
  const std::string file = AnchorFileOf(run, "Flanks=2\n" + lines +
                                                 "Labels=\n1,A,A\n1-2=a,0\n*\n2,B\n1-2=b\n*\n"
                                                 "Data=\n1,1,0\n1,2,1\n2,1,1\n2,2,0\n");
  return WithoutHead(file).substr(0, WithoutHead(file).find("Models ="));
}

struct CopyCase {
  std::string lines;
  std::string copy;
  const char* why;
};

TEST(AnchorFile, CopiesTheKeywordLines) {
  const CopyCase cases[] = {
      {"  Title = x, y, , \n", "  Title = x, y\n", "unchanged but for its end"},
      {"; c\n;; shown\nTitle=x ; c\n", "Title=x ; c\n", "comments"},
      {"Anchorfile=\nOutput=\n", ";Anchorfile=\n;Output=\n", "output files"},
      {"Title=x\n%more.txt\nFair=Z\n", "Title=x\nUnexpected=2\nFair=Z\n", "include files"},
      {"Glabel=1,1,one\n1,2, ; nameless\n; c\n*\nFair=Z\n",
       "Glabel=1,1,one\n1,2, ; nameless\n*\nFair=Z\n", "the list of group labels"},
      {"Glabel\n1,1,\n*\n", "Glabel\n1,1, ;\n*\n", "an empty group label is a field"},
      {"Models=\nX,9,M\nMo=?,?,R\nXtreme,9,M\nFair=Z\nXtreme=.2\n", "Fair=Z\nXtreme=.2\n",
       "X is a keyword's letter behind the statements"},
      {"Umean=0\nMissing=9\nUscale=1\n", "Missing=9\nUscale=1\n", "Umean= is written anew"},
      {"R=S,R2\n0=a\n*\nM=?,?,S\nBeep=N\n", "Beep=N\n", "keywords by their first letter"},
  };
  for (const CopyCase& c : cases) EXPECT_EQ(CopyOf(c.lines), "Flanks=2\n" + c.copy) << c.why;
}

TEST(AnchorFile, LeavesTheDataOutOrTakesThemFromTheirFile) {
  AnalysisRun run;
  const std::string design = "Flanks=2\nLabels=\n1,A,D,2\n1-3=a\n*\n2,B\n1-2=b\n*\nModels=?,?,R2\n";
  const std::string data = "1,1,0\n1,2,1\n2,1,1\n2,2,2\n3,1,0\n3,2,1\n";
  run.Write("data.txt", data);
  EXPECT_THAT(AnchorFileOf(run, design + "Data=data.txt\n"),
              AllOf(HasSubstr("Flanks=2\nData=data.txt\nModels"), EndsWith("*\n")));
  AnchorFileOf(run, design + "Data = ; here\n" + data);
  FinishedRun finished(run);
  const std::string name = run.folder.file("starts.txt");
  ASSERT_TRUE(WriteAnchorFile(finished.run, name, {.AnchorMark = ' ', .IncludeData = ' '}));
  const std::string file = run.folder.read("starts.txt");
  EXPECT_THAT(file, EndsWith("*\nData=\n"));
  EXPECT_THAT(file, HasSubstr("\n1,A,D,2\n1=a,0\n"));
  EXPECT_THAT(file, HasSubstr("\n2,B\n1=b,"));
  EXPECT_THAT(file, Not(HasSubstr(",A\n0")));
  EXPECT_THAT(file, HasSubstr("Rating (or partial credit) scale = RS1,R2,G,O\n1="));
}

TEST(AnchorFile, WithCurrentSettingsIsReadAsTheSameSettings) {
  AnalysisRun run;
  const std::string settings =
      "Title=a, b\nFlanks=3,4\nEntered-in-data=2,0,1,3\nCenter=1,2Z\nPositive=2,3\nNull=7\n"
      "Missing=9,x\nReplication=W\nDelements=2LN\nArrange=F,2m\nASCII=N\nBarchart=A\nBatch=Y\n"
      "Bias=-\nBox=N\nConvergence=.3,.02,.1,.01\nCSV=S\nFair=Z\nHardware=70\nHeading lines=N\n"
      "Inter-rater=2,1\nIterations=30\nJuxtapose=5\nLeft-hand=Y\nNewton=.25\nShow-unobserved=Y\n"
      "Pt-biserial=I\nQM=D\nReversed=N\nStandard errors=R\nSubsets=R\nT3onscreen=N\nT4MAX=17\n"
      "T7LGS=LG\nT8NBC=N\nTables=11111111000000\nTotalscore=N\nUnexpected=1.5\nUsort=U,1\n"
      "UTF8sub=?\nVertical=1*,2A\nWhexact=N\nXtreme=.2,.4\nYardstick=40,2\nZscore=.5,2\n"
      "Umean=.000001,.00002,3\nUTF8encoded=Y\nGlabel=1,2,two\n1,3,\n*\n";
  const std::string design =
      "Models=?,?,?,R2\n*\nLabels=N\n1,A\n1-3=a\n*\n2,B\n1=b1\n2=b2\n*\n3,C\n1=c\n*\n"
      "Dvalues=4,1\n2,$C\n*\nData=\nb1,1,0\nb2,1,1\nb1,2,1\nb2,2,2\nb1,3,0\nb2,3,1\n";
  AnchorFileOf(run, settings + design);
  FinishedRun finished(run);
  const std::string name = run.folder.file("settings.txt");
  ASSERT_TRUE(WriteAnchorFile(finished.run, name, {.CurrentSettings = 'C'}));
  const auto lines = [&](AnalysisRun& of) {
    FinishedRun it(of);
    WriteOutputFile(it.run, "test", run.folder.file("lines.txt"), [&](Destination& out) {
      SpecificationLines into(out, it.console);
      WriteCurrentSettings(of.analysis.settings, of.analysis.design, into);
    });
    std::string text = run.folder.read("lines.txt");
    // The names of this run's own files.
    for (const std::string head : {"; Output = ", "; Anchorfile = "})
      if (const auto at = text.find(head); at != std::string::npos)
        text.erase(at, text.find('\n', at) + 1 - at);
    return text;
  };
  const std::string before = lines(run);
  for (const std::string expected :
       {"Title = a, b\n", "Flanks = 3,4\n", "Entered-in-data = 2,0,1,3\n", "Center = 1,2Z\n",
        "Positive = 2,3\n", "Missing = 9,x\n", "CSV = Semicolon\n", "QM = Double\n",
        "Umean = .000001, .00002, 3\n", "Glabel =\n1,2,two\n1,3, ;\n*\n", "Bias = Minus\n"})
    EXPECT_THAT(before, HasSubstr(expected));
  EXPECT_THAT(
      run.folder.read("settings.txt"),
      AllOf(
          HasSubstr("\nDvalues for data flank = ; values for data flanks\n4,1\n2,$C\n*\nData=\nb1"),
          HasSubstr("Labels = Nobuild\n")));
  run.RunCommandLine(name + " " + run.folder.file("report2.txt"));
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  EXPECT_EQ(FirstDifference(lines(run), before), "");
}

// The line stands where the Specification has none, and only when it says something.
TEST(AnchorFile, UnitsAreWrittenWhenOneOfThemIsNotTheUsual) {
  const std::pair<const char*, const char*> cases[] = {
      {"Umean=5\n", "Umean = 5, 1, 2\n"},
      {"Uscale=3\n", "Uscale=3\nUmean = 0, 3, 2\n"},
      {"Udecimals=4\n", "Udecimals=4\nUmean = 0, 1, 4\n"},
      {"Umean=0,1,2\n", ""}};
  for (const auto& [lines, copy] : cases)
    EXPECT_EQ(CopyOf(lines), std::string("Flanks=2\n") + copy) << lines;
}

// Elements without an estimate would be anchored at Umean=; one that the Specification anchored is.
TEST(AnchorFile, ElementsWithoutAnEstimateHaveNoMeasure) {
  AnalysisRun run;
  AnchorFileOf(run,
               "Flanks=2\nModels=?,?,R2\nLabels=\n1,A,A\n1=a,.5\n2=b\n3=c,1\n4=d\n5=e\n*\n"
               "2,B,A\n1-2=b,0\n*\nData=\n1,1-2,0,1\n2,1-2,1,2\n3,1-2,1,0\n4,1-2,1,1\n");
  run.analysis.estimates.elements[ElementSlot(2)].ElementStatus = kStatusDropped;
  run.analysis.estimates.elements[ElementSlot(3)].ElementStatus = kStatusDropped;
  FinishedRun finished(run);
  ASSERT_TRUE(WriteAnchorFile(finished.run, run.folder.file("a.txt"), {}));
  EXPECT_THAT(run.folder.read("a.txt"), testing::ContainsRegex("\n1=a,.5\n2=b\n3=c,[-.0-9]+\n"
                                                               "4=d,[-.0-9]+\n5=e\n\\*\n"));
}

TEST(AnchorFile, NamesTheExtraSpecificationsThatItDoesNotHave) {
  AnalysisRun run;
  EXPECT_THAT(AnchorFileOf(run, kAnchored, "Fair=Z"),
              HasSubstr("\n; Extra specifications of that run, not copied: Fair=Z\nTitle"));
}

TEST(AnchorFile, GoesToThePaneAsWell) {
  AnalysisRun run;
  const std::string file = AnchorFileOf(run, kAnchored);
  FinishedRun finished(run);
  run.shell.statuses.clear();
  Destination pane(finished.console);
  WriteAnchorLines(finished.run, {}, pane);
  EXPECT_EQ(WithoutHead(run.Screen()), WithoutHead(file));
}

TEST(AnchorFile, IsNotWrittenWhenTheSpecificationCannotBeReadAgain) {
  AnalysisRun run;
  const std::string file = AnchorFileOf(run, kAnchored);
  run.folder.write("spec.txt", "");
  std::filesystem::remove(run.folder.file("spec.txt"));
  FinishedRun finished(run);
  EXPECT_FALSE(WriteAnchorFile(finished.run, run.folder.file("anchor.txt"), {}));
  EXPECT_EQ(run.folder.read("anchor.txt"), file);
  EXPECT_THAT(run.Screen(),
              HasSubstr("is not written. The Specification cannot be read again: \"" +
                        run.folder.file("spec.txt") + "\" Specification is: File not found"));
}

TEST(AnchorFile, IsLeftByARunThatIsBrokenOff) {
  AnalysisRun run;
  AnchorFileOf(run, kAnchored);
  FinishedRun finished(run);
  run.process.control.CancelRequested = true;
  EXPECT_FALSE(WriteAnchorFile(finished.run, run.folder.file("other.txt"), {}));
  EXPECT_EQ(run.folder.read("other.txt"), "");
  EXPECT_THAT(run.Screen(), HasSubstr("What was written so far stands in "));
}

// Of a measure below 1E-5: 1 is added, the text taken, and the 1 made 0.  1.0000012345 is 1.0000012
// in 32 bits.
TEST(AnchorFile, WritesASmallMeasureWithoutAnExponent) {
  AnalysisRun run;
  const std::string file =
      AnchorFileOf(run,
                   "Flanks=2\nModels=?,?,R2\nLabels=\n1,A,A\n1=a,.00001\n2=b,-.000002\n"
                   "3=c,.0000012345\n4=d,0\n*\n2,B,A\n1-2=b,1\n*\n"
                   "Data=\n1,1,0\n1,2,1\n2,1,1\n2,2,2\n3,1,0\n3,2,1\n");
  EXPECT_THAT(file, HasSubstr("1,A,A\n1=a,.00001\n2=b,-0.000002\n3=c,0.0000012\n4=d,0\n*\n"));
}

// The statements, and the first lines of the scales, of a design with two persons and three items.
std::string StatementsOf(const std::string& models, const std::string& data) {
  AnalysisRun run;
  const std::string file =
      AnchorFileOf(run, "Flanks=2\nModels=\n" + models +
                            "Labels=\n1,A,A\n1=a,0\n2=b,1\n*\n2,B,A\n5-7=i,0\n*\nData=\n" + data);
  std::string text;
  bool inStatements = false;
  for (const std::string& line : LinesOf(file)) {
    if (line == "*") inStatements = false;
    if (inStatements || line.starts_with("Rating")) text += line + "\n";
    if (line == "Models =") inStatements = true;
  }
  return text;
}

struct StatementCase {
  std::string models;
  std::string data;
  std::string expected;
  const char* why;
};

TEST(AnchorFile, NamesTheScaleOfEachStatement) {
  const std::string head = "Rating (or partial credit) scale = ";
  const std::string data = "1,5-7,0,1,2\n2,5-7,1,0,0\n";
  const StatementCase cases[] = {
      {"?,#,R2\n*\n", data,
       "?,5,RS1.5,1\n?,6,RS1.6,1\n?,7,RS1.7,1\n" + head + "RS1.5,R2\n" + head + "RS1.6,R2\n" +
           head + "RS1.7,R2\n",
       "one for each element"},
      {"?,#,R2\n?,?,R9\n*\n", "1,5-7,0,1,9\n2,5-7,1,0,8\n",
       "?,5,RS1.5,1\n?,6,RS1.6,1\n?,#,R2,1\n?,?,R9,1\n" + head + "RS1.5,R2\n" + head + "RS1.6,R2\n",
       "nothing valid of 7: no other statement may take it"},
      {"?,-#5-6,R2\n-?B,?,R2,.5,tail\n*\n", data,
       "?,-5,RS1.5,1\n?,-6,RS1.6,1\n-?B,?,RS2,.5 ; TAIL\n" + head + "RS1.5,R2\n" + head +
           "RS1.6,R2\n" + head + "RS2,R2,G,O\n",
       "reversed, bias, weight and tail"},
      {"#,?,R2\n*\n", data + "0,5,1\n",
       "1,?,RS1.1,1\n2,?,RS1.2,1\n?,?,RS1.0,1\n" + head + "RS1.1,R2\n" + head + "RS1.2,R2\n" +
           head + "RS1.0,R2\n",
       "a position without an element"},
      {"?,5,S\n?,6,S\n?,7,T\n1,?,T\n*\nRating scale=S,R2,S,K\n*\nRating scale=T,R2K,,,,title\n*\n",
       data,
       "?,5,S.2,1\n?,6,S.3,1\n?,7,T,1\n1,?,T,1\n" + head + "S.2,R2,S,K\n" + head + "S.3,R2,S,K\n" +
           head + "T,R2K,G,O ; title\n",
       "specific and general"},
      {"?,5,RS2\n?,6,R2\n?,#,rs2\n*\nRating scale=RS2,R2\n*\n", data,
       "?,5,RS2,1\n?,6,RS2.2,1\n?,7,RS2.7,1\n?,#,RS2.0,1\n" + head + "RS2,R2,G,O\n" + head +
           "RS2.2,R2,G,O\n" + head + "RS2.7,R2\n" + head + "RS2.0,R2,G,O\n",
       "names that are taken"},
      {"?,5,M\n?,8,U\n?,?,R2\n*\nRating scale=U,R2\n1=x,.5,A,4\n*\n", data,
       "?,5,M,1\n?,8,U,1\n?,?,RS3,1\n" + head + "U,R2,G,O\n" + head + "RS3,R2,G,O\n",
       "statements without observations"},
  };
  for (const StatementCase& c : cases)
    EXPECT_EQ(StatementsOf(c.models, c.data), c.expected) << c.why;
}

// The last field of a line loses its quotes.
TEST(AnchorFile, KeepsQuotesOfLabels) {
  AnalysisRun run;
  const std::string file = AnchorFileOf(run,
                                        "Flanks=2\nModels=?,?,R2\nLabels=\n1,'A',,\n1='a',,2,\n2='"
                                        "b',\n3=\"c\",,\n4=d\n*\n2,B\n1-2=b\n*\n"
                                        "Data=\n1,1,0\n1,2,1\n2,1,1\n2,2,2\n");
  EXPECT_THAT(file, HasSubstr("\n1,'A',A\n1='a',"));
  EXPECT_THAT(file, HasSubstr("\n3=\"c\",,0\n4=d\n*\n"));
  FinishedRun finished(run);
  ASSERT_TRUE(WriteAnchorFile(finished.run, run.folder.file("a.txt"), {.AnchorMark = ' '}));
  EXPECT_THAT(run.folder.read("a.txt"), HasSubstr("\n1,'A',,1\n"));
}

// ---- Runs of the file

struct TripCase {
  const char* name;
  std::string specification;
};

// Two Flanks with `options` and lines of elements; persons 1 to 6 and items 1 to 4.
std::string Design(const std::string& settings, const std::string& models,
                   const std::string& labels = "1,Persons\n1-6=p\n*\n2,Items\n1-4=i\n*\n") {
  return "Flanks=2\nConvergence=.1,.01\n" + settings + "Models=" + models + "*\nLabels=\n" + labels;
}

// Ratings from 0 to 4 of six persons on four items: no one is extreme.
constexpr const char* kRatings =
    "1,1-4,0,1,2,1\n2,1-4,1,2,3,2\n3,1-4,2,1,4,3\n4,1-4,3,4,4,2\n5,1-4,1,0,1,0\n6,1-4,4,3,4,3\n";
constexpr const char* kOthers =
    "1,1-4,1,2,1,3\n2,1-4,2,4,2,1\n3,1-4,1,3,3,2\n4,1-4,4,2,3,3\n5,1-4,0,2,0,1\n6,1-4,3,4,2,4\n";

const TripCase kTrips[] = {
    {"units", "Uscale=12.5\nUdecimals=4\n" + Design("", "?,?,R4\n") + "Data=\n" + kRatings},
    {"negative units", Design("Umean=500,-100,1\n", "?,?,R4\n") + "Data=\n" + kRatings},
    {"a scale for each item", Design("", "?,#,R4\n") + "Data=\n" + kRatings},
    {"a scale for each pair",
     Design("", "#,#1-2B,R4\n?,-3,R4\n?,4,R4,2\n", "1,Persons\n1-6=p\n*\n2,Items\n1-4=i\n*\n") +
         "Data=\n" + kRatings + kOthers},
    {"some elements without data", Design("", "?,#,R2\n?,?,R4\n") + "Data=\n" + kRatings},
    {"a named scale of two statements",
     Design("", "?,1,Both\n?,2,both\n?,3-4,Other\n") +
         "Rating scale=Both,R4,G\n0=none\n1=a,,,x\n*\nRating scale=Other,R4,S,K\n*\nData=\n" +
         kRatings},
    {"specific scales", Design("", "?,1,S\n?,2,S\n?,#3,S\n?,4,S\n") +
                            "Rating scale=S,R4,Specific,Ordinal,,a title\n4=top\n*\nData=\n" +
                            kRatings},
    {"names that are taken", Design("", "?,1,R4\n?,2,rs1\n?,#,RS3.3\n") +
                                 "Rating scale=rs1,R4\n*\nRating scale=RS3.3,R4\n*\nData=\n" +
                                 kRatings},
    {"gaps that are kept", Design("", "?,?,Gaps\n") +
                               "Rating scale=Gaps,R6,G,Keep\n*\nData=\n"
                               "1,1-4,0,2,0,2\n2,1-4,2,5,2,6\n3,1-4,5,6,2,5\n4,1-4,2,0,5,2\n"
                               "5,1-4,6,5,6,2\n6,1-4,0,2,2,5\n"},
    {"gaps that are closed", Design("", "?,?,R6\n") +
                                 "Data=\n1,1-4,1,3,1,3\n2,1-4,3,5,3,5\n3,1-4,5,5,3,5\n"
                                 "4,1-4,3,1,5,3\n5,1-4,5,5,5,3\n6,1-4,1,3,3,5\n"},
    {"trials", Design("", "?,?,B6\n") + "Data=\n" + kRatings},
    {"counts", Design("", "?,?,P\n") + "Data=\n" + kRatings},
    {"dichotomies", Design("", "?,?,D\n") +
                        "Data=\n1,1-4,0,1,1,0\n2,1-4,1,0,0,1\n3,1-4,0,0,1,0\n4,1-4,1,1,0,1\n"
                        "5,1-4,1,1,1,0\n6,1-4,0,1,0,0\n"},
    {"anchored thresholds", Design("Umean=50,10\n", "?,?,T\n") +
                                "Rating scale=T,R4\n1=one,-12,A\n2=two,-2,A\n*\nData=\n" +
                                kRatings},
    {"reversed", Design("Positive=1,2\n", "?,-?,R4\n") + "Data=\n" + kRatings},
    {"extreme and unobserved",
     Design("Show-unobserved=Y\n", "?,?,R4\n", "1,P\n1-9=p\n*\n2,I\n1-6=i\n*\n") + "Data=\n" +
         kRatings + "7,1-4,0,0,0,0\n8,1-4,4,4,4,4\n"},
    {"groups and their anchors", Design("Noncenter=2\nGlabel=1,1,one\n1,2,two\n*\n", "?,?,R4\n",
                                        "1,P,G\n1-3=p,0,1\n4-6=p,1,2\n*\n2,I\n1-4=i\n*\n") +
                                     "Data=\n" + kRatings},
    {"weights",
     Design("", "?,?,R4,2\n", "1,P,,3\n1-5=p,,,2\n6=p,,,.5\n*\n2,I\n1-3=i\n4=i,,,,1\n*\n") +
         "Data=\n" + kRatings + "R2.5,1,2,3\n"},
    {"subsets", Design("Noncenter=0\n", "?,?,R4\n", "1,P\n1-6=p\n*\n2,I\n1-8=i\n*\n") +
                    "Data=\n1,1-4,0,1,2,1\n2,1-4,1,2,3,2\n3,1-4,2,1,4,3\n4,5-8,3,4,4,2\n"
                    "5,5-8,1,0,1,0\n6,5-8,4,3,4,3\n"},
    {"a dummy Flank",
     "Flanks=3\nModels=?,?,@,R4\n*\nLabels=\n1,P\n1-6=p\n*\n2,I\n1-4=i\n*\n"
     "3,Place,D\n1=here\n*\nDvalues=3,1\n*\nData=\n" +
         std::string(kRatings)},
    {"values of fields",
     "Flanks=3\nEntered-in-data=1,3,2\nModels=?,?,?,R4\n*\nLabels=\n1,P\n1=x1\n"
     "2=x2\n3=y1\n4=y2\n5=y1\n6=x2\n*\n2,I\n1-4=i\n*\n3,Form\n1=one\n2=two\n*\n"
     "Dvalues=2,1,2,1\n*\nDelements=2N,NL\nData=\n" +
         std::string(kRatings)},
    {"labels in the data",
     "Flanks=2\nDelements=1L,2NL\nModels=?,?,R4\n*\nLabels=\n1,P\n1=A. (Al) Bo\n2='q'\n3=50% % #\n"
     "4=\xC3\xA9t\xC3\xA9:long name\n5=$ & <b>\n6=\xA3 1 : \xA3,,2\n7='\n*\n2,I\n1-4=i\n*\nData=\n"
     "A. (Al) Bo,1-4,0,1,2,1\n50% % #,1-4,1,2,3,2\n\xC3\xA9t\xC3\xA9,1-4,2,1,4,3\n"
     "$ & <b>,1-4,3,4,4,2\n\xA3 1,1-4,1,0,1,0\n"},
};

TEST(AnchorFile, RunAgainShowsTheSameMeasuresAndThresholds) {
  for (const TripCase& c : kTrips) {
    AnchoredAgain trip;
    EXPECT_EQ(trip.Difference(c.specification), "") << c.name << "\n" << trip.AnchorFile();
    EXPECT_GT(trip.compared, 4) << c.name;
  }
}

TEST(AnchorFile, RunAgainTakesDataAndListsFromTheirFiles) {
  AnchoredAgain trip;
  trip.run.Write("data.txt", "; data\n" + std::string(kRatings));
  trip.run.Write("items.txt", "1=one\n2=two\n%rest.txt\n");
  trip.run.Write("rest.txt", "3=three\n4=four\n*\n");
  EXPECT_EQ(trip.Difference("Flanks=2\nModels=?,?,R4\nLabels=\n1,P\n1-6=p\n*\n2,I\n%items.txt\n"
                            "Data=data.txt\n"),
            "");
  EXPECT_THAT(trip.AnchorFile(), HasSubstr("3=three,"));
  EXPECT_THAT(trip.AnchorFile(), Not(HasSubstr("%")));
}

// A measure at the end of what Hardware= allows is read again as an anchor within it.
TEST(AnchorFile, RunAgainTakesMeasuresAtTheLimit) {
  AnchoredAgain trip;
  EXPECT_EQ(trip.Difference(Design("Hardware=1\nUmean=50,10\n", "?,?,R4\n") + "Data=\n" +
                            "1,1-4,0,0,0,1\n2,1-4,4,4,4,3\n3,1-4,0,1,3,4\n"),
            "");
}

}  // namespace
}  // namespace flanks
