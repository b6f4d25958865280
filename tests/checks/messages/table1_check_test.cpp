// How statements, scales, labels and Flanks are shown in Table 1 at the end of small
// Specifications.
#include <gtest/gtest.h>

#include "support/message_case.h"

namespace flanks {
namespace {

void ExpectTable1(const std::string& name, const SpecificationLines& lines,
                  const std::vector<std::string>& table,
                  const std::vector<std::string>& absent = {}) {
  MessageCase c{name, lines};
  c.report = table;
  c.absent = absent;
  CheckSaidCase(c, FLANKS_PROGRAM);
}

TEST(Table1Of, ASmallSpecification) {
  ExpectTable1(
      "all defaults", BaseLines(),
      {"Table 1. Specifications from file \"s.txt\".", "Title = Check", "Data file = (s.txt)",
       "Output file = out.txt", "; Data specification", "Flanks = 2",
       "Delements = N  ; element identifiers are element numbers", "Non-centered = 1",
       "Positive = 1", "Labels =", "Flank 1,Persons, , ; (elements = 3, highest group = 0)",
       "Flank 2,Items, , ; (elements = 2, highest group = 0)", "Model = ?,?,R5,1",
       "; Output description", "; Convergence control", "Convergence = .5,.01,0,0",
       "Iterations (maximum) = 0 ; unlimited",
       "Xtreme scores adjusted by = .3,.5  ;(estimation, bias)"});
}

TEST(Table1Of, Statements) {
  SpecificationLines none = BaseLines();
  none.erase(none.begin() + 2);
  ExpectTable1("no Models= at all", none, {"Model = ?$,?$,D,1"});

  std::string eleven = "Models=?,1,R5";
  for (int i = 2; i <= 11; ++i) eleven += "\n?," + std::to_string(i) + ",R5";
  ExpectTable1("eleven statements", Changed(3, eleven + "\n*"),
               {"Model = ?,1,R5,1", "Model = ?,11,R5,1"}, {"...."});
  ExpectTable1("twelve statements", Changed(3, eleven + "\n?,12,R5\n*"),
               {"Model = ?,11,R5,1", "....", "*"}, {"Model = ?,12,R5,1"});
}

// Marks stand in the order -, @, #, ?, $ in front of the number, and B in front of all.
TEST(Table1Of, ReferencesAreShownInOneForm) {
  const SpecificationLines three = {"Flanks=3", "",    "Labels=", "1,A",    "1-9=a",
                                    "*",        "2,B", "1-9=b",   "*",      "3,C",
                                    "1-9=c",    "*",   "Data=",   "1,1,1,1"};
  const auto with = [&](const std::string& statement) {
    SpecificationLines lines = three;
    lines[1] = statement;
    return lines;
  };
  ExpectTable1("marks", with("Models=?B,3#,-4,R"), {"Model = B?,#3,-4,R,1"});
  ExpectTable1("a reversed range", with("Models=4-2,?,?,R"), {"Model = 2-4,?,?,R,1"});
  ExpectTable1("a range with _", with("Models=2_4,x,,R"), {"Model = 2-4,X,,R,1"});
  ExpectTable1("a line that begins with X", with("Models=\nX,?,?,R\n*"), {"Model = X,?,?,R,1"});
  ExpectTable1("weight and tail", with("Models=1,2,3,d,2.5,tail"), {"Model = 1,2,3,D,2.5,TAIL"});
}

TEST(Table1Of, AScaleIsFoundInAnyCaseAndGivesItsType) {
  ExpectTable1("a named scale",
               Changed(3,
                       "Rating scale=Mood,r3,general,keep\n0=low\n3=high\n*\n"
                       "Models=?,?,MOOD"),
               {"Rating (or other) scale = Mood,R3,General,Keep", "Model = ?,?,R3,1"},
               {"Warning (3)"});
}

TEST(Table1Of, Labels) {
  ExpectTable1("a range", Changed(6, "1-3=Kid"),
               {"Flank 1,Persons, , ; (elements = 3, highest group = 0)"});
  ExpectTable1("a reversed range", Changed(6, "3-1=Kid"),
               {"Flank 1,Persons, , ; (elements = 3, highest group = 0)"});
  ExpectTable1("the null element has no place", Changed(6, "0=None\n1=Ann"),
               {"Flank 1,Persons, , ; (elements = 3, highest group = 0)",
                "Warning (16)! Null element 0 is specified in Labels= for flank 1"});
  ExpectTable1("options and groups", Changed(5, "1,Persons,A\n1=Ann,.5,7"),
               {"Flank 1,Persons, A, ; (elements = 3, highest group = 7)"});
}

TEST(Table1Of, Orientations) {
  ExpectTable1("all", Added(2, "Positive=Y"), {"Positive = 1,2"});
  ExpectTable1("one", Added(2, "Positive=2"), {"Positive = 2"});
  ExpectTable1("the reverse", Added(2, "Negative=2"), {"Positive = 1"});
  ExpectTable1("lists before Flanks=", Added(1, "Noncenter=1"), {"Non-centered = 1"});
}

// An Extra specification takes the place of the line in the file.
TEST(Table1Of, CommentsAndDuplicates) {
  MessageCase c{"a title twice and a comment", Added(1, ";; made in May")};
  c.arguments = {"s.txt", "out.txt", "Title=New", "Umean=500,100,0"};
  c.report = {"Title = New", ";; Comments =", "  ;; made in May",
              "  Duplicate specification ignored: Title=Check",
              "Umean = 500,100,0 ; Umean, Uscale, Udecimals"};
  CheckRunCase(c, FLANKS_PROGRAM);
}

}  // namespace
}  // namespace flanks
