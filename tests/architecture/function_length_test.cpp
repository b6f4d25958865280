// Functions stay short: 30 lines are the aim, 60 a reason to think, and beyond 100 a function is
// split or stands in long_functions.txt with the reason why it is long.  Prints the longest ones.
//
// There is no parser here.  A brace opens a function body when it stands at namespace or class
// scope behind a parameter list; its length runs from the first line of its head to its closing
// brace.  That is exact for code in this project's style.

#include <algorithm>
#include <cctype>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iomanip>
#include <iostream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "support/source_tree.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kAim = 30, kThink = 60, kLimit = 100;

struct Function {
  std::string name;  // with its class where the head gives it: Shell::Pump
  int firstLine;
  int length;
};

enum class Scope { outer, function, other };

// What the brace behind `head` opens; `head` is the text since the last ";", "{" or "}".
Scope ScopeBehind(const std::string& head) {
  static const std::regex outer(
      R"(^(template ?<.*> )?(inline )?(namespace|class|struct|union|extern)\b)"
      R"(( alignas ?\([^()]*\)| \[\[[^\]]*\]\])*[^()=]*$)");
  static const std::regex initializer(R"(^[^(]*=)");  // a table of data, not operator= behind "("
  if (std::regex_search(head, outer)) return Scope::outer;
  if (head.find('(') == std::string::npos) return Scope::other;
  if (std::regex_search(head, initializer) && head.find("operator") == std::string::npos)
    return Scope::other;
  return Scope::function;
}

// "a_{1}" in a constructor's list of initial values: a brace right behind a name there.
bool IsInitialValue(const std::string& head) {
  static const std::regex list(R"(\)\s*(noexcept\s*)?:[^:].*[\w>]$)");
  return std::regex_search(head, list);
}

std::string NameIn(const std::string& head) {
  static const std::regex name(R"(([\w:~]+|operator[^\s(]+|operator\(\))\s*\()");
  std::smatch match;
  return std::regex_search(head, match, name) ? match[1].str() : head;
}

class FunctionFinder {
 public:
  std::vector<Function> Find(const std::string& text) {
    for (const char c : WithoutCommentsAndLiterals(text)) Take(c);
    return found_;
  }

 private:
  void Take(char c) {
    if (c == '\n') ++line_;
    if (c == '#' && head_.empty()) directive_ = true;
    if (directive_) {
      directive_ = c != '\n';
      return;
    }
    parentheses_ += c == '(' ? 1 : c == ')' ? -1 : 0;
    if (c == '{' && parentheses_ == 0) return Open();
    if (c == '}' && parentheses_ == 0) return Close();
    if (AtOuterScope()) Extend(c);
  }

  bool AtOuterScope() const { return scopes_.empty() || scopes_.back() == Scope::outer; }

  // A head is one line of text, whatever its breaks and blanks in the file.
  void Extend(char c) {
    if (c == ';' && parentheses_ == 0) return head_.clear();
    if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      if (!head_.empty()) blank_ = true;
      return;
    }
    if (head_.empty()) headLine_ = line_;
    if (blank_ && !head_.empty()) head_ += ' ';
    blank_ = false;
    head_ += c;
    if (head_ == "public:" || head_ == "private:" || head_ == "protected:") head_.clear();
  }

  void Open() {
    if (AtOuterScope() && IsInitialValue(head_) && !blank_) {
      scopes_.push_back(Scope::other);
      keepHead_ = true;
      return;
    }
    const Scope scope = AtOuterScope() ? ScopeBehind(head_) : Scope::other;
    if (scope == Scope::function) found_.push_back({NameIn(head_), headLine_, 0});
    scopes_.push_back(scope);
    head_.clear();
  }

  void Close() {
    if (scopes_.empty()) return;
    if (scopes_.back() == Scope::function)
      found_.back().length = line_ - found_.back().firstLine + 1;
    scopes_.pop_back();
    if (!keepHead_) head_.clear();
    if (keepHead_) head_ += "()";
    keepHead_ = false;
  }

  std::vector<Function> found_;
  std::vector<Scope> scopes_;
  std::string head_;
  int line_ = 1, headLine_ = 1, parentheses_ = 0;
  bool blank_ = false, directive_ = false, keepHead_ = false;
};

