#include "spec/not_written.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "base/text.h"
#include "spec/keyword_table.h"

namespace flanks {
namespace {

bool IsGiven(const Analysis& analysis, std::string_view keyword) {
  const KeywordRow* row = ResolveKeyword(UpperCase(keyword));
  return row != nullptr && WhereSeen(analysis.specification, row->code) != SeenIn::nowhere;
}

// The flag of a Table in `Tables=`; blank when that is no string of flags.
char FlagOf(const Settings& settings, int table) {
  const std::string& flags = settings.Tables;
  const bool areFlags = !flags.empty() && (flags[0] == '0' || flags[0] == '1');
  return areFlags ? flags[static_cast<std::size_t>(table - 1)] : ' ';
}

bool IsTableOn(const Settings& settings, std::initializer_list<int> tables) {
  return std::any_of(tables.begin(), tables.end(),
                     [&](int table) { return FlagOf(settings, table) != '0'; });
}

bool IsTableAsked(const Analysis& analysis, std::initializer_list<int> tables,
                  std::initializer_list<std::string_view> keywords) {
  const bool given = std::any_of(keywords.begin(), keywords.end(), [&](std::string_view keyword) {
    return IsGiven(analysis, keyword);
  });
  return std::any_of(tables.begin(), tables.end(), [&](int table) {
    const char flag = FlagOf(analysis.settings, table);
    return flag == '1' || (given && flag != '0');
  });
}

// Whether a statement asks for the bias terms of a position.
bool HasBiasMark(const Design& design) {
  for (const ModelRow model : Upward(design.models.ModelText))
    for (Position position(1); position.number() <= design.ModelFlankCount; ++position)
      if (design.models.reference(model, position).bias) return true;
  return false;
}

struct Unwritten {
  std::string_view what;  // with the keywords that ask for it
  bool (*isAsked)(const Analysis&);
};
using A = const Analysis&;

constexpr Unwritten kNotWritten[] = {
    {"The set of bias Tables, 9 to 14 (B in Models=, Zscore=),",
     [](A a) {
       const std::initializer_list<int> tables = {9, 10, 11, 12, 13, 14};
       return IsTableAsked(a, tables, {"Zscore"}) ||
              (HasBiasMark(a.design) && IsTableOn(a.settings, tables));
     }},
};

}  // namespace

std::vector<std::string> NotWritten(const Analysis& analysis) {
  std::vector<std::string> lines;
  for (const Unwritten& row : kNotWritten)
    if (row.isAsked(analysis))
      lines.push_back(std::string(row.what) + " is not written by this version of Flanks.");
  return lines;
}

void TellWhatIsNotWritten(Run& run) {
  for (const std::string& line : NotWritten(run.analysis)) run.console.ShowFlagged(line);
}

}  // namespace flanks
