// Lines of data: split, elements found, statements matched, records written.
//
// The digits of the input's first line choose the design; the other lines are data.  Each is split
// alone, and all go twice through the data pass, by its short cut and without it, which must do the
// same.
#include <cmath>
#include <string>
#include <vector>

#include "base/text.h"
#include "data/data_line.h"
#include "fuzz_checks.h"
#include "support/data_design.h"

namespace flanks {
namespace {

using Texts = std::vector<std::string>;

// The choices of the first line, one after the other; 0 when there are no more.
class Choices {
 public:
  explicit Choices(std::string_view digits) : digits_(digits) {}
  std::size_t Of(std::size_t count) {
    const bool has = at_ < digits_.size() && IsDigit(digits_[at_]);
    const std::size_t digit = has ? static_cast<std::size_t>(digits_[at_] - '0') : 0;
    ++at_;
    return digit % count;
  }
  const std::string& Of(const Texts& texts) { return texts[Of(texts.size())]; }

 private:
  std::string_view digits_;
  std::size_t at_ = 0;
};

const std::vector<Texts>& Statements() {
  static const std::vector<Texts> sets = {
      {"?,?,R5"},
      {"1,?,R9", "?,?,D"},
      {"?,#,rs"},
      {"X,?,R", "?,1-2,B3"},
      {"-?,?,rs", "1-3,@2,P", "?,?,M"},
      {"?B,2,R255", "3,?,rs"},
  };
  return sets;
}

void AddDvalues(DataRun& run, std::size_t kind) {
  if (kind == 1) run.Dvalue({2, "1", 0, 0, 0, "2,1"});
  if (kind == 2) run.Dvalue({2, "1-3", 0, 0, 0, "2,1-3"});
  if (kind == 3) run.Dvalue({2, "", 1, 2, 1, "2,1,2,1"});
  if (kind == 4) run.Dvalue({1, "$C", 0, 0, 0, "1,$C"});
}

void Build(DataRun& run, std::string_view digits) {
  Choices choices(digits);
  const Texts identifiers = {"N.", "L.", "NL", "LN"};
  run.Flank({{1, "Ann"}, {2, "Bob B"}, {3, "4"}, {12, "y_y:x"}}, choices.Of(identifiers));
  run.Flank({{0, "zero"}, {1, "R2"}, {2, "Rob"}, {3, ""}}, choices.Of(identifiers));
  run.Scale("rs", "R6",
            {{"2", "3-5", true, 3, 5},
             {"1", "2", false, 0, 0},
             {"0", "x", false, 0, 0},
             {"-1", "9", false, 0, 0}});
  for (const std::string& statement : Statements()[choices.Of(Statements().size())])
    run.Model(statement);
  AddDvalues(run, choices.Of(5));
  run.settings().NullElement = static_cast<std::int64_t>(choices.Of(4)) - 1;
  run.settings().Missing = choices.Of(Texts{"", ",9,x,", ",99,-1,"});
  run.settings().Replication = choices.Of(Texts{"R", "1", "W"});
  run.settings().labelsNobuild = choices.Of(2) == 1;
  if (choices.Of(3) == 1) run.design().flanks.identifierStart[FlankNo(1)] = 2;
}

// The fields joined by commas are the same fields again, where nothing else is in them.
void RequireSplitAgain(const SplitRules& rules, const DataLine& line) {
  const std::string joined = line.Processed();
  if (line.FieldCount() < 2 || !line.replicationField.empty()) return;
  if (joined.find_first_of("\"'\t") != std::string::npos || joined.front() == '*') return;
  float value = 0.0f;
  if (ReadReplication(line.Field(1), rules.Replication, value)) return;
  DataLine again;
  Require(SplitDataLine(joined, rules, again) == Fault::none, "the fields are fields", joined);
  Require(again.Fields == line.Fields, "the same fields", joined);
}

void CheckSplit(std::string_view text, const SplitRules& rules) {
  DataLine line;
  const Fault fault = SplitDataLine(text, rules, line);
  Require(fault == Fault::none || fault == Fault::tooManyFields, "the fault of a line", text);
  Require(line.FieldCount() <= kMostFields, "the number of fields", text);
  Require(std::isfinite(line.Replication) && line.Replication >= 0.0f, "a replication", text);
  for (int number = 1; number <= line.FieldCount(); ++number) {
    const std::string_view field = line.Field(number);
    Require(field == Trim(field), "a field is trimmed", text);
    Require(field.find(',') == std::string_view::npos, "a field has no comma", text);
    Require(field.empty() || (field.data() >= line.text.data() &&
                              field.data() + field.size() <= line.text.data() + line.text.size()),
            "a field lies in its line", text);
    Require(number > rules.DataFlankCount || field.find('_') == std::string_view::npos ||
                field.front() == '*',
            "an element has no _", text);
  }
  if (fault == Fault::none) RequireSplitAgain(rules, line);
}

std::string OutcomeOf(std::string_view digits, const std::string& lines, PlainLines plainLines) {
  DataRun run;
  Build(run, digits);
  run.linesBefore = 1;  // the first line of a file says what kind of file it is
  run.Pass(lines, plainLines);
  const DataCounts& counts = run.counts();
  std::int64_t matched = 0;
  for (const std::int64_t count : counts.ModelCounter) matched += count;
  Require(counts.NonBlankResponses.whole() == matched + counts.UnspecifiedResponses.count.whole() +
                                                  counts.UnmatchedResponses.count.whole(),
          "each response is accounted for", lines);
  Require(run.analysis.work.records == counts.ValidResponses.whole(), "a record for each response",
          lines);
  if (run.analysis.reading.faulty()) RequireFaultWords(run.Fault());
  const std::string outcome = run.Outcome();
  run.analysis = Analysis{};
  for (const std::string& name : run.folder.names())
    Require(name == "s.txt" || name == "report.txt", "a file is left behind", name);
  return outcome;
}

// The short cut looks a label up before it knows whether the line has all its fields, so that what
// it says of sorting the labels may come earlier, or of a line that is at fault.
std::string WithoutSorting(std::string outcome) {
  constexpr std::string_view kSorting = "Sorting labels for flank ";
  for (std::size_t at = outcome.find(kSorting); at != std::string::npos;
       at = outcome.find(kSorting, at))
    outcome.erase(at, outcome.find('\n', at) - at + 1);
  return outcome;
}

void CheckLines(std::string_view input) {
  GoToScratchFolder();
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string_view digits = input.substr(0, end);
  const std::string lines = WithoutOuterFiles(input.substr(std::min(end + 1, input.size())));
  SplitRules rules;
  rules.DataFlankCount = 2;
  FieldCursor cursor(lines, '\n');
  for (std::string_view line; cursor.Next(line);) CheckSplit(line, rules);
  // A line so long that it has too many fields.
  if (digits.ends_with("7777")) CheckSplit(lines + std::string(kMostFields, ','), rules);
  const std::string quick = WithoutSorting(OutcomeOf(digits, lines, PlainLines::shortCut));
  const std::string general =
      WithoutSorting(OutcomeOf(digits, lines, PlainLines::generalProcedure));
  Require(quick == general, "the short cut does what the general procedure does",
          quick + "\n---- and not\n" + general);
}

}  // namespace
}  // namespace flanks

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  flanks::CheckLines(flanks::TextOf(data, size));
  return 0;
}
