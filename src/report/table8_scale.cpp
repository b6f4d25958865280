#include "report/table8_scale.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr std::size_t kModelsShown = 20;
constexpr double kCurvatureFloor = 1e-5;

// What the blocks of one number have in common: a definition, or a statement without one.
std::pair<std::int32_t, std::int32_t> FamilyOf(const ScaleTables& scales, ScaleRow scale) {
  const ScaleDefinitionRow definition = scales.scaleDefinition[scale];
  if (definition.number() >= 0) return {definition.number(), -1};
  return {-1, scales.scaleModel[scale].number()};
}

// The statement's positions, the element of this structure in a "#" position, and its type.
std::string ModelLine(const Analysis& analysis, StructureRow structure) {
  const Design& design = analysis.design;
  const ModelRow model = analysis.structures.structureModel[structure];
  std::string line = " Model = ", elements;
  for (Position position(1); position.number() <= design.ModelFlankCount; ++position) {
    const ElementSlot key = analysis.structures.structureKey.at(structure, position.number() - 1);
    if (key.number() == 0) {
      line += design.models.ModelText[model][static_cast<std::size_t>(position.number()) - 1] + ",";
      continue;
    }
    if (design.models.reference(model, position).reversed) line += "-";
    line += std::to_string(design.elements.ElementNumber[key]) + ",";
    elements += "  ; " + design.flanks.FlankName[design.maps.ModelFlank[position]] + ": " +
                design.elements.ElementLabel[key];
  }
  const auto typeField = static_cast<std::size_t>(design.ModelTypeField()) - 1;
  return line + design.models.ModelText[model][typeField] + elements;
}

// By raw category: the definition's names.
std::vector<std::string> CategoryNames(const Analysis& analysis, ScaleRow scale) {
  std::vector<std::string> names(kCategories);
  const ScaleDefinitionRow row = analysis.scales.scaleDefinition[scale];
  if (!analysis.design.scales.has(row)) return names;
  for (const ScaleCategory& category : analysis.design.scales[row].categories)
    if (category.number >= 0 && category.number < kCategories)
      names[static_cast<std::size_t>(category.number)] = category.label;
  return names;
}

Table8Structure StructureOf(const ScaleTables& scales, ScaleRow scale) {
  const bool counts =
      scales.scaleType[scale] == ScaleType::poisson ||
      (scales.scaleType[scale] == ScaleType::binomial && scales.scaleMaximum[scale] > 1);
  if (counts) return Table8Structure::none;
  return scales.ScaleTopCategory[scale] < 2 ? Table8Structure::dichotomy : Table8Structure::rating;
}

bool HasAnchoredThreshold(const ScaleTables& scales, ScaleRow scale) {
  for (int k = 1; k <= scales.ScaleTopCategory[scale]; ++k)
    if (scales.CategoryFlag.at(scale, k) == kCategoryAnchored) return true;
  return false;
}

// Whether the diagnosis of anchored thresholds is shown: it has a meaning only where one is.
bool IsDiagnosed(const ScaleTables& scales, ScaleRow scale) {
  return StructureOf(scales, scale) != Table8Structure::none && HasAnchoredThreshold(scales, scale);
}

// The threshold of category k, at least 1, and what is known of it.
void FillThreshold(const ScaleTables& scales, ScaleRow scale, int k, const CategorySums& sums,
                   CategoryRow& row) {
  const std::int16_t flag = scales.CategoryFlag.at(scale, k);
  const int top = scales.ScaleTopCategory[scale];
  if (flag == kCategorySkipped) {
    row.infinite = k == top || scales.CategoryFlag.at(scale, k + 1) != kCategoryAnchored;
    return;
  }
  row.threshold = scales.ThresholdTable.at(scale, k);
  row.anchored = flag == kCategoryAnchored;
  if (row.anchored) {
    row.displacement = DisplacementOf(sums, scale, k, top);
  } else if (const double information = scales.DiscriminationSums.at(scale, k);
             scales.scaleType[scale] == ScaleType::rating && top >= 2 && information > 0.0) {
    row.standardError = 1.0 / std::sqrt(information);
  }
}

CellKind PlaceOf(int k, int top) {
  if (top < 1) return CellKind::blank;
  return k == 0 ? CellKind::first : k == top ? CellKind::top : CellKind::other;
}

CategoryRow RowOf(const ScaleTables& scales, ScaleRow scale, int k, const CategorySums& sums) {
  CategoryRow row;
  row.score = static_cast<std::int16_t>(scales.lowestCategory[scale] + k);
  row.code = scales.rawCategory.at(scale, k);
  row.total = sums.Total.at(scale, row.code);
  row.used = sums.Used.at(scale, k);
  row.figures = FiguresOf(sums, scale, k);
  row.residual = row.used - sums.Expected.at(scale, k);
  const int top = scales.ScaleTopCategory[scale];
  row.structure = PlaceOf(k, top);
  row.counts = row.used > 0.0 ? row.structure : CellKind::blank;
  if (k > 0) FillThreshold(scales, scale, k, sums, row);
  return row;
}

// Percents, and where the average measures do not rise.
void CompareRows(std::vector<CategoryRow>& rows) {
  double all = 0.0, sum = 0.0;
  for (const CategoryRow& row : rows) all += row.used;
  const CategoryRow* below = nullptr;
  for (CategoryRow& row : rows) {
    if (!(row.used > 0.0)) continue;
    sum += row.used;
    row.percent = 100.0 * row.used / all;
    row.cumulative = 100.0 * sum / all;
    row.disordered = below != nullptr && !(row.figures.average > below->figures.average);
    below = &row;
  }
}

