// A random design with random settings of the report, as a Specification.
//
// Everything that changes what a Table looks like: labels of every kind and length, numbers of
// elements of one to ten digits, groups, weights, anchors, extreme elements, missing and disjoint
// data, units and decimals, placement, optional columns, orders, bias terms.
#ifndef FLANKS_TESTS_SUPPORT_RANDOM_REPORT_H
#define FLANKS_TESTS_SUPPORT_RANDOM_REPORT_H

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace flanks {

class RandomReport {
 public:
  explicit RandomReport(std::uint64_t seed) : random_(seed) {}

  // A Specification with its data in line; Ascii= and Box= are left to the caller.
  std::string Specification();

 private:
  struct Flank {
    std::string line;                   // of Labels=
    std::vector<std::int64_t> numbers;  // of its elements, ascending
  };

  int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
  bool Chance(int inHundred) { return Whole(1, 100) <= inHundred; }
  const char* OneOf(const std::vector<const char*>& texts) {
    return texts[static_cast<std::size_t>(Whole(0, static_cast<int>(texts.size()) - 1))];
  }
  double Uscale();
  std::string Label();
  std::string Settings();
  std::string BiasRows();
  std::string Letters();
  void AddFlank(int number);
  std::string ElementLine(int flank, std::int64_t number);
  std::string Models();
  std::string Scale() const;
  std::string Data();
  std::string DataLine(std::size_t person);

  std::mt19937_64 random_;
  std::vector<Flank> flanks_;
  double umean_ = 0.0, uscale_ = 1.0;
  bool latin_ = false;     // labels in one-byte characters
  bool extremes_ = false;  // a person with the highest score and one with the lowest
  int top_ = 4;            // of the rating scale
  char kind_ = 'R';        // R, B, P, D
  bool blocks_ = false;    // persons and items in two halves without a tie
  int missing_ = 0;        // in a hundred
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_RANDOM_REPORT_H
