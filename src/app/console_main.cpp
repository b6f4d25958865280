// The console program `flanks`.
#include <cstdio>
#include <string>
#include <string_view>
#include <unistd.h>

#include "run/console.h"
#include "run/pipeline.h"
#include "shell/console_shell.h"

namespace {

constexpr std::string_view kHelp =
    R"(flanks - many-Flank Rasch measurement

Usage: flanks SPECIFICATION [OUTPUT] [KEYWORD=VALUE ...]

  SPECIFICATION  the file that describes the analysis
  OUTPUT         the report; by default the Specification's name with .out.txt in
                 place of its extension
  KEYWORD=VALUE  Extra specifications, which take the place of the same keyword in
                 the Specification: Title="My test" Convergence=.1,.001 Batch=Y

  --help         this text
  --version      the version

While a run lasts, Ctrl+F ends the step at work and the run goes on; Ctrl+G ends the
iterations, "+" and "-" make their changes larger and smaller; Ctrl+C breaks it off.

Exit status: 0 when the analysis has ended, 1 when a fault halted it, 51 when it
was broken off with Ctrl+C.
)";

// The command line is one text: an argument with a blank in it, or an empty one, is quoted.
std::string CommandLineText(int count, char** arguments) {
  std::string text;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    const bool quoted = argument.empty() || argument.find(' ') != std::string::npos;
    if (i > 1) text += ' ';
    text += quoted ? '"' + argument + '"' : argument;
  }
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1) std::puts("No Specification is named. `flanks --help` tells how.");
  for (int i = 1; i < argc; ++i) {
    const std::string_view option = argv[i];
    if (!option.starts_with("--")) continue;
    if (option == "--help") {
      std::fwrite(kHelp.data(), 1, kHelp.size(), stdout);
      return 0;
    }
    if (option == "--version") {
      std::puts("flanks " FLANKS_VERSION);
      return 0;
    }
    std::printf("\"%s\" is no option of flanks. `flanks --help` tells them.\n", argv[i]);
    return flanks::kExitFault;
  }
  flanks::Process process;
  flanks::Analysis analysis;
  flanks::ConsoleShell shell(process.control, stdout, isatty(STDOUT_FILENO) != 0);
  flanks::ConsoleShell::CatchInterrupts();
  // A report that goes to a pager leaves the keys to the pager.
  if (isatty(STDOUT_FILENO) != 0) shell.ListenTo(STDIN_FILENO);
  flanks::ConsoleDialogs dialogs(shell);
  flanks::Launcher launcher;
  try {
    return flanks::RunAnalysis(process, analysis, {shell, dialogs, launcher},
                               CommandLineText(argc, argv));
  } catch (const flanks::ProcessEnd& end) {
    return end.exitCode;
  }
}
