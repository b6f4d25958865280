// The console program `flanks`.
#include <cstdio>
#include <string_view>

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

Exit status: 0 when the analysis has ended, 1 when a fault halted it, 51 when it
was broken off with Ctrl+C.
)";

}  // namespace

int main(int argc, char** argv) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help" || first == "-h") {
    std::fwrite(kHelp.data(), 1, kHelp.size(), stdout);
    return 0;
  }
  if (first == "--version") {
    std::puts("flanks " FLANKS_VERSION);
    return 0;
  }
  std::fwrite(kHelp.data(), 1, kHelp.size(), stdout);
  return 1;
}
