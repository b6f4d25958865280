// The words of the numbered messages: Warnings, Checks and Failures.
//
// A Warning goes on with an assumption, a Check doubts a datum, a Failure stops the run through
// Console::FailureStop.  Their words stand here and nowhere else (the formatter's own Failures,
// which know no run, stand beside their check in report/format/).  Where a number follows, it is
// joined by JoinNumber.
#ifndef FLANKS_RUN_MESSAGES_H
#define FLANKS_RUN_MESSAGES_H

#include <string_view>

namespace flanks::message {

// Check (n)?
constexpr std::string_view kElementNotInLabels =
    "Check (1)? Element not specified in Labels=: flank:";
constexpr std::string_view kInvalidDatum = "Check (2)? Invalid datum location: ";

// Warning (n)!
constexpr std::string_view kOutOfRange = "Warning (1)! Estimate out of range!  Flank";
constexpr std::string_view kSubsetsBypassed = "Warning (2)! Subset checking bypassed";
constexpr std::string_view kScaleNotReferenced =
    " ; Warning (3)! This is NOT referenced by a Model= specification";
constexpr std::string_view kSubsetsNotVerified = "Warning (5)! Subset connection not verified";
constexpr std::string_view kSubsetsDisjoint = "Warning (6)! There may be";
constexpr std::string_view kOverConstrained =
    "Warning (7)! Over-constrained?  Noncenter= not in effect";
constexpr std::string_view kUnderConstrained =
    "Warning (8)! Under-constrained?  Noncenter= for two or more flanks";
constexpr std::string_view kNoElementsForFlank = "Warning (10)!: No elements specified for flank";
constexpr std::string_view kPlotsPruned =
    "Warning (11)! Plotted interactions pruned to first 250 per Excel plot";
constexpr std::string_view kDuplicateScale = "Warning (12)! Duplicate ratingscale= :";
constexpr std::string_view kGroupAnchorWithoutGroup =
    "Warning (13)! Measure values specified for elements in group-anchored flank";
constexpr std::string_view kNullElement = "Warning (16)! Null element";
constexpr std::string_view kDelementsItem = "Warning (17)! ";
constexpr std::string_view kExcessResponses = "Warning (18)!";
constexpr std::string_view kLabelsListEnd = "Warning (19)! at or near line";
constexpr std::string_view kNoLabels = "Warning (20)! No labels after Labels=";
constexpr std::string_view kObservationWeight = "Warning (21)! observation";

// Failure (n)!
constexpr std::string_view kTable13SortLength = "Failure (3)! Sort length error.";
constexpr std::string_view kTable7SortLength = "Failure (4)! Sort length error: B.";
constexpr std::string_view kTable4SortLength = "Failure (5)! Sort length error C.";
constexpr std::string_view kRulerSortLength = "Failure (8)! Sort length error D.";
constexpr std::string_view kFairScore = "Failure (14)! Fair score computation failure.";
constexpr std::string_view kBiasSort = "Failure (15)! Bias sort failure.";
constexpr std::string_view kLabelSequenceNumbers = "Failure (18)! Lsort sequence error (1).";
constexpr std::string_view kLabelSequenceFlanks = "Failure (18)! Lsort sequence error (2).";
constexpr std::string_view kAnchorOutOfRange = "Failure (20)! Anchor value outside range: ";

}  // namespace flanks::message

#endif  // FLANKS_RUN_MESSAGES_H
