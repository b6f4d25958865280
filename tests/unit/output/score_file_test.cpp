#include "output/score_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "output/score_fields.h"
#include "support/text_of_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kSpecification =
    "Flanks=2\nPositive=1\nTables=00000000000000\nSubsets=N\nModels=?,?,R2\n*\nLabels=\n"
    "1,Persons\n1=Ann\n3=Bob Smith\n4=Cy\n5=Nobody\n*\n2,Long Items\n1-2=i\n*\nData=\n"
    "1,1-2,0,1\n3,1-2,1,2\n4,1-2,2,0\n";

// Numbers that tell which field they are in.
void SetFigures(Analysis& analysis, ElementSlot slot) {
  ElementScores& scores = analysis.estimates.scores[slot];
  scores.FirstRawScore = 7.5f;
  scores.FirstCount = 3.0f;
  scores.RawScore = 5.0f;
  scores.Count = 2.0f;
  ElementFinal& fit = analysis.estimates.finals[slot];
  fit.FairSum = 2.5;
  fit.StandardError = 0.75f;
  fit.InfitMeanSquare = 1.25f;
  fit.InfitZStd = 1.96f;
  fit.InfitDF = 8.0f;
  fit.OutfitMeanSquare = 0.5f;
  fit.OutfitZStd = -1.0f;
  fit.OutfitDF = 6.0f;
  fit.PointMeasure = -0.31f;
  fit.PointResidual = 0.42f;
  fit.Discrimination = 1.07f;
  fit.Displacement = 0.25f;
  analysis.estimates.elements[slot].ElementMeasure = -1.5f;
  analysis.estimates.elements[slot].ElementStatus = kStatusAnchored;
  analysis.design.elements.ElementGroup[slot] = 4;
  analysis.design.elements.ElementWeight[slot] = 2.5f;
}

class ScoreFile : public ::testing::Test {
 protected:
  AnalysisRun done;

  void Analyze(const std::string& extras = "") {
    ASSERT_EQ(done.Analyze(kSpecification, extras), 0) << done.Screen();
  }
  std::vector<std::string> Lines(int flank, const ScoreOptions& options,
                                 OutputForm form = OutputForm::text) {
    TextOfRun text(done);
    return LinesOf(text.Of([&](auto& run, Destination& out) {
      WriteScoreFile(run, FlankNo(flank), form, options, out);
    }));
  }
  // With these fields alone; element number in its place.
  ScoreOptions Options(const std::string& separator, std::initializer_list<int> positions) {
    ScoreOptions options = ScoreOptionsOf(done.analysis.settings);
    options.table.OutputSeparator = separator;
    options.ScoreSelection = std::string(28, 'N') + "Y";
    for (const int position : positions)
      options.ScoreSelection[static_cast<std::size_t>(position) - 1] = 'Y';
    return options;
  }
};

// 1.96 and 1 standard deviations have two-sided probabilities of .0500 and .3173; chi-squared
// values are 1.25 times 8 and .5 times 6.
TEST_F(ScoreFile, HasAllFieldsOfAnElement) {
  Analyze();
  SetFigures(done.analysis, ElementSlot(2));
  const std::vector<std::string> lines =
      Lines(1, ScoreOptions{{",", "\"", true}, true, std::string(29, 'Y')});
  EXPECT_EQ(lines[0],
            "\"T.Score\",\"T.Count\",\"Obs.Avge\",\"FairMAvge\",\"Measure\",\"S.E.\",\"InfitMS\","
            "\"InfitZ\",\"OutfitMS\",\"OutfitZ\",\"PtMea\",\"PtMeExp\",\"Discrim\",\"Displace\","
            "\"Status\",\"Group\",\"Weight\",\"Sign\",\"InfChiSqu\",\"Infitdf\",\"InfPr2s\","
            "\"OutfChiSqu\",\"Outfitdf\",\"OutfPr2s\",\"1\",\"Persons\",\"F-Number\",\"F-Label\"");
  EXPECT_EQ(lines[2],
            "7.50,3.00,2.50,1.25,-1.50,0.75,1.25,1.96,0.50,-1.00,-0.31,0.42,1.07,0.25,1,4,2.50,1,"
            "10.00,8.00,0.0500,3.00,6.00,0.3173,3,\"Bob Smith\",1,\"Persons\"");
  EXPECT_EQ(lines.size(), 4u);  // Nobody has no observation
}

