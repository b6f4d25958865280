// Little-endian numbers in memory, whatever the machine.
//
// The work files and some hand-offs are described byte by byte; these functions are the only way
// between their bytes and numbers.  A width of 1 to 8 bytes is loaded without sign; the forms for
// a type load its full width, floats as the bits of their 32 or 64-bit form.  On a little-endian
// machine each is one move.
//
// Tested by tests/unit/base/byte_order_test.cpp.
#ifndef FLANKS_BASE_BYTE_ORDER_H
#define FLANKS_BASE_BYTE_ORDER_H

#include <array>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace flanks {

// The unsigned number in the `width` bytes at `from`; width is 1 to 8.
inline std::uint64_t LoadLittle(const std::uint8_t* from, int width) {
  assert(width >= 1 && width <= 8);
  std::uint64_t value = 0;
  for (int i = width - 1; i >= 0; --i) value = value << 8 | from[i];
  return value;
}

// The low `width` bytes of `value`, lowest first; width is 1 to 8.
inline void StoreLittle(std::uint8_t* to, int width, std::uint64_t value) {
  assert(width >= 1 && width <= 8);
  for (int i = 0; i < width; ++i, value >>= 8) to[i] = static_cast<std::uint8_t>(value & 0xFF);
}

template <class T>
T LoadLittle(const std::uint8_t* from) {
  static_assert(std::is_arithmetic_v<T>);
  std::array<std::uint8_t, sizeof(T)> bytes;
  std::memcpy(bytes.data(), from, sizeof(T));
  if constexpr (std::endian::native == std::endian::big) {
    for (std::size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
  }
  return std::bit_cast<T>(bytes);
}

template <class T>
void StoreLittle(std::uint8_t* to, T value) {
  static_assert(std::is_arithmetic_v<T>);
  auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(T)>>(value);
  if constexpr (std::endian::native == std::endian::big) {
    for (std::size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
  }
  std::memcpy(to, bytes.data(), sizeof(T));
}

}  // namespace flanks

#endif  // FLANKS_BASE_BYTE_ORDER_H
