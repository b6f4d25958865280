// The check of connectivity on random small designs, against two judges that work otherwise.
//
// The judge of the rule: each observation is a set of its own; sets that share elements of all but
// one Flank are joined, until none do.  The result does not depend on the order.
// The judge of the meaning: the difference of two elements of a Flank is determined by the data
// when it is a combination of the rows of the design matrix.  Elements in one subset must be so.
// (With two Flanks the reverse holds as well; with more the check may say "may be".)
#include "estimate/subsets.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "support/pass_design.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

using Slots = std::vector<std::int32_t>;
using Sets = std::set<std::set<std::int32_t>>;

struct SmallDesign {
  Slots sizes;  // of the Flanks
  std::vector<Slots> observations;
  std::set<std::int32_t> anchored;

  std::int32_t elements() const {
    std::int32_t total = 0;
    for (const std::int32_t size : sizes) total += size;
    return total;
  }
  std::size_t flankOf(std::int32_t slot) const {
    std::size_t flank = 0;
    for (; slot > sizes[flank]; ++flank) slot -= sizes[flank];
    return flank;
  }
};

class RandomDesigns : public ::testing::TestWithParam<unsigned> {
 protected:
  std::int32_t UpTo(std::int32_t most) {
    return static_cast<std::int32_t>(random() % static_cast<unsigned>(most)) + 1;
  }
  SmallDesign Design(std::int32_t flanks) {
    SmallDesign design;
    for (std::int32_t f = 0; f < flanks; ++f) design.sizes.push_back(UpTo(6));
    for (std::int32_t n = UpTo(14); n > 0; --n) {
      Slots slots;
      std::int32_t before = 0;
      for (const std::int32_t size : design.sizes) {
        slots.push_back(before + UpTo(size));
        before += size;
      }
      design.observations.push_back(slots);
    }
    return design;
  }
  std::mt19937 random{GetParam()};
};

// The subsets that the check found, as sets of slots; empty when all is connected.
Sets Checked(const SmallDesign& design) {
  PassDesign d;
  for (const std::int32_t size : design.sizes) d.Flank(size, kNegativeOrientation);
  d.Structure(d.Statement({}), d.Rating({0.0f, 0.0f}));
  d.Build();
  for (const std::int32_t slot : design.anchored)
    d.design.elements.ElementAnchor[ElementSlot(slot)] = AnchorKind::anchored;
  for (const Slots& slots : design.observations) d.Observe(slots, 0, 1);
  ObservationReader reader(d.parts());
  SubsetCheck check(d.parts());
  reader.Begin(Categories::wanted);
  while (reader.Next()) check.TakeBlock(reader.block());
  check.Finish(reader);
  const DisjointSubsets results = check.Results();
  EXPECT_EQ(check.note() == "Subset connection O.K.", !results.several());
  std::map<std::int32_t, std::set<std::int32_t>> byNumber;
  for (std::int32_t slot = 1; slot <= design.elements(); ++slot)
    for (const std::int32_t number : results.Of(ElementSlot(slot))) byNumber[number].insert(slot);
  EXPECT_EQ(static_cast<std::int32_t>(byNumber.size()), results.SubsetCount);
  Sets sets;
  for (const auto& [number, slots] : byNumber) sets.insert(slots);
  return sets;
}

// The judge of the rule.
Sets Joined(const SmallDesign& design) {
  std::vector<std::set<std::int32_t>> sets;
  std::size_t positions = 0;
  for (const Slots& observation : design.observations) {
    std::set<std::int32_t> live;
    for (const std::int32_t slot : observation)
      if (!design.anchored.contains(slot)) live.insert(slot);
    positions = live.size();
    sets.push_back(live);
  }
  if (positions < 2) return {};
  for (std::size_t a = 0; a < sets.size(); ++a) {
    for (std::size_t b = a + 1; b < sets.size(); ++b) {
      std::set<std::size_t> shared;
      for (const std::int32_t slot : sets[a])
        if (sets[b].contains(slot)) shared.insert(design.flankOf(slot));
      if (shared.size() + 1 < positions) continue;
      sets[a].insert(sets[b].begin(), sets[b].end());
      sets.erase(sets.begin() + static_cast<std::ptrdiff_t>(b));
      a = static_cast<std::size_t>(-1);  // from the start again
      break;
    }
  }
  if (sets.size() < 2) return {};
  return {sets.begin(), sets.end()};
}

// The judge of the meaning: row space of the design matrix, modulo a prime.
class RowSpace {
 public:
  explicit RowSpace(const SmallDesign& design)
      : width_(static_cast<std::size_t>(design.elements())) {
    for (const Slots& observation : design.observations) {
      std::vector<std::int64_t> row(width_, 0);
      for (const std::int32_t slot : observation)
        if (!design.anchored.contains(slot)) row[static_cast<std::size_t>(slot) - 1] = 1;
      Insert(row);
    }
  }
  bool Determines(std::int32_t a, std::int32_t b) const {
    std::vector<std::int64_t> row(width_, 0);
    row[static_cast<std::size_t>(a) - 1] = 1;
    row[static_cast<std::size_t>(b) - 1] = kPrime - 1;
    return Pivot(Reduced(row)) == width_;
  }

