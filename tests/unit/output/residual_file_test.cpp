#include "output/residual_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "output/residual_fields.h"
#include "support/text_of_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// All measures and thresholds are anchored, so that each figure can be worked out by hand.  Ann
// meets item one at B = 1: with thresholds -1 and 1 the cumulative logits are 0, 2, 2, so that
// p = .063380, .468310, .468310, E = 1.404930, V = .367722; categories begin with 1.  Bob stands
// so high above item one (B = 12) that category 3 is all but certain; with item two (B = 2.5)
// E = 1.807617, V = .166329 and the probability of category 3 is .813095.
constexpr const char* kAnchored =
    "Flanks=2\nPositive=1\nTables=00000000000000\nSubsets=N\nModels=?,?,Steps\n*\n"
    "Rating scale=Steps,R3\n1=low\n2=middle,-1,A\n3=high,1,A\n*\n"
    "Labels=\n1,Long Persons,A\n1=Ann,1.5\n2=Bob "
    "B,12.5\n*\n2,Items,A\n1=one,.5\n2=two,10\n*\nData=\n"
    "1,1,3\n1,1,1\nR2.5,2,1,1\n2,2,3\n";

class ResidualFile : public ::testing::Test {
 protected:
  AnalysisRun done;

  void Analyze(const std::string& extras = "", const char* specification = kAnchored) {
    ASSERT_EQ(done.Analyze(specification, extras), 0) << done.Screen();
  }
  std::vector<std::string> Lines(const ResidualOptions& options,
                                 OutputForm form = OutputForm::text) {
    TextOfRun text(done);
    return LinesOf(
        text.Of([&](auto& run, Destination& out) { WriteResidualFile(run, form, options, out); }));
  }
  ResidualOptions Options(const std::string& separator, const std::string& selection) {
    ResidualOptions options = ResidualOptionsOf(done.analysis.settings);
    options.table.OutputSeparator = separator;
    options.ResponseSelection = selection;
    return options;
  }
};

// Displacement of the second row: -1.404930 / .367722; of the third: -2 / V is far below -10, and
// its square over V far above 81; its probability is far below 1E-9, whose logarithm is -20.72.
TEST_F(ResidualFile, HasTheFiguresOfEachObservation) {
  Analyze();
  EXPECT_THAT(
      Lines(Options(",", "YYYYYYYYYYYYYYYY")),
      ElementsAre("Obs,Stp,Exp,Res,Var,StRes,Wt,LProb,Measure,Displ,Status,MPCat,E1,E2,M1,M2,"
                  "Long_Persons,Items",
                  "3,3,2.40,0.60,0.37,0.98,1.00,-0.76,1.00,1.62,1,3,1,1,1.50,0.50,Ann,one",
                  "1,1,2.40,-1.40,0.37,-2.32,1.00,-2.76,1.00,-3.82,1,3,1,1,1.50,0.50,Ann,one",
                  "1,1,3.00,-2.00,0.00,-9.00,2.50,-20.72,12.00,-10.00,1,3,2,1,12.50,0.50,Bob B,one",
                  "3,3,2.81,0.19,0.17,0.47,1.00,-0.21,2.50,1.16,1,3,2,2,12.50,10.00,Bob B,two"));
}

// The same in four decimals, in ten columns; names and labels to the left behind one blank.
TEST_F(ResidualFile, FixedFormHasTenColumnsForEachField) {
  Analyze();
  EXPECT_THAT(Lines(Options(" ", "2YNYNNNNNYY4NNNN")),
              ElementsAre("       Stp       Res        E1        E2 Long_PersoItems     ",
                          "         3     .5951         1         1 Ann       one       ",
                          "         1   -1.4049         1         1 Ann       one       ",
                          "         1   -2.0000         2         1 Bob B     one       ",
                          "         3     .1924         2         2 Bob B     two       "));
}

