#include "output/subset_file.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "output/specification_lines.h"
#include "report/format/join_number.h"
#include "run/progress_bar.h"

namespace flanks {
namespace {

constexpr std::string_view kFirstHead =
    "Group anchor this flank and/or the other flanks (please experiment to see what works):";
constexpr std::string_view kLaterHead = "And/or group anchor this flank:";

// The groups of a Flank: each subset by its place in the order in which elements have it first.
// An element of several subsets counts with the first of them.
std::unordered_map<std::int32_t, int> GroupsOf(const DisjointSubsets& subsets, SlotRange slots) {
  std::unordered_map<std::int32_t, int> groups;
  for (const ElementSlot slot : Upward(slots.low, slots.high))
    if (const auto numbers = subsets.Of(slot); !numbers.empty())
      groups.emplace(numbers.front(), static_cast<int>(groups.size()) + 1);
  return groups;
}

class SubsetWriter {
 public:
  SubsetWriter(Run& run, Destination& out)
      : analysis_(run.analysis), lines_(out, run.console), bar_(MakeBar(run)) {}

  void Write();

 private:
  static ProgressBar MakeBar(Run& run) {
    run.console.ShowLine("Constructing subset-group-anchor file:");
    return ProgressBar(run.console, run.analysis.design.ElementTotal);
  }
  void WriteFlank(FlankNo flank, SlotRange slots,
                  const std::unordered_map<std::int32_t, int>& groups);

  const Analysis& analysis_;
  SpecificationLines lines_;
  ProgressBar bar_;
  bool anyFlank_ = false;
};

void SubsetWriter::WriteFlank(FlankNo flank, SlotRange slots,
                              const std::unordered_map<std::int32_t, int>& groups) {
  const std::string umean = FreeNumber(analysis_.settings.Umean);
  lines_.Line("");
  lines_.Line(anyFlank_ ? kLaterHead : kFirstHead);
  lines_.Line("");
  anyFlank_ = true;
  const std::string head = std::to_string(flank.number()) + "," +
                           analysis_.design.flanks.FlankName[flank] +
                           ", G ; group-anchoring at Umean =" + (umean.front() == '-' ? "" : " ");
  lines_.Line(head + umean + JoinNumber(" with", static_cast<std::int64_t>(groups.size())) +
              " subsets");
  lines_.Line(
      " ; these element specifications can be placed in your Labels= after the existing element "
      "specifications for this flank");
  const ElementTable& elements = analysis_.design.elements;
  for (const ElementSlot slot : Upward(slots.low, slots.high)) {
    const auto numbers = analysis_.subsets.Of(slot);
    if (numbers.empty()) continue;
    lines_.Line(std::to_string(elements.ElementNumber[slot]) + "," + elements.ElementLabel[slot] +
                "," + umean + ", " + std::to_string(groups.at(numbers.front())));
    bar_.Advance(slot.number());
  }
  lines_.Line("*");
}

void SubsetWriter::Write() {
  lines_.Line("To resolve subset problems, copy-and-paste after Labels=");
  lines_.Line("Non-center= must reference a flank that is not anchored or group-anchored.");
  const FlankTable& flanks = analysis_.design.flanks;
  for (const FlankNo flank : Upward(flanks.FlankName)) {
    const SlotRange slots = SlotsOf(flanks, flank);
    const auto groups = GroupsOf(analysis_.subsets, slots);
    if (!groups.empty()) WriteFlank(flank, slots, groups);
    if (lines_.stopping()) return bar_.Break();
  }
  if (!anyFlank_)
    lines_.Line(
        " Sorry! Group-anchor file could not be constructed automatically. Please see Table 7 for "
        "subset numbers.");
  bar_.End();
}

}  // namespace

void WriteSubsetLines(Run& run, Destination& out) {
  SubsetWriter(run, out).Write();
}

bool WriteSubsetFile(Run& run, const std::string& name) {
  if (!run.analysis.subsets.several()) {
    run.console.ShowLine("The data are not in several subsets: there is no group-anchor file.");
    return false;
  }
  return WriteOutputFile(run, "WriteSubsetFile", name,
                         [&](Destination& out) { WriteSubsetLines(run, out); });
}

}  // namespace flanks
