#include "run/analysis.h"

namespace flanks {

Analysis::Analysis() = default;
Analysis::~Analysis() = default;
Analysis::Analysis(Analysis&&) noexcept = default;
Analysis& Analysis::operator=(Analysis&&) noexcept = default;

}  // namespace flanks