TEST_F(ResidualFile, FixedHeadingsAndLabelsHaveTheirQuoteMarks) {
  Analyze();
  ResidualOptions options = Options(" ", "2YNNNNNNNNY2NNNN");
  options.table.OutputQuote = "\"";
  const std::vector<std::string> lines = Lines(options);
  EXPECT_EQ(lines[0], "     \"Stp\" \"Long_Per\"\"Items\"   ");
  EXPECT_EQ(lines[3], "         1 \"Bob B\"   \"one\"     ");
  options.table.OutputSeparator = ";";
  EXPECT_EQ(Lines(options)[0], "\"Stp\";\"Long_Persons\";\"Items\"");
  EXPECT_EQ(Lines(options)[1], "3;\"Ann\";\"one\"");
}

// Columns of labels are as wide as the longest label and a blank.
TEST_F(ResidualFile, LongLabelsAreNotCut) {
  std::string specification = kAnchored;
  specification.replace(specification.find("Bob B"), 5, "Bartholomew");
  Analyze("", specification.c_str());
  const std::vector<std::string> lines = Lines(Options(" ", "NNNNNNNNNNY2NNNN"));
  EXPECT_EQ(lines[0], " Long_Perso  Items     ");
  EXPECT_EQ(lines[3], " Bartholomew one       ");
}

// Ten units to a logit, a mean of 50: 50 + 10 B; displacements have the unit alone.
TEST_F(ResidualFile, MeasuresAreUserUnits) {
  Analyze("Umean=50,10,1");
  std::string specification = kAnchored;
  for (const auto& [logits, units] : {std::pair{"Ann,1.5", "Ann,65"},
                                      {"Bob B,12.5", "Bob B,175"},
                                      {"one,.5", "one,55"},
                                      {"two,10", "two,150"},
                                      {"middle,-1", "middle,-10"},
                                      {"high,1", "high,10"}})
    specification.replace(specification.find(logits), std::string(logits).size(), units);
  Analyze("Umean=50,10,1", specification.c_str());
  const std::vector<std::string> lines = Lines(Options("\t", "NNYNNNNNYNN1NYYN"));
  EXPECT_EQ(lines[0], "Exp\tMeasure\tDispl\tM1\tM2");
  EXPECT_EQ(lines[1], "2.4\t60.0\t16.2\t65.0\t55.0");
  EXPECT_EQ(lines[3], "3.0\t170.0\t-100.0\t175.0\t55.0");
}

// An unused observation shows what was read, and 0 for all that the model says.
TEST_F(ResidualFile, UnusedObservationsHaveZeros) {
  Analyze();
  done.analysis.estimates.elements[ElementSlot(2)].ElementStatus = kStatusDropped;
  ResidualOptions options = Options(",", "YYYYYYYYYYY2YYYY");
  const std::string unused =
      "3,3,0.00,0.00,0.00,0.00,1.00,0.00,2.50,0.00,-2,0,2,2,12.50,10.00,Bob B,two";
  EXPECT_EQ(Lines(options)[4], unused);
  options.statusFilter = StatusFilter::notEstimating;
  EXPECT_EQ(Lines(options).size(), 3u);
  EXPECT_EQ(Lines(options)[2], unused);
  options.statusFilter = StatusFilter::estimating;
  EXPECT_EQ(Lines(options).size(), 3u);
  EXPECT_THAT(Lines(options)[1], HasSubstr("Ann,one"));
}

TEST_F(ResidualFile, AnExtremeElementShowsInTheStatus) {
  Analyze();
  done.analysis.estimates.elements[ElementSlot(1)].ElementStatus = kStatusMaximum;
  ResidualOptions options = Options(",", "NNYNNNNNNNN2YNNN");
  options.statusFilter = StatusFilter::estimating;
  EXPECT_EQ(Lines(options)[1], "2.40,2");
  done.analysis.estimates.elements[ElementSlot(3)].ElementStatus = kStatusMinimum;
  options.statusFilter = StatusFilter::both;
  EXPECT_EQ(Lines(options)[1], "0.00,-4");
}

