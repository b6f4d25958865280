#include "output/sav_writer.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

#include "base/shown_text.h"
#include "base/text.h"
#include "output/library_sink.h"

#ifdef FLANKS_HAS_READSTAT
#include <readstat.h>
#endif

namespace flanks {

std::string SavName(std::string_view name) {
  std::string made(name);
  ReplaceCharacter(made, '-', '_');
  return made;
}

std::string SavFileLabel(const FileStamp& stamp) {
  constexpr std::size_t kLongest = 64;
  const std::string end = stamp.program + ", " + StampDate(stamp);
  if (stamp.title.empty()) return end;
  const std::size_t room = kLongest - std::min(kLongest, end.size() + 2);
  return std::string(CutBetweenCharacters(stamp.title, room)) + "; " + end;
}

#ifndef FLANKS_HAS_READSTAT

SavEnd WriteSav(const TableSource&, const FileStamp&, ReplacedFile&) {
  return {WriteEnd::missing};
}

#else

namespace {

constexpr int kHeadLines = 4;  // the count, names, labels, format values
constexpr std::size_t kNoteBytes = 80;
constexpr std::size_t kLabelBytes = 255;

struct Variable {
  std::string name, label;
  double format = 0.0;  // its value in the head line
  bool isText = false;
  readstat_variable_t* made = nullptr;
};

struct FreeWriter {
  void operator()(readstat_writer_t* writer) const { readstat_writer_free(writer); }
};

void Check(readstat_error_t error) {
  if (error != READSTAT_OK) throw std::runtime_error(readstat_error_message(error));
}

std::vector<Variable> ReadVariables(TabText& text) {
  std::vector<Variable> variables;
  if (!text.ReadRow() || !text.ReadRow()) return variables;
  for (const std::string_view name : text.cells()) {
    Variable variable;
    variable.name = name;
    variable.isText = name.ends_with("-Label");
    variables.push_back(std::move(variable));
  }
  text.ReadRow();
  for (std::size_t i = 0; i < variables.size(); ++i) variables[i].label = text.cell(i);
  text.ReadRow();
  for (std::size_t i = 0; i < variables.size(); ++i)
    variables[i].format = CellNumber(text.cell(i)).value_or(0.0);
  return variables;
}

bool IsCategory(std::string_view name) {
  return name == "Obs" || name == "Score" || name == "MPCat";
}

void AddVariable(readstat_writer_t& writer, Variable& variable, const ColumnShape& column) {
  const std::string name = SavName(variable.name);
  if (variable.isText) {
    const auto wanted = static_cast<std::size_t>(std::max(variable.format, 1.0));
    const std::size_t bytes = std::min(std::max(wanted, column.bytes), kSavTextBytes);
    variable.made = readstat_add_variable(&writer, name.c_str(), READSTAT_TYPE_STRING, bytes);
    readstat_variable_set_measure(variable.made, READSTAT_MEASURE_NOMINAL);
    readstat_variable_set_alignment(variable.made, READSTAT_ALIGNMENT_LEFT);
  } else {
    variable.made = readstat_add_variable(&writer, name.c_str(), READSTAT_TYPE_DOUBLE, 0);
    const bool isWhole = variable.format == 0.0;
    const std::string format = isWhole ? "F11.0" : "F12." + std::to_string(column.decimals);
    readstat_variable_set_format(variable.made, format.c_str());
    const readstat_measure_t whole =
        IsCategory(variable.name) ? READSTAT_MEASURE_ORDINAL : READSTAT_MEASURE_NOMINAL;
    readstat_variable_set_measure(variable.made, isWhole ? whole : READSTAT_MEASURE_SCALE);
    readstat_variable_set_alignment(variable.made, READSTAT_ALIGNMENT_RIGHT);
  }
  const std::string label(CutBetweenCharacters(variable.label, kLabelBytes));
  readstat_variable_set_label(variable.made, label.c_str());
}

// Documents of the file: lines of no more than 80 bytes.
void AddNotes(readstat_writer_t& writer, const FileStamp& stamp) {
  for (std::string_view rest = stamp.title; !rest.empty();) {
    const std::string line(CutBetweenCharacters(rest, kNoteBytes));
    readstat_add_note(&writer, line.c_str());
    rest.remove_prefix(std::max<std::size_t>(line.size(), 1));
  }
  readstat_add_note(&writer, (stamp.program + ", " + StampDate(stamp)).c_str());
}

void DescribeFile(readstat_writer_t& writer, const FileStamp& stamp) {
  readstat_set_data_writer(&writer, LibrarySink::TakeBytes);
  Check(readstat_writer_set_compression(&writer, READSTAT_COMPRESS_ROWS));
  Check(readstat_writer_set_file_label(&writer, SavFileLabel(stamp).c_str()));
  Check(readstat_writer_set_file_timestamp(&writer, static_cast<time_t>(stamp.time)));
  AddNotes(writer, stamp);
}

// One case.  Gives the number of texts that were cut.
int WriteCase(readstat_writer_t& writer, const TabText& row,
              const std::vector<Variable>& variables) {
  int cut = 0;
  std::string text;
  Check(readstat_begin_row(&writer));
  for (std::size_t i = 0; i < variables.size(); ++i) {
    const Variable& variable = variables[i];
    const std::string_view cell = row.cell(i);
    if (variable.isText) {
      text = CutBetweenCharacters(cell, kSavTextBytes);
      if (text.size() < cell.size()) ++cut;
      Check(readstat_insert_string_value(&writer, variable.made, text.c_str()));
    } else if (const std::optional<double> number = CellNumber(cell)) {
      Check(readstat_insert_double_value(&writer, variable.made, *number));
    } else {
      Check(readstat_insert_missing_value(&writer, variable.made));
    }
  }
  Check(readstat_end_row(&writer));
  return cut;
}

SavEnd WriteCases(readstat_writer_t& writer, LibrarySink& sink, const TableSource& source,
                  const TableShape& shape) {
  SavEnd end;
  TabText text(source);
  std::vector<Variable> variables = ReadVariables(text);
  for (std::size_t i = 0; i < variables.size(); ++i)
    AddVariable(writer, variables[i], i < shape.columns.size() ? shape.columns[i] : ColumnShape());
  Check(readstat_begin_writing_sav(&writer, &sink, static_cast<long>(shape.rows)));
  while (text.ReadRow()) {
    end.cutCells += WriteCase(writer, text, variables);
    if (text.IsStopped()) return {WriteEnd::stopped};
  }
  Check(readstat_end_writing(&writer));
  return end;
}

}  // namespace

SavEnd WriteSav(const TableSource& source, const FileStamp& stamp, ReplacedFile& target) {
  const TableShape shape = MeasureTable(source, kHeadLines);
  if (shape.stopped) return {WriteEnd::stopped};
  const std::unique_ptr<readstat_writer_t, FreeWriter> writer(readstat_writer_init());
  LibrarySink sink(target);
  SavEnd end;
  sink.Run([&] {
    DescribeFile(*writer, stamp);
    end = WriteCases(*writer, sink, source, shape);
  });
  return end;
}

#endif  // FLANKS_HAS_READSTAT

}  // namespace flanks
