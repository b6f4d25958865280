// What most tests include, compiled once for each level of tests (FLANKS_PRECOMPILED).  Tests
// include what they use all the same: without the option each file compiles alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "support/analysis_run.h"
