#include "spec/flank_maps.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "report/format/join_number.h"
#include "spec/keyword_table.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr int kFewestFlanksOfAList = 2;
constexpr FlankNo kFirstFlank(1);
constexpr FlankNo kNoFlank(0);

bool Contains(const std::vector<int>& numbers, FlankNo flank) {
  return std::find(numbers.begin(), numbers.end(), flank.number()) != numbers.end();
}

// The first Flank floats by default; in `Center=` the Flanks of the list are those that do not.
std::int16_t CenterOf(const FlankList& list, FlankNo flank) {
  if (!list.given) return flank == kFirstFlank ? kNonCentered : kCentered;
  const bool listed = Contains(list.listed, flank);
  if (listed != list.reversed) return kNonCentered;
  return Contains(list.zOrigin, flank) ? kCenteredWithExtremes : kCentered;
}

std::int16_t OrientationOf(const FlankList& list, FlankNo flank) {
  bool positive = flank == kFirstFlank;
  if (list.given) {
    const bool listed = list.all == 'Y' || (list.all == ' ' && Contains(list.listed, flank));
    positive = listed != list.reversed;
  }
  return positive ? kPositiveOrientation : kNegativeOrientation;
}

void ApplyLists(SpecContext& context) {
  FlankTable& flanks = context.design.flanks;
  for (const FlankNo flank : Upward(flanks.FlankCenter)) {
    flanks.FlankCenter[flank] = CenterOf(context.state.centers, flank);
    flanks.FlankOrientation[flank] = OrientationOf(context.state.orientations, flank);
  }
}

void SetFlankCount(SpecContext& context, int count) {
  context.design.FlankCount = count;
  FlankTable& flanks = context.design.flanks;
  flanks.FlankName.resize(count);
  flanks.FlankOptions.resize(count, " ");
  flanks.FlankLow.resize(count, 0);
  flanks.FlankHigh.resize(count, 0);
  flanks.FlankElementCount.resize(count, 0);
  flanks.FlankFirstSlot.resize(count, ElementSlot(0));
  flanks.FlankWeight.resize(count, 1.0f);
  flanks.FlankNullLabel.resize(count);
  flanks.FlankOrientation.resize(count, kNegativeOrientation);
  flanks.FlankCenter.resize(count, kCentered);
  flanks.FlankDelements.resize(count);
  flanks.FlankHighestGroup.resize(count, 0);
  ApplyLists(context);
}

int HighestOf(const FlankList& list) {
  const auto highest = std::max_element(list.listed.begin(), list.listed.end());
  return highest == list.listed.end() ? 0 : *highest;
}

bool EndsInZ(std::string_view text) {
  return text.find_first_of("Zz") != std::string_view::npos;
}

// Reads the Flank numbers of the line; before `Flanks=` the largest one sets FlankCount.
void ReadFlankList(SpecContext& context, FlankList& list) {
  const int limit = context.design.FlankCount > 0 ? context.design.FlankCount : kLargestFlankCount;
  FlankList read = list;
  for (int field = 1; field <= context.reading.FieldCount && read.all == ' '; ++field) {
    const int number = ParseWhole(context, FieldAt(context.reading, field), limit);
    if (context.reading.faulty()) return;
    if (number > 0) read.listed.push_back(number);
    if (number > 0 && EndsInZ(FieldAt(context.reading, field))) read.zOrigin.push_back(number);
  }
  read.given = true;
  list = read;
  if (context.design.FlankCount == 0)
    SetFlankCount(context, std::max(kFewestFlanksOfAList, HighestOf(list)));
  else
    ApplyLists(context);
}

void SetCenters(SpecContext& context, bool reversed) {
  if (context.reading.FieldCount == 0) return;
  FlankList& list = context.state.centers;
  list.reversed = reversed;
  ReadFlankList(context, list);
}

void SetOrientations(SpecContext& context, bool reversed) {
  if (context.reading.FieldCount == 0 || FieldAt(context.reading, 1).empty()) return;
  FlankList& list = context.state.orientations;
  list.reversed = reversed;
  const char letter = UpperCase(FieldAt(context.reading, 1).front());
  if (letter == 'Y' || letter == 'N') list.all = letter;
  ReadFlankList(context, list);
}

// ---- The maps

// Builds all maps from the Flank of each data position, 0 for a position that is not used.
void BuildMaps(Design& design, const std::vector<int>& flankOfPosition) {
  const auto positions = static_cast<std::int32_t>(flankOfPosition.size());
  EntryMaps& maps = design.maps;
  maps.EntryMap.assign(positions, kNoFlank);
  maps.ActiveMap.assign(positions, Position(0));
  maps.DataPositionActive.assign(positions, 0);
  maps.ModelFlank.clear();
  design.repeatedFlanks = false;
  std::vector<bool> met(static_cast<std::size_t>(design.FlankCount) + 1, false);
  for (const DataPosition place : Upward(maps.EntryMap)) {
    const int flank = flankOfPosition[place.offset()];
    if (flank == 0) continue;
    maps.EntryMap[place] = FlankNo(flank);
    maps.ActiveMap[place] = maps.ModelFlank.push(FlankNo(flank));
    design.repeatedFlanks = design.repeatedFlanks || met[static_cast<std::size_t>(flank)];
    met[static_cast<std::size_t>(flank)] = true;
  }
  design.DataFlankCount = positions;
  design.ModelFlankCount = maps.ModelFlank.rows();
}

