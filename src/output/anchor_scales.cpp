#include "output/anchor_scales.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/single.h"
#include "base/text.h"
#include "report/format/join_number.h"

namespace flanks {
namespace {

// What the line of one category holds.
struct CategoryLine {
  std::string label;
  std::optional<std::string> value;  // threshold or discrimination
  char flag = ' ';
  std::string recodes;  // joined by "+"
};
using CategoryLines = std::map<int, CategoryLine>;  // by category of the Specification

std::string LineText(const std::string& category, const CategoryLine& line) {
  std::string text = category + "=" + line.label + ",";
  if (line.value) text += *line.value;
  text += ",";
  text += line.value ? std::string(1, line.flag) : "";
  return text + "," + line.recodes;
}

void AddRecode(std::string& list, const RecodeItem& item) {
  if (!list.empty()) list += '+';
  list += item.text;
}

std::string HeadOf(const AnchorScale& scale, const Design& design) {
  constexpr std::string_view kHead = "Rating (or partial credit) scale = ";
  std::string head = std::string(kHead) + scale.name + ",";
  if (!design.scales.has(scale.definition)) {
    const std::vector<std::string>& fields = design.models.ModelText[scale.model];
    head += fields[static_cast<std::size_t>(design.ModelTypeField() - 1)];
    return scale.ofElements ? head : head + ",G,O";
  }
  const ScaleDefinition& definition = design.scales[scale.definition];
  head += definition.type;
  if (scale.ofElements) return definition.keep ? head + ",G,K" : head;
  head += definition.specific ? ",S" : ",G";
  head += definition.keep ? ",K" : ",O";
  return WithComment(std::move(head), definition.tail);
}

// Labels and recodes of the definition; responses that are recoded to a text which is no category
// go to `others`, by that text in the order in which they stand.
struct Definition {
  CategoryLines categories;
  std::vector<std::pair<std::string, CategoryLine>> others;
};

CategoryLine& LineOf(Definition& definition, const std::string& category) {
  const bool isNumber = !category.empty() && std::all_of(category.begin(), category.end(), IsDigit);
  if (isNumber) return definition.categories[std::stoi(category)];
  const auto found = std::find_if(definition.others.begin(), definition.others.end(),
                                  [&](const auto& other) { return other.first == category; });
  if (found != definition.others.end()) return found->second;
  return definition.others.emplace_back(category, CategoryLine()).second;
}

Definition ReadDefinition(const ScaleDefinition& scale) {
  Definition definition;
  for (const RecodeItem& item : scale.recodes)
    AddRecode(LineOf(definition, item.category).recodes, item);
  std::size_t other = 0;
  for (const ScaleCategory& category : scale.categories) {
    if (category.number >= 0)
      definition.categories[category.number].label = category.label;
    else if (other < definition.others.size())
      definition.others[other++].second.label = category.label;
  }
  return definition;
}

// The values that the Specification gave, where nothing was estimated.
void TakeGivenValues(const ScaleDefinition& scale, CategoryLines& categories) {
  for (const ScaleCategory& category : scale.categories) {
    if (category.number < 0) continue;
    CategoryLine& line = categories[category.number];
    if (category.hasAnchorValue || category.flag == 'A') line.value = FreeNumber(category.anchor);
    line.flag = category.flag;
  }
}

bool HasThresholds(const ScaleTables& scales, ScaleRow scale) {
  return scales.scaleType[scale] == ScaleType::rating || scales.scaleMaximum[scale] == 1;
}

// The thresholds that were estimated or anchored; gives those of the lines as a list.
std::string TakeThresholds(const ScaleTables& scales, ScaleRow scale, float uscale, char mark,
                           CategoryLines& categories) {
  std::string list;
  for (int k = 0; k <= scales.ScaleTopCategory[scale]; ++k) {
    CategoryLine& line = categories[scales.rawCategory.at(scale, k)];
    if (scales.CategoryFlag.at(scale, k) == kCategorySkipped) continue;
    line.flag = mark;
    if (k == 0) {
      if (mark == 'A') line.value = "0";
      continue;
    }
    const double threshold = scales.ThresholdTable.at(scale, k);
    line.value = FreeNumber(Single(threshold * static_cast<double>(uscale)));
    list += (list.empty() ? "" : ", ") + *line.value;
  }
  return list;
}

void WriteScale(const AnchorScale& scale, const Design& design, const ScaleTables& scales,
                float uscale, char mark, SpecificationLines& lines) {
  Definition definition;
  const bool defined = design.scales.has(scale.definition);
  if (defined) definition = ReadDefinition(design.scales[scale.definition]);
  std::string thresholds;
  if (scale.scale.number() < 0) {
    if (defined) TakeGivenValues(design.scales[scale.definition], definition.categories);
  } else if (HasThresholds(scales, scale.scale)) {
    thresholds = TakeThresholds(scales, scale.scale, uscale, mark, definition.categories);
  } else {
    CategoryLine& line = definition.categories[0];
    line.value = FreeNumber(scales.ThresholdTable.at(scale.scale, 0));
    line.flag = mark;
  }
  lines.Line(HeadOf(scale, design));
  for (const auto& [category, line] : definition.others)
    lines.Line(" " + category + "= " + LineText("", line).substr(1));
  for (const auto& [category, line] : definition.categories)
    if (line.value || !line.label.empty() || !line.recodes.empty())
      lines.Line(LineText(std::to_string(category), line));
  constexpr std::size_t kShortList = 2;
  if (thresholds.size() > kShortList) lines.Line(" ; Rasch-Andrich Thresholds = " + thresholds);
  lines.Line("*");
}

}  // namespace

void WriteAnchorScales(const AnchorModels& models, const Design& design, const ScaleTables& scales,
                       float uscale, char mark, SpecificationLines& lines) {
  for (const AnchorScale& scale : models.scales) {
    if (lines.stopping()) return;
    WriteScale(scale, design, scales, uscale, mark, lines);
  }
}

}  // namespace flanks