// Without extremes other sums count; on a negative Flank the displacement has the other sign.
TEST_F(ScoreFile, FollowsTheSettings) {
  Analyze();
  SetFigures(done.analysis, ElementSlot(2));
  SetFigures(done.analysis, ElementSlot(5));
  Settings& settings = done.analysis.settings;
  settings.TotalScoreMode = false;
  settings.FairAverageKind = 'Z';
  settings.PointCorrelationKind = 'I';
  settings.Umean = 50.0f;
  settings.Uscale = 10.0f;
  settings.Udecimals = 1;
  const ScoreOptions options = Options(";", {1, 2, 3, 4, 5, 6, 11, 14, 18});
  EXPECT_EQ(Lines(1, options)[0],
            "Score;Count;Obs.Avge;FairZAvge;Measure;S.E.;PtBisI;Displace;Sign");
  EXPECT_EQ(Lines(1, options)[2], "5.00;2.00;2.50;1.25;35.0;7.5;-0.31;2.5;1");
  EXPECT_EQ(Lines(2, options)[1], "5.00;2.00;2.50;1.25;35.0;7.5;-0.31;-2.5;-1");
}

TEST_F(ScoreFile, AStandardErrorHasTheSignOfTheUnit) {
  Analyze();
  SetFigures(done.analysis, ElementSlot(2));
  done.analysis.settings.Uscale = -2.0f;
  EXPECT_EQ(Lines(1, Options(",", {5, 6}))[2], "3.00,-1.50");
}

TEST_F(ScoreFile, DisplacementsAreHeldWithinTenLogits) {
  Analyze();
  for (const auto& [logits, shown] : {std::pair{33.0f, "10.00"}, {-33.0f, "-10.00"}}) {
    done.analysis.estimates.finals[ElementSlot(1)].Displacement = logits;
    EXPECT_EQ(Lines(1, Options(",", {14}))[1], shown);
  }
}

// Numbers in ten columns; the element's label as wide as the longest, its heading cut to that.
TEST_F(ScoreFile, FixedFormHasItsColumns) {
  Analyze();
  SetFigures(done.analysis, ElementSlot(2));
  const ScoreOptions options = Options(" ", {4, 21, 22, 25, 26, 27, 28});
  const std::vector<std::string> persons = Lines(1, options);
  EXPECT_EQ(persons[0], " FairMAvge   InfPr2s OutfChiSq         1 Persons     F-Number F-Label");
  EXPECT_EQ(persons[2], "      1.25     .0500      3.00         3 Bob Smith          1 Persons");
  EXPECT_THAT(Lines(2, options)[0], testing::EndsWith("         2 L   F-Number F-Label"));
}

TEST_F(ScoreFile, FixedHeadingsHaveTheirQuoteMarks) {
  Analyze("QM=D");
  SetFigures(done.analysis, ElementSlot(2));
  ScoreOptions options = Options(" ", {4, 22, 25, 26, 27, 28});
  options.table.OutputQuote = "\"";
  EXPECT_EQ(Lines(1, options)[0],
            " \"FairMAv\" \"OutfChi\"       \"1\" \"Persons\"   \"F-Number\" \"F-Label\"");
  EXPECT_EQ(Lines(1, options)[2],
            "      1.25      3.00         3 \"Bob Smith\"          1 \"Persons\"");
}

TEST_F(ScoreFile, TheElementNumberStandsFirstUnlessItsPlaceIsAskedFor) {
  Analyze();
  ScoreOptions options = Options(",", {1, 25, 26});
  EXPECT_EQ(Lines(1, options)[0], "T.Score,1,Persons");
  EXPECT_EQ(Lines(1, options)[3], "2.00,4,Cy");
  options.ScoreSelection[28] = 'N';
  EXPECT_EQ(Lines(1, options)[0], "1,T.Score,Persons");
  EXPECT_EQ(Lines(1, options)[3], "4,2.00,Cy");
  options.ScoreSelection[24] = 'N';
  EXPECT_EQ(Lines(1, options)[0], "T.Score,Persons");
  options.ScoreSelection[28] = 'Y';
  EXPECT_EQ(Lines(1, options)[0], "T.Score,Persons");
}

// The averages of an element without observations are 0.
TEST_F(ScoreFile, UnobservedElementsAreShownOnRequest) {
  Analyze();
  ScoreOptions options = Options(",", {1, 2, 3, 4, 15, 26});
  EXPECT_EQ(Lines(1, options).size(), 4u);
  options.OmitUnobserved = false;
  EXPECT_EQ(Lines(1, options).size(), 5u);
  EXPECT_EQ(Lines(1, options)[4], "0.00,0.00,0.00,0.00,0,Nobody");
}

