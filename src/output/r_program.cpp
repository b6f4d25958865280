#include "output/r_program.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace flanks {
namespace {

// A text constant of R.  Control characters do not stand in file names that the program makes.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '\\' || c == '"') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

// What keeps R from reading labels such as 001 as numbers.
std::string ColumnClasses(const std::vector<bool>& isLabel) {
  if (std::find(isLabel.begin(), isLabel.end(), true) == isLabel.end()) return "";
  std::string classes;
  for (const bool label : isLabel)
    classes += (classes.empty() ? ", colClasses = c(" : ", ") +
               std::string(label ? "\"character\"" : "NA");
  return classes + ")";
}

bool IsProgram(const std::string& name) {
  return access(name.c_str(), X_OK) == 0;
}

std::string FindOnPath(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::string_view rest = path == nullptr ? "" : path;
  while (!rest.empty()) {
    const std::size_t end = rest.find(':');
    const std::string folder(rest.substr(0, end));
    if (!folder.empty() && IsProgram(folder + "/" + name)) return folder + "/" + name;
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  }
  return "";
}

// Waits for the child.  Its exit status, -1 when a signal ended it.
int WaitFor(pid_t child, const std::function<bool()>& isStopped) {
  constexpr std::chrono::milliseconds kBetweenLooks{100};
  int status = 0;
  bool told = false;
  while (waitpid(child, &status, WNOHANG) == 0) {
    std::this_thread::sleep_for(kBetweenLooks);
    if (told || !isStopped()) continue;
    kill(child, SIGTERM);
    told = true;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

std::string RScript(std::string_view textName, std::string_view targetName,
                    std::string_view objectName, const std::vector<bool>& isLabel) {
  const std::string object(objectName);
  return object + " <- utils::read.delim(" + Quoted(textName) + ", header = TRUE" +
         ColumnClasses(isLabel) + ")\n" + "save(" + object + ", file = " + Quoted(targetName) +
         ")\n";
}

std::string RProfile(std::string_view targetName, std::string_view profileName) {
  return "sink(nullfile())\nload(" + Quoted(targetName) + ", envir = globalenv())\nsink()\n" +
         "file.remove(" + Quoted(profileName) + ")\n";
}

std::string FindR() {
  const std::string found = FindOnPath("R");
  if (!found.empty()) return found;
  const char* home = std::getenv("R_HOME");
  if (home == nullptr || *home == '\0') return "";
  const std::string program = std::string(home) + "/bin/R";
  return IsProgram(program) ? program : "";
}

int RunR(const std::string& program, const std::string& scriptName, const std::string& logName,
         const std::function<bool()>& isStopped) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  constexpr mode_t kOwnerOnly = 0600;
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, scriptName.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, logName.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, kOwnerOnly);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  std::string name = program, restore = "--no-restore", save = "--no-save";
  char* arguments[] = {name.data(), restore.data(), save.data(), nullptr};
  pid_t child = 0;
  const int failure = posix_spawn(&child, program.c_str(), &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  return failure == 0 ? WaitFor(child, isStopped) : -1;
}

}  // namespace flanks
