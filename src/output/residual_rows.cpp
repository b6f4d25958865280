#include "output/residual_rows.h"

#include <cstring>
#include <utility>

#include "report/format/row_digits.h"
#include "run/analysis.h"
#include "run/console.h"

namespace flanks {
namespace {

NumberForm NumberFormOf(const RowForm& form) {
  return form.isFixed() ? NumberForm::fixed : NumberForm::delimited;
}

bool IsShown(ObservationState state, StatusFilter filter) {
  const int status = static_cast<int>(state);
  if (filter == StatusFilter::notEstimating) return status < 0;
  return filter == StatusFilter::both || status > 0;
}

ElementText ElementTextOf(ResponsePlace place) {
  if (place == ResponsePlace::elementNumbers) return ElementText::number;
  return place == ResponsePlace::elementMeasures ? ElementText::measure : ElementText::label;
}

char* Copy(char* at, const std::string& text) {
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

}  // namespace

bool IsFirstLabel(const ResidualTable& table, std::size_t column) {
  return table.columns[column].place == ResponsePlace::elementLabels &&
         (column == 0 || table.columns[column - 1].place != ResponsePlace::elementLabels);
}

ResidualRows::ResidualRows(Run& run, const ResidualTable& table, StatusFilter filter,
                           RowWriter& rows)
    : run_(run),
      table_(table),
      filter_(filter),
      figures_(PassPartsOf(run.analysis, run.console)),
      rows_(rows),
      uscale_(run.analysis.settings.Uscale),
      umean_(run.analysis.settings.Umean),
      wholes_(NumberFormOf(table.form), 0),
      decimals_(NumberFormOf(table.form), table.decimals) {
  for (std::size_t c = 0; c < table.columns.size(); ++c)
    AddColumn(table.columns[c], table.form.isFixed() && IsFirstLabel(table, c));
  room_ = RoomOfRow();
}

void ResidualRows::AddColumn(const ResponseColumn& column, bool firstLabel) {
  if (column.position == Position(0)) {
    const bool whole = column.form == ResponseForm::whole;
    NumberColumn number{column.place, whole, {}, {}, std::vector<Index>(kKernelBlock)};
    number.wholes.resize(whole ? kKernelBlock : 0);
    number.decimals.resize(whole ? 0 : kKernelBlock);
    numbers_.push_back(std::move(number));
    return;
  }
  ElementColumn element{ElementTextOf(column.place), column.position, kNoField, firstLabel};
  for (std::size_t field = 0; field < run_.analysis.work.layout.fields.size(); ++field)
    if (figures_.position(field) == column.position) element.field = field;
  elements_.push_back(element);
}

std::size_t ResidualRows::RoomOfRow() const {
  std::size_t room = kCopySlack;
  const std::size_t around = rows_.before().size() + rows_.after().size();
  room += (numbers_.size() + 1) * (kNumberRoom + around);  // one for the running number
  for (const ElementColumn& column : elements_) room += table_.elements.longest(column.what) + 1;
  return room;
}

void ResidualRows::Write() {
  ProgressBar bar(run_.console, run_.analysis.work.records);
  try {
    WriteBlocks(bar);
  } catch (...) {
    bar.Break();
    throw;
  }
  if (run_.console.stopping())
    bar.Break();
  else
    bar.End();
}

void ResidualRows::WriteBlocks(ProgressBar& bar) {
  figures_.Begin();
  while (figures_.Next()) {
    LookUp();
    if (table_.form.isFixed())
      WriteBlock<Style::fixed>();
    else if (rows_.before().empty() && rows_.after().size() == 1)
      WriteBlock<Style::oneByte>();
    else
      WriteBlock<Style::other>();
    const ObservationBlock& block = figures_.block();
    bar.Advance(block.firstRecord + static_cast<std::int64_t>(block.count) - 1);
  }
  rows_.Flush();
}

void ResidualRows::LookUp() {
  const std::size_t count = figures_.block().count;
  for (NumberColumn& column : numbers_) {
    Index* const to = column.indexes.data();
    if (column.whole) {
      FillWholes(column);
      const std::int32_t* const from = column.wholes.data();
      for (std::size_t i = 0; i < count; ++i) to[i] = NumberTexts::LookWhole(from[i]);
    } else {
      FillDecimals(column);
      decimals_.Look({column.decimals.data(), count}, {to, count});
    }
  }
}

// By lane.
std::span<const float> ResidualRows::FigureOf(ResponsePlace place) const {
  switch (place) {
    case ResponsePlace::expected:
      return figures_.expected();
    case ResponsePlace::residual:
      return figures_.residual();
    case ResponsePlace::variance:
      return figures_.variance();
    case ResponsePlace::standardized:
      return figures_.standardized();
    case ResponsePlace::logProbability:
      return figures_.logProbability();
    default:
      return figures_.displacement();
  }
}

void ResidualRows::FillDecimals(NumberColumn& column) const {
  const ObservationBlock& block = figures_.block();
  const ResponsePlace place = column.place;
  double* const to = column.decimals.data();
  if (place == ResponsePlace::weight) {
    for (std::size_t i = 0; i < block.count; ++i) to[i] = block.weight[i];
    return;
  }
  if (place == ResponsePlace::measure) {
    for (std::size_t i = 0; i < block.count; ++i) to[i] = uscale_ * block.MeasureSum[i] + umean_;
    return;
  }
  const double unit = place == ResponsePlace::displacement ? uscale_ : 1.0;
  const float* const from = FigureOf(place).data();
  const std::uint32_t* const lane = figures_.lanes().data();
  for (std::size_t i = 0; i < block.count; ++i) to[i] = unit * from[lane[i]];
}

void ResidualRows::FillWholes(NumberColumn& column) const {
  const ObservationBlock& block = figures_.block();
  std::int32_t* const to = column.wholes.data();
  switch (column.place) {
    case ResponsePlace::observation:
      for (std::size_t i = 0; i < block.count; ++i) to[i] = block.response[i];
      return;
    case ResponsePlace::step:
      // The ordered category as it is scored; -1 where the scale has no place for the response.
      for (std::size_t i = 0; i < block.count; ++i) {
        const std::int32_t lowest = run_.analysis.scales.lowestCategory[ScaleRow(block.scale[i])];
        to[i] = block.category[i] < 0 ? kNoOrderedCategory : block.category[i] + lowest;
      }
      return;
    case ResponsePlace::status:
      for (std::size_t i = 0; i < block.count; ++i)
        to[i] = static_cast<std::int32_t>(block.state[i]);
      return;
    default:
      for (std::size_t i = 0; i < block.count; ++i)
        to[i] = figures_.mostProbable()[figures_.lanes()[i]];
  }
}

template <ResidualRows::Style style>
void ResidualRows::WriteBlock() {
  const ObservationBlock& block = figures_.block();
  for (std::size_t i = 0; i < block.count; ++i) {
    if (!IsShown(block.state[i], filter_)) continue;
    rows_.BeginRow();
    if (table_.form.isPage()) rows_.Whole(static_cast<std::int32_t>(++sequence_));
    rows_.Advance(PutElements(PutNumbers<style>(rows_.Place(room_), i), i));
    rows_.EndRow();
  }
}

template <ResidualRows::Style style>
char* ResidualRows::PutNumbers(char* at, std::size_t i) {
  const std::string& after = rows_.after();
  for (const NumberColumn& column : numbers_) {
    const NumberTexts& texts = column.whole ? wholes_ : decimals_;
    if constexpr (style == Style::other) at = Copy(at, rows_.before());
    char* end = style == Style::fixed ? texts.PutFixed(at, column.indexes[i])
                                      : texts.PutDelimited(at, column.indexes[i]);
    if (end == nullptr) end = PutNumberItself(at, column, i);
    at = end;
    if constexpr (style == Style::oneByte) *at++ = after[0];
    if constexpr (style == Style::other) at = Copy(at, after);
  }
  return at;
}

char* ResidualRows::PutElements(char* at, std::size_t i) const {
  const ObservationBlock& block = figures_.block();
  for (const ElementColumn& column : elements_) {
    *at = ' ';
    at += column.blankBefore ? 1 : 0;
    const std::int32_t slot = column.field == kNoField ? 0 : block.slots[column.field][i];
    at = CopyShort(at, table_.elements.of(column.what, column.position, slot));
  }
  return at;
}

// A number that is not in the table.
char* ResidualRows::PutNumberItself(char* at, const NumberColumn& column, std::size_t i) const {
  const bool fixed = table_.form.isFixed();
  if (column.whole)
    return fixed ? PutFixedWhole(at, column.wholes[i]) : PutWhole(at, column.wholes[i]);
  return fixed ? PutFixedDecimals(at, column.decimals[i], table_.decimals)
               : PutDecimals(at, column.decimals[i], table_.decimals);
}

}  // namespace flanks
