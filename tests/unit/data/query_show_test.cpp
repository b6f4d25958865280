#include "data/query_show.h"

#include <gtest/gtest.h>
#include <string>

namespace flanks {
namespace {

TEST(QueryText, HasTheWordsOfEachCode) {
  const struct {
    int code;
    const char* words;
  } cases[] = {
      {1, "Query=Y in effect!  Data matching displayed:"},
      {2, "blank"},
      {3, "t R0 replications for datum"},
      {4, "t datum: "},
      {5, "t no datum: "},
      {6, "t unspecified "},
      {7, "no matching model"},
      {8, "t matched"},
      {9, "t "},
      {10, "datum treated as Missing"},
      {11, "t model"},
      {12, "datum recoded to \"t \""},
      {13, "negative datum ignored"},
      {14, "non-numeric datum ignored"},
      {15, "invalid model"},
      {16, "t 16unknown : "},
  };
  for (const auto& c : cases)
    EXPECT_EQ(QueryText(static_cast<QueryCode>(c.code), "t "), c.words) << c.code;
}

}  // namespace
}  // namespace flanks
