#include "spec/output_names.h"

#include <algorithm>
#include <string>
#include <vector>

#include "spec/file_names.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

// The Specification file or one of the files that it includes.
bool ReplacesSpecification(const Run& run, const std::string& output) {
  if (SameFile(output, run.analysis.settings.specificationFile)) return true;
  const std::vector<std::string>& included = run.analysis.specification.includedFiles;
  return std::any_of(included.begin(), included.end(),
                     [&output](const std::string& name) { return SameFile(output, name); });
}

}  // namespace

void SettleOutputNames(Run& run) {
  Settings& settings = run.analysis.settings;
  if (settings.OutputFile.empty())
    settings.OutputFile = DefaultOutputName(settings.specificationFile);
  const std::string& output = settings.OutputFile;
  const bool replacesData =
      settings.dataSource == DataSource::file &&
      SameFile(output, FindFileToRead(settings.dataFile, settings.specificationFile));
  if (!replacesData && !ReplacesSpecification(run, output)) return;
  FaultParticulars particulars;
  particulars.name = kSpecificationName;
  particulars.value = InQuotes(output);
  particulars.lineNumber = kNoLineNumber;  // the two names stand in different lines
  SetFault(run.analysis.reading, Fault::incompatibleFileUse, std::move(particulars));
}

}  // namespace flanks
