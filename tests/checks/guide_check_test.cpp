// docs/specification-guide.md teaches by examples; each of them is run here on the whole program,
// and what the page shows of the answer is compared.
//
// A comment in front of a block of the page says what the block is:
//
//   <!-- file: first.txt -->    the contents of a file
//   <!-- run -->                commands, each "flanks ARGUMENTS"; <!-- run: 1 --> with exit status
//   1
//   <!-- shows: first.out.txt -->   lines that stand one below the other in a file of the last run,
//                               or on the "screen"; a line "..." stands for any lines
//
// Files last to the end of their chapter, that is to the next heading "## "; each run begins with
// the files of the page and what the runs before it in the chapter have left.
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "base/text.h"
#include "support/flanks_sandbox.h"
#include "support/program_runner.h"
#include "support/source_tree.h"

namespace flanks {
namespace {

enum class BlockKind : std::uint8_t { file, run, shows };

struct Block {
  BlockKind kind;
  std::string name;  // of a file or what is shown; the exit status of a run
  std::vector<std::string> lines;
  std::size_t lineNumber = 0;
  bool beginsChapter = false;
};

// Every marked block of a page; throws when a mark has no block.
std::vector<Block> BlocksOf(const std::string& page) {
  static const std::regex mark("<!-- (file|run|shows)(: (.*))? -->");
  const std::map<std::string, BlockKind> kinds = {
      {"file", BlockKind::file}, {"run", BlockKind::run}, {"shows", BlockKind::shows}};
  const std::vector<std::string> lines = LinesOf(page);
  std::vector<Block> blocks;
  bool chapter = true;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].starts_with("## ")) chapter = true;
    std::smatch match;
    if (!std::regex_match(lines[i], match, mark)) continue;
    Block block{kinds.at(match[1].str()), match[3].str(), {}, i + 1, std::exchange(chapter, false)};
    if (++i >= lines.size() || !lines[i].starts_with("```"))
      throw std::runtime_error("no block behind line " + std::to_string(i));
    while (++i < lines.size() && !lines[i].starts_with("```")) block.lines.push_back(lines[i]);
    blocks.push_back(std::move(block));
  }
  return blocks;
}

// Whether `shown` stands in `all`, one line below the other, from some line on.
bool Shows(const std::vector<std::string>& all, const std::vector<std::string>& shown) {
  std::size_t from = 0;  // behind what has been found
  for (std::size_t i = 0; i < shown.size();) {
    const auto end = std::find(shown.begin() + static_cast<std::ptrdiff_t>(i), shown.end(), "...");
    const auto begin = shown.begin() + static_cast<std::ptrdiff_t>(i);
    const auto found =
        std::search(all.begin() + static_cast<std::ptrdiff_t>(from), all.end(), begin, end);
    if (found == all.end() && begin != end) return false;
    from = static_cast<std::size_t>(found - all.begin() + (end - begin));
    i = static_cast<std::size_t>(end - shown.begin()) + 1;
  }
  return true;
}

std::vector<std::string> WithoutBlanksAtEnds(std::vector<std::string> lines) {
  for (std::string& line : lines) line = std::string(TrimRight(line));
  return lines;
}

std::vector<std::string> WordsOf(const std::string& command) {
  std::vector<std::string> words;
  static const std::regex word("\"([^\"]*)\"|(\\S+)");
  for (std::sregex_iterator at(command.begin(), command.end(), word), end; at != end; ++at)
    words.push_back((*at)[1].matched ? (*at)[1].str() : (*at)[2].str());
  return words;
}

class Guide {
 public:
  void Do(const Block& block) {
    SCOPED_TRACE("docs/specification-guide.md, line " + std::to_string(block.lineNumber));
    if (block.beginsChapter) sandbox_ = std::make_unique<FlanksSandbox>();
    switch (block.kind) {
      case BlockKind::file:
        return WriteFile(block);
      case BlockKind::run:
        for (const std::string& command : block.lines) RunCommand(command, block.name);
        return;
      case BlockKind::shows:
        return Compare(block);
    }
  }

 private:
  void WriteFile(const Block& block) {
    std::string text;
    for (const std::string& line : block.lines) text += line + "\n";
    sandbox_->Write(block.name, text);
  }

  void RunCommand(const std::string& command, const std::string& status) {
    std::vector<std::string> words = WordsOf(command);
    ASSERT_FALSE(words.empty());
    ASSERT_EQ(words.front(), "flanks");
    words.erase(words.begin());
    const ProgramResult result = RunProgram(sandbox_->Call(FLANKS_PROGRAM, words));
    screen_ = result.output;
    EXPECT_EQ(std::to_string(result.exitStatus), status.empty() ? "0" : status) << screen_;
    EXPECT_EQ(result.errors, "");
  }

  void Compare(const Block& block) {
    const std::string text = block.name == "screen" ? screen_ : sandbox_->Read(block.name);
    ASSERT_FALSE(text.empty()) << block.name;
    EXPECT_TRUE(Shows(WithoutBlanksAtEnds(LinesOf(text)), WithoutBlanksAtEnds(block.lines)))
        << text;
  }

  std::unique_ptr<FlanksSandbox> sandbox_;
  std::string screen_;
};

TEST(SpecificationGuide, ItsExamplesDoWhatItSays) {
  const SourceTree pages = ReadSourceTree("docs", {"specification-guide.md"});
  const std::vector<Block> blocks = BlocksOf(pages.at("docs/specification-guide.md"));
  const auto count = [&](BlockKind kind) {
    return std::count_if(blocks.begin(), blocks.end(),
                         [kind](const Block& block) { return block.kind == kind; });
  };
  EXPECT_GT(count(BlockKind::run), 8);
  EXPECT_GT(count(BlockKind::shows), 8);
  Guide guide;
  for (const Block& block : blocks) guide.Do(block);
}

TEST(SpecificationGuide, LinesAreComparedOneBelowTheOther) {
  const std::vector<std::string> all = {"a", "b", "c", "d"};
  EXPECT_TRUE(Shows(all, {"b", "c"}));
  EXPECT_FALSE(Shows(all, {"b", "d"}));
  EXPECT_TRUE(Shows(all, {"a", "...", "d"}));
  EXPECT_FALSE(Shows(all, {"d", "...", "a"}));
  EXPECT_TRUE(Shows(all, {"...", "c", "..."}));
}

TEST(SpecificationGuide, BlocksAreFoundByTheirMarks) {
  const std::vector<Block> blocks = BlocksOf(
      "## One\n<!-- file: a.txt -->\n```\nx\ny\n```\ntext\n```\nno mark\n```\n## Two\n"
      "<!-- run: 1 -->\n```sh\nflanks \"a b\" c\n```\n");
  ASSERT_EQ(blocks.size(), 2u);
  EXPECT_THAT(blocks[0].lines, ::testing::ElementsAre("x", "y"));
  EXPECT_EQ(blocks[1].name, "1");
  EXPECT_TRUE(blocks[1].beginsChapter);
  EXPECT_THAT(WordsOf(blocks[1].lines[0]), ::testing::ElementsAre("flanks", "a b", "c"));
}

}  // namespace
}  // namespace flanks
