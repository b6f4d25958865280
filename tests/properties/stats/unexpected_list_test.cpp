// What a list of unexpected responses keeps is what a list keeps into which each candidate is put
// at its place, and is the head of a full sort; for random residuals of which many are equal.
#include "stats/unexpected_list.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace flanks {
namespace {

// The list as its rule stands: the place by halving, the rows behind it moved, the last one off.
struct PlainList {
  std::vector<KeptResponse> rows;
  std::size_t room;
  std::int64_t dropped = 0;

  void Add(const KeptResponse& response) {
    std::size_t low = 0, high = rows.size();
    while (low < high) {
      const std::size_t middle = (low + high) / 2;
      const float there = std::abs(rows[middle].StRes), here = std::abs(response.StRes);
      const bool before = here > there || (here == there && rows[middle].StRes < 0.0f);
      if (before) {
        high = middle;
      } else {
        low = middle + 1;
      }
    }
    if (low >= room) {
      ++dropped;
      return;
    }
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(low), response);
    if (rows.size() > room) rows.pop_back();
  }
};

std::vector<KeptResponse> RandomResponses(std::mt19937& random, std::size_t count, int sizes) {
  std::vector<KeptResponse> responses(count);
  std::uniform_int_distribution<int> size(1, sizes);
  for (std::size_t i = 0; i < count; ++i) {
    responses[i].sequence = static_cast<std::int64_t>(i) + 1;
    const float StRes = 9.0f * static_cast<float>(size(random)) / static_cast<float>(sizes);
    responses[i].StRes = random() % 2 == 0 ? StRes : -StRes;
  }
  return responses;
}

TEST(UnexpectedListLaw, KeepsTheHeadOfAFullSort) {
  std::mt19937 random(20);
  for (int trial = 0; trial < 300; ++trial) {
    const std::size_t count = random() % 400;
    const std::int32_t room = 1 + static_cast<std::int32_t>(random() % 120);
    std::vector<KeptResponse> responses =
        RandomResponses(random, count, 1 + static_cast<int>(random() % 60));
    UnexpectedList list(1.0f, room, 1);
    PlainList plain{{}, static_cast<std::size_t>(room)};
    std::vector<KeptResponse> candidates;
    for (const KeptResponse& response : responses) {
      if (std::abs(response.StRes) < 1.0f) {
        ASSERT_FALSE(list.IsCandidate(response.StRes));
        continue;
      }
      ASSERT_TRUE(list.IsCandidate(response.StRes));
      const ElementSlot element(static_cast<std::int32_t>(response.sequence));
      list.Add(response, {&element, 1});
      plain.Add(response);
      candidates.push_back(response);
    }
    std::sort(candidates.begin(), candidates.end(), ComesBefore);
    candidates.resize(std::min(candidates.size(), static_cast<std::size_t>(room)));
    const UnexpectedResponses kept = list.Finish();
    ASSERT_EQ(kept.rows.size(), candidates.size()) << "trial " << trial;
    ASSERT_EQ(kept.rows.size(), plain.rows.size()) << "trial " << trial;
    ASSERT_EQ(kept.dropped, plain.dropped) << "trial " << trial;
    for (std::size_t row = 0; row < candidates.size(); ++row) {
      ASSERT_EQ(kept.rows[row].sequence, candidates[row].sequence) << "trial " << trial;
      ASSERT_EQ(kept.rows[row].sequence, plain.rows[row].sequence) << "trial " << trial;
      ASSERT_EQ(kept.ElementsOf(row)[0].number(), kept.rows[row].sequence);
    }
  }
}

}  // namespace
}  // namespace flanks
