#include "spec/specification_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/spec_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Texts = std::vector<std::string>;

// ---- Fields

struct SplitCase {
  std::string line;
  std::string keyword;
  Texts fields;
};

class SplitSpecificationOf : public testing::TestWithParam<SplitCase> {};

TEST_P(SplitSpecificationOf, GivesKeywordAndFields) {
  Texts fields;
  int count = 0;
  ASSERT_TRUE(SplitSpecification(GetParam().line, fields, count));
  ASSERT_GE(fields.size(), static_cast<std::size_t>(kFewestFields));
  EXPECT_EQ(fields[0], GetParam().keyword);
  EXPECT_EQ(Texts(fields.begin() + 1, fields.begin() + 1 + count), GetParam().fields);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, SplitSpecificationOf,
    testing::Values(
        SplitCase{"Title = My title, part 2", "Title", {"My title", "part 2"}},
        SplitCase{"Umean=50,10,1", "Umean", {"50", "10", "1"}},
        SplitCase{"Data=\"my file.txt\"", "Data", {"my file.txt"}},
        SplitCase{"Flanks 3", "Flanks 3", {}},  // a blank does not separate
        SplitCase{"Models=", "Models", {}}, SplitCase{"Models=  ", "Models", {}},
        SplitCase{"1=Adam Smith,2.5,1", "", {"1", "Adam Smith", "2.5", "1"}},
        SplitCase{"1,\"A\",\"B\"", "", {"1", "\"A\"", "B"}},  // only the last loses its quotes
        SplitCase{",?,R", "", {"", "?", "R"}}, SplitCase{"Title=a=b", "Title", {"a", "b"}},
        SplitCase{"Umean\t50\t10", "Umean", {"50", "10"}}, SplitCase{"1,a,", "", {"1", "a", ""}},
        SplitCase{"Data=' \"d.txt\" '", "Data", {"d.txt"}},
        SplitCase{"Title=Ann's", "Title", {"Ann's"}}, SplitCase{"Data=\"\"", "Data", {""}},
        SplitCase{"", "", {}}, SplitCase{"*", "", {"*"}}));

TEST(SplitSpecification, DropsAndTellsOfFieldsBeyondTheLimit) {
  Texts fields;
  int count = 0;
  EXPECT_TRUE(SplitSpecification(std::string(kLargestFieldCount - 1, ','), fields, count));
  EXPECT_EQ(count, kLargestFieldCount);
  EXPECT_FALSE(SplitSpecification(std::string(kLargestFieldCount, ','), fields, count));
  EXPECT_EQ(count, kLargestFieldCount);
}

TEST(SplitSpecification, LeavesNothingOfALongerLineBefore) {
  Texts fields;
  int count = 0;
  ASSERT_TRUE(SplitSpecification("1,2,3,4", fields, count));
  ASSERT_TRUE(SplitSpecification("5", fields, count));
  EXPECT_EQ(count, 1);
  EXPECT_EQ(fields[1], "5");
  EXPECT_EQ(fields[2], "");
}

// ---- Lines

struct Reading {
  Texts lines;
  Texts comments;
  Fault fault = Fault::none;
  std::string faultText;
  std::int64_t lineNumber = 0;
};

Reading ReadAll(SpecRun& test, std::string_view text, BlankLines blankLines = BlankLines::skip) {
  SpecificationSource source;
  Reading reading;
  KeptLines comments;
  const std::string name = test.folder.write("s.txt", text);
  reading.fault = source.Open(name, "Specification", name, test.console);
  std::string_view line;
  while (source.NextSpecificationLine(test.console, blankLines, &comments, line))
    reading.lines.emplace_back(line);
  std::string comment;
  for (comments.Rewind(); comments.Next(comment);) reading.comments.push_back(comment);
  reading.fault = source.fault();
  reading.faultText = source.faultText();
  reading.lineNumber = source.lineNumber();
  return reading;
}

TEST(NextSpecificationLine, CutsCommentsAndSkipsWhatIsEmpty) {
  SpecRun test;
  const Reading reading = ReadAll(test,
                                  "Flanks=2 ; two\n"
                                  ",,  ,\n"
                                  ";\n"
                                  "  ;; keep me \n"
                                  "Title=a ;; and me\n"
                                  "\n"
                                  "Data=\"a;b\"\n"  // quotes do not protect
                                  "  Umean=5  \n");
  EXPECT_THAT(reading.lines, ElementsAre("Flanks=2", "Title=a", "Data=\"a", "Umean=5"));
  EXPECT_THAT(reading.comments, ElementsAre(";; keep me", "Title=a ;; and me"));
  EXPECT_EQ(reading.lineNumber, 8);
}