// The Flank numbers of `Entered-in-data=`; empty on a fault.
std::vector<int> ReadEntered(SpecContext& context) {
  std::vector<int> flanks;
  for (int field = 1; field <= context.reading.FieldCount; ++field) {
    flanks.push_back(
        ParseWhole(context, FieldAt(context.reading, field), context.design.FlankCount));
    if (context.reading.faulty()) return {};
  }
  return flanks;
}

// Without an active position there is nothing to measure, and statements that were read for another
// number of active positions cannot be used.
bool CannotBeUsed(SpecContext& context, int active) {
  const Design& design = context.design;
  const bool statementsAgree = design.ModelLast < 0 || design.ModelFlankCount == active;
  if (active > 0 && statementsAgree) return false;
  FaultParticulars particulars;
  particulars.number = active;
  SetFault(context.reading, Fault::enteredMismatch, std::move(particulars));
  return true;
}

}  // namespace

void SetFlanks(SpecContext& context) {
  if (FieldAt(context.reading, 1).empty()) return ForgetSeen(context.state, keyword_code::kFlanks);
  const int count = ParseWhole(context, FieldAt(context.reading, 1), kLargestFlankCount);
  if (context.reading.faulty()) return;
  const int listed =
      std::max(HighestOf(context.state.centers), HighestOf(context.state.orientations));
  if (count < listed) return SetFault(context.reading, Fault::flanksConflict);
  // What needs the Flanks will be refused; here is why.
  if (count == 0)
    context.console.ShowFlagged(
        JoinNumber("There are no Flanks by line", context.reading.LineNumber) + ": " +
        std::string(ShownPart(context.reading.SourceLine)));
  SetFlankCount(context, count);
  if (FieldAt(context.reading, 2).empty()) return;
  context.design.DataFlankCount =
      ParseWhole(context, FieldAt(context.reading, 2), kLargestFlankCount);
  context.state.dataPositionsGiven = context.design.DataFlankCount > 0;
}

bool FlanksDisagree(SpecContext& context) {
  const Design& design = context.design;
  const std::string_view second = FieldAt(context.reading, 2);
  if (FieldAt(context.reading, 1).empty()) return false;
  if (ParseWhole(context, FieldAt(context.reading, 1), kLargestFlankCount) != design.FlankCount)
    return true;
  return !second.empty() && context.state.dataPositionsGiven &&
         ParseWhole(context, second, kLargestFlankCount) != design.DataFlankCount;
}

void SetNoncenter(SpecContext& context) {
  SetCenters(context, false);
}
void SetCenter(SpecContext& context) {
  SetCenters(context, true);
}
void SetPositive(SpecContext& context) {
  SetOrientations(context, false);
}
void SetNegative(SpecContext& context) {
  SetOrientations(context, true);
}

void SetEnteredInData(SpecContext& context) {
  Design& design = context.design;
  if (design.FlankCount == 0) return SetFault(context.reading, Fault::flanksFirst);
  if (context.reading.FieldCount == 0)
    return ForgetSeen(context.state, keyword_code::kEnteredInData);
  const std::vector<int> flanks = ReadEntered(context);
  if (flanks.empty()) return;
  const auto positions = static_cast<int>(flanks.size());
  const auto active = positions - static_cast<int>(std::count(flanks.begin(), flanks.end(), 0));
  if (context.state.dataPositionsGiven && design.DataFlankCount != positions)
    context.console.WarnLine(JoinNumber(" Entered= has", positions) +
                             " flank positions. This must match Data=");
  if (active != design.FlankCount)
    context.console.WarnLine(JoinNumber(" Entered= has", active) +
                             " active flank positions. This must match Models=");
  if (CannotBeUsed(context, active)) return;
  BuildMaps(design, flanks);
  context.settings.enteredInDataGiven = true;
}

void MakeDefaultMaps(Design& design) {
  if (design.FlankCount == 0 || design.ModelFlankCount > 0) return;
  const int positions = design.DataFlankCount > 0 ? design.DataFlankCount : design.FlankCount;
  std::vector<int> flanks(static_cast<std::size_t>(positions), 0);
  for (int place = 1; place <= std::min(positions, design.FlankCount); ++place)
    flanks[static_cast<std::size_t>(place - 1)] = place;
  BuildMaps(design, flanks);
  // Flanks beyond the data line's positions are active positions without a data position.
  for (int flank = positions + 1; flank <= design.FlankCount; ++flank)
    design.maps.ModelFlank.push(FlankNo(flank));
  design.ModelFlankCount = design.maps.ModelFlank.rows();
}

void MakeDefaultMaps(Run& run) {
  MakeDefaultMaps(run.analysis.design);
}

}  // namespace flanks
