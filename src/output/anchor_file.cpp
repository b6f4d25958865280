#include "output/anchor_file.h"

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "output/anchor_labels.h"
#include "output/anchor_models.h"
#include "output/anchor_scales.h"
#include "output/current_settings.h"
#include "output/specification_lines.h"
#include "run/program_mark.h"
#include "spec/keyword_table.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

using namespace keyword_code;

// Which lines of the Specification go into the file, and how.
enum class CopiedAs : std::uint8_t { dropped, itself, comment, fields, data };

// Follows the lines of a Specification as its reader did.
class SpecificationCopy {
 public:
  // What becomes of the next line; `data`: it is `Data=` without a value, and data lines follow.
  CopiedAs Take(std::string_view line);

 private:
  CopiedAs TakeOther(std::string_view line);
  CopiedAs TakeKeyword(const KeywordRow& row, std::string_view line);

  bool inModels_ = false;
  bool inGroupLabels_ = false;
};

bool IsValueEmpty(std::string_view line) {
  std::vector<std::string> fields;
  int count = 0;
  return SplitSpecification(line.substr(0, line.find(';')), fields, count) && fields[1].empty();
}

[[noreturn]] void ThrowUnreadable(const SpecificationSource& source) {
  FaultParticulars particulars = TextAtFault(source.faultText());
  particulars.name = "Specification";
  throw std::runtime_error("The Specification cannot be read again: " +
                           FaultLine(source.fault(), particulars));
}

CopiedAs SpecificationCopy::Take(std::string_view line) {
  while (!line.empty() && static_cast<unsigned char>(line.front()) <= ' ') line.remove_prefix(1);
  if (line.empty()) return CopiedAs::dropped;
  if (!IsLetter(line.front())) return TakeOther(line);
  const char letter = UpperCase(line.front());
  if (inModels_ && (letter == 'X' || letter == 'M')) return CopiedAs::dropped;  // a statement
  const std::string_view keyword = line.substr(0, line.find_first_of("=,\t;"));
  const KeywordRow* row = ResolveKeyword(UpperCase(keyword));
  inModels_ = inGroupLabels_ = false;
  return row == nullptr ? CopiedAs::itself : TakeKeyword(*row, line);
}

// A line of a list, a comment.  Of the lists only `Glabel=` is copied.
CopiedAs SpecificationCopy::TakeOther(std::string_view line) {
  const bool ends = line.front() == '*';
  const bool copied = inGroupLabels_ && line.front() != ';';
  if (ends) inModels_ = inGroupLabels_ = false;
  return copied ? CopiedAs::fields : CopiedAs::dropped;
}

// Keywords are told as the reader tells them: a first letter may be enough.
CopiedAs SpecificationCopy::TakeKeyword(const KeywordRow& row, std::string_view line) {
  switch (row.code) {
    case kModels:
      inModels_ = true;
      return CopiedAs::dropped;
    case kUmean:
    case kLabels:
    case kRatingScale:
    case kDvalues:
      return CopiedAs::dropped;
    case kGlabel:
      inGroupLabels_ = true;
      return CopiedAs::fields;
    case kData:
      return IsValueEmpty(line) ? CopiedAs::data : CopiedAs::itself;
    case kAnchorfile:
      return CopiedAs::comment;
    default:
      // Kept: every line that begins with O, and so Omit-unobserved= too (docs/quirks.md).
      return UpperCase(line.front()) == 'O' ? CopiedAs::comment : CopiedAs::itself;
  }
}

class AnchorWriter {
 public:
  AnchorWriter(Run& run, const AnchorOptions& options, Destination& out)
      : analysis_(run.analysis),
        console_(run.console),
        options_(options),
        lines_(out, run.console) {}

  void Write();

 private:
  void OpenSpecification();
  void WriteHead();
  void CopySpecification();
  void WriteUnits();
  void WriteDvalues();
  void CopyData();

  const Analysis& analysis_;
  Console& console_;
  AnchorOptions options_;
  SpecificationLines lines_;
  SpecificationSource source_;
  bool dataFollow_ = false;  // the source stands behind `Data=`
  std::string dataLine_;     // that line
};

void AnchorWriter::OpenSpecification() {
  const std::string& name = analysis_.settings.specificationFile;
  if (source_.Open(name, "Specification", name, console_) != Fault::none) ThrowUnreadable(source_);
}