// The categories 1, 3 and 5 are scored 1, 2 and 3.  A response that has lost its place has no step.
TEST_F(ResidualFile, StepsAreTheCategoriesCountedAgain) {
  Analyze("",
          "Flanks=2\nTables=00000000000000\nSubsets=N\nModels=?,?,R5\n*\nLabels=\n1,P\n1-4=p\n*\n"
          "2,I\n1-2=i\n*\nData=\n1,1-2,1,3\n2,1-2,3,5\n3,1-2,5,1\n4,1-2,3,3\n");
  const ResidualOptions options = Options(",", "YYNNNNNNNNN2NNNN");
  EXPECT_THAT(Lines(options),
              ElementsAre("Obs,Stp", "1,1", "3,2", "3,2", "5,3", "5,3", "1,1", "3,2", "3,2"));
  done.analysis.scales.orderedCategory.at(ScaleRow(0), 5) = kNoOrderedCategory;
  EXPECT_EQ(Lines(options)[4], "5,-1");
}

// A missing element has the number 0, the measure 0 and no label.
// Ann expects exp(6), some 403; the scale ends at the 5 that was observed.
TEST_F(ResidualFile, TheMostProbableOfAPoissonScaleIsOneOfItsCategories) {
  Analyze("",
          "Flanks=2\nPositive=1\nTables=00000000000000\nSubsets=N\nModels=?,?,P\n*\nLabels=\n"
          "1,Persons,A\n1=Ann,6\n2=Bob,0\n*\n2,Items,A\n1=one,0\n*\nData=\n1,1,5\n2,1,1\n2,1,2\n");
  done.analysis.scales.ThresholdTable.at(ScaleRow(0), 0) = 1.0f;
  const int top = done.analysis.scales.ScaleTopCategory[ScaleRow(0)];
  EXPECT_LE(top, 255);
  EXPECT_EQ(Lines(Options(",", "NNNNNNNNNNN2NNNY"))[1], std::to_string(top));
}

TEST_F(ResidualFile, AMissingElementIsZero) {
  Analyze("",
          "Flanks=3\nTables=00000000000000\nSubsets=N\nModels=\n?,?,?,R1\n?,,?,R1\n*\nLabels=\n"
          "1,P\n1-3=p\n*\n2,Q Q\n1=q\n*\n3,I\n1-3=i\n*\nData=\n"
          "1,1,1-3,1,0,1\n2,0,1-3,0,1,0\n3,1,1-3,1,1,0\n");
  EXPECT_THAT(Lines(Options(",", "NNNNNNNNNYY2NNYN"))[4],
              testing::MatchesRegex("2,0,1,.*,0.00,.*,p,,i"));
  EXPECT_THAT(Lines(Options(" ", "NNNNNNNNNYY2NNNN"))[4],
              "         2         0         1 p                   i         ");
}

// A Flank that stands in two positions has two columns of each kind.
TEST(ResponseColumns, AFlankInTwoPositionsHasTwoColumns) {
  Design design;
  design.FlankCount = 1;
  design.ModelFlankCount = 2;
  design.flanks.FlankName.assign(1, "Rivals");
  design.maps.ModelFlank.assign(2, FlankNo(1));
  std::string names;
  for (const ResponseColumn& column : ResponseColumnsOf(design, "NNNNNNNNNYY2NNYN"))
    names += column.heading + "/" + column.spssName + " ";
  EXPECT_EQ(names,
            "E1/F1 E2/F1.2 M1/F1-Measure M2/F1.2-Measure Rivals/F1-Label Rivals/F1.2-Label ");
}

TEST_F(ResidualFile, HeadingsAreWrittenWhenWantedAndForRAlways) {
  Analyze();
  ResidualOptions options = Options(",", "NYNNNNNNNNN2NNNN");
  options.table.IncludeHeadings = false;
  EXPECT_THAT(Lines(options), ElementsAre("3", "1", "1", "3"));
  EXPECT_THAT(Lines(options, OutputForm::rstat), ElementsAre("Stp", "3", "1", "1", "3"));
  options.table.IncludeHeadings = true;
  options.ResponseSelection = std::string(16, 'N');
  EXPECT_TRUE(Lines(options).empty());
}

