#include "import/conversion_child.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <new>

#include "base/byte_order.h"
#include "base/positioned_file.h"

namespace flanks {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kLimitsMemory = false;  // the sanitizer's own tables are beyond any limit
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kLimitsMemory = false;
#else
constexpr bool kLimitsMemory = true;
#endif
#else
constexpr bool kLimitsMemory = true;
#endif

constexpr int kWaitMilliseconds = 50;
constexpr int kChildFailed = 70;  // the child's exit status when it could not tell its end

// A message in the pipe: a letter, the length of its text in 4 bytes, the text.
constexpr char kRowsLetter = 'R';
constexpr char kTellLetter = 'T';
constexpr char kFirstEndLetter = 'a';  // and the kinds of ends behind it
constexpr std::size_t kHeadBytes = 5;
constexpr std::size_t kLongestText = std::size_t{1} << 20;

// ---- in the child

void WriteAll(int pipe, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(pipe, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) _exit(kChildFailed);  // nobody is there any more
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void Send(int pipe, char letter, std::string_view text) {
  text = text.substr(0, kLongestText);
  std::uint8_t length[4];
  StoreLittle(length, static_cast<std::uint32_t>(text.size()));
  std::string message(1, letter);
  message.append(reinterpret_cast<const char*>(length), sizeof length);
  message += text;
  WriteAll(pipe, message);
}

// The size of the process's address space; 0 where it cannot be known.
std::int64_t AddressSpace() {
  std::ifstream file("/proc/self/statm");
  std::int64_t pages = 0;
  return file >> pages ? pages * sysconf(_SC_PAGESIZE) : 0;
}

void Limit(int resource, rlim_t value) {
  rlimit limit{};
  if (getrlimit(static_cast<__rlimit_resource>(resource), &limit) != 0) return;
  limit.rlim_cur = std::min(value, limit.rlim_max);
  setrlimit(static_cast<__rlimit_resource>(resource), &limit);
}

// So many seconds of computing more, from now on.
void AllowSeconds(int seconds) {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  Limit(RLIMIT_CPU, static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec + seconds + 1));
}

void PrepareChild(const ChildLimits& limits) {
  std::signal(SIGINT, SIG_IGN);  // the parent hears of it, too, and decides
  for (const int each : {SIGTERM, SIGHUP, SIGPIPE}) std::signal(each, SIG_DFL);
#ifdef __linux__
  prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
  // What a library or a sanitizer says of a damaged file is no word to the user.
  if (const int nowhere = open("/dev/null", O_WRONLY); nowhere >= 0) dup2(nowhere, STDERR_FILENO);
  Limit(RLIMIT_CORE, 0);
  const std::int64_t space = kLimitsMemory ? AddressSpace() : 0;
  if (space > 0) Limit(RLIMIT_AS, static_cast<rlim_t>(space + limits.memory));
  AllowSeconds(limits.secondsWithoutRows);
}

[[noreturn]] void BeChild(const std::function<ConversionEnd(const ConversionWatch&)>& conversion,
                          int pipe, const ChildLimits& limits) {
  PrepareChild(limits);
  ConversionWatch watch;
  watch.rows = [pipe, &limits](std::int64_t rows) {
    AllowSeconds(limits.secondsWithoutRows);
    Send(pipe, kRowsLetter, std::to_string(rows));
  };
  watch.tell = [pipe](const std::string& text) { Send(pipe, kTellLetter, text); };
  ConversionEnd end;
  try {
    end = conversion(watch);
  } catch (const std::bad_alloc&) {
    end = ConversionFailed("there is not enough memory for it");
  } catch (const std::exception& failure) {
    end = ConversionFailed(failure.what());
  }
  Send(pipe, static_cast<char>(kFirstEndLetter + static_cast<int>(end.kind)), end.text);
  // Neither destructors nor what the parent wants done at its exit: its files are not ours.
  _exit(0);
}

// ---- in the parent

class Child {
 public:
  Child(pid_t process, int pipe) : process_(process), pipe_(pipe) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    close(pipe_);
    if (process_ > 0) {
      kill(process_, SIGKILL);
      Wait();
    }
  }

  // Takes what has come, and waits a little for it.  False when there will be no more.
  bool Listen(const ConversionWatch& watch);
  bool ended() const { return ended_; }
  const ConversionEnd& end() const { return end_; }
  // How a child ended that did not tell.
  ConversionEnd BrokenOff();

 private:
  int Wait() {
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = 0;
    return status;
  }
  void TakeMessages(const ConversionWatch& watch);

  pid_t process_;
  int pipe_;
  std::string bytes_;
  bool ended_ = false;
  ConversionEnd end_;
};

bool Child::Listen(const ConversionWatch& watch) {
  pollfd waiting{pipe_, POLLIN, 0};
  const int ready = poll(&waiting, 1, kWaitMilliseconds);
  if (ready == 0 || (ready < 0 && errno == EINTR)) return true;
  char block[65536];
  const ssize_t taken = read(pipe_, block, sizeof block);
  if (taken < 0 && errno == EINTR) return true;
  if (taken <= 0) return false;
  bytes_.append(block, static_cast<std::size_t>(taken));
  TakeMessages(watch);
  return !ended_;
}

void Child::TakeMessages(const ConversionWatch& watch) {
  std::string_view rest(bytes_);
  while (rest.size() >= kHeadBytes && !ended_) {
    const auto length = static_cast<std::size_t>(
        LoadLittle<std::uint32_t>(reinterpret_cast<const std::uint8_t*>(rest.data() + 1)));
    if (rest.size() - kHeadBytes < length) break;
    const char letter = rest.front();
    const std::string text(rest.substr(kHeadBytes, length));
    rest.remove_prefix(kHeadBytes + length);
    if (letter == kRowsLetter) {
      watch.rows(std::atoll(text.c_str()));
    } else if (letter == kTellLetter) {
      watch.tell(text);
    } else {
      end_ = {static_cast<ConversionEnd::Kind>(letter - kFirstEndLetter), text};
      ended_ = true;
    }
  }
  bytes_.erase(0, bytes_.size() - rest.size());
}

ConversionEnd Child::BrokenOff() {
  const int status = Wait();
  const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  if (signal == SIGXCPU) return ConversionFailed("reading it took too long; it must be damaged");
  return ConversionFailed("reading it broke off; it must be damaged, or too large");
}

}  // namespace

ConversionEnd RunInChild(const std::function<ConversionEnd(const ConversionWatch&)>& conversion,
                         const ConversionWatch& watch, const std::function<bool()>& pump,
                         const ChildLimits& limits) {
  int ends[2];
  if (pipe(ends) != 0) return ConversionFailed(LastFileError().message());
  const pid_t process = fork();
  if (process == 0) {
    close(ends[0]);
    BeChild(conversion, ends[1], limits);
  }
  const int failure = errno;
  close(ends[1]);
  Child child(process, ends[0]);
  if (process < 0) return ConversionFailed(std::strerror(failure));
  while (child.Listen(watch))
    if (pump()) return ConversionFailed("");
  return child.ended() ? child.end() : child.BrokenOff();
}

}  // namespace flanks
