#include "support/random_report.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace flanks {
namespace {

// Characters that are one column wide, and some that are two; no separators of a Specification.
const std::vector<const char*> kCharacters = {"a",
                                              "b",
                                              "N",
                                              "o",
                                              "x",
                                              " ",
                                              "-",
                                              "_",
                                              "1",
                                              "\xC3\xA9",
                                              "\xC3\xB3",
                                              "\xC3\x96",  // é ó Ö
                                              "\xE6\xB1\x89",
                                              "\xE5\xAD\x97",
                                              "\xE4\xB8\xAD"};  // two wide

// The same in one byte each, which is no UTF-8.
const std::vector<const char*> kLatinCharacters = {"a", "b", "N", " ", "\xE9", "\xF3", "\xD6"};

}  // namespace

double RandomReport::Uscale() {
  const double size = std::pow(10.0, Whole(-20, 30) / 10.0);
  return Chance(15) ? -size : size;
}

std::string RandomReport::Label() {
  const int kind = Whole(0, 9);
  const int length = kind == 0 ? 0 : kind < 7 ? Whole(1, 14) : kind < 9 ? Whole(15, 50) : 120;
  const bool plain = Chance(40);
  std::string label;
  const std::vector<const char*>& characters = latin_ ? kLatinCharacters : kCharacters;
  for (int n = 0; n < length; ++n) label += plain ? "Ann" : OneOf(characters);
  if (!label.empty() && (label.front() == ' ' || label.front() == '-')) label.front() = 'A';
  return label;
}

std::string RandomReport::Letters() {
  std::string letters;
  for (int n = Whole(1, 3); n > 0; --n)
    letters += OneOf({"A", "F", "M", "N", "P", "a", "f", "m", "n", "p"});
  return letters;
}

std::string RandomReport::Settings() {
  std::string text = "Flanks=" + std::to_string(flanks_.size()) + "\nIterations=20\n";
  text += "Umean=" + std::to_string(umean_) + "," + std::to_string(uscale_) + "," +
          std::to_string(Whole(0, 6)) + "\n";
  text += "Arrange=" + Letters() + (Chance(50) ? "," + Letters() : "") + "\n";
  text += "Noncenter=1\nPositive=" + std::to_string(Whole(1, 2)) + "\n";
  if (Chance(40)) text += "Left-hand=Y\n";
  if (Chance(30)) text += "Standard errors=R\n";
  if (Chance(30)) text += "Totalscore=N\n";
  if (Chance(30)) text += "Omit-unobserved=N\n";
  if (Chance(30)) text += "Fair=Z\n";
  if (Chance(40)) text += "Inter-rater=" + std::to_string(Whole(1, 2)) + "\n";
  if (Chance(70)) text += "Pt-biserial=" + std::string(OneOf({"Y", "I", "M", "N"})) + "\n";
  if (Chance(30)) text += "T7LGS=" + std::string(OneOf({"L", "G", "S", "LG", "GS"})) + "\n";
  if (Chance(30)) text += "Write=Y\n";
  if (Chance(50)) text += "Unexpected=" + std::string(OneOf({"0", "1", "2"})) + "\n";
  if (Chance(30)) text += "Usort=" + std::string(OneOf({"u", "U", "F", "N", "1,2"})) + "\n";
  if (Chance(40))
    text += "Vertical=" +
            std::string(OneOf({"1*,2A", "2N", "1L,2*,S", "1C,2N,SL", "#S,1A", "A", "N"})) + "\n";
  if (Chance(40))
    text += "Yardstick=" + std::to_string(Chance(50) ? 0 : Whole(1, 90)) + "," +
            OneOf({"0", "1", ".3", "9"}) + "," + OneOf({"", "-2,3,Measure", "60,40", ",,M"}) + "\n";
  if (Chance(30)) text += "Subsets=" + std::string(OneOf({"R", "L"})) + "\n";
  if (Chance(30)) text += "Bias=" + std::string(OneOf({"minus", "plus"})) + "\n";
  text += BiasRows();
  if (Chance(30)) text += "T8NBC=" + std::string(OneOf({"N", "B", "C", "NB", "NC"})) + "\n";
  if (Chance(30)) text += "Barchart=" + std::string(OneOf({"0", "1", "2"})) + "\n";
  if (Chance(40)) text += "Glabel=\n1,1," + Label() + "g\n1,2," + Label() + "g\n2,1,g\n*\n";
  return text;
}

