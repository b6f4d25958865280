#include "report/format/key_sort.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "base/program_fault.h"
#include "report/format/sort_key.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;

constexpr std::string_view kFault = "Failure (4)! Sort length error: B.";

template <class Call>
std::string FaultOf(Call call) {
  try {
    call();
  } catch (const ProgramFault& fault) {
    return fault.what();
  }
  return "no fault";
}

KeyArray KeysOf(const std::vector<std::string>& keys) {
  KeyArray array(kFault);
  for (const std::string& key : keys) array.Add(key);
  return array;
}

TEST(SortGaps, AreHalvesOfPowersOfThree) {
  EXPECT_THAT(SortGaps(0), ElementsAre(1));
  EXPECT_THAT(SortGaps(1), ElementsAre(1));
  EXPECT_THAT(SortGaps(2), ElementsAre(1));
  EXPECT_THAT(SortGaps(4), ElementsAre(1));
  EXPECT_THAT(SortGaps(5), ElementsAre(4, 1));
  EXPECT_THAT(SortGaps(10), ElementsAre(4, 1));
  EXPECT_THAT(SortGaps(12), ElementsAre(4, 1));
  EXPECT_THAT(SortGaps(13), ElementsAre(4, 1));
  EXPECT_THAT(SortGaps(14), ElementsAre(13, 4, 1));
  EXPECT_THAT(SortGaps(100), ElementsAre(40, 13, 4, 1));
  EXPECT_THAT(SortGaps(1000), ElementsAre(364, 121, 40, 13, 4, 1));
  EXPECT_EQ(SortGaps(2147483647).front(), 1743392200);
}

TEST(KeyArray, SortsByBytes) {
  KeyArray keys = KeysOf({"b1", "a2", "\xC3z", "a1", "Z9"});
  EXPECT_FALSE(keys.isAscending());
  keys.Sort();
  EXPECT_THAT(std::vector<std::string>(keys.begin(), keys.end()),
              ElementsAre("Z9", "a1", "a2", "b1", "\xC3z"));
  EXPECT_EQ(keys[1], "Z9");
  EXPECT_EQ(keys[5], "\xC3z");
  EXPECT_EQ(keys.count(), 5);
  EXPECT_EQ(keys.keyLength(), 2U);
}

TEST(KeyArray, KnowsKeysThatCameInOrder) {
  EXPECT_TRUE(KeysOf({}).isAscending());
  EXPECT_TRUE(KeysOf({"a", "a", "b"}).isAscending());
  EXPECT_FALSE(KeysOf({"a", "c", "b"}).isAscending());
}

TEST(KeyArray, GrowsByAThousand) {
  KeyArray keys(kFault);
  EXPECT_EQ(keys.upperBound(), 1000);
  for (int n = 0; n < 1000; ++n) keys.Add(Swapl(MKLhex(5000 - n)));
  EXPECT_EQ(keys.upperBound(), 1000);
  keys.Add(Swapl(MKLhex(1)));
  EXPECT_EQ(keys.upperBound(), 2000);
  keys.Sort();
  EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
  EXPECT_EQ(CVLhex(Swapl(keys[1])), 1);
  EXPECT_EQ(CVLhex(Swapl(keys[1001])), 5000);
}

TEST(KeyArray, SortsManyKeysLikeTheLibrary) {
  std::mt19937 random(11);
  KeyArray keys(kFault);
  std::vector<std::string> expected;
  for (int n = 1; n <= 5000; ++n) {
    const std::string key = FloatKey(static_cast<float>(random() % 100) - 50.0f) + Swapl(MKLhex(n));
    keys.Add(key);
    expected.push_back(key);
  }
  keys.Sort();
  std::sort(expected.begin(), expected.end());
  EXPECT_TRUE(std::equal(keys.begin(), keys.end(), expected.begin(), expected.end()));
}

TEST(KeyArray, AKeyOfAnotherLengthIsAProgramFault) {
  EXPECT_EQ(FaultOf([] { KeysOf({"ab", "abc"}); }), kFault);
  EXPECT_EQ(FaultOf([] { KeysOf({"ab", ""}); }), kFault);
}

TEST(KeyArray, DoesNotSortForARunThatStops) {
  KeyArray keys = KeysOf({"b", "a"});
  keys.Sort([] { return true; });
  EXPECT_THAT(std::vector<std::string>(keys.begin(), keys.end()), ElementsAre("b", "a"));
  keys.Sort([] { return false; });
  EXPECT_THAT(std::vector<std::string>(keys.begin(), keys.end()), ElementsAre("a", "b"));
}

TEST(Vsort, SortsTheFirstKeysOnly) {
  std::vector<std::string> keys{"d", "c", "b", "a"};
  vsort(keys, 3, 1);
  EXPECT_THAT(keys, ElementsAre("b", "c", "d", "a"));
  vsort(keys, 0, 1);
  EXPECT_THAT(keys, ElementsAre("b", "c", "d", "a"));
}

TEST(Vsort, ComparesTheKeyLengthOnly) {
  std::vector<std::string> keys{"a9", "a1", "A5"};
  vsort(keys, 3, 1);
  EXPECT_THAT(keys, ElementsAre("A5", "a9", "a1"));
}

TEST(Vsort, ACountBeyondTheArrayIsAProgramFault) {
  std::vector<std::string> keys{"a", "b"};
  EXPECT_EQ(FaultOf([&] { vsort(keys, 3, 1); }), "Failure (9)! Array7 Ubound problem in vsort.");
}

TEST(SortLines, ComparesFromAColumnOnAndKeepsTheOrderOfEquals) {
  const std::vector<std::string> lines{"3 b", "1 a", "2 b", "0", "9 a", "5 \xC3"};
  std::vector<std::string> sorted = lines;
  SortLines(sorted, 3);
  EXPECT_THAT(sorted, ElementsAre("0", "1 a", "9 a", "3 b", "2 b", "5 \xC3"));
  sorted = lines;
  SortLines(sorted, 0);
  EXPECT_THAT(sorted, ElementsAre("0", "1 a", "2 b", "3 b", "5 \xC3", "9 a"));
  SortLines(sorted, 1);
  EXPECT_THAT(sorted, ElementsAre("0", "1 a", "2 b", "3 b", "5 \xC3", "9 a"));
}

}  // namespace
}  // namespace flanks
