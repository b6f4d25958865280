#include "report/format/sort_key.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/program_fault.h"

namespace flanks {
namespace {

template <class Call>
std::string FaultOf(Call call) {
  try {
    call();
  } catch (const ProgramFault& fault) {
    return fault.what();
  }
  return "no fault";
}

TEST(SortKey, HexadecimalFormsFollowMemoryOrder) {
  EXPECT_EQ(MKLhex(1), "01000000");
  EXPECT_EQ(MKLhex(100000), "A0860100");
  EXPECT_EQ(MKLhex(-1), "FFFFFFFF");
  EXPECT_EQ(MKIhex(258), "0201");
  EXPECT_EQ(MKIhex(-2), "FEFF");
}

TEST(SortKey, SwappedFormsBeginWithTheMostSignificantByte) {
  EXPECT_EQ(Swapl(MKLhex(1)), "00000001");
  EXPECT_EQ(Swapl(MKLhex(100000)), "000186A0");
  EXPECT_EQ(iSwap(MKIhex(258)), "0102");
  EXPECT_EQ(Swapl("AABBCCDD"), "DDCCBBAA");
  EXPECT_EQ(iSwap("AABB"), "BBAA");
}

TEST(SortKey, NumbersReadBack) {
  for (const std::int32_t n : {0, 1, -1, 255, 65536, 2147483647, -2147483647 - 1})
    EXPECT_EQ(CVLhex(MKLhex(n)), n);
  constexpr std::int16_t kShort[] = {0, 1, -1, 255, 32767, -32768};
  for (const std::int16_t n : kShort) EXPECT_EQ(CVIhex(MKIhex(n)), n);
  EXPECT_EQ(CVLhex(Swapl("000186a0")), 100000) << "small letters are digits too";
}

TEST(SortKey, NegatedNumbersDescend) {
  EXPECT_EQ(Swapl(MKLhex(-1)), "FFFFFFFF");
  EXPECT_EQ(Swapl(MKLhex(-2)), "FFFFFFFE");
  EXPECT_EQ(Swapl(MKLhex(-255)), "FFFFFF01");
  EXPECT_LT(Swapl(MKLhex(-2)), Swapl(MKLhex(-1)));
  EXPECT_LT(Swapl(MKLhex(0)), Swapl(MKLhex(-2))) << "0 comes first";
}

TEST(SortKey, AWrongLengthIsAProgramFault) {
  EXPECT_EQ(FaultOf([] { Swapl("1234567"); }), "Failure (1)! Swapl$ not 8 bytes: 7.");
  EXPECT_EQ(FaultOf([] { iSwap(""); }), "Failure (2)! iSwap$ not 4 bytes: 0.");
  EXPECT_EQ(FaultOf([] { CVIhex("ABC"); }),
            "Failure (10)! Illegal Function Call for CVIhex of: ABC.");
  EXPECT_EQ(FaultOf([] { CVLhex("ABCD"); }),
            "Failure (11)! Illegal Function Call for CVLhex of: ABCD.");
  EXPECT_EQ(FaultOf([] { CVIhex("00GG"); }),
            "Failure (10)! Illegal Function Call for CVIhex of: 00GG.");
}

TEST(FloatKey, HasOneCharacterForTheSignAndEightForTheBits) {
  EXPECT_EQ(FloatKey(0.0f), "100000000");
  EXPECT_EQ(FloatKey(-0.0f), "100000000");
  EXPECT_EQ(FloatKey(1.0f), "13F800000");
  EXPECT_EQ(FloatKey(2.0f), "140000000");
  EXPECT_EQ(FloatKey(0.5f), "13F000000");
  EXPECT_EQ(FloatKey(1.25f), "13FA00000");
  EXPECT_EQ(FloatKey(-1.0f), "0BF800000");
  EXPECT_EQ(FloatKey(-2.0f), "0BF000000");
  EXPECT_EQ(FloatKey(-0.5f), "0C0000000");
}

TEST(FloatKey, AscendsWithTheNumbers) {
  std::vector<std::string> keys;
  for (const float v : {-2.0f, -1.0f, -0.5f, 0.0f, 0.5f, 1.0f, 2.0f}) keys.push_back(FloatKey(v));
  EXPECT_TRUE(std::is_sorted(keys.begin(), keys.end()));
  EXPECT_EQ(std::adjacent_find(keys.begin(), keys.end()), keys.end());
}

TEST(Complement, TurnsTheOrderOfTextsRound) {
  EXPECT_EQ(Complement(std::string("\x00\xFF", 2)), std::string("\xFF\x00", 2));
  EXPECT_EQ(Complement(Complement("caf\xC3\xA9")), "caf\xC3\xA9");
  EXPECT_LT(Complement("b"), Complement("a"));
  EXPECT_LT(Complement("\xC3"), Complement("z")) << "as bytes, not as signed characters";
}

}  // namespace
}  // namespace flanks
