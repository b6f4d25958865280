// What the converters share: what they are asked for, whom they tell of it, and how they end.
//
// Each kind of file has one converter, which puts its rows into an ImportText.  They run in a child
// process (import/conversion_child), because the libraries behind them may crash or run away on a
// damaged file; nothing here knows of that.
#ifndef FLANKS_IMPORT_CONVERSION_H
#define FLANKS_IMPORT_CONVERSION_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "import/import_name.h"

namespace flanks {

// What an imported line looks like; for telling a heading from data.
struct HeadingRule {
  int elementColumns = 0;        // columns in front of the first response
  std::string codes;             // `Missing=` and what scales recode, a comma before and after each
  std::string replication = {};  // the text of `Replication=`, of which "R2" begins a line
};

struct ConversionRequest {
  ImportName name;          // `file` as it was found
  std::string textFile;     // is there, empty; takes the text
  std::string scratchFile;  // is there, empty; takes what is unpacked (R data only)
  HeadingRule heading;
};

struct ConversionWatch {
  std::function<void(std::int64_t)> rows = [](std::int64_t) {};  // rows done so far
  std::function<void(const std::string&)> tell = [](const std::string&) {
  };  // a line for the screen
};

struct ConversionEnd {
  enum class Kind : std::uint8_t {
    done,
    failed,         // text: the reason
    badCell,        // text: the place and what is there
    missingModule,  // text: the library that this program was built without
  };
  Kind kind = Kind::done;
  std::string text;

  bool done() const { return kind == Kind::done; }
};

inline ConversionEnd ConversionFailed(std::string reason) {
  return {ConversionEnd::Kind::failed, std::move(reason)};
}
inline ConversionEnd WithoutModule(std::string_view library) {
  return {ConversionEnd::Kind::missingModule, std::string(library)};
}

// Converts the file in this process.  Leaves a text that is of no use when it does not end as done.
ConversionEnd ConvertFile(const ConversionRequest& request, const ConversionWatch& watch);

// The name of the sheet that the first lines of the text come from; empty for other files.
std::string FirstSheetName(const ImportName& name);

}  // namespace flanks

#endif  // FLANKS_IMPORT_CONVERSION_H
