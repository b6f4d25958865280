#include "estimate/bias_terms.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>

#include "base/program_fault.h"
#include "support/pass_design.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

class BiasTermsTest : public ::testing::Test {
 protected:
  // "1 3" for the elements in slots 1 and 3, by term.
  std::vector<std::string> TermsOf(const BiasInteraction& interaction) {
    const PassParts parts = d.parts();
    BiasTermList list(parts, interaction);
    ObservationReader reader(parts);
    list.Find(reader);
    std::vector<std::string> terms;
    std::vector<ElementSlot> elements;
    for (std::int32_t term = 1; term <= list.count(); ++term) {
      list.FillElements(BiasTermRow(term), elements);
      terms.push_back(Joined(elements));
    }
    return terms;
  }
  static std::string Joined(const std::vector<ElementSlot>& elements) {
    std::string text;
    for (const ElementSlot slot : elements)
      text += (text.empty() ? "" : " ") + std::to_string(slot.number());
    return text;
  }
  std::vector<std::string> OnlyTerms() {
    const std::vector<BiasInteraction> interactions = BiasInteractionsOf(d.design);
    EXPECT_EQ(interactions.size(), 1u);
    return TermsOf(interactions.at(0));
  }

  ScratchFolder folder;
  PassDesign d;
};

using Texts = std::vector<std::string>;

TEST_F(BiasTermsTest, EachDistinctSetOfTwoOrMoreMarksIsAnInteraction) {
  d.Flank(2, kPositiveOrientation).Flank(2, kNegativeOrientation).Flank(2, kNegativeOrientation);
  d.Statement({"", "B", ""});
  d.Statement({"B", "B", ""});
  d.Statement({"B", "B", "B"});
  d.Statement({"-B", "B", ""});
  d.Statement({"B", "XB", "@B"});
  d.Structure(0, d.Rating({0.0f}));
  d.Build();
  const std::vector<BiasInteraction> found = BiasInteractionsOf(d.design);
  ASSERT_EQ(found.size(), 2u);
  EXPECT_EQ(found[0].number, 1);
  EXPECT_EQ(found[0].positions, (std::vector<Position>{Position(1), Position(2)}));
  EXPECT_EQ(found[0].marksIt[ModelRow(1)], 1);
  EXPECT_EQ(found[0].marksIt[ModelRow(2)], 0);
  EXPECT_EQ(found[0].marksIt[ModelRow(3)], 1);
  EXPECT_EQ(found[1].number, 2);
  EXPECT_EQ(found[1].positions.size(), 3u);
}

TEST_F(BiasTermsTest, TheFirstPositionIsTheLowestDigit) {
  d.Flank(3, kPositiveOrientation).Flank(2, kNegativeOrientation);
  d.Structure(d.Statement({"B", "B"}), d.Rating({0.0f}));
  d.Build();
  for (const auto& slots : std::vector<std::vector<int>>{{2, 5}, {3, 4}, {1, 5}, {3, 4}, {1, 4}})
    d.Observe(slots, 0, 1);
  EXPECT_EQ(OnlyTerms(), (Texts{"1 4", "3 4", "1 5", "2 5"}));
}

TEST_F(BiasTermsTest, WhatIsNotInPlayOrHasNoElementThereHasNoTerm) {
  d.Flank(4, kPositiveOrientation).Flank(2, kNegativeOrientation);
  const int scale = d.Rating({0.0f});
  d.Structure(d.Statement({"B", "B"}), scale);
  d.Structure(d.Statement({"B", ""}), scale);
  d.Structure(d.Statement({"B", "B"}, 0.0f), scale);
  d.Build();
  d.element(3).ElementStatus = kStatusMaximum;
  d.element(4).ElementStatus = kStatusAnchored;
  d.Observe({1, 5}, 0, 1);
  d.Observe({2, 5}, 1, 1);  // of another statement
  d.Observe({2, 0}, 0, 1);  // no element
  d.Observe({3, 5}, 0, 1);  // an extreme one
  d.Observe({2, 6}, 2, 1);  // no weight
  d.Observe({4, 6}, 0, 0);
  EXPECT_EQ(OnlyTerms(), (Texts{"1 5", "4 6"}));
}