// Forms for other programs have tabs and no quote marks; for Excel labels keep their form.
TEST_F(ResidualFile, TextsForOtherProgramsHaveTabs) {
  std::string specification = kAnchored;
  specification.replace(specification.find("=one"), 4, "=1-1");
  Analyze("QM=D", specification.c_str());
  const ResidualOptions options = Options(",", "2YNNNNNNNNY2NNNN");
  EXPECT_EQ(Lines(options, OutputForm::excel)[1], "3\tAnn\t1-1\xC2\xA0");
  EXPECT_EQ(Lines(options, OutputForm::rstat)[1], "3\tAnn\t1-1");
}

TEST_F(ResidualFile, TheTextForSpssTellsNamesLabelsAndFormats) {
  Analyze("QM=D");
  TextOfRun text(done);
  const ResidualOptions options = Options(",", "2YYNNNNNYYY2NNYN");
  const std::vector<std::string> lines =
      LinesOf(text.Of([&](auto& run, Destination& out) { WriteResidualSpss(run, options, out); }));
  EXPECT_EQ(lines[0], "1");
  EXPECT_EQ(lines[1], "Score\tExp\tMeasure\tF1\tF2\tF1-Measure\tF2-Measure\tF1-Label\tF2-Label");
  EXPECT_EQ(lines[2],
            "Ordinal Category\tExpected Value\tMeasure difference generating Exp\tElement number: "
            "Long Persons\tElement number: Items\tElement measure: Long Persons\tElement measure: "
            "Items\tLong Persons\tItems");
  EXPECT_EQ(lines[3], "0\t-4\t1\t0\t0\t1\t1\t5\t3");
  EXPECT_EQ(lines[4], "3\t2.40\t1.00\t1\t1\t1.50\t0.50\tAnn\tone");
  EXPECT_EQ(lines.size(), 8u);
}

TEST_F(ResidualFile, ThePageCountsItsRows) {
  Analyze("Title=A&B");
  TextOfRun text(done);
  const ResidualOptions options = Options(" ", "2YNNNNNNNNY2NNNN");
  const std::string page =
      text.Of([&](auto& run, Destination& out) { WriteResidualWebpage(run, options, out); });
  EXPECT_THAT(page, HasSubstr("<title>Observations: A&amp;B</title>"));
  EXPECT_THAT(page,
              HasSubstr("<thead><tr><TH ALIGN=\"RIGHT\">Seq</TH><TH ALIGN=\"RIGHT\">Stp</TH><TH "
                        "ALIGN=\"LEFT\">Long_Persons</TH><TH ALIGN=\"LEFT\">Items</tr></thead>"
                        "<tbody>\n"));
  EXPECT_THAT(page, HasSubstr("<tr></TD><TD ALIGN=\"RIGHT\">4</TD><TD ALIGN=\"RIGHT\">3</TD><TD "
                              "ALIGN=\"LEFT\">Bob B</TD><TD ALIGN=\"LEFT\">two</tr>\n</tbody>"));
}

TEST_F(ResidualFile, MarksInNamesAndLabelsAreTextOfThePage) {
  Analyze();
  done.analysis.design.flanks.FlankName[FlankNo(2)] = "A<1>&B";
  done.analysis.design.elements.ElementLabel[ElementSlot(3)] = "<b>&";
  TextOfRun text(done);
  const ResidualOptions options = Options(" ", "NNNNNNNNNNY2NNNN");
  const std::string page =
      text.Of([&](auto& run, Destination& out) { WriteResidualWebpage(run, options, out); });
  EXPECT_THAT(page, HasSubstr("<TH ALIGN=\"LEFT\">A&lt;1&gt;&amp;B</tr></thead>"));
  EXPECT_THAT(page, HasSubstr("<TD ALIGN=\"LEFT\">Ann</TD><TD ALIGN=\"LEFT\">&lt;b&gt;&amp;</tr>"));
}

