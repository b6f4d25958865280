#include "support/plain_pass.h"

#include <cmath>
#include <cstdlib>
#include <vector>

#include "data/record_reader.h"
#include "support/plain_kernel.h"

namespace flanks {
namespace {

struct Place {
  ElementSlot slot;
  FlankNo flank;
  bool reversed = false;
};

struct PlainObservation {
  ScaleRow scale;
  int m = 0;
  int category = 0;
  double weight = 0.0;  // a 32-bit value
  float B = 0.0f;
  int state = 0;
  std::vector<Place> places;  // by position; slot 0 for none
};

// An earlier position with the same element in the other sense takes both out.
void Cancel(std::vector<Place>& places) {
  for (std::size_t j = places.size(); j-- > 0;) {
    for (std::size_t i = j; i-- > 0;) {
      if (places[j].slot == ElementSlot(0) || places[i].slot != places[j].slot ||
          places[i].reversed == places[j].reversed)
        continue;
      places[i].slot = places[j].slot = ElementSlot(0);
      break;
    }
  }
}

int StateOf(const PassDesign& d, const PlainObservation& o) {
  if (o.m < 1 || o.weight <= 0.0 || o.category < 0) return -1;
  int playing = 0, extreme = 0;
  for (const Place& place : o.places) {
    if (place.slot == ElementSlot(0)) continue;
    const int status = d.estimates.elements[place.slot].ElementStatus;
    if (status == 0 || status == -4) return -2;
    std::abs(status) == 1 ? ++playing : ++extreme;
  }
  if (extreme == 0) return playing == 0 ? -4 : 1;
  if (extreme == 1) return 2;
  return playing == 0 ? -4 : -3;
}

PlainObservation Understand(const PassDesign& d, const RecordReader& reader,
                            const ResponseRecord& record) {
  PlainObservation o;
  const ModelRow model = d.structures.structureModel[record.structure];
  o.scale = d.structures.structureScale[record.structure];
  o.m = d.scales.ScaleTopCategory[o.scale];
  const bool rating = d.scales.scaleType[o.scale] == ScaleType::rating;
  o.category = rating ? d.scales.orderedCategory.at(o.scale, record.response)
                      : (record.response > o.m ? -1 : record.response);
  for (const Position p : Upward(reader.RecordElement)) {
    const PositionReference& reference = d.design.models.reference(model, p);
    Place place{reader.RecordElement[p], d.design.maps.ModelFlank[p], reference.reversed};
    if (!reference.measures()) place.slot = ElementSlot(0);
    o.places.push_back(place);
  }
  Cancel(o.places);
  double weight = static_cast<double>(record.replication) * d.design.models.ModelWeight[model];
  for (std::size_t j = o.places.size(); j-- > 0;) {
    const Place& place = o.places[j];
    if (place.slot == ElementSlot(0)) continue;
    weight *= d.design.elements.ElementWeight[place.slot];
    const float measure = d.estimates.elements[place.slot].ElementMeasure;
    const bool adds = IsPositive(d.design.flanks, place.flank) != place.reversed;
    o.B = adds ? o.B + measure : o.B - measure;
  }
  o.weight = Single(weight);
  o.state = StateOf(d, o);
  return o;
}

// Mean and variance of the terms t of a count scale, over the array as it stands.
void AddTerms(PassDesign& d, const PlainObservation& o, const float* p) {
  double L1 = 0.0, L2 = 0.0, t = 0.0;
  if (d.scales.scaleType[o.scale] == ScaleType::binomial) {
    for (int k = 1; k <= o.m; ++k) {
      t = t + std::log(static_cast<double>(k)) - std::log(static_cast<double>(o.m - k + 1));
      L1 += t * p[k];
      L2 += t * (t * p[k]);
    }
  } else {
    for (int k = 2; k < kProbabilityEntries; ++k) {
      t = t + std::log(static_cast<double>(k));
      L1 += t * p[k];
      L2 += t * (t * p[k]);
    }
  }
  d.scales.ExpectedCount.at(o.scale, 0) += o.weight * L1;
  d.scales.DiscriminationSums.at(o.scale, 1) += o.weight * (L2 - L1 * L1);
}

void AddToScale(PassDesign& d, const PlainObservation& o, const float* p) {
  if (o.m < 2 || o.state != 1) return;
  if (d.scales.scaleType[o.scale] == ScaleType::rating) {
    for (int k = o.m; k >= 0; --k) d.scales.ExpectedCount.at(o.scale, k) += o.weight * p[k];
  } else if (d.scales.CategoryFlag.at(o.scale, 0) != kCategoryAnchored) {
    AddTerms(d, o, p);
  }
}

struct Scores {
  double E, shifted, V;
};

void AddToElements(PassDesign& d, const PlainObservation& o, const Scores& s) {
  for (std::size_t j = o.places.size(); j-- > 0;) {
    if (o.places[j].slot == ElementSlot(0)) continue;
    ElementState& element = d.estimates.elements[o.places[j].slot];
    if (element.ElementStatus >= -1 && o.state != 1) continue;
    element.Information += o.weight * s.V;
    element.ExpectedSum += o.weight * (o.places[j].reversed ? o.m - s.E : s.E);
    element.ShiftedExpected += o.weight * (o.places[j].reversed ? o.m - s.shifted : s.shifted);
  }
}

}  // namespace

void PlainJmlePass(PassDesign& d, float newtonStep) {
  d.EndOfData();
  RecordReader reader(d.work);
  ResponseRecord record;
  float* const p = d.estimates.work.CategoryProbability.data();
  for (std::int64_t r = 1; r <= reader.records(); ++r) {
    reader.ReadResponseRecord(r, record);
    reader.ReadElementRecord(r);
    const PlainObservation o = Understand(d, reader, record);
    if (o.state != 1 && o.state != 2) continue;
    const PlainScale scale{d.scales.scaleType[o.scale], o.m, d.scales.ThresholdTable.row(o.scale),
                           d.scales.CategoryFlag.row(o.scale), d.estimates.ExponentLimit};
    Scores s{};
    if (newtonStep == 0.0f)
      s.shifted = PlainProbabilities(scale, o.B - d.estimates.iteration.SecantDelta, p);
    const float expected = PlainProbabilities(scale, o.B, p);
    s.E = expected;
    s.V = PlainVariance(scale, expected, p);
    AddToScale(d, o, p);
    AddToElements(d, o, s);
  }
  for (ElementState& element : d.estimates.elements)
    element.Information = Single(element.Information);
}

}  // namespace flanks
