// Runs inputs of a fuzz target through it: each argument is a file, or a folder whose files are
// taken in the order of their names.  A target that finds something wrong ends the program; the
// last name shown is then the input's.  No input at all is a fault as well.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> InputsOf(const fs::path& given) {
  std::vector<fs::path> inputs;
  if (fs::is_directory(given)) {
    for (const auto& entry : fs::directory_iterator(given))
      if (entry.is_regular_file()) inputs.push_back(entry.path());
    std::sort(inputs.begin(), inputs.end());
  } else {
    inputs.push_back(given);
  }
  // The target may go to another folder.
  for (fs::path& input : inputs) input = fs::absolute(input);
  return inputs;
}

bool Replay(const fs::path& input) {
  std::cout << input.string() << std::endl;  // before the run, which may not come back
  std::ifstream file(input, std::ios::binary);
  if (!file) {
    std::cout << "cannot be read" << std::endl;
    return false;
  }
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
  return LLVMFuzzerTestOneInput(data.data(), data.size()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<fs::path> inputs;
  for (int i = 1; i < argc; ++i)
    for (const fs::path& input : InputsOf(argv[i])) inputs.push_back(input);
  std::size_t good = 0;
  for (const fs::path& input : inputs) good += Replay(input) ? 1 : 0;
  std::cout << good << " of " << inputs.size() << " inputs replayed" << std::endl;
  return !inputs.empty() && good == inputs.size() ? 0 : 1;
}