void AnchorWriter::WriteHead() {
  const std::string& title = analysis_.settings.Title;
  lines_.Line("; " + (title.empty() ? "" : title + ": ") + "anchor file by " + ProgramAndDate());
  const std::string& extras = analysis_.specification.ExtraSpecifications;
  if (!extras.empty()) lines_.Line("; Extra specifications of that run, not copied: " + extras);
}

void AnchorWriter::CopySpecification() {
  const bool copies = options_.CurrentSettings != 'C';
  SpecificationCopy copy;
  std::string_view line;
  while (!lines_.stopping() && source_.ReadRawLine(console_, line)) {
    switch (copy.Take(line)) {
      case CopiedAs::dropped:
        break;
      case CopiedAs::itself:
        if (copies) lines_.Line(line);
        break;
      case CopiedAs::comment:
        if (copies) lines_.Line(";" + std::string(line));
        break;
      case CopiedAs::fields:
        if (copies) lines_.KeepLine(line);
        break;
      case CopiedAs::data:
        dataFollow_ = true;
        dataLine_ = line;
        return;
    }
  }
}

// `Umean=` has the scale and the decimals as well.
void AnchorWriter::WriteUnits() {
  const Settings& settings = analysis_.settings;
  const Settings defaults;
  if (options_.CurrentSettings == 'C') return;  // among the settings
  if (settings.Umean != defaults.Umean || settings.Uscale != defaults.Uscale ||
      settings.Udecimals != defaults.Udecimals)
    lines_.Line(UnitsLine(settings));
}

void AnchorWriter::WriteDvalues() {
  const std::vector<DvalueEntry>& entries = analysis_.settings.Dvalues;
  if (entries.empty()) return;
  constexpr std::string_view kHead = "Dvalues for data flank = ";
  constexpr std::string_view kComment = "values for data flanks";
  const auto text = [](const DvalueEntry& entry) {
    return std::to_string(entry.position) + "," + entry.asWritten;
  };
  if (entries.size() == 1)
    return lines_.Line(WithComment(std::string(kHead) + text(entries.front()), kComment));
  lines_.Line(WithComment(std::string(Trim(kHead)), kComment));
  for (const DvalueEntry& entry : entries) lines_.Line(text(entry));
  lines_.Line("*");
}

// An empty response at the end of a data line counts, so its comma stays.
void AnchorWriter::CopyData() {
  if (!dataFollow_) return;
  if (options_.IncludeData != 'A') return lines_.Line("Data=");
  lines_.Line(dataLine_);
  std::string_view line;
  while (!lines_.stopping() && source_.ReadRawLine(console_, line)) lines_.KeepLine(line);
}

void AnchorWriter::Write() {
  OpenSpecification();
  WriteHead();
  if (options_.CurrentSettings == 'C')
    WriteCurrentSettings(analysis_.settings, analysis_.design, lines_);
  CopySpecification();
  WriteUnits();
  const AnchorModels models =
      PlanAnchorModels(analysis_.design, analysis_.structures, analysis_.scales);
  WriteAnchorModels(models, lines_);
  WriteAnchorScales(models, analysis_.design, analysis_.scales, analysis_.settings.Uscale,
                    options_.AnchorMark, lines_);
  WriteAnchorLabels({analysis_.design, analysis_.settings, analysis_.estimates, analysis_.subsets},
                    options_.AnchorMark, lines_);
  WriteDvalues();
  CopyData();
  if (source_.fault() != Fault::none) ThrowUnreadable(source_);
}

}  // namespace

void WriteAnchorLines(Run& run, const AnchorOptions& options, Destination& out) {
  AnchorWriter(run, options, out).Write();
}

bool WriteAnchorFile(Run& run, const std::string& name, const AnchorOptions& options) {
  run.console.ShowLine("Writing anchor file: " + name);
  return WriteOutputFile(run, "WriteAnchorFile", name,
                         [&](Destination& out) { WriteAnchorLines(run, options, out); });
}

void WriteAnchorFile(Run& run) {
  const std::string& name = run.analysis.settings.AnchorFile;
  if (!name.empty()) WriteAnchorFile(run, name, {});
}

}  // namespace flanks
