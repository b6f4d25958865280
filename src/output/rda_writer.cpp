#include "output/rda_writer.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <vector>

#include "base/shown_text.h"
#include "output/library_sink.h"

#ifdef FLANKS_HAS_RDATA
#include <rdata/rdata.h>
#endif

namespace flanks {

std::vector<std::string> DistinctNames(std::vector<std::string> names) {
  std::set<std::string> taken(names.begin(), names.end()), met;
  std::map<std::string, int> last;
  for (std::string& name : names) {
    if (met.insert(name).second) continue;
    int& number = last[name];
    std::string made;
    do made = name + "." + std::to_string(++number);
    while (!taken.insert(made).second);
    name = made;
  }
  return names;
}

#ifndef FLANKS_HAS_RDATA

WriteEnd WriteRda(const TableSource&, const FileStamp&, const RdaOptions&, ReplacedFile&) {
  return WriteEnd::missing;
}

#else

namespace {

// R's NA among the numbers: a NaN with this payload ("R Internals", 1.1).
constexpr std::uint64_t kNaBits = 0x7FF00000000007A2;
constexpr std::size_t kNameBytes = 255;

struct FreeWriter {
  void operator()(rdata_writer_t* writer) const { rdata_writer_free(writer); }
};

void Check(rdata_error_t error) {
  if (error != RDATA_OK) throw std::runtime_error(rdata_error_message(error));
}

double NumberOrMissing(std::string_view cell) {
  const std::optional<double> number = CellNumber(cell);
  return number ? *number : std::bit_cast<double>(kNaBits);
}

class FrameWriter {
 public:
  FrameWriter(rdata_writer_t& writer, const TableSource& source, const TableShape& shape,
              std::size_t roomBytes)
      : writer_(writer), source_(source), shape_(shape), roomBytes_(roomBytes) {}

  // False when the user ended the work.
  bool WriteColumns() {
    const std::vector<ColumnShape>& columns = shape_.columns;
    for (std::size_t at = 0; at < columns.size();) {
      if (!columns[at].isNumber) {
        if (!WriteTexts(at++)) return false;
        continue;
      }
      std::size_t end = at + 1;
      while (end < columns.size() && columns[end].isNumber && end - at < ColumnsAtOnce()) ++end;
      if (!WriteNumbers(at, end)) return false;
      at = end;
    }
    return true;
  }

 private:
  std::size_t Rows() const { return static_cast<std::size_t>(shape_.rows); }
  std::size_t ColumnsAtOnce() const {
    return std::max<std::size_t>(1,
                                 roomBytes_ / (sizeof(double) * std::max(Rows(), std::size_t{1})));
  }
  rdata_column_t* Column(std::size_t at) {
    return rdata_get_column(&writer_, static_cast<std::int32_t>(at));
  }

  bool WriteTexts(std::size_t at) {
    TabText text(source_);
    text.ReadRow();
    std::string value;
    Check(rdata_begin_column(&writer_, Column(at), static_cast<std::int32_t>(shape_.rows)));
    while (text.ReadRow()) {
      value = text.cell(at);
      Check(rdata_append_string_value(&writer_, value.c_str()));
      if (text.IsStopped()) return false;
    }
    Check(rdata_end_column(&writer_, Column(at)));
    return true;
  }

  bool WriteNumbers(std::size_t begin, std::size_t end) {
    TabText text(source_);
    text.ReadRow();
    std::vector<double> values((end - begin) * Rows());  // column after column
    for (std::size_t row = 0; row < Rows() && text.ReadRow(); ++row) {
      for (std::size_t at = begin; at < end; ++at)
        values[(at - begin) * Rows() + row] = NumberOrMissing(text.cell(at));
      if (text.IsStopped()) return false;
    }
    for (std::size_t at = begin; at < end; ++at) {
      Check(rdata_begin_column(&writer_, Column(at), static_cast<std::int32_t>(shape_.rows)));
      for (std::size_t row = 0; row < Rows(); ++row)
        Check(rdata_append_real_value(&writer_, values[(at - begin) * Rows() + row]));
      Check(rdata_end_column(&writer_, Column(at)));
    }
    return true;
  }

  rdata_writer_t& writer_;
  const TableSource& source_;
  const TableShape& shape_;
  std::size_t roomBytes_;
};

bool WriteFrame(rdata_writer_t& writer, LibrarySink& sink, const FileStamp& stamp,
                const RdaOptions& options, const TableShape& shape, FrameWriter& frame) {
  std::vector<std::string> names;
  for (const ColumnShape& column : shape.columns)
    names.emplace_back(CutBetweenCharacters(column.heading, kNameBytes));
  names = DistinctNames(std::move(names));
  for (std::size_t i = 0; i < names.size(); ++i)
    rdata_add_column(&writer, names[i].c_str(),
                     shape.columns[i].isNumber ? RDATA_TYPE_REAL : RDATA_TYPE_STRING);
  Check(rdata_begin_file(&writer, &sink));
  Check(rdata_begin_table(&writer, options.objectName.c_str()));
  if (!frame.WriteColumns()) return false;
  const std::string label =
      (stamp.title.empty() ? "" : stamp.title + "; ") + stamp.program + ", " + StampDate(stamp);
  Check(rdata_end_table(&writer, static_cast<std::int32_t>(shape.rows), label.c_str()));
  Check(rdata_end_file(&writer));
  return true;
}

}  // namespace

WriteEnd WriteRda(const TableSource& source, const FileStamp& stamp, const RdaOptions& options,
                  ReplacedFile& target) {
  TableShape shape = MeasureTable(source, 1);
  for (std::size_t i = 0; i < std::min(options.isLabel.size(), shape.columns.size()); ++i)
    if (options.isLabel[i]) shape.columns[i].isNumber = false;
  if (shape.stopped) return WriteEnd::stopped;
  if (shape.rows > std::numeric_limits<std::int32_t>::max())
    throw std::runtime_error("more rows than a data frame takes");
  LibrarySink sink(target);
  const std::unique_ptr<rdata_writer_t, FreeWriter> writer(
      rdata_writer_init(LibrarySink::TakeBytes, RDATA_WORKSPACE));
  FrameWriter frame(*writer, source, shape, options.roomBytes);
  bool complete = false;
  sink.Run([&] { complete = WriteFrame(*writer, sink, stamp, options, shape, frame); });
  return complete ? WriteEnd::complete : WriteEnd::stopped;
}

#endif  // FLANKS_HAS_RDATA

}  // namespace flanks