TEST_F(ScoreFile, HeadingsAreWrittenWhenWantedAndForRAlways) {
  Analyze();
  ScoreOptions options = Options(",", {26});
  options.table.IncludeHeadings = false;
  EXPECT_THAT(Lines(1, options), ElementsAre("Ann", "Bob Smith", "Cy"));
  EXPECT_THAT(Lines(1, options, OutputForm::rstat),
              ElementsAre("Persons", "Ann", "Bob Smith", "Cy"));
  EXPECT_THAT(Lines(1, Options(",", {})), IsEmpty());
}

// In the text for Excel the number of the Flank as a heading, and labels, keep their form.
TEST_F(ScoreFile, TextsForOtherProgramsHaveTabs) {
  Analyze("QM=D");
  done.analysis.design.elements.ElementLabel[ElementSlot(1)] = "12-3";
  const ScoreOptions options = Options(",", {2, 25, 26});
  EXPECT_EQ(Lines(1, options, OutputForm::excel)[0], "T.Count\t1\xC2\xA0\tPersons");
  EXPECT_EQ(Lines(1, options, OutputForm::excel)[1], "2.00\t1\t12-3\xC2\xA0");
  EXPECT_EQ(Lines(1, options, OutputForm::rstat)[1], "2.00\t1\t12-3");
}

TEST_F(ScoreFile, TheTextForSpssTellsNamesLabelsAndFormats) {
  Analyze();
  const auto spss = [&] {
    TextOfRun text(done);
    return LinesOf(text.Of([&](auto& run, Destination& out) {
      WriteScoreSpss(run, FlankNo(1), Options(",", {5, 12, 15, 19, 20, 22, 25, 26, 28}), out);
    }));
  };
  const std::vector<std::string> lines = spss();
  EXPECT_EQ(lines[0], "1");
  EXPECT_EQ(lines[1],
            "Measure\tPtExp\tStatus\tInChiSqu\tInfitdf\tOutChiSqu\tE-Number\tE-Label\tF-Label");
  EXPECT_EQ(lines[2],
            "Logit Measure\tExpected value of Point-Measure Correlation\tEstimate Status\t"
            "Infit Chi-squared\tInfit degrees of freeedom\tOutfit chi-squared\tElement Number\t"
            "Element Label\tFlank Label");
  EXPECT_EQ(lines[3], "1\t-4\t0\t-4\t-4\t-4\t0\t9\t7");
  EXPECT_THAT(lines[5], testing::EndsWith("\t3\tBob Smith\tPersons"));
  EXPECT_EQ(lines.size(), 7u);
  done.analysis.settings.Uscale = 10.0f;
  EXPECT_THAT(spss()[2], testing::StartsWith("User-Scaled Measure (1 logit = 10 units\t"));
  EXPECT_THAT(spss()[3], testing::StartsWith("10\t"));
}

TEST_F(ScoreFile, ThePageHasItsOwnTagForLabels) {
  Analyze("Title=T");
  TextOfRun text(done);
  const std::string page = text.Of([&](auto& run, Destination& out) {
    WriteScoreWebpage(run, FlankNo(1), Options(" ", {2, 26, 28}), out);
  });
  EXPECT_THAT(page, HasSubstr("<title>Scores: T</title>"));
  EXPECT_THAT(page, HasSubstr("<h2 ALIGN=\"CENTER\">Scores: T</h2><table class=\"sortable\" "
                              "CELLPADDING=5><thead><tr><TH ALIGN=\"RIGHT\">T.Count</TH><TH "
                              "ALIGN=\"LEFT\">Persons</TH><TH ALIGN=\"LEFT\">F-Label</tr></thead>"
                              "<tbody>\n"));
  EXPECT_THAT(page, HasSubstr("<tr></TD><TD ALIGN=\"RIGHT\">2.00</TD><TD ALIGN=LEFT\">Ann</TD><TD "
                              "ALIGN=\"LEFT\">Persons</tr>\n"));
}

TEST_F(ScoreFile, MarksInNamesAndLabelsAreTextOfThePage) {
  Analyze();
  done.analysis.design.flanks.FlankName[FlankNo(1)] = "A<1>&B";
  done.analysis.design.elements.ElementLabel[ElementSlot(1)] = "<b>&";
  TextOfRun text(done);
  const std::string page = text.Of([&](auto& run, Destination& out) {
    WriteScoreWebpage(run, FlankNo(1), Options(" ", {26, 28}), out);
  });
  EXPECT_THAT(page, HasSubstr("<TH ALIGN=\"LEFT\">A&lt;1&gt;&amp;B</TH>"));
  EXPECT_THAT(page, HasSubstr("<TD ALIGN=LEFT\">&lt;b&gt;&amp;</TD><TD "
                              "ALIGN=\"LEFT\">A&lt;1&gt;&amp;B</tr>\n"));
}

