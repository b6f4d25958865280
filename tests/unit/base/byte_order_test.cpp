#include "base/byte_order.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace flanks {
namespace {

using ::testing::ElementsAre;

TEST(ByteOrder, TheLowestByteStandsFirst) {
  std::array<std::uint8_t, 4> bytes{};
  StoreLittle(bytes.data(), 3, 0x030201);
  EXPECT_THAT(bytes, ElementsAre(1, 2, 3, 0));
  EXPECT_EQ(LoadLittle(bytes.data(), 3), 0x030201u);
  EXPECT_EQ(LoadLittle(bytes.data(), 1), 1u);
  StoreLittle(bytes.data(), std::int32_t{-2});
  EXPECT_THAT(bytes, ElementsAre(0xFE, 0xFF, 0xFF, 0xFF));
  EXPECT_EQ(LoadLittle<std::int32_t>(bytes.data()), -2);
  EXPECT_EQ(LoadLittle<std::int16_t>(bytes.data()), -2);
}

TEST(ByteOrder, AFloatIsTheBitsOfItsForm) {
  std::array<std::uint8_t, 4> bytes{};
  StoreLittle(bytes.data(), 1.0f);
  EXPECT_THAT(bytes, ElementsAre(0x00, 0x00, 0x80, 0x3F));
  EXPECT_EQ(LoadLittle<float>(bytes.data()), 1.0f);
  std::array<std::uint8_t, 8> wide{};
  StoreLittle(wide.data(), -2.5);
  EXPECT_THAT(wide, ElementsAre(0, 0, 0, 0, 0, 0, 0x04, 0xC0));
  EXPECT_EQ(LoadLittle<double>(wide.data()), -2.5);
}

TEST(ByteOrder, OnlyTheLowBytesAreStored) {
  std::array<std::uint8_t, 3> bytes{9, 9, 9};
  StoreLittle(bytes.data(), 2, 0x123456);
  EXPECT_THAT(bytes, ElementsAre(0x56, 0x34, 9));
}

TEST(ByteOrder, EveryWidthRoundTrips) {
  std::mt19937_64 random(11);
  for (int width = 1; width <= 8; ++width) {
    const std::uint64_t mask = std::numeric_limits<std::uint64_t>::max() >> (64 - 8 * width);
    for (int i = 0; i < 200; ++i) {
      const std::uint64_t value = random() & mask;
      std::array<std::uint8_t, 8> bytes{};
      StoreLittle(bytes.data(), width, value);
      EXPECT_EQ(LoadLittle(bytes.data(), width), value) << "width " << width;
    }
  }
}

}  // namespace
}  // namespace flanks
