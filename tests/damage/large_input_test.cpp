// Input of sizes that nobody means to give: Specifications and lines of many megabytes, fields
// without end, include files within include files.  Each ends in its fault, with its words, in a
// memory that stays flat or, where one line is all there is, a few times the line; nothing is left
// behind.  The slow forms are those of bench/RESULTS.md and print how long they took.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "support/flanks_sandbox.h"
#include "support/program_runner.h"

namespace flanks {
namespace {

constexpr std::size_t kMegabyte = 1'000'000;
constexpr std::uint64_t kFlatBytes = 40'000'000;  // of address space: enough for a small run

// One kind of text: its beginning, and lines in endless number.
struct Kind {
  const char* name;
  const char* head;
  std::function<std::string(std::size_t)> line;  // line number, from 1
  const char* fault;                             // of the text at ten megabytes
  const char* faultOfHundred;                    // and at a hundred
  std::uint64_t bytesOfEachByte;                 // beside the flat ones
};

std::function<std::string(std::size_t)> Always(const std::string& line) {
  return [line](std::size_t) { return line; };
}

std::string RandomBytes(std::size_t number) {
  std::mt19937 random(static_cast<unsigned>(number) + 1);
  std::string bytes(1000, ' ');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

const std::vector<Kind>& SpecificationKinds() {
  static const std::vector<Kind> kinds = {
      {"one keyword again and again", "", Always("Title=the title of an analysis\n"), "Error F40",
       "Error F40", 0},
      {"comments for the report", "", Always(";; a comment that the report is to show\n"),
       "Error F40", "Error F40", 0},
      {"nothing but comment marks", "", Always(";;\n"), "Error F40", "Error F40", 0},
      {"blank lines", "", Always("\n"), "Error F40", "Error F40", 0},
      {"ends of lists", "", Always("*\n"), "Error F40", "Error F40", 0},
      // Room for the numbers of 100 MB, which are refused before there is a table of elements.
      {"one list of labels", "Flanks=1\nLabels=\n1,Persons\n",
       [](std::size_t number) {
         return std::to_string(number) + "=Person " + std::to_string(number) + "\n";
       },
       "Error F40", "Error F73", 12},
      {"the null element in its labels", "Flanks=1\nLabels=\n1,Persons\n", Always("0=nobody\n"),
       "Error F40", "Error F73", 6},
      {"one list of statements", "Flanks=2\nModels=\n", Always("?,?,R5\n"), "Error F53",
       "Error F53", 0},
      {"random bytes", "Title=x\n", RandomBytes, "Error F1", "Error F1", 0},
      {"an include file that is not there", "", Always("%none.txt\n"), "Error F43", "Error F43", 0},
  };
  return kinds;
}

// Not held in memory: what this process holds would count for the program that it starts.
void WriteKind(const FlanksSandbox& sandbox, const std::string& name, const Kind& kind,
               std::size_t bytes) {
  std::ofstream out(sandbox.Top() / "run" / name, std::ios::binary);
  out << kind.head;
  std::size_t written = 0;
  for (std::size_t number = 1; written < bytes; ++number) {
    const std::string line = kind.line(number);
    out << line;
    written += line.size();
  }
}

void WriteLongLine(const FlanksSandbox& sandbox, const std::string& name, const std::string& head,
                   const std::string& piece, std::size_t bytes, const std::string& tail = "\n") {
  std::ofstream out(sandbox.Top() / "run" / name, std::ios::binary);
  out << head;
  for (std::size_t written = 0; written < bytes; written += piece.size()) out << piece;
  out << tail;
}

struct Ended {
  ProgramResult result;
  double seconds = 0.0;
};

Ended RunIn(const FlanksSandbox& sandbox, std::uint64_t bytes) {
  ProgramCall call = sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "report.txt", "Batch=Y"});
  call.timeLimit = std::chrono::minutes(20);
  call.memoryLimit = bytes;
  const auto start = std::chrono::steady_clock::now();
  Ended ended{RunProgram(call)};
  ended.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return ended;
}

void ExpectFault(const ProgramResult& result, const FlanksSandbox& sandbox,
                 const std::string& fault) {
  const std::string end = result.output.substr(result.output.size() -
                                               std::min<std::size_t>(result.output.size(), 2000));
  EXPECT_EQ(result.exitStatus, 1) << end;
  EXPECT_EQ(result.signal, 0);
  EXPECT_NE(end.find(fault + "\n"), std::string::npos) << end;
  EXPECT_NE(end.find("Execution halted"), std::string::npos) << end;
  EXPECT_TRUE(sandbox.TemporaryFiles().empty());
}

void ExpectEveryKindEnds(std::size_t megabytes, bool print) {
  for (const Kind& kind : SpecificationKinds()) {
    SCOPED_TRACE(kind.name);
    const FlanksSandbox sandbox;
    WriteKind(sandbox, "spec.txt", kind, megabytes * kMegabyte);
    const std::size_t bytes = megabytes * kMegabyte;
    const Ended ended = RunIn(sandbox, kFlatBytes + kind.bytesOfEachByte * bytes);
    ExpectFault(ended.result, sandbox, megabytes < 100 ? kind.fault : kind.faultOfHundred);
    if (print) std::cout << megabytes << " MB, " << kind.name << ": " << ended.seconds << " s\n";
  }
}

TEST(LargeSpecification, OfAnyKindEndsInItsFaultInFlatMemory) {
  ExpectEveryKindEnds(4, /*print=*/false);
}

TEST(SlowLargeSpecification, OfAHundredMegabytesEndsInItsFaultInFlatMemory) {
  ExpectEveryKindEnds(100, /*print=*/true);
}

// ---- One line

constexpr const char* kSmallSpecification =
    "Flanks=2\nModels=?,?,R2\nLabels=\n1,Persons\n1-3=p\n*\n2,Items\n1-3=i\n*\nData=data.txt\n";
constexpr std::uint64_t kTimesALine = 10;  // of the address space

struct LongLine {
  const char* name;
  const char* file;
  const char* head;
  const char* piece;
  const char* tail;
  const char* fault;
};

const std::vector<LongLine>& LongLines() {
  static const std::vector<LongLine> lines = {
      {"a title", "spec.txt", "Title=", "a word and ", "\n", "Error F40"},
      {"a keyword", "spec.txt", "", "Title", "=x\n", "Error F40"},
      {"no keyword", "spec.txt", "", "1234567 ", "\n", "Error F1"},
      {"a comment for the report", "spec.txt", ";;", "a word and ", "\n", "Error F40"},
      {"fields", "spec.txt", "Missing=", "9,", "\n", "Error F67"},
      {"the name of an include file", "spec.txt", "%", "name", "\n", "Error F43"},
      {"quotes", "spec.txt", "Title=", "\"' ", "\n", "Error F40"},
      {"an expression", "spec.txt", "Umean=", "1+", "1\n", "COMPUTE1: DEPTH 27+: "},
      {"an element number", "data.txt", "", "1", ",1,2\n", "Error F231"},
      {"fields of data", "data.txt", "1,1", ",2", "\n", "Error F67"},
      {"blanks between data", "data.txt", "1 1", "          2", "\n", "Error F67"},
      {"blanks without data", "data.txt", "1,1,2\n", "          ", "\n1\n", "Error F27"},
      {"a range", "data.txt", "", "1-", "2,1,2\n", "Error F231"},
      {"a weight", "data.txt", "R", "9", ",1,1,2\n", "Error F231"},
      {"no line end, no field", "data.txt", "", "x", "", "Error F27"},
  };
  return lines;
}

void ExpectEveryLineEnds(std::size_t megabytes, bool print) {
  for (const LongLine& line : LongLines()) {
    SCOPED_TRACE(line.name);
    const FlanksSandbox sandbox;
    sandbox.Write("spec.txt", kSmallSpecification);
    WriteLongLine(sandbox, line.file, line.head, line.piece, megabytes * kMegabyte, line.tail);
    const Ended ended = RunIn(sandbox, kFlatBytes + kTimesALine * megabytes * kMegabyte);
    const std::string fault = line.fault;
    if (fault.starts_with("Error")) {
      ExpectFault(ended.result, sandbox, fault);
    } else {
      EXPECT_EQ(ended.result.exitStatus, 1);
      EXPECT_NE(ended.result.output.find(fault), std::string::npos);
    }
    if (print)
      std::cout << "a line of " << megabytes << " MB, " << line.name << ": " << ended.seconds
                << " s\n";
  }
}

TEST(LongLine, EndsInItsFaultInAFewTimesItsMemory) {
  ExpectEveryLineEnds(2, /*print=*/false);
}

TEST(SlowLongLine, OfFiftyMegabytesEndsInItsFault) {
  ExpectEveryLineEnds(50, /*print=*/true);
}

// ---- Fields

std::string Fields(int count, const std::string& field) {
  std::string line = field;
  for (int i = 1; i < count; ++i) line += "," + field;
  return line + "\n";
}

TEST(FieldLimit, Is32000InDataAndInASpecification) {
  for (const int count : {32'000, 32'001}) {
    const FlanksSandbox data;
    data.Write("spec.txt", kSmallSpecification);
    // More responses than the elements have: they all belong to the same two.
    data.Write("data.txt", "1,2,1\n2,1,0\n3,3,2\n2,3,1\n" + Fields(count, "1"));
    const ProgramResult result = RunIn(data, kFlatBytes).result;
    if (count > 32'000)
      ExpectFault(result, data, "Error F67");
    else
      EXPECT_NE(result.output.find("Valid responses used for estimation = 32002"),
                std::string::npos)
          << result.output;

    const FlanksSandbox specification;
    specification.Write("spec.txt", "Missing=" + Fields(count, "9"));
    ExpectFault(RunIn(specification, kFlatBytes).result, specification,
                count > 32'000 ? "Error F67" : "Error F40");
  }
}

// ---- Include files

// a1.txt holds "%a2.txt", and so on; the last of `files` a title.
void WriteNest(const FlanksSandbox& sandbox, int files) {
  sandbox.Write("spec.txt", "%a1.txt\n" + std::string(kSmallSpecification));
  for (int file = 1; file < files; ++file)
    sandbox.Write("a" + std::to_string(file) + ".txt", "%a" + std::to_string(file + 1) + ".txt\n");
  sandbox.Write("a" + std::to_string(files) + ".txt", "Title=within\n");
  sandbox.Write("data.txt", "1,1,0\n1,2,1\n1,3,2\n2,1,1\n2,2,2\n2,3,0\n3,1,1\n3,2,0\n3,3,1\n");
}

TEST(IncludeFiles, TwentyWithinEachOtherAreRead) {
  const FlanksSandbox sandbox;
  WriteNest(sandbox, 20);
  const ProgramResult result = RunIn(sandbox, kFlatBytes).result;
  EXPECT_EQ(result.exitStatus, 0) << result.output;
  EXPECT_NE(sandbox.Read("report.txt").find("\nTitle = within\n"), std::string::npos);
}

TEST(IncludeFiles, ATwentyFirstIsALineThatIsNotUnderstood) {
  const FlanksSandbox sandbox;
  WriteNest(sandbox, 21);
  const ProgramResult result = RunIn(sandbox, kFlatBytes).result;
  ExpectFault(result, sandbox, "Error F1");
  EXPECT_NE(result.output.find("%a21.txt Specification is: \"Specification=value\" expected: 21 in "
                               "line Error F1\n"),
            std::string::npos)
      << result.output;
}

TEST(IncludeFiles, OneThatIncludesItselfEndsInAFault) {
  const FlanksSandbox sandbox;
  sandbox.Write("spec.txt", "%spec.txt\n");
  ExpectFault(RunIn(sandbox, kFlatBytes).result, sandbox, "Error F1");
  const FlanksSandbox data;
  data.Write("spec.txt", kSmallSpecification);
  data.Write("data.txt", "1,1,2\n%data.txt\n");
  ExpectFault(RunIn(data, kFlatBytes).result, data, "Error F27");
}

}  // namespace
}  // namespace flanks
