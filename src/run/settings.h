// The settings of a run: one field for each keyword, its default beside it.
//
// spec/ writes them, everything else reads them.  Lists that need the design (Flanks, element
// references, orientations) are in run/design.h.
#ifndef FLANKS_RUN_SETTINGS_H
#define FLANKS_RUN_SETTINGS_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/utf8.h"

namespace flanks {

enum class DataSource : std::uint8_t { none, file, inlineData };

// One entry of `Dvalues=`: a data position whose value does not come from its own field.
struct DvalueEntry {
  std::int32_t position = 0;
  std::string text;               // a fixed value, "$L", "$C"
  std::int32_t fromPosition = 0;  // 0: the text is the value
  std::int32_t start = 0;         // columns within the source; 0: "$G", the group number
  std::int32_t length = 0;
  std::string asWritten;
  std::int64_t line = 0;  // in the Specification; 0: not from a line
};

struct Settings {
  std::string specificationFile;  // as named
  std::string OutputFile, AnchorFile, ResidualFile, GraphFile, ScoreFile, SimulatedFile;

  std::string Arrange = "mN,fN,N";
  bool arrangeGiven = false;
  char Ascii = 'Y';  // Y text, N drawing characters, W webpage
  int Barchart = 1;
  bool Batch = false;
  bool Beep = false;
  int Bias = 1;  // 1 plus, -1 minus, 0 omit
  char BoxShow = 'Y';
  std::array<float, 4> Convergence{0.5f, 0.01f, 0.0f, 0.0f};
  std::string OutputSeparator = " ";
  std::string dataFile;
  DataSource dataSource = DataSource::none;
  bool enteredInDataGiven = false;
  char FairAverageKind = 'M';
  float Hardware = 80.0f;
  bool IncludeHeadings = true;
  std::vector<int> InterRaterSetting{0};  // rater Flank, then the match list
  std::int32_t Iterations = 0;
  std::int32_t Juxtapose = 0;
  std::int64_t NullElement = 0;  // -1: none
  bool LeftHand = false;
  std::string Missing;  // ",9,x,": a comma before and after each code
  float Newton = 0.0f;
  bool OmitUnobserved = true;
  char PointCorrelationKind = 'M';  // Y, I, M, N
  std::string OutputQuote;
  // The fields of the Score and Residual files: one letter each; Y is written.  Place 12 of the
  // second is the number of decimals.
  std::string ScoreSelection = std::string(29, 'Y');
  std::string ResponseSelection = "2YYYYYYYYYY2YYYY";
  bool Query = false;
  std::string Replication = "R";
  bool Reversed = true;
  bool RealStandardErrors = false;
  char Subsets = 'Y';  // Y check, R report, L list, N off
  std::string T3onscreen = "Y";
  std::int32_t T4maximum = 100;
  std::string T7LGS = "LGS";
  std::string T8NBC = "NBC";
  std::string Tables = "Y";
  std::string Title;
  bool TotalScoreMode = true;
  std::int32_t Udecimals = 2;
  float Umean = 0.0f;
  float Unexpected = 3.0f;
  float Uscale = 1.0f;
  std::string Usort = "u";
  bool usortGiven = false;
  std::string UTF8enc;  // "", "Y", "N"
  std::string UTF8sub = ".";
  std::string Vertical;
  bool verticalOff = false;
  char Whexact = 'Y';
  bool Write = false;
  std::array<float, 2> Xtreme{0.3f, 0.5f};  // score adjustment in estimation, in bias estimation
  std::string Yardstick;
  std::array<float, 2> Zscore{0.0f, 0.0f};
  std::string Delements = "N";
  std::vector<DvalueEntry> Dvalues;
  bool labelsNobuild = false;

  std::string Webpagefonts = "Lucida Console, Andale Mono, Courier New";
  bool webpageBold = false;
};

// What the user said of the encoding of texts.
inline Utf8Encoded EncodingOf(const Settings& settings) {
  if (settings.UTF8enc == "Y") return Utf8Encoded::yes;
  return settings.UTF8enc == "N" ? Utf8Encoded::no : Utf8Encoded::detect;
}

}  // namespace flanks

#endif  // FLANKS_RUN_SETTINGS_H
