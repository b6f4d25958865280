#include <gtest/gtest.h>

#include "run/process.h"
#include "run/shell_interface.h"
#include "support/recording_shell.h"

namespace flanks {
namespace {

struct Steered {
  RunControl control;
  IterationControl steering;
  RecordingShell shell{control};
  Steered() {
    control.steering = &steering;
    steering.iterating = true;
  }
  void Press(const std::string& keys) {
    control.KeyBuffer += keys;
    shell.Pump();
  }
};

TEST(Keys, PlusAndMinusScaleTheSpeedFactor) {
  Steered run;
  run.Press("+");
  EXPECT_FLOAT_EQ(run.steering.SpeedFactor, 1.5f);
  run.Press("-");
  EXPECT_FLOAT_EQ(run.steering.SpeedFactor, 1.125f);
}

TEST(Keys, WithNewtonTheyScaleItUpToOne) {
  Steered run;
  run.steering.NewtonValue = .95f;
  run.Press("+");
  EXPECT_FLOAT_EQ(run.steering.NewtonValue, 1.0f);
  run.steering.NewtonValue = .5f;
  run.Press("-");
  EXPECT_FLOAT_EQ(run.steering.NewtonValue, .45f);
  EXPECT_FLOAT_EQ(run.steering.SpeedFactor, 1.0f);
}

TEST(Keys, PlusAndMinusCountOnlyWhileIterating) {
  Steered run;
  run.steering.iterating = false;
  run.Press("+-+");
  EXPECT_FLOAT_EQ(run.steering.SpeedFactor, 1.0f);
}

TEST(Keys, CtrlGLiftsTheIterationLimitAndSaysSo) {
  Steered run;
  run.steering.IterationLimit = 5;
  run.Press("\x07");
  EXPECT_EQ(run.steering.IterationLimit, 0);
  ASSERT_EQ(run.shell.statuses.size(), 1u);
  EXPECT_EQ(run.shell.statuses[0].text, " Iter=0");
}

TEST(Keys, CtrlFAsksToFinishEvenWithoutAnIteration) {
  Steered run;
  run.control.steering = nullptr;
  run.Press("\x06");
  EXPECT_TRUE(run.shell.IsFinishRequested());
}

TEST(Pump, APausedRunWaitsUntilItIsToGoOn) {
  RunControl control;
  RecordingShell shell(control);
  control.PauseRequested = true;
  shell.ActionAtPump(4, [&control] { control.PauseRequested = false; });
  shell.Pump();
  EXPECT_EQ(shell.clock, 300) << "three waits of a tenth of a second";
}

TEST(Pump, AClosedWindowEndsAPause) {
  RunControl control;
  RecordingShell shell(control);
  control.PauseRequested = true;
  shell.ActionAtPump(2, [&control] { control.StopState = kStopProcess; });
  shell.Pump();
  EXPECT_TRUE(IsStopping(control));
}

TEST(Pump, ACallDuringACallReturnsAtOnce) {
  RunControl control;
  RecordingShell shell(control);
  shell.ActionAtPump(1, [&shell] { shell.Pump(); });
  shell.Pump();
  EXPECT_EQ(shell.pumps, 1);
}

TEST(Dialogs, NobodyThereCancelsFileNamesAndAcceptsNoExtras) {
  Dialogs dialogs;
  EXPECT_EQ(dialogs.AskFileName("Specification", "*.txt", "a.txt"), "");
  std::string extras;
  EXPECT_TRUE(dialogs.AskExtraSpecifications(extras));
  EXPECT_EQ(extras, "");
}

}  // namespace
}  // namespace flanks