// Table 14 of many elements is long, and one of its lines is like another: of some it has the
// largest contrasts alone.
std::string RandomReport::BiasRows() {
  constexpr std::size_t kElementsInPairs = 20, kMostElements = 60;
  std::size_t elements = 0;
  for (const Flank& flank : flanks_) elements += flank.numbers.size();
  if (elements > kMostElements) return "Tables=11111111111110\n";
  if (elements > kElementsInPairs) return "Zscore=0," + std::string(OneOf({"1.2", "2"})) + "\n";
  return Chance(30) ? "Zscore=" + std::string(OneOf({"0,1", ".5", "2,2"})) + "\n" : "";
}

std::string RandomReport::ElementLine(int flank, std::int64_t number) {
  std::string line = std::to_string(number) + "=" + Label();
  line += Chance(20) ? "," + std::to_string(umean_ + uscale_ * Whole(-1, 1)) : ",";
  line += Chance(50) ? "," + std::to_string(Whole(0, flank == 1 ? 3 : 1)) : ",";
  if (Chance(10)) line += "," + std::string(OneOf({".5", "2", "1.25"}));
  return line + "\n";
}

void RandomReport::AddFlank(int number) {
  const int size = Chance(15) ? 1 : Chance(80) ? Whole(2, 8) : Whole(20, 60);
  const std::int64_t largest = Chance(75) ? 99 : Chance(50) ? 99'999 : 2'000'000'000;
  std::set<std::int64_t> numbers;
  while (static_cast<int>(numbers.size()) < size)
    numbers.insert(std::uniform_int_distribution<std::int64_t>(1, largest)(random_));
  Flank flank;
  flank.numbers.assign(numbers.begin(), numbers.end());
  flank.line = std::to_string(number) + ",F" + Label() + "," +
               OneOf({"", "", "", "A", "G", "D", "N"}) + "\n";
  for (const std::int64_t element : flank.numbers) flank.line += ElementLine(number, element);
  flanks_.push_back(flank);
}

std::string RandomReport::Scale() const {
  return kind_ == 'D' || kind_ == 'P' ? std::string(1, kind_) : kind_ + std::to_string(top_);
}

std::string RandomReport::Models() {
  std::string text = "Models=";
  const bool structured = Chance(20);  // a scale for each item
  const bool marked = Chance(60);      // bias terms of all Flanks, or of the first two
  for (std::size_t flank = 0; flank < flanks_.size(); ++flank) {
    text += flank == 1 && structured ? "#" : "?";
    text += marked && (flank < 2 || Chance(50)) ? "B," : ",";
  }
  if (kind_ != 'R' || Chance(50)) return text + Scale() + "\n";
  text += "Ratings\nRating (or partial credit) scale=Ratings," + Scale() + "\n";
  for (int category = 0; category <= top_; ++category)
    text += std::to_string(category) + "=" + Label() + "\n";
  return text + "*\n";
}

std::string RandomReport::DataLine(std::size_t person) {
  std::string text;
  const std::vector<std::int64_t>& items = flanks_[1].numbers;
  for (std::size_t item = 0; item < items.size(); ++item) {
    if (Chance(missing_) || (blocks_ && person % 2 != item % 2)) continue;
    text += std::to_string(flanks_[0].numbers[person]) + "," + std::to_string(items[item]) + ",";
    if (flanks_.size() > 2) {
      const std::vector<std::int64_t>& third = flanks_[2].numbers;
      text += std::to_string(
                  third[static_cast<std::size_t>(Whole(0, static_cast<int>(third.size()) - 1))]) +
              ",";
    }
    const bool extreme = extremes_ && (person == 3 || person == 4);
    const int category = extreme ? (person == 3 ? top_ : 0) : Whole(0, top_);
    text += std::to_string(category) + "\n";
  }
  return text;
}

std::string RandomReport::Data() {
  std::string text = "Data=\n";
  for (std::size_t person = 0; person < flanks_[0].numbers.size(); ++person)
    text += DataLine(person);
  return text;
}

std::string RandomReport::Specification() {
  flanks_.clear();
  kind_ = *OneOf({"R", "R", "R", "D", "B", "P"});
  top_ = kind_ == 'D' ? 1 : Whole(2, 6);
  latin_ = Chance(15);
  umean_ = Whole(-500, 500);
  uscale_ = Uscale();
  blocks_ = Chance(20);
  extremes_ = Chance(50);
  missing_ = Chance(50) ? 0 : 30;
  const int flanks = Whole(2, 3);
  for (int number = 1; number <= flanks; ++number) AddFlank(number);
  std::string labels = "Labels=\n";
  for (const Flank& flank : flanks_) labels += flank.line + "*\n";
  return "Title=" + Label() + "t\n" + Settings() + Models() + labels + Data();
}

}  // namespace flanks