TEST(NextSpecificationLine, KeepsEmptyLinesForTheDataReader) {
  SpecRun test;
  EXPECT_THAT(ReadAll(test, "1,2\n\n; x\n , ,\n3", BlankLines::keep).lines,
              ElementsAre("1,2", "", "", "", "3"));
}

TEST(NextSpecificationLine, SendsShownCommentsToTheReportWhileDataAreRead) {
  SpecRun test;
  SpecificationSource source;
  const std::string name = test.folder.write("d.txt", " ;; half of the data\n1,2\n");
  ASSERT_EQ(source.Open(name, "Data", name, test.console), Fault::none);
  std::string_view line;
  while (source.NextSpecificationLine(test.console, BlankLines::keep, nullptr, line)) {
  }
  EXPECT_THAT(test.shell.output, ElementsAre(";; half of the data"));
}

TEST(NextSpecificationLine, TurnsControlCharactersIntoBlanksButForTheTab) {
  SpecRun test;
  EXPECT_THAT(ReadAll(test,
                      "Title=a\x01"
                      "b\tc\x0C\n\x02\n")
                  .lines,
              ElementsAre("Title=a b\tc"));
}

TEST(NextSpecificationLine, GivesTheSameLinesWhateverEndsThem) {
  for (const std::string end : {"\n", "\r\n", "\n\r"}) {
    SpecRun test;
    EXPECT_THAT(ReadAll(test, "a=1" + end + "b=2" + end).lines, ElementsAre("a=1", "b=2"));
  }
}

TEST(NextSpecificationLine, TurnsNoBreakSpacesIntoBlanksAndLeavesOtherCharacters) {
  SpecRun test;
  EXPECT_THAT(ReadAll(test,
                      "Title=a\xC2\xA0"
                      "b\n"                   // UTF-8: the pair
                      "Title=Voil\xC3\xA0\n"  // UTF-8: A0 belongs to a letter
                      "Title=a\xA0"
                      "b\n"  // not UTF-8: the byte
                      "Title=\xE9\xC2\xA0"
                      "b\n")
                  .lines,
              ElementsAre("Title=a b", "Title=Voil\xC3\xA0", "Title=a b", "Title=\xE9\xC2 b"));
}

TEST(NextSpecificationLine, DropsAByteOrderMark) {
  SpecRun test;
  EXPECT_THAT(ReadAll(test, "\xEF\xBB\xBFTitle=x\n").lines, ElementsAre("Title=x"));
}

// ---- Include files

TEST(IncludeFiles, TakeThePlaceOfTheirLineAndShareTheLineNumbers) {
  SpecRun test;
  test.folder.write("inner.txt", "b=2\n% deep.txt ; deeper\nd=4\n");
  test.folder.write("deep.txt", "c=3\n");
  const Reading reading = ReadAll(test, "a=1\n  %inner.txt\ne=5\n");
  EXPECT_THAT(reading.lines, ElementsAre("a=1", "b=2", "c=3", "d=4", "e=5"));
  EXPECT_EQ(reading.lineNumber, 7);  // the lines with % count as well
  EXPECT_THAT(test.shell.Screen(), HasSubstr("Reading % include file: inner.txt\n"));
}

TEST(IncludeFiles, MayHaveTheirNamesInQuotes) {
  SpecRun test;
  test.folder.write("with blank.txt", "b=2\n");
  EXPECT_THAT(ReadAll(test, "a=1\n% \"with blank.txt\" ; quoted\nc=3\n").lines,
              ElementsAre("a=1", "b=2", "c=3"));
  EXPECT_EQ(ReadAll(test, "%\"\"\n").fault, Fault::noFileName);
}

