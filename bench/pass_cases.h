// What the benchmarks of passes share: the data of the case at work, and the pass of JMLE over
// them, which the others are measured by.
#ifndef FLANKS_BENCH_PASS_CASES_H
#define FLANKS_BENCH_PASS_CASES_H

#include <benchmark/benchmark.h>
#include <memory>
#include <string>

#include "estimate/jmle_pass.h"

namespace flanks {

// The data of one case at a time: two would not fit in memory.
template <class Data>
class KeptCase {
 public:
  // `make` gives a unique_ptr to the data of the case of this name.
  template <class Make>
  Data& Of(const std::string& name, const Make& make) {
    if (data_ == nullptr || name_ != name) {
      data_.reset();
      data_ = make();
      name_ = name;
    }
    return *data_;
  }

 private:
  std::unique_ptr<Data> data_;
  std::string name_;
};

template <class Data>
void RunJmlePasses(benchmark::State& state, Data& data) {
  ObservationReader reader(data.parts());
  JmlePass pass(data.parts());
  for (auto _ : state) {
    ClearPassSums(data.estimates);
    ClearScaleSums(Recount::notNeeded, data.scales);
    pass.Run(reader, 0.0f);
  }
}

}  // namespace flanks

#endif  // FLANKS_BENCH_PASS_CASES_H