 private:
  static constexpr std::int64_t kPrime = 1'000'003;

  std::vector<std::int64_t> Reduced(std::vector<std::int64_t> row) const {
    for (const auto& [pivot, basis] : basis_) {
      const std::int64_t factor = row[pivot];
      if (factor == 0) continue;
      for (std::size_t k = 0; k < width_; ++k)
        row[k] = (row[k] + (kPrime - factor) * basis[k]) % kPrime;
    }
    return row;
  }
  std::size_t Pivot(const std::vector<std::int64_t>& row) const {
    std::size_t pivot = 0;
    while (pivot < width_ && row[pivot] == 0) ++pivot;
    return pivot;
  }
  void Insert(const std::vector<std::int64_t>& given) {
    std::vector<std::int64_t> row = Reduced(given);
    const std::size_t pivot = Pivot(row);
    if (pivot == width_) return;
    std::int64_t inverse = 1;  // by Fermat's theorem
    for (std::int64_t power = row[pivot], rest = kPrime - 2; rest > 0; rest /= 2) {
      if (rest % 2 == 1) inverse = inverse * power % kPrime;
      power = power * power % kPrime;
    }
    for (std::int64_t& cell : row) cell = cell * inverse % kPrime;
    basis_[pivot] = row;
  }

  std::size_t width_;
  std::map<std::size_t, std::vector<std::int64_t>> basis_;  // by pivot, which is 1
};

void ExpectDetermined(const SmallDesign& design, const Sets& sets) {
  const RowSpace data(design);
  for (const std::set<std::int32_t>& set : sets) {
    for (const std::int32_t a : set) {
      for (const std::int32_t b : set) {
        if (a >= b || design.flankOf(a) != design.flankOf(b)) continue;
        EXPECT_TRUE(data.Determines(a, b)) << "elements " << a << " and " << b;
      }
    }
  }
}

TEST_P(RandomDesigns, AreJoinedAsTheRuleSays) {
  const ScratchFolder folder;
  for (int n = 0; n < 30; ++n) {
    SmallDesign design = Design(1 + UpTo(3));
    // A whole Flank at given measures takes one position away.
    if (UpTo(3) == 1)
      for (std::int32_t slot = 1; slot <= design.sizes[0]; ++slot) design.anchored.insert(slot);
    const Sets sets = Checked(design);
    EXPECT_EQ(sets, Joined(design)) << "design " << n;
    ExpectDetermined(design, sets);
  }
}

// A connected design has no sets to look at; its subset is all that was observed.
TEST_P(RandomDesigns, AreConnectedOnlyWhenTheDataDetermineAllDifferences) {
  const ScratchFolder folder;
  for (int n = 0; n < 30; ++n) {
    const SmallDesign design = Design(1 + UpTo(3));
    if (!Checked(design).empty()) continue;
    std::set<std::int32_t> observed;
    for (const Slots& observation : design.observations)
      observed.insert(observation.begin(), observation.end());
    ExpectDetermined(design, {observed});
  }
}

// Two Flanks, some elements anchored: a component without an anchor is a subset.
TEST_P(RandomDesigns, OfTwoFlanksFallIntoComponents) {
  const ScratchFolder folder;
  for (int n = 0; n < 30; ++n) {
    SmallDesign design = Design(2);
    for (std::int32_t slot = 1; slot <= design.elements(); ++slot)
      if (UpTo(5) == 1) design.anchored.insert(slot);
    // All anchored elements are one node, slot 0.
    std::vector<std::int32_t> component(static_cast<std::size_t>(design.elements()) + 1);
    for (std::size_t slot = 0; slot < component.size(); ++slot)
      component[slot] = design.anchored.contains(static_cast<std::int32_t>(slot))
                            ? 0
                            : static_cast<std::int32_t>(slot);
    for (const Slots& observation : design.observations) {
      const std::int32_t a = component[static_cast<std::size_t>(observation[0])];
      const std::int32_t b = component[static_cast<std::size_t>(observation[1])];
      for (std::int32_t& c : component)
        if (c == std::max(a, b)) c = std::min(a, b);
    }
    std::map<std::int32_t, std::set<std::int32_t>> free;
    for (const Slots& observation : design.observations)
      for (const std::int32_t slot : observation)
        if (component[static_cast<std::size_t>(slot)] != 0)
          free[component[static_cast<std::size_t>(slot)]].insert(slot);
    Sets expected;
    if (free.size() > 1)
      for (const auto& [number, slots] : free) expected.insert(slots);
    EXPECT_EQ(Checked(design), expected) << "design " << n;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomDesigns, ::testing::Range(1u, 11u));

}  // namespace
}  // namespace flanks
