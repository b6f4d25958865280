#include "output/destination.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "support/run_bench.h"

namespace flanks {
namespace {

struct Bench : RunBench {
  bool WriteThree(const std::string& name) {
    return WriteOutputFile(run, "WriteThree", name, [](Destination& out) {
      out.Line("one");
      out.Lines("two\nthree\n");
    });
  }
};

TEST(Destination, LinesReachAFileAndAPaneAlike) {
  Bench bench;
  EXPECT_TRUE(bench.WriteThree(bench.folder.file("out.txt")));
  EXPECT_EQ(bench.folder.read("out.txt"), "one\ntwo\nthree\n");
  Destination pane(bench.console);
  pane.Line("one");
  pane.Lines("two\nthree\n");
  EXPECT_EQ(bench.shell.Screen(), "one\ntwo\nthree\n");
}

TEST(Destination, AFileThatCannotBeOpenedIsToldWithTheReason) {
  Bench bench;
  const std::string name = bench.folder.file("missing/out.txt");
  EXPECT_FALSE(bench.WriteThree(name));
  EXPECT_EQ(bench.shell.Screen(),
            "Failure opening output file: \"" + name + "\" (No such file or directory)\n");
  EXPECT_FALSE(bench.run.console.stopping());
  EXPECT_EQ(bench.process.control.ExitCode, kExitFault);
}

TEST(Destination, AWriteThatFailsIsToldWithItsRoutineAndLeavesTheFormerFile) {
  Bench bench;
  const std::string name = bench.folder.write("out.txt", "former");
  EXPECT_FALSE(WriteOutputFile(bench.run, "WriteThree", name, [&](Destination& out) {
    out.Line("one");
    throw std::runtime_error("File write failure for " + name + ": No space left on device");
  }));
  EXPECT_EQ(bench.shell.Screen(),
            "WriteThree failed: File write failure for " + name + ": No space left on device.\n");
  EXPECT_EQ(bench.folder.read("out.txt"), "former");
  EXPECT_EQ(bench.folder.names().size(), 1u);
  EXPECT_EQ(bench.process.control.ExitCode, kExitFault);
}

TEST(Destination, WhatWasWrittenStaysWhenTheUserBreaksTheRunOff) {
  Bench bench;
  const std::string name = bench.folder.write("out.txt", "former");
  bench.process.control.CancelRequested = true;
  EXPECT_FALSE(bench.WriteThree(name));
  EXPECT_EQ(bench.folder.read("out.txt"), "former");
  EXPECT_EQ(bench.folder.read("out.txt.part"), "one\ntwo\nthree\n");
  EXPECT_EQ(bench.shell.Screen(), "What was written so far stands in \"" + name + ".part\".\n");
}

}  // namespace
}  // namespace flanks