// The running number of a line leads to its file and its number there.
TEST(IncludeFiles, ArePlacesOfTheirOwn) {
  SpecRun test;
  const std::string inner = test.folder.write("inner.txt", "b=2\n%empty.txt\n%deep.txt\nd=4\n");
  test.folder.write("deep.txt", "c=3\n");
  test.folder.write("empty.txt", "");
  const std::string top = test.folder.write("s.txt", "a=1\n%inner.txt\ne=5\n");
  SpecificationSource source;
  ASSERT_EQ(source.Open(top, "Specification", top, test.console), Fault::none);
  std::string_view line;
  while (source.NextSpecificationLine(test.console, BlankLines::skip, nullptr, line)) {
  }
  struct Case {
    int number;
    std::string file;
    int line;
  };
  const Case cases[] = {{1, "s.txt", 1},     {2, "s.txt", 2},     {3, "inner.txt", 1},
                        {4, "inner.txt", 2}, {5, "inner.txt", 3}, {6, "deep.txt", 1},
                        {7, "inner.txt", 4}, {8, "s.txt", 3}};
  for (const Case& c : cases) {
    EXPECT_EQ(source.PlaceOf(c.number).file, test.folder.file(c.file)) << c.number;
    EXPECT_EQ(source.PlaceOf(c.number).line, c.line) << c.number;
  }
  EXPECT_EQ(source.PlaceOf(0).line, 0);
}

TEST(IncludeFiles, APercentSignWithinALineIsOrdinary) {
  SpecRun test;
  EXPECT_THAT(ReadAll(test, "Title=50% of all\n").lines, ElementsAre("Title=50% of all"));
}

TEST(IncludeFiles, AnEmptyOneGivesNothing) {
  SpecRun test;
  test.folder.write("empty.txt", "");
  EXPECT_THAT(ReadAll(test, "a=1\n%empty.txt\nb=2\n").lines, ElementsAre("a=1", "b=2"));
}

TEST(IncludeFiles, BehindTwentyLevelsTheLineIsOrdinary) {
  SpecRun test;
  const Reading reading = ReadAll(test, "%s.txt\n");
  EXPECT_EQ(reading.fault, Fault::none);
  EXPECT_EQ(reading.lines, Texts{"%s.txt"});
  EXPECT_EQ(reading.lineNumber, 21);
}

// Twenty levels of a file with two such lines would be a million files.
TEST(IncludeFiles, BehindTenThousandFilesTheLineIsOrdinary) {
  SpecRun test;
  const Reading reading = ReadAll(test, "%s.txt\n%s.txt\n");
  EXPECT_EQ(reading.fault, Fault::none);
  // The top file and the 10,000 have two lines each; a line that opened a file is not among them.
  EXPECT_EQ(reading.lineNumber, 2 * 10001);
  EXPECT_EQ(reading.lines.size(), 10002u);
}

// The lines of a scale's list that are no categories say nothing, so that no fault ends the run.
TEST(IncludeFiles, AScaleThatIncludesItsFileComesToAnEnd) {
  SpecRun test;
  test.Read("Flanks=2\nRating scale=S,R3\n%s.txt\n%s.txt\n%s.txt\n");
  EXPECT_EQ(test.fault(), Fault::none) << test.FaultText();
  EXPECT_GT(test.analysis.design.ScaleLast, 0);
}

struct IncludeFaultCase {
  std::string line;
  Fault fault;
  std::string text;
};

TEST(IncludeFiles, ThatCannotBeReadEndTheReading) {
  const IncludeFaultCase cases[] = {
      {"%", Fault::noFileName, "%"},
      {"% ;none", Fault::noFileName, "% ;none"},
      {"%a*.txt", Fault::badFileName, "%a*.txt"},
      {"%folder/", Fault::badFileName, "%folder/"},
      {"%nowhere.txt", Fault::fileNotFound, "\"nowhere.txt\""},
  };
  for (const IncludeFaultCase& c : cases) {
    SpecRun test;
    const Reading reading = ReadAll(test, "a=1\n" + c.line + "\nb=2\n");
    EXPECT_THAT(reading.lines, ElementsAre("a=1"));
    EXPECT_EQ(reading.fault, c.fault) << c.line;
    EXPECT_EQ(reading.faultText, c.text);
    EXPECT_EQ(reading.lineNumber, 2);
  }
}

TEST(IncludeFiles, OfAnotherFormatAreNamedWithTheirRole) {
  SpecRun test;
  const std::string name = test.folder.write("i.rtf", "{\\rtf1 a}\n");
  EXPECT_EQ(ReadAll(test, "%i.rtf\n").fault, Fault::badFileFormat);
  EXPECT_THAT(test.shell.Screen(), HasSubstr("% include file file - " + name +
                                             " - has RTF format. Please re-format.\n"));
}

