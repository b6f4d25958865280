#include "data/query_show.h"

#include <array>

namespace flanks {
namespace {

enum class TextPlace : unsigned char { none, before, quotedBehind };

struct QueryRow {
  QueryCode code;
  TextPlace place;
  std::string_view words;
};

constexpr std::array kQueryRows = {
    QueryRow{QueryCode::header, TextPlace::none, "Query=Y in effect!  Data matching displayed:"},
    QueryRow{QueryCode::blank, TextPlace::none, "blank"},
    QueryRow{QueryCode::r0, TextPlace::before, "R0 replications for datum"},
    QueryRow{QueryCode::datum, TextPlace::before, "datum: "},
    QueryRow{QueryCode::noDatum, TextPlace::before, "no datum: "},
    QueryRow{QueryCode::unspecified, TextPlace::before, "unspecified "},
    QueryRow{QueryCode::noMatch, TextPlace::none, "no matching model"},
    QueryRow{QueryCode::matched, TextPlace::before, "matched"},
    QueryRow{QueryCode::text, TextPlace::before, ""},
    QueryRow{QueryCode::missing, TextPlace::none, "datum treated as Missing"},
    QueryRow{QueryCode::model, TextPlace::before, "model"},
    QueryRow{QueryCode::recoded, TextPlace::quotedBehind, "datum recoded to "},
    QueryRow{QueryCode::negative, TextPlace::none, "negative datum ignored"},
    QueryRow{QueryCode::nonNumeric, TextPlace::none, "non-numeric datum ignored"},
    QueryRow{QueryCode::invalidModel, TextPlace::none, "invalid model"},
};

constexpr std::string_view kPrompt =
    "Press F4 for next match, F5 to discontinue Query=Y, or use Estimation menu";

}  // namespace

std::string QueryText(QueryCode code, std::string_view text) {
  for (const QueryRow& row : kQueryRows) {
    if (row.code != code) continue;
    std::string words(row.words);
    switch (row.place) {
      case TextPlace::none:
        return words;
      case TextPlace::before:
        return std::string(text) + words;
      case TextPlace::quotedBehind:
        return words + "\"" + std::string(text) + "\"";
    }
  }
  return std::string(text) + std::to_string(static_cast<int>(code)) + "unknown : ";
}

void QueryShow(Console& console, QueryCode code, std::string_view text) {
  console.ShowLine(QueryText(code, text));
}

void QueryWait(Console& console, Dialogs& dialogs) {
  console.ShowLine(kPrompt);
  dialogs.WaitForKey();
}

}  // namespace flanks