// "FILE FUNCTION: reason" lines; "#" begins a comment.
std::map<std::string, std::string> ReadExceptions() {
  const std::string name = "tests/architecture/long_functions.txt";
  std::map<std::string, std::string> reasons;
  for (const std::string& line :
       LinesOf(ReadSourceTree("tests/architecture", {"long_functions.txt"}).at(name))) {
    if (line.empty() || line.starts_with('#')) continue;
    const std::size_t colon = line.find(": ");
    reasons[line.substr(0, colon)] = colon == std::string::npos ? "" : line.substr(colon + 2);
  }
  return reasons;
}

struct Placed {
  std::string file;
  Function function;
  std::string Key() const { return file + " " + function.name; }
};

std::vector<Placed> AllFunctions() {
  std::vector<Placed> all;
  for (const auto& [file, text] : ReadSourceTree("src", {".h", ".cpp"}))
    for (const Function& function : FunctionFinder().Find(text)) all.push_back({file, function});
  std::ranges::stable_sort(all, std::greater{}, [](const Placed& p) { return p.function.length; });
  return all;
}

void Report(const std::vector<Placed>& all) {
  const auto beyond = [&](int length) {
    return std::ranges::count_if(all, [&](const auto& p) { return p.function.length > length; });
  };
  std::cout << all.size() << " functions; " << beyond(kAim) << " beyond " << kAim << " lines, "
            << beyond(kThink) << " beyond " << kThink << ", " << beyond(kLimit) << " beyond "
            << kLimit << ".  The longest:\n";
  for (std::size_t i = 0; i < std::min<std::size_t>(all.size(), 12); ++i)
    std::cout << std::setw(5) << all[i].function.length << "  " << all[i].Key() << " (line "
              << all[i].function.firstLine << ")\n";
}

TEST(FunctionLength, IsAtMost100LinesButForListedReasons) {
  const std::vector<Placed> all = AllFunctions();
  ASSERT_FALSE(all.empty());
  Report(all);
  std::map<std::string, std::string> exceptions = ReadExceptions();
  for (const Placed& placed : all) {
    if (placed.function.length <= kLimit) break;
    const auto reason = exceptions.find(placed.Key());
    EXPECT_TRUE(reason != exceptions.end() && !reason->second.empty())
        << placed.file << ":" << placed.function.firstLine << ": " << placed.function.name
        << " has " << placed.function.length << " lines: split it, or give the reason in "
        << "tests/architecture/long_functions.txt";
    if (reason != exceptions.end()) exceptions.erase(reason);
  }
  for (const auto& [key, reason] : exceptions)
    ADD_FAILURE() << "long_functions.txt lists " << key << ", which is not long any more";
}

std::vector<std::string> NamesAndLengths(const std::string& text) {
  std::vector<std::string> list;
  for (const Function& function : FunctionFinder().Find(text))
    list.push_back(function.name + " " + std::to_string(function.length));
  return list;
}

TEST(FunctionFinder, MeasuresFromTheHeadToTheClosingBrace) {
  EXPECT_THAT(NamesAndLengths("namespace flanks {\n"
                              "int One() { return 1; }\n"
                              "\n"
                              "std::vector<int> Two(int a,\n"
                              "                     Options o = {}) {\n"
                              "  if (a > 0) {\n"
                              "    Call([&] { return \"}\"; });  // }\n"
                              "  }\n"
                              "}\n"
                              "}  // namespace flanks\n"),
              ElementsAre("One 1", "Two 6"));
}

TEST(FunctionFinder, SeesMembersAndConstructors) {
  EXPECT_THAT(NamesAndLengths("class A : public B {\n"
                              " public:\n"
                              "  A() : a_{1}, b_(2) {\n"
                              "  }\n"
                              "  int Get() const { return a_; }\n"
                              "};\n"
                              "A& A::operator=(const A& other) {\n"
                              "  return *this;\n"
                              "}\n"),
              ElementsAre("A 2", "Get 1", "operator= 3"));
}

TEST(FunctionFinder, LeavesTablesAndTypesAlone) {
  EXPECT_THAT(NamesAndLengths("#define X {\n"
                              "constexpr Step kSteps[] = {{\"a\", F}, {\"b\", G(1)}};\n"
                              "struct P { int a = 0; float b{1}; };\n"
                              "struct alignas(32) R { int a; };\n"
                              "enum class E { a, b };\n"
                              "template <class T> struct Q { };\n"
                              "using F = void (*)(int);\n"
                              "int Declared(int a);\n"),
              IsEmpty());
}

}  // namespace
}  // namespace flanks
