#include "base/external_sort.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace flanks {
namespace {

constexpr std::int64_t kLinesBetweenLooks = 4096;

using RunFile = std::unique_ptr<TextWorkFile>;

RunFile MakeFile(const SortOptions& options) {
  auto file = std::make_unique<TextWorkFile>();
  if (const std::error_code error = file->Create("Sort", "txt"))
    ThrowFileFailure("open", file->name(), error);
  file->Follow(options.plan);
  return file;
}

std::string_view KeyOf(std::string_view line, std::size_t column) {
  const std::size_t from = column > 0 ? column - 1 : 0;
  return line.substr(std::min(from, line.size()));
}

// The lines that are sorted in memory.
class LineBlock {
 public:
  explicit LineBlock(const SortOptions& options) : options_(options) {}

  bool empty() const { return lines_.empty(); }
  bool IsFull() const { return text_.size() >= options_.blockBytes; }
  void Add(std::string_view line) {
    lines_.push_back({text_.size(), line.size()});
    text_.append(line);
  }
  // Writes the lines in order, ready to be read, and forgets them.
  RunFile WriteRun() {
    std::stable_sort(lines_.begin(), lines_.end(), [this](const Line& a, const Line& b) {
      return KeyOf(TextOf(a), options_.column) < KeyOf(TextOf(b), options_.column);
    });
    RunFile run = MakeFile(options_);
    for (const Line& line : lines_) run->WriteLine(TextOf(line));
    run->Rewind();
    text_.clear();
    lines_.clear();
    return run;
  }

 private:
  struct Line {
    std::size_t from = 0, length = 0;
  };
  std::string_view TextOf(const Line& line) const {
    return std::string_view(text_).substr(line.from, line.length);
  }

  const SortOptions& options_;
  std::string text_;
  std::vector<Line> lines_;
};

// Several runs, the earlier lines in the earlier runs, read as one.
class MergedRuns {
 public:
  MergedRuns(std::vector<RunFile> runs, std::size_t column) : column_(column) {
    for (RunFile& run : runs) sources_.push_back({std::move(run), {}});
    for (std::size_t i = 0; i < sources_.size(); ++i) Advance(i);
  }

  // Valid until the next call.
  bool Next(std::string_view& line) {
    if (taken_ != kNone) Advance(taken_);
    taken_ = kNone;
    if (order_.empty()) return false;
    std::pop_heap(order_.begin(), order_.end(), IsLater{*this});
    taken_ = order_.back();
    order_.pop_back();
    line = sources_[taken_].line;
    return true;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  struct Source {
    RunFile file;
    std::string_view line;  // its next
  };
  // The heap has the line that comes first at its top; of equal ones that of the earlier run.
  struct IsLater {
    const MergedRuns& runs;
    bool operator()(std::size_t a, std::size_t b) const {
      const int order = KeyOf(runs.sources_[a].line, runs.column_)
                            .compare(KeyOf(runs.sources_[b].line, runs.column_));
      return order > 0 || (order == 0 && a > b);
    }
  };

  void Advance(std::size_t source) {
    if (!sources_[source].file->ReadLine(sources_[source].line)) {
      sources_[source].file.reset();
      return;
    }
    order_.push_back(source);
    std::push_heap(order_.begin(), order_.end(), IsLater{*this});
  }

  std::size_t column_;
  std::vector<Source> sources_;
  std::vector<std::size_t> order_;  // sources with a line
  std::size_t taken_ = kNone;       // the source of the line that was handed out
};

// The runs that are still to be merged, in levels: a run of a level is made of `runsAtOnce` runs of
// the level below, so that few files are open however many runs there are.
class RunLevels {
 public:
  explicit RunLevels(const SortOptions& options) : options_(options) {}

  // False when the sort was stopped.
  bool Add(RunFile run, std::int64_t linesRead) {
    for (std::size_t level = 0;; ++level) {
      if (level == levels_.size()) levels_.emplace_back();
      levels_[level].push_back(std::move(run));
      if (levels_[level].size() < options_.runsAtOnce) return true;
      run =
          Merge(std::exchange(levels_[level], {}), [linesRead](std::int64_t) { return linesRead; });
      if (run == nullptr) return false;
    }
  }
  // The last merge; null when it was stopped.
  RunFile MergeAll(std::int64_t linesRead) {
    std::vector<RunFile> runs;
    for (std::size_t level = levels_.size(); level-- > 0;)
      for (RunFile& run : levels_[level]) runs.push_back(std::move(run));
    levels_.clear();
    if (runs.empty()) runs.push_back(LineBlock(options_).WriteRun());
    if (runs.size() == 1) return std::move(runs.front());
    return Merge(std::move(runs), [linesRead](std::int64_t merged) { return linesRead + merged; });
  }

 private:
  template <class Share>
  RunFile Merge(std::vector<RunFile> runs, Share share) {
    RunFile made = MakeFile(options_);
    MergedRuns merged(std::move(runs), options_.column);
    std::string_view line;
    while (merged.Next(line)) {
      made->WriteLine(line);
      if (made->lines() % kLinesBetweenLooks == 0 && options_.isStopped(share(made->lines())))
        return nullptr;
    }
    made->Rewind();
    return made;
  }

  const SortOptions& options_;
  std::vector<std::vector<RunFile>> levels_;  // the earliest lines in the last
};

}  // namespace

bool ExternalSort(const SortOptions& options, std::unique_ptr<TextWorkFile>& file) {
  std::unique_ptr<TextWorkFile> input = std::move(file);
  RunLevels levels(options);
  std::int64_t linesRead = 0;
  {
    LineBlock block(options);
    input->Rewind();
    std::string_view line;
    while (input->ReadLine(line)) {
      block.Add(line);
      if (++linesRead % kLinesBetweenLooks == 0 && options.isStopped(linesRead)) return false;
      if (block.IsFull() && !levels.Add(block.WriteRun(), linesRead)) return false;
    }
    if (!block.empty() && !levels.Add(block.WriteRun(), linesRead)) return false;
    input.reset();  // room for what the last merge writes
  }
  file = levels.MergeAll(linesRead);
  return file != nullptr;
}

}  // namespace flanks
