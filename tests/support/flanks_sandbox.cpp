#include "support/flanks_sandbox.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <system_error>

#include "support/file_bytes.h"

namespace flanks {
namespace {

namespace fs = std::filesystem;

fs::path FreshFolder() {
  std::string pattern = (fs::temp_directory_path() / "flanks-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr)
    throw std::system_error(errno, std::generic_category(), pattern);
  return fs::canonical(pattern);
}

}  // namespace

std::string ReadWholeFile(const fs::path& file) {
  if (!fs::exists(file)) throw std::runtime_error("cannot read " + file.string());
  return BytesOfFile(file);
}

void WriteWholeFile(const fs::path& file, std::string_view contents) {
  fs::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary);
  out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

std::vector<std::string> FilesBelow(const fs::path& folder) {
  std::vector<std::string> names;
  if (!fs::exists(folder)) return names;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (!entry.is_directory())
      names.push_back(entry.path().lexically_relative(folder).generic_string());
  std::ranges::sort(names);
  return names;
}

FlanksSandbox::FlanksSandbox() : top_(FreshFolder()) {
  for (const char* folder : {"run", "temporary", "home"}) fs::create_directory(top_ / folder);
  WriteWholeFile(top_ / "flanks.ini", "");
}

FlanksSandbox::~FlanksSandbox() {
  std::error_code ignored;  // nothing sensible is left to do in a destructor
  fs::remove_all(top_, ignored);
}

void FlanksSandbox::Write(const std::string& name, std::string_view contents) const {
  WriteWholeFile(top_ / "run" / name, contents);
}

void FlanksSandbox::CopyIn(const fs::path& file) const {
  fs::copy_file(file, top_ / "run" / file.filename());
}

std::string FlanksSandbox::Read(const std::string& name) const {
  return BytesOfFile(top_ / "run" / name);
}

std::vector<std::string> FlanksSandbox::Files() const {
  return FilesBelow(top_ / "run");
}

std::vector<std::string> FlanksSandbox::TemporaryFiles() const {
  return FilesBelow(top_ / "temporary");
}

ProgramCall FlanksSandbox::Call(const std::string& program,
                                std::vector<std::string> arguments) const {
  ProgramCall call;
  call.program = program;
  call.arguments = std::move(arguments);
  call.folder = top_ / "run";
  const std::string sanitizers = "exitcode=" + std::to_string(kSanitizerExitStatus);
  call.environment = {{"FLANKS_INI", (top_ / "flanks.ini").string()},
                      {"TMPDIR", (top_ / "temporary").string()},
                      {"HOME", (top_ / "home").string()},
                      {"LC_ALL", "C"},
                      {"ASAN_OPTIONS", sanitizers},
                      {"UBSAN_OPTIONS", sanitizers + ":print_stacktrace=1"}};
  return call;
}

}  // namespace flanks
