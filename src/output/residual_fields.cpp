#include "output/residual_fields.h"

#include <algorithm>
#include <cstddef>

#include "base/text.h"

namespace flanks {
namespace {

constexpr int kUsualDecimals = 2;

constexpr ResponseField kFields[] = {
    {ResponsePlace::observation, ResponseForm::whole, "Observation", "Obs", "Obs",
     "Observed Category"},
    {ResponsePlace::step, ResponseForm::whole, "Step count", "Stp", "Score", "Ordinal Category"},
    {ResponsePlace::expected, ResponseForm::decimals, "Expected value", "Exp", "Exp",
     "Expected Value"},
    {ResponsePlace::residual, ResponseForm::decimals, "Residual", "Res", "Res", "Residual=Obs-Exp"},
    {ResponsePlace::variance, ResponseForm::decimals, "Model Variance", "Var", "Var",
     "Model Variance of Obs around Exp"},
    {ResponsePlace::standardized, ResponseForm::decimals, "Standardized residual", "StRes", "StRes",
     "Standardized Residual = Res/sqrt(Var)"},
    {ResponsePlace::weight, ResponseForm::decimals, "Weight", "Wt", "Wt", "Observation Weight"},
    {ResponsePlace::logProbability, ResponseForm::decimals, "Log-probability", "LProb", "LProb",
     "Log-Probability of Obs"},
    {ResponsePlace::measure, ResponseForm::user, "Measure", "Measure", "Measure",
     "Measure difference generating Exp"},
    {ResponsePlace::displacement, ResponseForm::decimals, "Displacement", "Displ", "Displacement",
     "Uscale * Logit residual/variance"},
    {ResponsePlace::status, ResponseForm::whole, "Status", "Status", "Status",
     "1=Valid 2=Extreme Neg.=Unused"},
    {ResponsePlace::mostProbable, ResponseForm::whole, "Most probable cat.", "MPCat", "MPCat",
     "Most probable category"},
    {ResponsePlace::elementNumbers, ResponseForm::whole, "Element numbers", "", "", ""},
    {ResponsePlace::elementMeasures, ResponseForm::user, "Element measures", "", "", ""},
    {ResponsePlace::elementLabels, ResponseForm::text, "Element labels", "", "", ""},
};

// "F2" for Flank 2; where the Flank stands in several positions, "F2.2" for the second of them.
std::string FlankMark(const Design& design, Position position) {
  const FlankNo flank = design.maps.ModelFlank[position];
  int before = 0;
  for (Position other(1); other < position; ++other)
    if (design.maps.ModelFlank[other] == flank) ++before;
  const std::string mark = "F" + std::to_string(flank.number());
  return before == 0 ? mark : mark + "." + std::to_string(before + 1);
}

ResponseColumn ColumnOf(const Design& design, const ResponseField& field, Position position) {
  const std::string& name = design.flanks.FlankName[design.maps.ModelFlank[position]];
  const std::string place = std::to_string(position.number());
  const std::string mark = FlankMark(design, position);
  ResponseColumn column{field.place, field.form, position, "", "", ""};
  switch (field.place) {
    case ResponsePlace::elementNumbers:
      column.heading = "E" + place;
      column.spssName = mark;
      column.spssLabel = "Element number: " + name;
      break;
    case ResponsePlace::elementMeasures:
      column.heading = "M" + place;
      column.spssName = mark + "-Measure";
      column.spssLabel = "Element measure: " + name;
      break;
    default:
      column.heading = name;
      ReplaceCharacter(column.heading, ' ', '_');
      column.spssName = mark + "-Label";
      column.spssLabel = name;
  }
  return column;
}

}  // namespace

std::span<const ResponseField> ResponseFields() {
  return kFields;
}

std::vector<ResponseField> SelectedResponseFields(std::string_view selection) {
  std::vector<ResponseField> fields;
  for (const ResponseField& field : kFields) {
    const std::size_t place = static_cast<std::size_t>(field.place) - 1;
    if (place < selection.size() && selection[place] == 'Y') fields.push_back(field);
  }
  return fields;
}

int ResponseDecimals(std::string_view selection) {
  const std::size_t place = static_cast<std::size_t>(ResponsePlace::decimals) - 1;
  if (place >= selection.size() || !IsDigit(selection[place])) return kUsualDecimals;
  return selection[place] - '0';
}

std::vector<ResponseColumn> ResponseColumnsOf(const Design& design, std::string_view selection) {
  std::vector<ResponseColumn> columns;
  for (const ResponseField& field : SelectedResponseFields(selection)) {
    if (!field.heading.empty()) {
      columns.push_back({field.place, field.form, Position(0), std::string(field.heading),
                         std::string(field.spssName), std::string(field.spssLabel)});
      continue;
    }
    for (Position position(1); position.number() <= design.ModelFlankCount; ++position)
      columns.push_back(ColumnOf(design, field, position));
  }
  return columns;
}

}  // namespace flanks
