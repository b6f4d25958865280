#include "report/table6_categories.h"

#include <algorithm>
#include <span>

#include "base/single.h"
#include "base/text.h"
#include "base/utf8.h"
#include "estimate/kernel.h"
#include "report/format/clip_field.h"
#include "report/format/fixed_field.h"
#include "spec/models.h"

namespace flanks {
namespace {

constexpr std::size_t kModelsShown = 20;  // of a scale
// A mean that is a half but for the rounding of its terms is a half, in whatever units.
constexpr double kTie = 1e-5;
constexpr int kCategoryPlaces = 3;
constexpr std::string_view kBoundary = "---";

KernelScale KernelOf(const Analysis& analysis, ScaleRow scale) {
  const ScaleTables& scales = analysis.scales;
  KernelScale kernel;
  const auto width = static_cast<std::size_t>(scales.width);
  SetUpKernelScale(scales.scaleType[scale], scales.ScaleTopCategory[scale],
                   std::span(scales.ThresholdTable.row(scale), width),
                   std::span(scales.CategoryFlag.row(scale), width),
                   analysis.estimates.ExponentLimit, kernel);
  return kernel;
}

// The label that the scale's definition gives a category.
std::string LabelOf(const Analysis& analysis, ScaleRow scale, int rawCategory) {
  const ScaleDefinitionRow definition = analysis.scales.scaleDefinition[scale];
  if (!analysis.design.scales.has(definition)) return "";
  for (const ScaleCategory& category : analysis.design.scales[definition].categories)
    if (category.number == rawCategory) return category.label;
  return "";
}

// "  2", and with legends "  2 (fair)".
std::vector<std::string> CategoryTexts(const Analysis& analysis, ScaleRow scale, bool legends) {
  std::vector<std::string> texts;
  for (int category = 0; category <= analysis.scales.ScaleTopCategory[scale]; ++category) {
    const int raw = analysis.scales.rawCategory.at(scale, category);
    const std::string label = legends ? LabelOf(analysis, scale, raw) : "";
    texts.push_back(FixedField(raw, kCategoryPlaces, 0) +
                    (label.empty() ? "" : " (" + label + ")"));
  }
  return texts;
}

// A "#" of the statement becomes the element whose own scale this is.
std::string ModelOf(const Analysis& analysis, StructureRow structure) {
  const Design& design = analysis.design;
  const ModelRow model = analysis.structures.structureModel[structure];
  if (!design.models.ModelText.has(model)) return "";
  std::string text, elements;
  Position position(1);
  std::string_view field;
  const std::string statement = StatementText(design.models, model);
  for (FieldCursor fields(statement); fields.Next(field); ++position) {
    if (!text.empty()) text += ",";
    const bool own = position.number() <= design.ModelFlankCount &&
                     design.models.reference(model, position).structured;
    const ElementSlot key =
        own ? analysis.structures.structureKey.at(structure, position.number() - 1) : ElementSlot();
    if (!design.elements.ElementNumber.has(key)) {
      text += field;
      continue;
    }
    if (design.models.reference(model, position).reversed) text += "-";
    text += std::to_string(design.elements.ElementNumber[key]);
    elements += "  ; " + std::to_string(design.elements.ElementNumber[key]) + ": " +
                design.elements.ElementLabel[key];
  }
  return text + elements;
}

// The statements of each scale, the first ones where many share it.
Column<ScaleRow, std::vector<StructureRow>> StructuresOfScales(const Analysis& analysis) {
  Column<ScaleRow, std::vector<StructureRow>> structures(analysis.scales.scales());
  for (const StructureRow structure : Upward(analysis.structures.structureScale)) {
    const ScaleRow scale = analysis.structures.structureScale[structure];
    if (structures.has(scale) && structures[scale].size() < kModelsShown)
      structures[scale].push_back(structure);
  }
  return structures;
}

void FillCells(const std::vector<int>& categories, const std::vector<std::string>& texts,
               bool everyNumber, Utf8Encoded encoding, RulerScaleColumn& column) {
  for (const std::string& text : texts)
    column.width = std::max(column.width, DisplayWidth(text, encoding));
  for (std::size_t row = 0; row < categories.size(); ++row) {
    const bool end = row == 0 || row + 1 == categories.size();
    const bool mark = !everyNumber && !end && categories[row] != categories[row + 1];
    const std::string text =
        mark ? " " + std::string(kBoundary) : texts[static_cast<std::size_t>(categories[row])];
    column.cells.push_back(ClipField(text, column.width, encoding));
  }
}

}  // namespace

std::vector<ScaleRow> ScalesOfRulers(const ScaleTables& scales) {
  std::vector<ScaleRow> shown;
  for (const ScaleRow scale : Upward(scales.ScaleTopCategory))
    if (scales.ScaleTopCategory[scale] >= 1) shown.push_back(scale);
  return shown;
}

std::vector<int> RowCategories(const Analysis& analysis, ScaleRow scale, const RulerScale& ruler) {
  const Settings& settings = analysis.settings;
  const KernelScale kernel = KernelOf(analysis, scale);
  const int top = analysis.scales.ScaleTopCategory[scale];
  ProbabilityArray CategoryProbability{};
  const auto expectedAt = [&](double userValue) {
    const float logits = Single((userValue - settings.Umean) / settings.Uscale);
    return static_cast<double>(CategoryProbabilities(kernel, logits, CategoryProbability).expected);
  };
  const double half = 0.5 / ruler.lines;
  std::vector<int> categories;
  for (int row = 0; row < ruler.rows(); ++row) {
    const double value = ruler.ValueOf(row);
    const double mean = (expectedAt(value - half) + expectedAt(value + half)) / 2.0;
    categories.push_back(std::clamp<int>(RoundInteger(mean + kTie), 0, top));
  }
  // A unit below 0 turns the scale over.
  (settings.Uscale > 0.0f ? categories.front() : categories.back()) = top;
  return categories;
}

std::vector<RulerScaleColumn> BuildScaleColumns(const Analysis& analysis, const RulerList& list,
                                                const RulerScale& ruler) {
  std::vector<RulerScaleColumn> columns;
  if (!list.scales) return columns;
  std::vector<ScaleRow> scales = ScalesOfRulers(analysis.scales);
  const bool single = scales.size() == 1;
  if (scales.size() > kMostScaleColumns) scales.resize(kMostScaleColumns);
  const Column<ScaleRow, std::vector<StructureRow>> structures = StructuresOfScales(analysis);
  for (const ScaleRow scale : scales) {
    RulerScaleColumn column;
    column.scale = scale;
    const std::string name = "S." + std::to_string(columns.size() + 1);
    column.head = single ? "Scale" : name;
    for (const StructureRow structure : structures[scale])
      column.models.push_back(name + ": Model = " + ModelOf(analysis, structure));
    FillCells(RowCategories(analysis, scale, ruler), CategoryTexts(analysis, scale, list.legends),
              list.everyNumber, EncodingOf(analysis.settings), column);
    columns.push_back(std::move(column));
  }
  return columns;
}

}  // namespace flanks