TEST(SpecificationSource, RefusesFilesOfAnotherFormat) {
  struct FormatCase {
    std::string bytes, format;
  };
  const FormatCase cases[] = {{"a=1\rb=2\r", "incorrect end-of-line"},
                              {"{\\rtf1", "RTF"},
                              {"\xFF\xFE"
                               "a",
                               "Unicode"}};
  for (const FormatCase& c : cases) {
    SpecRun test;
    SpecificationSource source;
    const std::string name = test.folder.write("s.txt", c.bytes);
    EXPECT_EQ(source.Open(name, "Specification", name, test.console), Fault::badFileFormat);
    EXPECT_EQ(test.shell.Screen(), "Specification file - " + name + " - has " + c.format +
                                       " format. Please re-format.\n");
  }
}

// ---- What handlers use

TEST(ParseWhole, SetsTheFaultWithItsText) {
  struct WholeCase {
    std::string text;
    std::int32_t value;
    Fault fault;
  };
  const WholeCase cases[] = {
      {"12", 12, Fault::none},     {"-12", 12, Fault::none},
      {"3x", 3, Fault::none},      {"300", 0, Fault::numberTooLarge},
      {"2.5", 2, Fault::notWhole}, {"abc", 0, Fault::notNumeric},
      {"0", 0, Fault::none},       {"255", 255, Fault::none},
  };
  for (const WholeCase& c : cases) {
    SpecRun test;
    SpecContext context = test.context();
    EXPECT_EQ(ParseWhole(context, c.text, 255), c.value) << c.text;
    EXPECT_EQ(test.fault(), c.fault) << c.text;
    EXPECT_EQ(test.analysis.reading.fault.text, c.fault == Fault::none ? "" : c.text);
  }
}

// A context whose Specification is `text`, with the first line fetched.
struct FetchedRun : SpecRun {
  explicit FetchedRun(std::string_view text) {
    const std::string name = folder.write("s.txt", text);
    analysis.specification.source = std::make_unique<SpecificationSource>();
    EXPECT_EQ(analysis.specification.source->Open(name, "Specification", name, console),
              Fault::none);
    SpecContext parts = context();
    FetchLine(parts);
  }
  std::string Field(std::size_t index) const { return analysis.reading.Fields[index]; }
};

TEST(FetchLine, KeepsTheLineAsItStandsAndItsNumber) {
  FetchedRun test(";\n  Title = x ; y\n");
  EXPECT_EQ(test.Field(0), "Title");
  EXPECT_EQ(test.Field(1), "x");
  EXPECT_EQ(test.analysis.reading.SourceLine, "  Title = x ; y");
  EXPECT_EQ(test.analysis.reading.LineNumber, 2);
}

TEST(FetchLine, LeavesEmptyFieldsAtTheEnd) {
  FetchedRun test("a=1\n");
  SpecContext context = test.context();
  EXPECT_FALSE(context.state.EndOfSpecification);  // the last line was read, but no end was met
  FetchLine(context);
  EXPECT_TRUE(context.state.EndOfSpecification);
  EXPECT_EQ(test.analysis.reading.FieldCount, 0);
  EXPECT_EQ(test.Field(0) + test.Field(1), "");
}

TEST(FetchLine, ReadsNoFurtherWhenTheUserBreaksOff) {
  FetchedRun test("1\n2\n3\n");
  test.process.control.CancelRequested = true;
  SpecContext context = test.context();
  FetchLine(context);
  EXPECT_TRUE(context.state.EndOfSpecification);
}

TEST(FetchLine, TooManyFieldsAreAFault) {
  FetchedRun test(std::string(kLargestFieldCount, ',') + "x\n");
  EXPECT_EQ(test.fault(), Fault::tooManyFields);
}

TEST(FetchIfEmpty, GoesOnToTheFirstLineWithAValue) {
  FetchedRun test("X=\n\n 7,8\n");
  test.analysis.reading.Fields[0].clear();
  SpecContext context = test.context();
  FetchIfEmpty(context);
  EXPECT_EQ(test.Field(1), "7");
}

