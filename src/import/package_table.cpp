#include "import/package_table.h"

#ifdef FLANKS_HAS_READSTAT

#include <memory>
#include <readstat.h>
#include <string>
#include <vector>

namespace flanks {
namespace {

// What the library's calls work on.
struct PackageReading {
  ImportText& text;
  std::vector<std::string> names;
  std::int64_t row = 0;  // the case at work, from 1 on
  bool begun = false;    // the names are written
};

int TakeVariable(int, readstat_variable_t* variable, const char*, void* context) {
  auto& reading = *static_cast<PackageReading*>(context);
  const char* const name = readstat_variable_get_name(variable);
  reading.names.emplace_back(name == nullptr ? "" : name);
  return READSTAT_HANDLER_OK;
}

void BeginTable(PackageReading& reading) {
  if (!reading.begun) reading.text.BeginTable(reading.names);
  reading.begun = true;
}

void AddValue(ImportText& text, int column, readstat_value_t value) {
  switch (readstat_value_type(value)) {
    case READSTAT_TYPE_STRING:
    case READSTAT_TYPE_STRING_REF:
      if (const char* const words = readstat_string_value(value)) text.AddText(column, words);
      return;
    case READSTAT_TYPE_FLOAT:
      text.AddNumber(column, readstat_float_value(value));
      return;
    default:
      text.AddNumber(column, readstat_double_value(value));
  }
}

int TakeValue(int row, readstat_variable_t* variable, readstat_value_t value, void* context) {
  auto& reading = *static_cast<PackageReading*>(context);
  BeginTable(reading);
  if (row + 1 != reading.row) {
    if (reading.row > 0) reading.text.EndRow();
    reading.row = row + 1;
    reading.text.BeginRow(reading.row);
  }
  if (!readstat_value_is_missing(value, variable))
    AddValue(reading.text, readstat_variable_get_index(variable) + 1, value);
  return reading.text.broken() ? READSTAT_HANDLER_ABORT : READSTAT_HANDLER_OK;
}

readstat_error_t Parse(readstat_parser_t* parser, const ImportName& name, PackageReading& reading) {
  if (name.kind == DataKind::stata) return readstat_parse_dta(parser, name.file.c_str(), &reading);
  if (name.kind == DataKind::spss) return readstat_parse_sav(parser, name.file.c_str(), &reading);
  return readstat_parse_sas7bdat(parser, name.file.c_str(), &reading);
}

}  // namespace

ConversionEnd ConvertPackage(const ImportName& name, ImportText& text) {
  const std::unique_ptr<readstat_parser_t, decltype(&readstat_parser_free)> parser(
      readstat_parser_init(), readstat_parser_free);
  PackageReading reading{text, {}};
  readstat_set_variable_handler(parser.get(), TakeVariable);
  readstat_set_value_handler(parser.get(), TakeValue);
  const readstat_error_t code = Parse(parser.get(), name, reading);
  if (text.broken()) return {};
  if (code != READSTAT_OK) {
    const char* const words = readstat_error_message(code);
    return ConversionFailed(words == nullptr ? "it is damaged" : words);
  }
  if (reading.row > 0) text.EndRow();
  return {};
}

}  // namespace flanks

#else

namespace flanks {

ConversionEnd ConvertPackage(const ImportName&, ImportText&) {
  return WithoutModule("ReadStat");
}

}  // namespace flanks

#endif
