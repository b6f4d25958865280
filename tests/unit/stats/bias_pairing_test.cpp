#include "stats/bias_pairing.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "support/bias_run.h"

namespace flanks {
namespace {

// 7 persons, 5 raters, 4 tasks and 3 sessions; some of the combinations have a rating.
std::string Specification(unsigned seed, const std::string& models) {
  std::mt19937 random(seed);
  std::string data;
  for (int person = 1; person <= 7; ++person)
    for (int rater = 1; rater <= 5; ++rater)
      for (int task = 1; task <= 4; ++task)
        for (int session = 1; session <= 3; ++session) {
          if (random() % 3 == 0) continue;
          data += std::to_string(person) + "," + std::to_string(rater) + "," +
                  std::to_string(task) + "," + std::to_string(session) + "," +
                  std::to_string(random() % 4) + "\n";
        }
  return "Output=report.txt\nTables=0\nFlanks=4\nModels=" + models +
         "\nLabels=\n1,Persons\n1-7\n*\n2,Raters\n1-5\n*\n3,Tasks\n1-4\n*\n4,Sessions\n1-3\n*"
         "\nData=\n" +
         data;
}

using Pair = std::pair<std::int32_t, std::int32_t>;

// Every two terms compared: all elements the same but the target's.
std::set<Pair> PairsByComparison(const BiasResults& results, std::size_t target) {
  std::set<Pair> pairs;
  for (const BiasTermRow p : Upward(results.terms)) {
    for (const BiasTermRow q : Upward(results.terms)) {
      if (results.terms[p].standing == BiasStanding::none) continue;
      if (results.terms[q].standing == BiasStanding::none) continue;
      if (!(results.list.element(p, target) < results.list.element(q, target))) continue;
      bool same = true;
      for (std::size_t which = 0; which < results.list.positions(); ++which)
        same = same && (which == target ||
                        results.list.element(p, which) == results.list.element(q, which));
      if (same) pairs.insert({p.number(), q.number()});
    }
  }
  return pairs;
}

void ExpectPairsOfComparison(const BiasResults& results, std::size_t target) {
  const BiasPairing pairing(results, target);
  std::set<Pair> pairs;
  std::int64_t visited = 0;
  pairing.ForEachPair([&](BiasPair pair) {
    ++visited;
    pairs.insert({pair.first.number(), pair.second.number()});
    return true;
  });
  EXPECT_EQ(visited, pairing.pairs());
  EXPECT_EQ(visited, static_cast<std::int64_t>(pairs.size())) << "a pair came twice";
  EXPECT_EQ(pairs, PairsByComparison(results, target));
}

TEST(BiasPairing, GivesThePairsOfAComparisonOfAllTerms) {
  for (const unsigned seed : {1u, 2u}) {
    for (const char* models : {"?B,?,?B,?,R", "?,?B,?B,?B,R", "?B,?B,?B,?B,R"}) {
      BiasRun run;
      run.Prepare(Specification(seed, models));
      ASSERT_GT(run.results->terms.rows(), 10);
      // One in ten has no estimate.
      for (const BiasTermRow term : Upward(run.results->terms))
        if (term.number() % 10 == 3) run.results->terms[term].standing = BiasStanding::none;
      for (std::size_t target = 0; target < run.results->list.positions(); ++target)
        ExpectPairsOfComparison(*run.results, target);
    }
  }
}

TEST(BiasPairing, ContextsAndTheirTermsAscend) {
  BiasRun run;
  run.Prepare(Specification(3, "?,?B,?B,?B,R"));
  const BiasResults& results = *run.results;
  const BiasPairing pairing(results, 1);  // tasks within raters and sessions
  std::vector<std::vector<std::int32_t>> contexts;
  for (std::size_t which = 0; which < pairing.contexts(); ++which) {
    const auto terms = pairing.context(which);
    contexts.push_back(
        {results.list.element(terms[0], 2).number(), results.list.element(terms[0], 0).number()});
    EXPECT_TRUE(std::is_sorted(terms.begin(), terms.end(), [&](BiasTermRow a, BiasTermRow b) {
      return results.list.element(a, 1) < results.list.element(b, 1);
    }));
  }
  EXPECT_TRUE(std::is_sorted(contexts.begin(), contexts.end()));
  EXPECT_EQ(std::adjacent_find(contexts.begin(), contexts.end()), contexts.end());
}

TEST(BiasPairing, AVisitThatHasEnoughEndsIt) {
  BiasRun run;
  run.Prepare(Specification(4, "?,?B,?B,?,R"));
  const BiasPairing pairing(*run.results, 0);
  ASSERT_GT(pairing.pairs(), 5);
  int visits = 0;
  pairing.ForEachPair([&](BiasPair) { return ++visits < 3; });
  EXPECT_EQ(visits, 3);
}

TEST(BiasPairing, TermsWithoutEstimatesHaveNoPair) {
  BiasRun run;
  run.Prepare(Specification(5, "?,?B,?B,?,R"));
  for (BiasTerm& term : run.results->terms) term.standing = BiasStanding::none;
  const BiasPairing pairing(*run.results, 0);
  EXPECT_EQ(pairing.pairs(), 0);
  EXPECT_EQ(pairing.contexts(), 0u);
}

}  // namespace
}  // namespace flanks
