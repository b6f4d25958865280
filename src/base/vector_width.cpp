#include "base/vector_width.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace flanks {
namespace {

struct NamedWidth {
  VectorWidth width;
  std::string_view name;
};
constexpr std::array<NamedWidth, 3> kWidths = {{
    {VectorWidth::narrow, "narrow"},
    {VectorWidth::avx2, "avx2"},
    {VectorWidth::avx512, "avx512"},
}};

bool IsUsable(VectorWidth width) {
#if defined(__x86_64__)
  switch (width) {
    case VectorWidth::narrow:
      return true;
    case VectorWidth::avx2:
      return __builtin_cpu_supports("avx2") != 0;
    case VectorWidth::avx512:
      return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512dq") != 0 &&
             __builtin_cpu_supports("avx512bw") != 0 && __builtin_cpu_supports("avx512vl") != 0;
  }
#endif
  return width == VectorWidth::narrow;
}

VectorWidth ChooseVectorWidth() {
  const std::vector<VectorWidth> usable = UsableVectorWidths();
  const char* const wish = std::getenv("FLANKS_VECTOR_WIDTH");
  if (wish != nullptr) {
    const std::optional<VectorWidth> named = VectorWidthNamed(wish);
    if (named && std::find(usable.begin(), usable.end(), *named) != usable.end()) return *named;
  }
  return usable.back();
}

}  // namespace

std::string_view NameOf(VectorWidth width) {
  return kWidths[static_cast<std::size_t>(width)].name;
}

std::optional<VectorWidth> VectorWidthNamed(std::string_view name) {
  for (const NamedWidth& row : kWidths)
    if (row.name == name) return row.width;
  return std::nullopt;
}

std::vector<VectorWidth> UsableVectorWidths() {
  std::vector<VectorWidth> usable;
  for (const NamedWidth& row : kWidths)
    if (IsUsable(row.width)) usable.push_back(row.width);
  return usable;
}

VectorWidth ChosenVectorWidth() {
  static const VectorWidth chosen = ChooseVectorWidth();
  return chosen;
}

}  // namespace flanks