TEST_F(BiasTermsTest, AFlankWithoutElementsLeavesNoTerms) {
  d.Flank(2, kPositiveOrientation).Flank(0, kNegativeOrientation);
  d.Structure(d.Statement({"B", "B"}), d.Rating({0.0f}));
  d.Build();
  d.Observe({1, 0}, 0, 1);
  EXPECT_TRUE(OnlyTerms().empty());
}

// Something has changed between two passes.
TEST_F(BiasTermsTest, ACombinationThatWasNotFoundIsAProgramFault) {
  d.Flank(2, kPositiveOrientation).Flank(1, kNegativeOrientation);
  d.Structure(d.Statement({"B", "B"}), d.Rating({0.0f}));
  d.Build();
  d.element(2).ElementStatus = kStatusMaximum;
  d.Observe({1, 3}, 0, 1);
  d.Observe({2, 3}, 0, 1);
  const PassParts parts = d.parts();
  BiasTermList list(parts, BiasInteractionsOf(d.design).at(0));
  ObservationReader reader(parts);
  list.Find(reader);
  d.element(2).ElementStatus = kStatusFree;
  reader.Begin(Categories::wanted);
  ASSERT_TRUE(reader.Next());
  std::vector<std::int32_t> terms(kKernelBlock);
  try {
    list.FillTerms(reader, terms);
    FAIL();
  } catch (const ProgramFault& fault) {
    EXPECT_EQ(fault.what(), "Failure (15)! Bias sort failure.");
  }
}

// Twenty positions of a thousand elements: a key of 200 binary digits.
TEST_F(BiasTermsTest, ManyMarkedPositionsKeepTheirOrderAndTheirElements) {
  constexpr int kPositions = 20, kElements = 1000, kObservations = 3000;
  for (int f = 0; f < kPositions; ++f) d.Flank(kElements, kPositiveOrientation);
  d.Structure(d.Statement(std::vector<std::string>(kPositions, "B")), d.Rating({0.0f}));
  d.Build();
  std::mt19937 random(3);
  std::vector<std::vector<int>> kept;  // the last position first, so that it leads in the order
  std::vector<std::vector<int>> records;
  for (int r = 0; r < kObservations; ++r) {
    std::vector<int> slots;
    for (int f = 0; f < kPositions; ++f) {
      const int element = f % 3 == 0 ? static_cast<int>(random() % kElements) : 7;
      slots.push_back(f * kElements + 1 + (r % 2 == 0 || f == 0 ? element : 7));
    }
    d.Observe(slots, 0, r % 2);
    records.push_back(slots);
    kept.emplace_back(slots.rbegin(), slots.rend());
  }
  std::sort(kept.begin(), kept.end());
  kept.erase(std::unique(kept.begin(), kept.end()), kept.end());

  const PassParts parts = d.parts();
  BiasTermList list(parts, BiasInteractionsOf(d.design).at(0));
  ObservationReader reader(parts);
  list.Find(reader);
  ASSERT_EQ(static_cast<std::size_t>(list.count()), kept.size());
  std::vector<ElementSlot> elements;
  for (std::int32_t term = 1; term <= list.count(); ++term) {
    list.FillElements(BiasTermRow(term), elements);
    const std::vector<int>& expected = kept[static_cast<std::size_t>(term) - 1];
    for (std::size_t f = 0; f < elements.size(); ++f)
      ASSERT_EQ(elements[f].number(), expected[expected.size() - 1 - f]);
  }
  std::vector<std::int32_t> terms(kKernelBlock);
  reader.Begin(Categories::wanted);
  std::size_t record = 0;
  while (reader.Next()) {
    list.FillTerms(reader, terms);
    for (std::size_t i = 0; i < reader.block().count; ++i, ++record) {
      list.FillElements(BiasTermRow(terms[i]), elements);
      for (std::size_t f = 0; f < elements.size(); ++f)
        ASSERT_EQ(elements[f].number(), records[record][f]);
    }
  }
  EXPECT_EQ(record, static_cast<std::size_t>(kObservations));
}

}  // namespace
}  // namespace flanks