// Responses to categories that no estimable observation has: all are of extreme elements.
void AddUnplaced(const ScaleTables& scales, ScaleRow scale, const CategorySums& sums,
                 std::vector<CategoryRow>& rows) {
  for (int raw = 0; raw < scales.width; ++raw) {
    if (!(sums.Total.at(scale, raw) > 0.0) || scales.orderedCategory.at(scale, raw) >= 0) continue;
    CategoryRow row;
    row.counts = CellKind::unplaced;
    row.score = row.code = static_cast<std::int16_t>(raw);
    row.total = sums.Total.at(scale, raw);
    rows.push_back(row);
  }
  std::stable_sort(rows.begin(), rows.end(),
                   [](const CategoryRow& a, const CategoryRow& b) { return a.code < b.code; });
}

}  // namespace

std::vector<Table8Block> Table8Blocks(const Analysis& analysis) {
  const ScaleTables& scales = analysis.scales;
  std::map<std::pair<std::int32_t, std::int32_t>, std::pair<int, int>> families;  // number, scales
  std::vector<Table8Block> blocks;
  std::vector<std::size_t> blockOf(static_cast<std::size_t>(scales.scales()));
  for (const ScaleRow scale : Upward(scales.scaleType)) {
    blockOf[scale.offset()] = blocks.size();
    blocks.push_back({scale, "", {}});
    const int next = static_cast<int>(families.size()) + 1;
    ++families.try_emplace(FamilyOf(scales, scale), next, 0).first->second.second;
  }
  std::map<int, int> counted;
  for (Table8Block& block : blocks) {
    const auto [number, several] = families[FamilyOf(scales, block.scale)];
    block.number = std::to_string(number);
    if (several > 1) block.number += "." + std::to_string(++counted[number]);
  }
  for (const StructureRow row : Upward(analysis.structures.structureScale)) {
    const ScaleRow scale = analysis.structures.structureScale[row];
    blocks[blockOf[scale.offset()]].structures.push_back(row);
  }
  std::erase_if(blocks, [&scales](const Table8Block& block) {
    return scales.scaleType[block.scale] == ScaleType::missing;
  });
  return blocks;
}

std::vector<std::string> ModelLines(const Analysis& analysis, const Table8Block& block) {
  std::vector<std::string> lines;
  for (const StructureRow structure : block.structures) {
    if (lines.size() == kModelsShown) {
      lines.push_back(" and " + std::to_string(block.structures.size() - kModelsShown) +
                      " more models");
      break;
    }
    lines.push_back(ModelLine(analysis, structure));
  }
  return lines;
}

std::string ScaleIdentification(const Analysis& analysis, ScaleRow scale) {
  const ScaleDefinitionRow row = analysis.scales.scaleDefinition[scale];
  if (analysis.design.scales.has(row)) {
    const ScaleDefinition& definition = analysis.design.scales[row];
    return definition.name + "," + definition.type + (definition.specific ? ",S" : ",G") +
           (definition.keep ? ",K" : ",O");
  }
  const auto typeField = static_cast<std::size_t>(analysis.design.ModelTypeField()) - 1;
  return analysis.design.models.ModelText[analysis.scales.scaleModel[scale]][typeField];
}

ScaleReport ReportOnScale(const Analysis& analysis, ScaleRow scale, const CategorySums& sums) {
  const ScaleTables& scales = analysis.scales;
  const int top = scales.ScaleTopCategory[scale];
  ScaleReport report;
  report.structure = StructureOf(scales, scale);
  report.diagnostic = IsDiagnosed(scales, scale);
  report.lowest = scales.lowestCategory[scale];
  if (top >= 1) {
    report.kernel = KernelScaleOf(scales, scale, analysis.estimates.ExponentLimit);
    report.landmarks = FindLandmarks(*report.kernel);
  }
  for (int k = 0; k <= top; ++k) {
    report.rows.push_back(RowOf(scales, scale, k, sums));
    CategoryRow& row = report.rows.back();
    if (top >= 1) row.landmarks = report.landmarks[static_cast<std::size_t>(k)];
    report.codes = report.codes || row.score != row.code;
  }
  CompareRows(report.rows);
  AddUnplaced(scales, scale, sums, report.rows);
  const std::vector<std::string> names = CategoryNames(analysis, scale);
  for (CategoryRow& row : report.rows) row.name = names[static_cast<std::size_t>(row.code)];
  return report;
}

std::string DiscriminationLine(const ScaleTables& scales, ScaleRow scale) {
  // With two categories the scale is a dichotomy, which has none.
  if (StructureOf(scales, scale) != Table8Structure::none || scales.ScaleTopCategory[scale] < 2)
    return "";
  std::string line =
      scales.scaleType[scale] == ScaleType::poisson ? "Poisson " : "Binomial trials ";
  if (scales.CategoryFlag.at(scale, 0) == kCategoryAnchored) {
    line += "Anchored";
  } else {
    // Cell 1 has the second derivative of the log-likelihood (estimate/discrimination_step.h).
    const double curvature = std::abs(scales.DiscriminationSums.at(scale, 1)) + kCurvatureFloor;
    line += "S.E. " + DecimalsText2(1.0 / std::sqrt(curvature));
  }
  return line + " discrimination: " +
         FixedField(static_cast<double>(scales.ThresholdTable.at(scale, 0)), 5, 2);
}

}  // namespace flanks
