#include "spec/output_names.h"

#include <string>

#include "spec/file_names.h"
#include "spec/list_reading.h"

namespace flanks {

void SettleOutputNames(Run& run) {
  Settings& settings = run.analysis.settings;
  if (settings.OutputFile.empty())
    settings.OutputFile = DefaultOutputName(settings.specificationFile);
  const std::string& output = settings.OutputFile;
  const bool replacesData =
      settings.dataSource == DataSource::file &&
      SameFile(output, FindFileToRead(settings.dataFile, settings.specificationFile));
  if (!replacesData && !SameFile(output, settings.specificationFile)) return;
  FaultParticulars particulars;
  particulars.name = kSpecificationName;
  particulars.value = InQuotes(output);
  particulars.lineNumber = kNoLineNumber;  // the two names stand in different lines
  SetFault(run.analysis.reading, Fault::incompatibleFileUse, std::move(particulars));
}

}  // namespace flanks
