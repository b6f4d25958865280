// Damaged files of other programs: broken off at each fiftieth, with changed bytes, under a wrong
// name, locked, far too large when unpacked.  Each ends in words, in little time and memory.
//
// What the program itself reads (.xlsx, the packing of .rda) must not even crash in the process
// that is there for it; the libraries for the other kinds may.
#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "import/conversion_child.h"
#include "support/analysis_run.h"
#include "support/flanks_sandbox.h"
#include "support/import_files.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr int kPieces = 50;

TestTable Rows(int count) {
  TestTable table;
  for (int i = 1; i <= count; ++i)
    table.push_back({static_cast<double>(i), "Item " + std::to_string(i % 7), i % 5 * 1.0, 2.0});
  return table;
}

std::string Workbook() {
  return XlsxBytes({{{"Marks", SheetData(Rows(40))}}, "<si><t>a</t></si>", "", ""});
}

struct Sample {
  std::string name;
  std::string bytes;
};

std::vector<Sample> Samples() {
  const std::filesystem::path stored =
      std::filesystem::path(FLANKS_SOURCE_DIR) / "tests/unit/import";
  return {{"d.xlsx", Workbook()},
          {"d.xls", ReadWholeFile(stored / "kinds.xls")},
          {"d.xls", ReadWholeFile(stored / "empty-text.xls")},
          {"d.sav", PackageBytes("sav", Rows(40))},
          {"d.dta", PackageBytes("dta", Rows(40))},
          {"d.sas7bdat", PackageBytes("sas7bdat", Rows(40))},
          {"d.rda", RdataBytes("d", Rows(40))},
          {"d.rdata", GzipBytes(RdataBytes("d", Rows(40)))}};
}

// Converts in a child, as the program does.
class Converter {
 public:
  ConversionEnd Convert(const std::string& name, const std::string& bytes) {
    ConversionRequest request;
    request.name = ReadImportName(name);
    request.name.file = folder_.write(request.name.file, bytes);
    request.textFile = folder_.write("text", "");
    request.scratchFile = folder_.write("scratch", "");
    ChildLimits limits;
    limits.secondsWithoutRows = 5;
    const ConversionEnd end =
        RunInChild([&](const ConversionWatch& watch) { return ConvertFile(request, watch); }, {},
                   [] { return false; }, limits);
    std::filesystem::remove(request.name.file);
    return end;
  }

 private:
  ScratchFolder folder_;
};

bool Crashed(const ConversionEnd& end) {
  return end.text.find("reading it broke off") != std::string::npos ||
         end.text.find("took too long") != std::string::npos;
}

void ExpectWords(const ConversionEnd& end, const std::string& name, const std::string& what) {
  EXPECT_EQ(end.kind, ConversionEnd::Kind::failed) << name << " " << what;
  EXPECT_NE(end.text, "") << name << " " << what;
  const bool own = name == "d.xlsx" || name == "d.rdata";
  EXPECT_FALSE(own && Crashed(end)) << name << " " << what;
}

TEST(DamagedImport, AFileThatIsBrokenOffFails) {
  Converter converter;
  for (const auto& [name, bytes] : Samples()) {
    ASSERT_TRUE(converter.Convert(name, bytes).done()) << name;
    for (int piece = 0; piece < kPieces; ++piece) {
      const std::size_t length = bytes.size() * static_cast<std::size_t>(piece) / kPieces;
      ExpectWords(converter.Convert(name, bytes.substr(0, length)), name,
                  "cut at " + std::to_string(length));
    }
  }
}

// Changed bytes may leave data of another value; all else ends in words.
void ExpectChangesAreBorne(int changes, unsigned seed) {
  Converter converter;
  std::mt19937 random(seed);
  for (const auto& [name, bytes] : Samples()) {
    int crashes = 0;
    for (int i = 0; i < changes; ++i) {
      std::string changed = bytes;
      for (int flips = 1 + i % 4; flips > 0; --flips)
        changed[random() % changed.size()] = static_cast<char>(random());
      const auto start = std::chrono::steady_clock::now();
      const ConversionEnd end = converter.Convert(name, changed);
      EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
      EXPECT_TRUE(end.done() || !end.text.empty()) << name << " seed " << seed << " change " << i;
      EXPECT_FALSE(name == "d.xlsx" && Crashed(end)) << "seed " << seed << " change " << i;
      crashes += Crashed(end) ? 1 : 0;
    }
    ::testing::Test::RecordProperty("crashes of " + name, crashes);
    std::printf("%s: %d of %d changes ended the child\n", name.c_str(), crashes, changes);
  }
}

TEST(DamagedImport, ChangedBytesEndInWords) {
  ExpectChangesAreBorne(15, 1);
}

TEST(SlowDamagedImport, ChangedBytesEndInWords) {
  ExpectChangesAreBorne(600, std::random_device()());
}

TEST(DamagedImport, AWrongEndingFails) {
  Converter converter;
  const std::vector<Sample> samples = Samples();
  for (const Sample& sample : samples)
    for (const Sample& other : samples)
      if (sample.name.substr(0, 4) != other.name.substr(0, 4))
        ExpectWords(converter.Convert(other.name, sample.bytes), other.name, "is " + sample.name);
}

