#include "output/score_fields.h"

#include <algorithm>
#include <cstddef>

#include "base/held_single.h"
#include "base/utf8.h"
#include "report/format/join_number.h"
#include "stats/distributions.h"

namespace flanks {
namespace {

constexpr double kLargestDisplacement = 10.0;  // logits

struct FieldWords {
  std::string_view caption, heading, spssName, spssLabel;
  ScoreForm form;
};

// By position less 1.  Where a text is empty the settings or the Flank decide (below).
// Kept: "degrees of freeedom", and PtExp, InChiSqu and OutChiSqu where the headings have PtMeExp,
// InfChiSqu and OutfChiSqu (docs/quirks.md).
constexpr FieldWords kWords[kScoreFields] = {
    {"Raw score", "", "", "", ScoreForm::two},
    {"Response count", "", "", "", ScoreForm::two},
    {"Raw average score", "Obs.Avge", "Obs.Avge", "Observed Average", ScoreForm::two},
    {"Fair average score", "", "", "", ScoreForm::two},
    {"Measure", "Measure", "Measure", "", ScoreForm::user},
    {"Standard error", "S.E.", "S.E.", "Standard Error of the Measure", ScoreForm::user},
    {"Infit mean-square", "InfitMS", "InfitMS", "Information-weighted Mean-Square", ScoreForm::two},
    {"Infit standardized - t", "InfitZ", "InfitZ", "Information-weighted standardized t-statistic",
     ScoreForm::two},
    {"Outfit mean-square", "OutfitMS", "OutfitMS", "Outlier-sensitive Mean-Square", ScoreForm::two},
    {"Outfit standardized - t", "OutfitZ", "OutfitZ", "Outlier-sensitive standardized t-statistic",
     ScoreForm::two},
    {"", "", "", "", ScoreForm::two},
    {"Point-measure-Exp", "PtMeExp", "PtExp", "Expected value of Point-Measure Correlation",
     ScoreForm::two},
    {"Discrimination", "Discrim", "Discrim", "Discrimination slope estimate", ScoreForm::two},
    {"Displacement", "Displace", "Displace", "Measure displacement", ScoreForm::user},
    {"Status code", "Status", "Status", "Estimate Status", ScoreForm::whole},
    {"Group number", "Group", "Group", "Grouping Number", ScoreForm::whole},
    {"Weight", "Weight", "Weight", "element weight", ScoreForm::two},
    {"Sign", "Sign", "Sign", "flank direction", ScoreForm::whole},
    {"Infit Chi-square", "InfChiSqu", "InChiSqu", "Infit Chi-squared", ScoreForm::two},
    {"Infit d.f.", "Infitdf", "Infitdf", "Infit degrees of freeedom", ScoreForm::two},
    {"Infit chi-square prob.", "InfPr2s", "InfPr2s", "Infit Chi-square 2-sided probability",
     ScoreForm::four},
    {"Outfit chi-square", "OutfChiSqu", "OutChiSqu", "Outfit chi-squared", ScoreForm::two},
    {"Outfit d.f.", "Outfitdf", "Outfitdf", "Outfit degrees of freedom", ScoreForm::two},
    {"Outfit chi-square prob.", "OutfPr2s", "OutfPr2s", "Outfit Chi-squared 2-sided probability",
     ScoreForm::four},
    {"Element number", "", "E-Number", "Element Number", ScoreForm::whole},
    {"Element label", "", "E-Label", "Element Label", ScoreForm::text},
    {"Flank number", "F-Number", "F-Number", "Flank Number", ScoreForm::whole},
    {"Flank label", "F-Label", "F-Label", "Flank Label", ScoreForm::text},
};

// A heading that is the SPSS name as well, and the SPSS label.
void SetWords(ScoreField& field, std::string_view heading, std::string_view label) {
  field.heading = field.spssName = heading;
  field.spssLabel = label;
}

void SetCorrelationWords(ScoreField& field, char kind) {
  if (kind == 'Y') {
    field.caption = "Point-biserial";
    SetWords(field, "PtBis", "Point-Biserial Correlation (excluding current element)");
  } else if (kind == 'I') {
    field.caption = "Point-biserial-I";
    SetWords(field, "PtBisI", "Point-Biserial Correlation (including current element)");
  } else {
    field.caption = "Point-measure";
    SetWords(field, "PtMea", "Point-Measure Correlation");
  }
}

void SetScoreWords(const Settings& settings, ScoreField& score, ScoreField& count) {
  if (settings.TotalScoreMode) {
    SetWords(score, "T.Score", "Total Score (including extremes)");
    SetWords(count, "T.Count", "Total Count (including extremes)");
  } else {
    SetWords(score, "Score", "Score (without extremes)");
    SetWords(count, "Count", "Count (without extremes)");
  }
}

void SetFairWords(char kind, ScoreField& field) {
  if (kind == 'M') {
    SetWords(field, "FairMAvge", "Fair Average (based on Mean element measure)");
  } else {
    SetWords(field, "FairZAvge", "Fair Average (based on Zero element measure)");
  }
}

// Kept: the parenthesis stays open (docs/quirks.md).
std::string MeasureLabel(float uscale) {
  if (uscale == 1.0f) return "Logit Measure";
  return JoinNumber("User-Scaled Measure (1 logit =", uscale) + " units";
}

double PerCount(double sum, float count) {
  return count > 0.0f ? sum / count : 0.0;
}

void SetScores(const Settings& settings, const ElementScores& scores, ScoreValues& values) {
  values[1] = settings.TotalScoreMode ? scores.FirstRawScore : scores.RawScore;
  values[2] = settings.TotalScoreMode ? scores.FirstCount : scores.Count;
  values[3] = PerCount(values[1], HeldSingle(values[2]));
}

void SetFit(const ElementFinal& fit, ScoreValues& values) {
  values[7] = fit.InfitMeanSquare;
  values[8] = fit.InfitZStd;
  values[9] = fit.OutfitMeanSquare;
  values[10] = fit.OutfitZStd;
  values[11] = fit.PointMeasure;
  values[12] = fit.PointResidual;
  values[13] = fit.Discrimination;
  values[19] = static_cast<double>(fit.InfitMeanSquare) * fit.InfitDF;
  values[20] = fit.InfitDF;
  values[21] = NormalTail(fit.InfitZStd);
  values[22] = static_cast<double>(fit.OutfitMeanSquare) * fit.OutfitDF;
  values[23] = fit.OutfitDF;
  values[24] = NormalTail(fit.OutfitZStd);
}

}  // namespace

std::vector<ScoreField> ScoreFieldsOf(const Settings& settings, const FlankTable& flanks,
                                      FlankNo flank) {
  std::vector<ScoreField> fields;
  for (int position = 1; position <= kScoreFields; ++position) {
    const FieldWords& words = kWords[position - 1];
    fields.push_back({position, std::string(words.caption), std::string(words.heading),
                      std::string(words.spssName), std::string(words.spssLabel), words.form});
  }
  SetScoreWords(settings, fields[0], fields[1]);
  SetFairWords(settings.FairAverageKind, fields[3]);
  fields[kScoreMeasure - 1].spssLabel = MeasureLabel(settings.Uscale);
  SetCorrelationWords(fields[10], settings.PointCorrelationKind);
  fields[kScoreElementNumber - 1].heading = std::to_string(flank.number());
  fields[kScoreElementLabel - 1].heading = flanks.FlankName[flank];
  return fields;
}

std::vector<int> SelectedScoreFields(std::string_view selection) {
  const auto isSelected = [&](int position) {
    const auto place = static_cast<std::size_t>(position) - 1;
    return place < selection.size() && selection[place] == 'Y';
  };
  const bool numberFirst = isSelected(kScoreElementNumber) && !isSelected(kScoreNumberInPlace);
  std::vector<int> positions;
  if (numberFirst) positions.push_back(kScoreElementNumber);
  for (int position = 1; position <= kScoreFields; ++position)
    if (isSelected(position) && !(numberFirst && position == kScoreElementNumber))
      positions.push_back(position);
  return positions;
}

ScoreValues ScoreValuesOf(const Analysis& analysis, ElementSlot slot) {
  const Settings& settings = analysis.settings;
  const ElementTable& elements = analysis.design.elements;
  const ElementScores& scores = analysis.estimates.scores[slot];
  const FlankNo flank = elements.ElementFlank[slot];
  const double sign = IsPositive(analysis.design.flanks, flank) ? 1.0 : -1.0;
  const double uscale = settings.Uscale;
  const FinishedStatistics finished(analysis.estimates, slot);
  const ElementFinal& fit = *finished.operator->();
  ScoreValues values{};
  SetScores(settings, scores, values);
  SetFit(fit, values);
  values[4] = PerCount(fit.FairSum, scores.Count);
  values[5] = settings.Umean + uscale * analysis.estimates.elements[slot].ElementMeasure;
  // Kept: below 0 where `Uscale=` is (docs/quirks.md).
  values[6] = uscale * fit.StandardError;
  values[14] = sign * uscale *
               std::clamp(static_cast<double>(fit.Displacement), -kLargestDisplacement,
                          kLargestDisplacement);
  values[15] = analysis.estimates.elements[slot].ElementStatus;
  values[16] = elements.ElementGroup[slot];
  values[17] = elements.ElementWeight[slot];
  values[18] = sign;
  values[25] = elements.ElementNumber[slot];
  values[27] = flank.number();
  return values;
}

int LabelWidth(const Analysis& analysis, FlankNo flank) {
  const Utf8Encoded encoding = EncodingOf(analysis.settings);
  const SlotRange range = SlotsOf(analysis.design.flanks, flank);
  int width = 0;
  for (const ElementSlot slot : Upward(range.low, range.high))
    width = std::max(width, DisplayWidth(analysis.design.elements.ElementLabel[slot], encoding));
  return width;
}

}  // namespace flanks
