// Each keyword from its line to Table 1, and the faults of each.
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "base/text.h"
#include "spec/dvalues.h"
#include "spec/keyword_table.h"
#include "support/table1_run.h"

namespace flanks {
namespace {

using testing::Contains;
using testing::StartsWith;
using Lines = std::vector<std::string>;

// A line in front of the base Specification, which has Title=, Flanks=, Models=, Labels= and Data=;
// "$" is the base's `Flanks=2`, for what must stand behind it.
struct EchoCase {
  std::string line;
  std::string shown;  // the line of Table 1; empty: Table 1 does not tell of it
};

const EchoCase kEchoes[] = {
    {"Anchorfile=a.txt", "Anchor output file = a.txt"},
    {"Arrange=2mN,A", "Arrange tables in order = 2mN,A"},
    {"Arrange=", "Arrange tables in order ="},
    {"ASCII=No", "ASCII table format = N ; PC drawing characters: Letter Gothic"},
    {"ASCII=webpage", "ASCII table format = W ; HTML code: display as webpage"},
    {"ASCII=Yes", ""},
    {"Barchart=No", "Barchart = No"},
    {"Barchart=All", "Barchart = All"},
    {"Barchart=Yes", "Barchart = Yes"},
    {"Batch=Yes", ""},
    {"Beep=Yes", ""},
    {"Bias=Severity",
     "Bias/Interaction direction = minus ;difficulty, severity: lower score = positive logit"},
    {"Bad=Ability",
     "Bias/Interaction direction = plus ; ability, easiness, leniency: higher score = positive "
     "logit"},
    {"Bias=Omit", "Bias/Interaction direction = omit ; suppress bias estimation"},
    {"Box=No", "Box show around Tables = N ; hide box-drawing characters"},
    {"$Center=1", "Non-centered = 2"},
    {"$Center=1Z,2", "Centered = 1Z"},
    {"Center=1,2z", "Centered = 2Z"},
    {"Convergence=.1,,.3", "Convergence = .1,.01,.3,0"},
    {"CSV=Tab", "CSValues = Tabs"},
    {"CSV=Yes", "CSValues = Commas"},
    {"CSV=Semicolon", "CSValues = Semicolons"},
    {"CSV=Blank", "CSValues = Fixed"},
    {"CSV=:", "CSValues = :"},
    {"Delements=2L", "Delements = 2L"},
    {"Delements=NL", "Delements = NL"},
    {"$Dvalues=2,1", "2 = 1 ; fixed values for data flanks"},
    {"$Dvalues=\n2,1,3,2\n1,2,$G\n*", "2 = 1,3,2"},
    {"$Entered-in-data=2,1", "Entered-in-data = 2,1"},
    {"$Estimates=2,0,1", "Entered-in-data = 2,0(unused),1"},
    {"Fair=Zero", "Fair score = Zero"},
    {"Fair=Average", "Fair score = Mean"},
    {"Flanks=2,3", "Flanks = 2,3"},
    {"F=2", "Flanks = 2"},
    {"Glabel=1,1,Boys\n1,2,Girls\n*", ""},
    {"Graphfile=g.txt", "Graph output file = g.txt"},
    {"Hardware=60", "Hardware maximum exponent = 60"},
    {"Hardware=80", ""},
    {"Heading lines=No", "Heading lines in output data files = N"},
    {"HL=Yes", ""},
    {"HS=3", ""},
    {"Inter-rater=2", "Inter-rater coefficients reported for flank = 2"},
    {"Inter-rater=2,1,1", "Inter-rater coefficients reported for flank = 2,1 ; matching flanks"},
    {"Inter-rater=0", ""},
    {"Iterations=4*5", "Iterations (maximum) = 20"},
    {"Iterations=0", "Iterations (maximum) = 0 ; unlimited"},
    {"Iterations=-3", "Iterations (maximum) = -3 ; unlimited"},
    {"Juxtapose=-5", "Juxtaposition heading every lines = 5"},
    {"Juxtapose=0", ""},
    {"Keepzero=-1", "Null (Keepzero) element= -1"},
    {"Null=7", "Null (Keepzero) element= 7"},
    {"Labels=", "Labels ="},
    {"Left-hand=Yes", ""},
    {"Missing=9,x", ""},
    {"Models=", "Model = ?,?,R5,1"},
    {"Negative=1", "Positive = 2"},
    {"$Negative=2", "Positive = 1"},
    {"Newton=Yes", "Newton-Raphson = .5"},
    {"Newton=1/4", "Newton-Raphson = .25"},
    {"Newton=0", ""},
    {"Noncenter=2", "Non-centered = 2"},
    {"$Noncenter=1,2", "Non-centered = 1,2"},
    {"Omit-unobserved=No", "Omit unobserved elements = No"},
    {"Show-unobserved=Yes", "Omit unobserved elements = No"},
    {"Show-unobserved=No", ""},
    {"Output=o.txt,a.txt,r.txt,g.txt", "Output file = o.txt"},
    {"Output=o.txt,a.txt,r.txt,g.txt", "Anchor output file = a.txt"},
    {"Output=o.txt,a.txt,r.txt,g.txt", "Residual output file = r.txt"},
    {"Output=o.txt,a.txt,r.txt,g.txt", "Graph output file = g.txt"},
    {"Person=Ann", ""},
    {"PE=3", ""},
    {"Positive=Yes", "Positive = 1,2"},
    {"Positive=No", "Positive = none"},
    {"$Positive=2", "Positive = 2"},
    {"Pt-biserial=Yes", "Pt-biserial = Yes"},
    {"Point-biserial=All", "Pt-biserial = Include"},
    {"Gamma=Measure", "Pt-biserial = Measure"},
    {"Pt-biserial=No", "Pt-biserial = No"},
    {"QM=Q", "QM quote marks around labels = Double-quotes"},
    {"QM=A", "QM quote marks around labels = Apostrophes"},
    {"QM=C", "QM quote marks around labels = Commas"},
    {"QM=S", "QM quote marks around labels = Semicolons"},
    {"QM=B", "QM quote marks around labels = Blanks"},
    {"QM=|", "QM quote marks around labels = |"},
    {"QM=N", ""},
    {"Query=Yes", ""},
    {"$Rating (or partial credit) scale=Old,R3,Specific,Keep\n1=low\n*",
     "Rating (or other) scale = Old,R3,Specific,Keep ; Warning (3)! This is NOT referenced by a "
     "Model= specification"},
    {"Replication=w", ""},
    {"Residualfile=r.txt", "Residual output file = r.txt"},
    {"Yni=r.txt", "Residual output file = r.txt"},
    {"Reversed=No", ""},
    {"Scorefile=s.xls", "Scorefile = s.xls"},
    {"Simulated=d.txt", "Simulated data output file = d.txt"},
    {"Standard errors=Real", "Standard error = Real ; enlarged by mean square infit"},
    {"Standard errors=Model", ""},
    {"Subsets=Report", "Subset detection = R"},
    {"Subsets=List", "Subset detection = L"},
    {"Subsets=No", "Subset detection = N"},
    {"Subsets=Yes", ""},
    {"T3onscreen=N", "T3onscreen show only one line on screen iteration report = N"},
    {"T4MAX=7", "T4MAX maximum number of unexpected observations reported in Table 4 = 7"},
    {"T7LGS=l", "T7LGS show table 7 element list, group details, group summary = L"},
    {"T8NBC=nc", "T8NBC show table 8 numbers-barcharts-curves = NC"},
    {"Tables=111", ""},
    {"Title=Other", "Title = Other"},
    {"Title=My test, \"second\"", "Title = My test, second"},
    {"Title=\"My, test\" ; both quotes go", "Title = My, test"},
    {"Title='My, own, test'", "Title = My, own, test"},
    {"Title=\"My\",test", "Title = \"My\", test"},
    {"Totalscore=Yes", "Total score for elements = Yes"},
    {"Udecimals=1", "Umean = 0,1,1 ; Umean, Uscale, Udecimals"},
    {"Umean=50,10,1", "Umean = 50,10,1 ; Umean, Uscale, Udecimals"},
    {"Umean=0,1,2", ""},
    {"Unexpected=2.5", "Unexpected observations reported if standardized residual >= 2.5"},
    {"Uscale=-2", "Umean = 0,-2,2 ; Umean, Uscale, Udecimals"},
    {"Usort=(u),(Z)", "Usort unexpected observations sort order = (u),(Z)"},
    {"UTF8sub=?", "UTF8sub substitute code = ?"},
    {"UTF8sub=.", ""},
    {"UTF8encoded=Yes", "UTF8encoded = Y"},
    {"UTF8encoded=No", "UTF8encoded = N"},
    {"UTF8encoded=?", ""},
    {"Vertical=1*,2A", "Vertical ruler definitions = 1*,2A"},
    {"Vertical=N", "Vertical ruler definitions = N"},
    {"Whexact=No", "WHexact - Wilson-Hilferty standardization = N"},
    {"Write=Yes", "Write iteration residuals in output file = yes"},
    {"Xtreme=.2", "Xtreme scores adjusted by = .2,.5  ;(estimation, bias)"},
    {"Yardstick=,80,-4", "Yardstick: dimensions in rulers = ,80,-4"},
    {"Zscore=.5,2", "Zscore (Bias size/significance) not less than = .5,2 ; bias size, t-score"},
    {"Zscore=,2", "Zscore (Bias size/significance) not less than = 0,2 ; bias size, t-score"},
};

int CodeOf(std::string_view line) {
  return ResolveKeyword(UpperCase(line))->code;
}

// Takes a line out of the text.
void TakeOut(std::string& text, const std::string& keyword) {
  const std::size_t from = text.find(keyword);
  text.erase(from, text.find('\n', from) + 1 - from);
}

// The base with the line in front; a keyword that the base has as well stands there alone.
std::string SpecificationWith(const std::string& line) {
  std::string base = kTable1Base;
  if (line == "Labels=" || line == "Models=") return base + kTable1Data;
  const bool behindFlanks = line.starts_with('$');
  if (behindFlanks || line.starts_with("Fl") || line.starts_with("F=")) TakeOut(base, "Flanks=");
  if (line.starts_with("Title=")) TakeOut(base, "Title=");
  return (behindFlanks ? "Flanks=2\n" + line.substr(1) : line) + "\n" + base + kTable1Data;
}

// Without the name of the report, which is in the test's folder.
Lines Table1Of(const std::string& line) {
  Lines lines = Table1Run(line.empty() ? kTable1Base + kTable1Data : SpecificationWith(line)).lines;
  std::erase_if(lines, [](const std::string& text) { return text.starts_with("Output file = /"); });
  return lines;
}

TEST(KeywordEcho, IsTheLineOfTable1) {
  const Lines plain = Table1Of("");
  for (const EchoCase& c : kEchoes) {
    const Lines lines = Table1Of(c.line);
    if (c.shown.empty())
      EXPECT_EQ(lines, plain) << c.line;
    else
      EXPECT_THAT(lines, Contains(c.shown)) << c.line;
  }
}

TEST(KeywordEcho, OfASwitchThatIsOffIsNoLine) {
  EXPECT_THAT(Table1Of("Totalscore=No"), Not(Contains(StartsWith("Total score"))));
  EXPECT_THAT(Table1Of("$Noncenter=0"), Not(Contains(StartsWith("Non-centered"))));
  EXPECT_TRUE(Table1Of("Tables=0111").empty());
}

TEST(KeywordEcho, OfDataIsTheirFile) {
  EXPECT_THAT(Table1Run(kTable1Base + "Data=d.txt\n").lines, Contains("Data file = d.txt"));
  EXPECT_THAT(Table1Run(kTable1Base + kTable1Data).lines, Contains("Data file = (s.txt)"));
}

TEST(KeywordEcho, LeavesNoKeywordOut) {
  std::set<int> codes = {CodeOf("Data")};  // above
  for (const EchoCase& c : kEchoes)
    codes.insert(CodeOf(c.line.starts_with('$') ? c.line.substr(1) : c.line));
  for (const KeywordRow& row : KeywordRows()) EXPECT_TRUE(codes.contains(row.code)) << row.keyword;
}

// ---- Faults

struct FaultCase {
  std::string lines;
  std::string report;
};

const FaultCase kFaultCases[] = {
    // Names of files
    {"Anchorfile=a*",
     "Anchorfile=a* Specification is: File name contains * or ?, or ends with \\ / or : 1 in line "
     "Error F42"},
    {"Title=x\nData=folder/",
     "Data=folder/ Specification is: File name contains * or ?, or ends with \\ / or : 2 in line "
     "Error F42"},
    {"Output=o.txt,,r?.txt",
     "r?.txt in Output=o.txt,,r?.txt Specification is: File name contains * or ?, or ends with \\ "
     "/ or : 1 in line Error F42"},
    // Lists of letters and numbers
    {"Arrange=1N,Q",
     "Q in Arrange=1N,Q Specification is: Valid arrangements are flank number (optional) then "
     "A,F,M,N,P,a,m,f,n,p: 1 in line Error F32"},
    {"Arrange=1000N",
     "Arrange=1000N Specification is: Valid arrangements are flank number (optional) then "
     "A,F,M,N,P,a,m,f,n,p: 1 in line Error F32"},
    {"Flanks=2\nInter-rater=1.5",
     "Inter-rater=1.5 Specification is: Non-Integer value where integer expected: 2 in line Error "
     "F28"},
    {"Null=-2",
     "Null=-2 Specification is: Keepzero= value out of range: -1 to 2147483646: 1 in line Error "
     "F76"},
    // Flanks
    {"Flanks=300",
     "Flanks=300 Specification is: Number invalid or greater than 255: 1 in line Error F2"},
    {"Flanks=2,abc",
     "abc in Flanks=2,abc Specification is: Non-numeric datum treated as missing: 1 in line Error "
     "F22"},
    {"Flanks=2\nNoncenter=1,3 ; which?",
     "3 in Noncenter=1,3 ; which? Specification is: Number invalid or greater than 2: 2 in line "
     "Error F2"},
    {"Flanks=2\nCenter=x",
     "Center=x Specification is: Non-numeric datum treated as missing: 2 in line Error F22"},
    {"Flanks=2\nPositive=1.5",
     "Positive=1.5 Specification is: Non-Integer value where integer expected: 2 in line Error "
     "F28"},
    {"Flanks=2\nNegative=1,3",
     "3 in Negative=1,3 Specification is: Number invalid or greater than 2: 2 in line Error F2"},
    {"Flanks=2\nEntered-in-data=1,3",
     "3 in Entered-in-data=1,3 Specification is: Number invalid or greater than 2: 2 in line Error "
     "F2"},
    {"Flanks=2\nEntered-in-data=0,0",
     "Entered-in-data=0,0 Specification is: 0 Entered= references do not match: 2 in line Error "
     "F45"},
    // Order
    {"Entered-in-data=1,2",
     "Entered-in-data=1,2 Specification is: Please specify Flanks= before this specification: 1 in "
     "line Error F34"},
    {"Labels=",
     "Labels= Specification is: Please specify Flanks= before this specification: 1 in line Error "
     "F34"},
    {"Models=?,R",
     "Models=?,R Specification is: Please specify Flanks= before this specification: 1 in line "
     "Error F34"},
    {"Rating scale=a,R3",
     "Rating scale=a,R3 Specification is: Please specify Flanks= before this specification: 1 in "
     "line Error F34"},
    {"Dvalues=2,1",
     "Dvalues=2,1 Specification is: Please specify Flanks= before this specification: 1 in line "
     "Error F34"},
    {"Flanks=1\nRating scale=a,R3\n*\nUscale=2",
     "Uscale=2 Specification is: Umean= and Uscale= must be specified before Labels= and Rating=: "
     "4 in line Error F39"},
    {"Flanks=1\nLabels=\n1,A\n1=a\n*\nUmean=5",
     "Umean=5 Specification is: Umean= and Uscale= must be specified before Labels= and Rating=: 6 "
     "in line Error F39"},
    // Lists
    {"Glabel=1,2",
     "Glabel=1,2 Specification is: Format is: Glabel = flank number, group number, group label: 1 "
     "in line Error F65"},
    {"Flanks=2\nDvalues=2,1,1,1,1",
     "Dvalues=2,1,1,1,1 Specification is: Dvalues= must be flank, value e.g., 3,1-4 or flank, "
     "flank, start, length, e.g., 3,2,6,2, or flank, flank, $G: 2 in line Error F54"},
};

TEST(KeywordFaults, TellTheLineTheValueAndTheCode) {
  for (const FaultCase& c : kFaultCases) {
    SpecRun test;
    test.Read(c.lines + "\n");
    EXPECT_EQ(test.FaultText(), c.report) << c.lines;
  }
}

// ---- What is no fault, and told

TEST(KeywordHints, SayNothingOfANumberOrANo) {
  for (const char* line : {"Newton=N", "Newton=0", "Udecimals=9", "Convergence=,.1", "T4MAX=(2)"}) {
    SpecRun test;
    test.Read(std::string(line) + "\n");
    EXPECT_EQ(test.shell.Screen().find("The value"), std::string::npos) << line;
  }
}

TEST(KeywordHints, TellWhatWasNotTaken) {
  const FaultCase cases[] = {
      {"Uscale=0", "The value 0 is out of range and not taken: Uscale=0"},
      {"Uscale=1E-40", "The value 1E-40 is out of range and not taken: Uscale=1E-40"},
      {"Umean=50,0", "The value 0 is out of range and not taken: Umean=50,0"},
      {"Hardware=-1", "The value -1 is out of range and not taken: Hardware=-1"},
      {"Xtreme=.2,1", "The value 1 is out of range and not taken: Xtreme=.2,1"},
      {"Convergence=.1,bad", "The value bad is no number and taken as 0: Convergence=.1,bad"},
      {"Iterations=abc", "The value abc is no number and taken as 0: Iterations=abc"},
      {"Newton=x", "The value x is no number and taken as 0: Newton=x"},
      {"T4MAX=abc", "The value abc is no number and taken as 0: T4MAX=abc"},
      {"Udecimals=x", "The value x is no number and taken as 0: Udecimals=x"},
      {"Umean=abc", "The value abc is no number and taken as 0: Umean=abc"},
      {"Unexpected=x", "The value x is no number and taken as 0: Unexpected=x"},
      {"Zscore=1,x", "The value x is no number and taken as 0: Zscore=1,x"},
      {"Udecimals=12", "The value 12 is out of range and taken as 9: Udecimals=12"},
      {"Umean=1,2,-1", "The value -1 is out of range and taken as 0: Umean=1,2,-1"},
      {"Flanks=0", "There are no Flanks by line 1: Flanks=0"},
      {"Flanks 2", "There is no \"=\" in line 1, so this is a keyword without a value: Flanks 2"},
      {"Arrange", "There is no \"=\" in line 1, so this is a keyword without a value: Arrange"},
      {"abc ; stray", "There is no \"=\" in line 1, so this is a keyword without a value: abc"},
      {"Title My test ; = is missing",
       "There is no \"=\" in line 1, so this is a keyword without a value: Title My test"},
  };
  for (const FaultCase& c : cases) {
    SpecRun test;
    test.Read(c.lines + "\n");
    EXPECT_EQ(test.fault(), Fault::none) << c.lines;
    ASSERT_FALSE(test.shell.statuses.empty()) << c.lines;
    EXPECT_EQ(test.shell.statuses.back().text, c.report);
    EXPECT_EQ(test.shell.statuses.back().emphasis, Emphasis::flagged);
  }
}

TEST(KeywordHints, SayNothingOfWhatIsAsItShouldBe) {
  for (const std::string line : {"Labels", "Models", "Data", "GL", "Arrange=", "Rating scale,a,R3",
                                 "Heading lines=", "Uscale=", "Standard errors\tReal", "*"}) {
    SpecRun test;
    test.Read("Flanks=2\n" + line + "\n*\n");
    for (const RecordingShell::Status& status : test.shell.statuses)
      EXPECT_EQ(status.emphasis, Emphasis::normal) << line << ": " << status.text;
  }
}

}  // namespace
}  // namespace flanks