TEST(FetchIfEmpty, AtTheEndTheListIsOver) {
  FetchedRun test("X=\n");
  test.analysis.reading.Fields[0].clear();
  SpecContext context = test.context();
  FetchIfEmpty(context);
  EXPECT_EQ(test.Field(1), "*");
  EXPECT_EQ(test.analysis.reading.FieldCount, 1);
}

TEST(FetchIfEmpty, DoesNotPassOverAKeyword) {
  FetchedRun test("X=\nLabels=\n1,a\n");
  test.analysis.reading.Fields[0].clear();
  SpecContext context = test.context();
  FetchIfEmpty(context);
  EXPECT_EQ(test.Field(0), "Labels");
}

TEST(IsListLine, EndsAtAStarWhichIsTaken) {
  FetchedRun test("*\n");
  SpecContext context = test.context();
  EXPECT_FALSE(IsListLine(context));
  EXPECT_FALSE(context.state.lineLeft);
}

TEST(IsListLine, EndsAtAKeywordWhichIsLeft) {
  FetchedRun test("Title=x\n");
  SpecContext context = test.context();
  EXPECT_FALSE(IsListLine(context));
  EXPECT_TRUE(context.state.lineLeft);
}

TEST(IsListLine, ExtraSpecificationsHaveNoFurtherLines) {
  SpecRun test;
  SpecContext context = test.context();
  context.state.ReadingExtras = true;
  FetchLine(context);
  EXPECT_FALSE(IsListLine(context));
}

// ---- The whole

TEST(ReadSpecification, AppliesTheLinesInOrder) {
  SpecRun test;
  test.Read("Flanks=2\n*\nTitle=One, two\nUmean=50,10\n");
  EXPECT_EQ(test.fault(), Fault::none) << test.FaultText();
  EXPECT_EQ(test.analysis.design.FlankCount, 2);
  EXPECT_EQ(test.analysis.settings.Title, "One, two");
  EXPECT_EQ(test.analysis.settings.Uscale, 10.0f);
}

TEST(ReadSpecification, EndsWhereTheDataBegin) {
  SpecRun test;
  test.Read("Flanks=2\nData=\n1,1,3\n");
  EXPECT_EQ(test.fault(), Fault::none);
  EXPECT_TRUE(test.analysis.specification.InlineData);
  ASSERT_NE(test.analysis.specification.source, nullptr);
  std::string_view line;
  ASSERT_TRUE(test.analysis.specification.source->NextSpecificationLine(
      test.console, BlankLines::keep, nullptr, line));
  EXPECT_EQ(line, "1,1,3");
  EXPECT_EQ(test.analysis.specification.source->lineNumber(), 3);
}

TEST(ReadSpecification, NamesTheLineAtFault) {
  struct FaultCase {
    std::string text, report;
  };
  const FaultCase cases[] = {
      {"Title=x\n123,abc\n",
       "123,abc Specification is: \"Specification=value\" expected: 2 in line Error F1"},
      {"Title=x\n  ,5\n",
       ",5 Specification is: \"Specification=value\" expected: 2 in line Error F1"},
      {"\n%\n", "% Specification is: No file name: 2 in line Error F41"},
      {"Flanks=300\n",
       "Flanks=300 Specification is: Number invalid or greater than 255: 1 in line Error F2"},
      {"Flanks=2.5\n",
       "Flanks=2.5 Specification is: Non-Integer value where integer expected: 1 in line Error "
       "F28"},
      {"Entered-in-data=1\n",
       "Entered-in-data=1 Specification is: Please specify Flanks= before this specification: "
       "1 in line Error F34"},
  };
  for (const FaultCase& c : cases) {
    SpecRun test;
    test.Read(c.text);
    EXPECT_EQ(test.FaultText(), c.report);
  }
}

TEST(ReadSpecification, AFileThatIncludesItselfEndsInAFault) {
  SpecRun test;
  test.Read("%s.txt\n%s.txt\n");
  EXPECT_EQ(test.fault(), Fault::notSpecificationValue);
  EXPECT_EQ(test.analysis.reading.fault.lineNumber, 21);
}

TEST(ReadSpecification, ShowsLittleOfAnEndlessLine) {
  SpecRun test;
  test.Read(std::string(100000, ',') + "5\n");
  EXPECT_EQ(test.fault(), Fault::tooManyFields);
  EXPECT_LT(test.FaultText().size(), 1000u);
}

}  // namespace
}  // namespace flanks
