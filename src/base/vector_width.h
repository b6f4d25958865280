// How many numbers the processor takes at a time: one program serves old and new processors.
//
// The loops that everything waits for are compiled once for each width, as functions with their
// own target attribute around one inlined body, and chosen when they are called.  The width never
// shows in a result: the same operations are done in the same order for each observation, nothing
// is fused, and sums over observations are not part of these loops.  Tests compare the bits.
//
// Only whole functions carry a target, never whole files: an inline function of the library that
// was compiled for a new processor could otherwise be the one that the linker keeps for all.
//
// Tested by tests/unit/base/vector_width_test.cpp.
#ifndef FLANKS_BASE_VECTOR_WIDTH_H
#define FLANKS_BASE_VECTOR_WIDTH_H

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace flanks {

enum class VectorWidth : std::uint8_t {
  narrow,  // 128 bits, what every processor of the kind has
  avx2,    // 256 bits
  avx512,  // 512 bits
};

std::string_view NameOf(VectorWidth width);  // "narrow", "avx2", "avx512"
std::optional<VectorWidth> VectorWidthNamed(std::string_view name);

// The widths of this machine, narrowest first; never empty.
std::vector<VectorWidth> UsableVectorWidths();

// The width that the passes use: the widest of the machine, or the one that the environment
// variable FLANKS_VECTOR_WIDTH names (read once; a name that is unknown or that the machine does
// not have counts for nothing).
VectorWidth ChosenVectorWidth();

}  // namespace flanks

#endif  // FLANKS_BASE_VECTOR_WIDTH_H
