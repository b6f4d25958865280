// Each fault of the Specification as a user meets it: the whole line, the place that it names and
// what can be done.  The lines are put together by hand: [text ][name is: ]words: [N in line ]Error
// F and the code, the words as they stand in docs/messages.md.
#include <gtest/gtest.h>

#include "support/message_case.h"

namespace flanks {
namespace {

const std::string kIs = " Specification is: ";

void CheckAll(const std::vector<MessageCase>& cases) {
  for (const MessageCase& c : cases) CheckFaultCase(c, FLANKS_PROGRAM);
}

TEST(FaultMessages, OfTheReader) {
  CheckAll({
      {"a line without a keyword",
       Added(1, "123,abc"),
       {"123,abc" + kIs + "\"Specification=value\" expected: 2 in line Error F1",
        "  See line 2 of \"s.txt\".",
        "  To mend it: Write keyword=value, begin a comment with ;, and check the list above for "
        "its *."}},
      {"a number that is too large",
       Changed(2, "Flanks=300"),
       {"Flanks=300" + kIs + "Number invalid or greater than 255: 2 in line Error F2",
        "  See line 2 of \"s.txt\"."}},
      {"a number that is not whole",
       Changed(2, "Flanks=2.5"),
       {"Flanks=2.5" + kIs + "Non-Integer value where integer expected: 2 in line Error F28",
        "  To mend it: Give a whole number."}},
      {"no number",
       Changed(2, "Flanks=abc"),
       {"Flanks=abc" + kIs + "Non-numeric datum treated as missing: 2 in line Error F22"}},
      {"two numbers of Flanks",
       Added(3, "Flanks=3"),
       {"Flanks=3" + kIs +
        "Flanks= statement conflicts with prior flank commands: 4 in line Error F8"}},
      {"fewer Flanks than a list before has named",
       Added(1, "Noncenter=3"),
       {"Flanks=2" + kIs +
        "Flanks= statement conflicts with prior flank commands: 3 in line Error F8"}},
      {"no arrangement",
       Added(1, "Arrange=Q"),
       {"Arrange=Q" + kIs +
        "Valid arrangements are flank number (optional) then A,F,M,N,P,a,m,f,n,p: 2 in line Error "
        "F32"}},
      {"Labels= before Flanks=",
       {"Title=x", "Labels="},
       {"Labels=" + kIs + "Please specify Flanks= before this specification: 2 in line Error F34"}},
      {"units behind the labels",
       Added(13, "Umean=50"),
       {"Umean=50" + kIs +
        "Umean= and Uscale= must be specified before Labels= and Rating=: 14 in line Error F39"}},
      {"other positions than the statements have",
       Added(3, "Entered-in-data=2,0,1,1"),
       {"Entered-in-data=2,0,1,1" + kIs + "3 Entered= references do not match: 4 in line Error F45",
        " Entered= has 3 active flank positions. This must match Models="}},
      {"no null element",
       Added(1, "Keepzero=-2"),
       {"Keepzero=-2" + kIs +
        "Keepzero= value out of range: -1 to 2147483646: 2 in line Error F76"}},
      {"a line of 32,001 fields",
       Added(1, "Missing=" + std::string(32001, ',')),
       {"  See line 2 of \"s.txt\".", "  To mend it: Break the line into several."}},
  });
}

TEST(FaultMessages, OfModels) {
  CheckAll({
      {"too few fields",
       Changed(3, "Models=?,R"),
       {"Models=?,R" + kIs +
        "All Model= statements must include 2 flank locations + type [+ weight]: 3 in line Error "
        "F11"}},
      {"a keyword with M in an open list",
       Added(3, "Missing=9"),
       {"Missing=9" + kIs +
            "All Model= statements must include 2 flank locations + type [+ weight]: 4 in line "
            "Error F11",
        "  To mend it: Give a reference for each Flank and then the type, and close Models= with * "
        "before another keyword."}},
      {"too many fields",
       Changed(3, "Models=?,?,R5,1,tail,more"),
       {"Models=?,?,R5,1,tail,more" + kIs +
        "More than 5 components in Model= statement: 3 in line Error F5"}},
      {"a weight that is no number",
       Changed(3, "Models=?,?,R,abc"),
       {"Models=?,?,R,abc" + kIs +
        "Non-numeric weight in Models= specification: \"abc\" or wrong number of flanks.: 3 in "
        "line Error F60"}},
      {"an element that is no number",
       Changed(3, "Models=?,1y,R5"),
       {"? 1Y R5 1  : 1Y" + kIs +
        "Invalid element number. Must be integers in range 0 - 2147483646: 3 in line Error F23"}},
      {"a list among the Extra specifications",
       BaseLines(),
       {"Models=?,?,R Extra specifications is: Extra specification is not specification=value or "
        "is invalid: Error F18",
        "  To mend it: Put this specification into the Specification file."},
       {"s.txt", "out.txt", "Models=?,?,R"}},
  });
  for (const std::string type : {"Q", "B", "B0", "R256", "RR", "D1"}) {
    MessageCase c{"type " + type, Changed(3, "Models=?,?," + type)};
    c.screen = {"?,?," + type + ",1" + kIs +
                    "Invalid scale type (valid are D,R,B,P,M), or scale name in Model= does not "
                    "match Rating Scale=, or Flanks = does not match Models=: 3 in line Error F6",
                "  See line 3 of \"s.txt\"."};
    c.report = c.screen;  // the report is open when statements and scales are joined
    CheckFaultCase(c, FLANKS_PROGRAM);
  }
}

TEST(FaultMessages, OfStatementsWithoutEnd) {
  std::string list = "Models=";
  for (int i = 0; i <= 100'000; ++i) list += "\n?,?,R5";
  MessageCase c{"100,001 statements", Changed(3, list)};
  // The list begins behind line 3, and its last statement is one too many.
  c.screen = {"?,?,R5" + kIs + "Too many Models= specified: 100004 in line Error F53"};
  CheckFaultCase(c, FLANKS_PROGRAM);
}

TEST(FaultMessages, OfScales) {
  CheckAll({
      {"an unknown type",
       Added(3, "Rating scale=RS,Q\n0=a\n*"),
       {"Rating scale=RS,Q" + kIs +
        "Invalid scale type (valid are D,R,B,P,M), or scale name in Model= does not match Rating "
        "Scale=, or Flanks = does not match Models=: 4 in line Error F6"}},
      {"a category twice",
       Added(3, "Rating scale=RS,R3\n0=a\n1=b\n1=c\n*"),
       {"1=c" + kIs + "Duplicate category label: 7 in line Error F3"}},
      {"a category beyond the largest",
       Added(3, "Rating scale=RS,R3\n0=a\n7=b\n*"),
       {"7=b" + kIs +
        "Invalid category in Rating (or partial credit) scale= specification: 6 in line Error "
        "F15"}},
      {"a recoding range of words",
       Added(3, "Rating scale=RS,R3\n2=mid,,,a-b\n*"),
       {"2=mid,,,a-b" + kIs +
        "Rating Scale= recode range not numeric. Should be number-number: 5 in line Error F69"}},
  });
}

TEST(FaultMessages, OfLabels) {
  CheckAll({
      {"a Flank that is not there",
       Changed(5, "3,Persons"),
       {"3,Persons" + kIs + "Flank number out of range: 1-2: 5 in line Error F9"}},
      {"Flank 0",
       Changed(5, "0,Persons"),
       {"0,Persons" + kIs +
        "Labels= flank number is zero. Must be an integer in the range 1-2: 5 in line Error F71"}},
      {"a Flank twice",
       Changed(10, "1,Items"),
       {"1,Items" + kIs + "Labels= contains the same flank twice: 10 in line Error F13"}},
      {"an element that is no number",
       Changed(6, "1x=Ann"),
       {"1x=Ann" + kIs +
            "Invalid element number. Must be integers in range 0 - 2147483646: 6 in line Error "
            "F23",
        "  To mend it: Write whole numbers, as 3 or 1-30; in Labels= the label stands behind =."}},
      {"an element beyond the largest number",
       Changed(6, "2147483647=Ann"),
       {"2147483647=Ann" + kIs +
        "Invalid element number. Must be integers in range 0 - 2147483646: 6 in line Error F23"}},
      {"a group that is no number",
       Changed(6, "1=Ann,,xyz"),
       {"Invalid group number: xyz (1,1,Ann )",
        "Specification is: Invalid group number: 6 in line Error F24",
        "  See line 6 of \"s.txt\"."}},
      {"a target that is not listed",
       Changed(6, "1=Ann,,,,9"),
       {"1=Ann,,,,9" + kIs +
        "Invalid target element number in this element specification: 6 in line Error F74"}},
      {"targets in a circle",
       Changed(6, "1=Ann,,,,2\n2=Bob,,,,1"),
       {"2=Bob,,,,1" + kIs +
        "Target element number circular or nested too deep: 7 in line Error F75"}},
      {"too many elements",
       Changed(6, "1-4000001=Ann"),
       {"1-4000001=Ann" + kIs +
        "Too many elements specified in Labels=. Processed = 4000001. Maximum number of element "
        "numbers is usually about 4000000: 6 in line Error F73"}},
      {"a second Labels=",
       Added(13, "Labels=\n1,Persons\n1=Ann\n*"),
       {"Labels=" + kIs +
        "Labels= must only appear once in your Specification file: 14 in line Error F70"}},
      {"Nobuild without elements",
       {"Flanks=2", "Labels=N", "1,Persons", "*", "Data=", "1,1,3"},
       {"Warning (20)! No labels after Labels=",
        "Labels=N" + kIs + "No element labels specified after Labels=: 2 in line Error F20",
        "  See line 2 of \"s.txt\"."}},
      {"Delements= of a Flank that is not there",
       Added(2, "Delements=3L"),
       {"Delements=3L" + kIs + "Flank number out of range: 1-2: Error F9"}},
  });
}

TEST(FaultMessages, OfOtherLists) {
  CheckAll({
      {"a group label without its text",
       Added(13, "Glabel=1,2"),
       {"Glabel=1,2" + kIs +
        "Format is: Glabel = flank number, group number, group label: 14 in line Error F65"}},
      {"a Dvalue of five fields",
       Added(2, "Dvalues=2,1,1,1,1"),
       {"Dvalues=2,1,1,1,1" + kIs +
        "Dvalues= must be flank, value e.g., 3,1-4 or flank, flank, start, length, e.g., 3,2,6,2, "
        "or flank, flank, $G: 3 in line Error F54"}},
      {"a Dvalue from column 0",
       Added(2, "Dvalues=2,1,0,1"),
       {"  See line 3 of \"s.txt\".",
        "  To mend it: Name a position of the data line, and columns from 1 on."}},
      {"a Dvalue of a position that is not there",
       Added(2, "Dvalues=5,1"),
       {"Dvalues=5,1 Specification is: Field start or length problem in Dvalues=: 3 in line Error "
        "F59"}},
      {"a Dvalue from a position that is not there",
       Added(2, "Dvalues=2,5,1,1"),
       {"Dvalues=2,5,1,1 Specification is: Dvalues= references an undefined flank: 3 in line Error "
        "F66"}},
      {"a Dvalue from itself",
       Added(2, "Dvalues=2,2,1,1"),
       {"Dvalues=2,2,1,1 Specification is: Dvalues= flanks refer to themselves: 3 in line Error "
        "F68"}},
  });
}

// What a line does not tell: the fault has no line, but the file is named.
TEST(FaultMessages, OfTheWholeSpecification) {
  CheckAll({
      {"neither Flanks= nor Data=",
       {"Title=x"},
       {"Specification is: Data= not specified: Error F40",
        "  See the Specification file \"s.txt\"."}},
      {"the report would replace the Specification",
       BaseLines(),
       {"Specification is: Incompatible file usage: \"s.txt\": Error F37"},
       {"s.txt", "s.txt"}},
      {"a folder that is not there",
       BaseLines(),
       {"Specification is: Incompatible file usage: \"no/out.txt\": Error F37"},
       {"s.txt", "no/out.txt"}},
  });
}

// Line numbers run on through include files; the place is the one that an editor shows.
TEST(FaultMessages, NameTheIncludeFile) {
  CheckAll({
      {"in an include file",
       Added(1, "%more.txt"),
       {"Arrange=Q" + kIs +
            "Valid arrangements are flank number (optional) then A,F,M,N,P,a,m,f,n,p: 5 in line "
            "Error F32",
        "  See line 3 of \"more.txt\"."},
       {"s.txt", "out.txt"},
       {{"more.txt", "; one\n; two\nArrange=Q\n"}}},
      {"behind an include file",
       WithData(Added(1, "%more.txt\nArrange=Q"), "1,1,3"),
       {"  See line 3 of \"s.txt\"."},
       {"s.txt", "out.txt"},
       {{"more.txt", "; one\n; two\n"}}},
      {"elements in an include file, which are looked at later",
       Changed(6, "%more.txt"),
       {"3x=Di" + kIs +
            "Invalid element number. Must be integers in range 0 - 2147483646: 9 in line Error "
            "F23",
        "  See line 3 of \"more.txt\"."},
       {"s.txt", "out.txt"},
       {{"more.txt", "1=Ann\n4=Eve\n3x=Di\n"}}},
      {"without a name",
       Added(1, "%"),
       {"%" + kIs + "No file name: 2 in line Error F41",
        "  To mend it: Write the name of the file on the same line."}},
      {"that is not there",
       Added(1, "%more.txt"),
       {"\"more.txt\"" + kIs + "File not found: 2 in line Error F43",
        "  See line 2 of \"s.txt\"."}},
      {"that is no text",
       Added(1, "%more.txt"),
       {"% include file file - more.txt - has RTF format. Please re-format.",
        "\"more.txt\"" + kIs +
            "Invalid file format: not in DOS-Text (ASCII) format.: 2 in line Error F44"},
       {"s.txt", "out.txt"},
       {{"more.txt", "{\\rtf1 Arrange=N\n"}}},
  });
}

}  // namespace
}  // namespace flanks