// Bob meets item two at B = -19.5 and has category 3: the residual is 2, the variance next to
// nothing.
TEST_F(ResidualFile, DisplacementsAreHeldWithinTenLogits) {
  std::string specification = kAnchored;
  specification.replace(specification.find("12.5"), 4, "-9.5");
  Analyze("", specification.c_str());
  EXPECT_THAT(Lines(Options(",", "NNNYNNNNNYN2NYNN")), testing::Contains("2.00,10.00,2,2"));
}

TEST_F(ResidualFile, TheRunShowsItsProgress) {
  Analyze("Residualfile=" + done.folder.file("res.txt"));
  EXPECT_THAT(done.Screen(),
              HasSubstr("Writing residual output file ... " + done.folder.file("res.txt") + "\n"));
  EXPECT_THAT(done.shell.progress, HasSubstr("="));
  EXPECT_EQ(LinesOf(done.folder.read("res.txt")).size(), 5u);
}

// Broken off after the first blocks: whole rows beside the former file.
TEST_F(ResidualFile, WhatTheUserBreaksOffStandsBesideTheFormerFile) {
  std::string data;
  for (int n = 0; n < 20'000; ++n)
    data += std::to_string(n % 40 + 1) + "," + std::to_string(n % 7 + 1) + "," +
            std::to_string((n * 7 + n / 3) % 3) + "\n";
  Analyze("", ("Flanks=2\nTables=00000000000000\nSubsets=N\nIterations=1\nModels=?,?,R2\n*\nLabels="
               "\n1,P\n1-40=p\n*\n2,I\n1-7=i\n*\nData=\n" +
               data)
                  .c_str());
  TextOfRun text(done);
  const std::string name = done.folder.write("res.txt", "former\n");
  done.shell.ActionAtPump(done.shell.pumps + 1,
                          [this] { done.process.control.CancelRequested = true; });
  EXPECT_FALSE(
      WriteResidualFileNamed(text.run, name, ResidualOptionsOf(text.run.analysis.settings)));
  EXPECT_EQ(done.folder.read("res.txt"), "former\n");
  const std::string part = done.folder.read("res.txt.part");
  EXPECT_THAT(part, testing::StartsWith("       Stp"));
  EXPECT_EQ(part.back(), '\n');
  EXPECT_GT(LinesOf(part).size(), 1000u);
  EXPECT_LT(LinesOf(part).size(), 20'000u);
  EXPECT_THAT(done.Screen(),
              HasSubstr("What was written so far stands in \"" + name + ".part\".\n"));
}

TEST(ResponseFields, StandInTheOrderOfTheRow) {
  std::string headings;
  for (const ResponseField& field : SelectedResponseFields("2YYYYYYYYNN2YYNY"))
    headings += std::string(field.heading) + " ";
  EXPECT_EQ(headings, "Stp Exp Res Var StRes Wt LProb Measure Displ Status MPCat ");
  std::string captions;
  for (const ResponseField& field : ResponseFields()) captions += std::string(field.caption) + "/";
  EXPECT_EQ(captions,
            "Observation/Step count/Expected value/Residual/Model Variance/Standardized residual/"
            "Weight/Log-probability/Measure/Displacement/Status/Most probable cat./Element numbers/"
            "Element measures/Element labels/");
  EXPECT_TRUE(SelectedResponseFields("").empty());
}

TEST(ResponseFields, APlaceTwelveThatIsNoDigitIsTwo) {
  EXPECT_EQ(ResponseDecimals("2YYYYYYYYYY5YYYY"), 5);
  EXPECT_EQ(ResponseDecimals("2YYYYYYYYYY0YYYY"), 0);
  for (const char* selection : {"2YYYYYYYYYYYYYYY", "2YYYYYYYYYY YYYY", "", "2YYYYYYYYYY"})
    EXPECT_EQ(ResponseDecimals(selection), 2) << selection;
}

}  // namespace
}  // namespace flanks
