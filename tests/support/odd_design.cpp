#include "support/odd_design.h"

#include <algorithm>
#include <initializer_list>
#include <random>
#include <vector>

namespace flanks {
namespace {

enum Oddity {
  kFewElements,
  kScales,
  kSettings,
  kReferences,
  kWeights,
  kAnchors,
  kPatterns,
  kKinds
};

class Maker {
 public:
  explicit Maker(unsigned seed) : random_(seed) {
    for (bool& odd : odd_) odd = OneIn(3);
  }

  OddDesign Make() {
    flanks_ = OneIn(4) ? 3 : 2;
    for (int f = 0; f < flanks_; ++f) sizes_.push_back(Odd(kFewElements, 3) ? 1 : 2 + Below(4));
    PickScale();
    design_.specification = "Flanks=" + std::to_string(flanks_) + "\n";
    repeated_ = flanks_ == 2 && Odd(kKinds, 3);
    if (repeated_) design_.specification += "Entered-in-data=1,1\n";
    AddSettings();
    AddModels();
    AddScale();
    AddLabels();
    design_.specification += "Data=data.txt\n";
    AddData();
    return design_;
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  bool OneIn(int chances) { return Below(chances) == 0; }
  std::string OneOf(std::initializer_list<const char*> texts) {
    return *(texts.begin() + Below(static_cast<int>(texts.size())));
  }
  // Each kind of oddity is in a third of the designs, so that most have only some.
  bool Odd(Oddity oddity, int chances) { return odd_[oddity] && OneIn(chances); }
  void Line(const std::string& text) { design_.specification += text + "\n"; }

  void PickScale() {
    static constexpr struct {
      const char* type;
      int top;
    } kTypes[] = {{"D", 1},      {"R1", 1},     {"R2", 2},  {"R3", 3},  {"R5", 5},
                  {"R", 9},      {"R255", 255}, {"B1", 1},  {"B3", 3},  {"B12", 12},
                  {"B255", 255}, {"P", 6},      {"P", 255}, {"R4K", 4}, {"M", 3}};
    const auto& scale = kTypes[Below(odd_[kScales] ? 15 : 6)];
    type_ = scale.type;
    top_ = scale.top;
    named_ = type_ != "D" && type_ != "M" && Odd(kScales, 2);
  }

  void AddSettings() {
    Line("Iterations=" + std::to_string(1 + Below(OneIn(4) ? 60 : 8)));
    if (OneIn(3))
      Line("Noncenter=" + OneOf({"0", "2", "1,2"}));
    else if (OneIn(4))
      Line("Center=" + OneOf({"2Z", "1Z,2Z", "1,2", "1Z"}));
    if (Odd(kSettings, 2)) Line("Positive=" + OneOf({"N", "Y", "2", "1,2"}));
    if (Odd(kSettings, 3)) Line("Newton=" + OneOf({".5", "1", "9", "Y", ".01"}));
    if (Odd(kSettings, 2))
      Line("Convergence=" + OneOf({"0,0", ".0001,.0001", ".1,.001,.1,.001", "90,9"}));
    if (Odd(kSettings, 4)) Line("Hardware=" + OneOf({"1", "5", "83", "88", "200", ".6"}));
    if (Odd(kSettings, 4)) Line("Umean=" + OneOf({"50,10,1", "0,-1", "500,1E+6,0", "0,.00001,9"}));
    if (Odd(kSettings, 4)) Line("Xtreme=" + OneOf({".9", ".01", ".999,.5"}));
    if (Odd(kSettings, 4)) Line("Null=" + OneOf({"1", "-1", "2"}));
    if (Odd(kSettings, 4)) Line("Fair=Z");
    if (Odd(kSettings, 4)) Line("Pt-biserial=" + OneOf({"Y", "I", "N", "A"}));
    if (Odd(kSettings, 4)) Line("Standard errors=R");
    if (Odd(kSettings, 4)) Line("Totalscore=N");
    if (Odd(kSettings, 4)) Line("Whexact=N");
    if (Odd(kSettings, 4)) Line("Show-unobserved=Y");
    if (Odd(kSettings, 4)) Line("Subsets=N");
    if (Odd(kSettings, 4)) Line("Reversed=N");
    if (Odd(kSettings, 2)) Line("Write=Y");
    if (Odd(kSettings, 3)) Line("Arrange=" + OneOf({"mN", "A", "F,f", "n,P,p", "N,mA"}));
  }

  std::string Reference(int flank) {
    const int kind = odd_[kReferences] ? Below(14) : 14;
    if (kind == 0) return "X";
    if (kind == 1) return OneIn(2) ? "@" : "@1";
    if (kind == 2) return "-?";
    if (kind == 3) return "#";
    if (kind == 4) return "?B";
    if (kind == 5) return "";
    if (kind == 6)
      return "1-" + std::to_string(std::max(1, sizes_[static_cast<std::size_t>(flank)] - 1));
    if (kind == 7) return "-1";
    return "?";
  }

  void AddModels() {
    Line("Models=");
    const int statements = Odd(kReferences, 2) ? 2 : 1;
    for (int s = 0; s < statements; ++s) {
      std::string text;
      for (int f = 0; f < flanks_; ++f) {
        const bool second = repeated_ && f == 1;
        text += (second ? OneOf({"-?", "?"}) : Reference(f)) + ",";
      }
      text += named_ ? "S" : type_;
      if (Odd(kWeights, 2)) text += "," + OneOf({"2", "0", ".5", "1E+30", "1E-30", "-1", "3E+38"});
      Line(text);
    }
    Line("*");
  }

  void AddScale() {
    if (!named_) return;
    std::string head = "Rating scale=S," + type_;
    if (OneIn(2)) head += OneOf({",G", ",S", ",G,K", ",S,K"});
    Line(head);
    for (int k = 0; k <= std::min(top_, 6); ++k)
      if (OneIn(3))
        Line(std::to_string(k) + "=c," + OneOf({"", "-1", "1.5", "0", "30", ".00001"}) + "," +
             OneOf({"", "A", "A"}));
    Line("*");
  }

  void AddLabels() {
    Line("Labels=");
    for (int f = 0; f < (repeated_ ? 1 : flanks_); ++f) {
      const std::string option = !Odd(kAnchors, 2) ? "" : OneOf({"A", "A", "D", "G", "X", "A-G"});
      std::string head = std::to_string(f + 1) + ",Flank," + option;
      if (Odd(kWeights, 4)) head += "," + OneOf({"2", "0", "1E+30", "3"});
      Line(head);
      for (int n = 1; n <= sizes_[static_cast<std::size_t>(f)]; ++n) Line(Element(n));
      Line("*");
    }
  }

  std::string Element(int n) {
    std::string line = std::to_string(n) + "=e" + std::to_string(n) + ",";
    if (Odd(kAnchors, 2))
      line += OneOf({"0", "1", "-2", ".5", "7", "-40", "1", "-1", "0", "79", "1E-30"});
    line += ",";
    if (Odd(kAnchors, 2)) line += OneOf({"1", "2", "7", "$2"});
    line += ",";
    if (Odd(kWeights, 3))
      line += OneOf({"0", "2", ".25", "1E+30", "1E-30", "-3", "3E+38", "1E-38"});
    if (n > 1 && Odd(kKinds, 6))
      line += (line.back() == ',' ? "1," : ",") + std::to_string(1 + Below(OneIn(9) ? n : n - 1));
    return line;
  }

  int Category(int pattern, int number) {
    if (pattern == 0) return 0;
    if (pattern == 1) return top_;
    if (pattern == 2) return std::min(top_, 2);
    if (pattern == 3) return number % 2 == 0 ? 0 : top_;
    return Below(top_ + 1);
  }

  void AddData() {
    const int pattern = odd_[kPatterns] ? Below(6) : 6;  // 4 and above: any category
    const bool nested = Odd(kPatterns, 2), thin = Odd(kPatterns, 2);
    const int width = repeated_ ? 2 : flanks_;
    std::vector<int> elements(static_cast<std::size_t>(width), 1);
    int number = 0;
    for (;;) {
      const bool apart = nested && (elements.front() % 2 != elements.back() % 2);
      if (!apart && !(thin && OneIn(2))) AddDatum(elements, Category(pattern, ++number));
      std::size_t f = elements.size();
      while (f > 0 && ++elements[f - 1] > sizes_[repeated_ ? 0 : f - 1]) elements[--f] = 1;
      if (f == 0) break;
    }
  }

  void AddDatum(const std::vector<int>& elements, int category) {
    if (Odd(kWeights, 12)) design_.data += OneOf({"R2,", "R0,", "R1E+30,", "R.5,", "R-1,"});
    for (const int n : elements) design_.data += std::to_string(n) + ",";
    design_.data += std::to_string(category) + "\n";
  }

  std::mt19937 random_;
  bool odd_[kKinds + 1] = {};
  OddDesign design_;
  int flanks_ = 2;
  std::vector<int> sizes_;
  std::string type_;
  int top_ = 1;
  bool named_ = false;
  bool repeated_ = false;
};

}  // namespace

OddDesign MakeOddDesign(unsigned seed) {
  return Maker(seed).Make();
}

}  // namespace flanks
