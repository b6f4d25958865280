// The importer in a build without the libraries: each kind of file names the library that is
// missing. The files that use a library are compiled for this program without it
// (tests/CMakeLists.txt).

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "import/conversion.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

TEST(WithoutLibraries, EachKindOfDataNamesItsLibrary) {
  const std::string compound = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
  const std::vector<std::pair<std::pair<std::string, std::string>, const char*>> cases = {
      {{"d.xlsx", "PK\3\4"}, "libzip"},
      {{"d.xls", compound}, "FreeXL"},
      {{"d.sav", "$FL2"}, "ReadStat"},
      {{"d.dta", "<stata_dta>"}, "ReadStat"},
      {{"d.sas7bdat", "x"}, "ReadStat"},
      {{"d.rda", "RDX3\nX\n"}, "librdata"},
      {{"d.rda", "\x1f\x8b\b"}, "zlib"},
      {{"d.rda", "BZh91"}, "bzip2"},
      {{"d.rda", std::string("\xFD"
                             "7zXZ\0",
                             6)},
       "liblzma"}};
  for (const auto& [file, library] : cases) {
    const ScratchFolder folder;
    ConversionRequest request;
    request.name = ReadImportName(folder.write(file.first, file.second));
    request.textFile = folder.write("text", "");
    request.scratchFile = folder.write("scratch", "");
    const ConversionEnd end = ConvertFile(request, {});
    EXPECT_EQ(end.kind, ConversionEnd::Kind::missingModule) << library;
    EXPECT_EQ(end.text, library);
    EXPECT_EQ(FirstSheetName(request.name), "");
  }
}

}  // namespace
}  // namespace flanks