TEST(DamagedImport, AFolderOrAPipeFails) {
  AnalysisRun run;
  std::filesystem::create_directory(run.folder.file("d.xlsx"));
  run.Analyze("Flanks=1\nModels=?,R5\nLabels=\n1,P\n1-9\n*\nData=d.xlsx\n");
  EXPECT_THAT(run.Screen(), HasSubstr("Conversion failed: d.xlsx: it is a folder\n"));
}

// The whole program, on a file of each kind that is cut in half.
TEST(DamagedImport, TheRunEndsInOrder) {
  for (const char* program : {FLANKS_PROGRAM, FLANKS_CHECKED_PROGRAM})
    for (const auto& [name, bytes] : Samples()) {
      const FlanksSandbox sandbox;
      sandbox.Write(name, bytes.substr(0, bytes.size() / 2));
      sandbox.Write("s.txt", "Flanks=1\nModels=?,R5\nLabels=\n1,P\n1-9\n*\nData=" + name + "\n");
      const ProgramResult result = RunProgram(sandbox.Call(program, {"s.txt"}));
      EXPECT_EQ(result.exitStatus, 1) << result.output;
      EXPECT_EQ(result.errors, "");
      EXPECT_THAT(result.output, HasSubstr("Conversion failed: " + name + ": "));
      EXPECT_THAT(result.output, HasSubstr("\"" + name + "\" File not found: Error F43\n"));
      EXPECT_THAT(sandbox.TemporaryFiles(), IsEmpty());
    }
}

// Each is small, and far more than a sheet or data when it is unpacked; one repeats a long text.
TEST(DamagedImport, ABombEndsInLittleMemory) {
  const FlanksSandbox sandbox;
  std::string zeros(70'000'000, '\0');
  sandbox.Write("d.rda", GzipBytes("RDX2\nX\n" + zeros));
  auto parts = XlsxParts({{{"A", "<sheetData/>"}}, "", "", ""});
  for (auto& [partName, bytes] : parts)
    if (partName == "xl/sharedStrings.xml") bytes.insert(bytes.size() - 6, zeros);
  sandbox.Write("d.xlsx", ZipBytes(parts));
  TestWorkbook repeating{{{"A", ""}}, "<si><t>" + std::string(32000, 'x') + "</t></si>", "", ""};
  std::string& rows = repeating.sheets[0].data = "<sheetData>";
  for (int i = 0; i < 10000; ++i) rows += "<row><c t='s'><v>0</v></c></row>";
  rows += "</sheetData>";
  sandbox.Write("e.xlsx", XlsxBytes(repeating));
  for (const auto& [name, reason] : std::vector<std::pair<std::string, const char*>>{
           {"d.rda", "it unpacks to far more than data do"},
           {"d.xlsx", "it unpacks to far more than a workbook does"},
           {"e.xlsx", "its text is out of all proportion to its size"}}) {
    sandbox.Write("s.txt", "Flanks=1\nModels=?,R5\nLabels=\n1,P\n1-9\n*\nData=" + name + "\n");
    ProgramCall call = sandbox.Call(FLANKS_PROGRAM, {"s.txt"});
    call.memoryLimit = std::uint64_t{200} << 20;
    EXPECT_THAT(RunProgram(call).output, HasSubstr("Conversion failed: " + name + ": " + reason));
    EXPECT_THAT(sandbox.TemporaryFiles(), IsEmpty());
  }
}

TEST(DamagedImport, ADiskThatIsFullIsTold) {
  const FlanksSandbox sandbox;
  sandbox.Write("d.xlsx", XlsxBytes({{{"A", SheetData(Rows(20000))}}, "", "", ""}));
  sandbox.Write("s.txt", "Flanks=1\nModels=?,R5\nLabels=\n1,P\n1-9\n*\nData=d.xlsx\n");
  ProgramCall call = sandbox.Call(FLANKS_PROGRAM, {"s.txt"});
  call.fileSizeLimit = 100'000;
  const ProgramResult result = RunProgram(call);
  EXPECT_THAT(result.output, HasSubstr("Conversion failed: d.xlsx: its text cannot be written: "));
  EXPECT_THAT(sandbox.TemporaryFiles(), IsEmpty());
}

TEST(DamagedImport, CtrlCEndsALongConversion) {
  const FlanksSandbox sandbox;
  sandbox.Write("d.xlsx", XlsxBytes({{{"A", SheetData(Rows(60000))}}, "", "", ""}));
  sandbox.Write("s.txt", "Flanks=1\nModels=?,R5\nLabels=\n1,P\n1-9\n*\nData=d.xlsx\n");
  ProgramCall call = sandbox.Call(FLANKS_PROGRAM, {"s.txt"});
  call.interruptAt = "Waiting for imported";
  const auto start = std::chrono::steady_clock::now();
  const ProgramResult result = RunProgram(call);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ(result.exitStatus, 51) << result.output;
  EXPECT_THAT(result.output, Not(HasSubstr("Assigning models")));
  EXPECT_THAT(sandbox.TemporaryFiles(), IsEmpty());
}

}  // namespace
}  // namespace flanks