TEST_F(ScoreFile, ARunWritesOneForEachFlank) {
  Analyze("Scorefile=" + done.folder.file("s.csv") + " CSV=C");
  EXPECT_THAT(done.Screen(),
              HasSubstr("Writing Scorefile output file ... " + done.folder.file("s.1.csv") + "\n"));
  EXPECT_THAT(done.folder.read("s.1.csv"), HasSubstr(",Bob Smith,1,Persons\n"));
  EXPECT_THAT(done.folder.read("s.2.csv"), HasSubstr(",2,Long Items\n"));
}

// The number of the Flank goes in front of the last part of the name, whatever it says.
TEST_F(ScoreFile, ARunWritesOneForEachFlankInEveryForm) {
  for (const std::string end : {".xlsx", ".sav", ".rda", ".htm", ".txt", ""}) {
    Analyze("Scorefile=" + done.folder.file("my.s" + end));
    const std::string stem = end.empty() ? "my" : "my.s", last = end.empty() ? ".s" : end;
    EXPECT_NE(done.folder.read(stem + ".1" + last), "") << end;
    EXPECT_NE(done.folder.read(stem + ".2" + last), "") << end;
    EXPECT_EQ(done.folder.read(stem + last), "") << end;
  }
  Analyze("Scorefile=" + done.folder.file("old.xls"));
  EXPECT_NE(done.folder.read("old.2.xlsx"), "");
}

TEST(ScoreFields, HaveTheirCaptions) {
  Settings settings;
  FlankTable flanks;
  flanks.FlankName.assign(1, "Raters");
  std::string captions;
  for (const ScoreField& field : ScoreFieldsOf(settings, flanks, FlankNo(1)))
    captions += field.caption + "/";
  EXPECT_EQ(captions,
            "Raw score/Response count/Raw average score/Fair average score/Measure/Standard error/"
            "Infit mean-square/Infit standardized - t/Outfit mean-square/Outfit standardized - t/"
            "Point-measure/Point-measure-Exp/Discrimination/Displacement/Status code/Group number/"
            "Weight/Sign/Infit Chi-square/Infit d.f./Infit chi-square prob./Outfit chi-square/"
            "Outfit d.f./Outfit chi-square prob./Element number/Element label/Flank number/"
            "Flank label/");
}

// The words that the settings choose between, in both lists.
TEST(ScoreFields, HaveTheWordsOfTheSettings) {
  FlankTable flanks;
  flanks.FlankName.assign(1, "Raters");
  Settings settings;
  const auto words = [&](int position) {
    const ScoreField field =
        ScoreFieldsOf(settings, flanks, FlankNo(1))[static_cast<std::size_t>(position) - 1];
    return field.caption + "/" + field.heading + "/" + field.spssName + "/" + field.spssLabel;
  };
  EXPECT_EQ(words(1), "Raw score/T.Score/T.Score/Total Score (including extremes)");
  EXPECT_EQ(words(2), "Response count/T.Count/T.Count/Total Count (including extremes)");
  EXPECT_EQ(words(4),
            "Fair average score/FairMAvge/FairMAvge/Fair Average (based on Mean element measure)");
  settings.TotalScoreMode = false;
  settings.FairAverageKind = 'Z';
  EXPECT_EQ(words(1), "Raw score/Score/Score/Score (without extremes)");
  EXPECT_EQ(words(2), "Response count/Count/Count/Count (without extremes)");
  EXPECT_EQ(words(4),
            "Fair average score/FairZAvge/FairZAvge/Fair Average (based on Zero element measure)");
  settings.PointCorrelationKind = 'Y';
  EXPECT_EQ(words(11),
            "Point-biserial/PtBis/PtBis/Point-Biserial Correlation (excluding current element)");
  settings.PointCorrelationKind = 'I';
  EXPECT_EQ(
      words(11),
      "Point-biserial-I/PtBisI/PtBisI/Point-Biserial Correlation (including current element)");
  settings.PointCorrelationKind = 'N';
  EXPECT_EQ(words(11), "Point-measure/PtMea/PtMea/Point-Measure Correlation");
}

}  // namespace
}  // namespace flanks
