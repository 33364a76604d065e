// The text evaluator: relations between texts and their boolean combination.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "baspclator/pc_lator.h"

namespace {

struct RelationCase {
    const char* left;
    const char* right;
    const char* op;
    const char* component;
    const char* expected;
};

class LatorRelation : public ::testing::TestWithParam<RelationCase> {};

TEST_P(LatorRelation, Result) {
    const RelationCase& c = GetParam();
    EXPECT_EQ(PC_LATOR::CalculateBoolRelation(c.left, c.right, c.op, c.component), c.expected)
        << c.left << " " << c.op << " " << c.right << " [" << c.component << "]";
}

INSTANTIATE_TEST_SUITE_P(EqualityAndComponent, LatorRelation,
                         ::testing::Values(RelationCase{"LVDS", "LVDS", "==", "", "TRUE"},
                                           RelationCase{"LVDS", "LVDS25", "==", "", "FALSE"},
                                           RelationCase{"LVDS", "LVDS25", "!=", "", "TRUE"},
                                           RelationCase{"LVDS", "LVDS", "!=", "", "FALSE"},
                                           RelationCase{"_COMP", "PLL", "==", "PLL", "TRUE"},
                                           RelationCase{"_COMP", "PLL", "==", "DLL", "FALSE"},
                                           RelationCase{"DLL", "_COMP", "!=", "DLL", "FALSE"},
                                           // Only the left one is replaced when both are "_COMP".
                                           RelationCase{"_COMP", "_COMP", "==", "X", "FALSE"}));

INSTANTIATE_TEST_SUITE_P(PrefixCompare, LatorRelation,
                         ::testing::Values(RelationCase{"LVDS25", "LVDS!", "==", "", "TRUE"},
                                           RelationCase{"LVDS!", "LVDS25", "==", "", "TRUE"},
                                           RelationCase{"LVCMOS!", "LVDS25", "==", "", "FALSE"},
                                           RelationCase{"SSTL!", "SSTL18_I", "!=", "", "FALSE"},
                                           RelationCase{"SSTL18!", "SSTL", "==", "", "FALSE"},
                                           RelationCase{"!", "ANY", "==", "", "TRUE"},
                                           RelationCase{"_COMP", "MIPI!", "==", "MIPI_DPHY",
                                                        "TRUE"},
                                           RelationCase{"_COMP", "MIPI!", "==", "LVDS", "FALSE"},
                                           RelationCase{"LV", "LVDS!", "==", "", "FALSE"}));

INSTANTIATE_TEST_SUITE_P(AlwaysTrueAndLogic, LatorRelation,
                         ::testing::Values(RelationCase{"1", "2", ">", "", "TRUE"},
                                           RelationCase{"2", "1", "<", "", "TRUE"},
                                           RelationCase{"1", "2", ">=", "", "TRUE"},
                                           RelationCase{"2", "1", "<=", "", "TRUE"},
                                           RelationCase{"A", "B", "~", "", "TRUE"},
                                           RelationCase{"TRUE", "FALSE", "||", "", "TRUE"},
                                           RelationCase{"FALSE", "TRUE", "||", "", "TRUE"},
                                           RelationCase{"FALSE", "FALSE", "||", "", "FALSE"},
                                           RelationCase{"true", "FALSE", "||", "", "FALSE"},
                                           RelationCase{"TRUE", "TRUE", "&&", "", "TRUE"},
                                           RelationCase{"TRUE", "FALSE", "&&", "", "FALSE"},
                                           RelationCase{"A", "A", "&&", "", "FALSE"}));

struct ExpressionCase {
    std::vector<std::string> tokens;
    const char* component;
    const char* expected;
};

class LatorBooleanExpression : public ::testing::TestWithParam<ExpressionCase> {};

TEST_P(LatorBooleanExpression, Result) {
    const ExpressionCase& c = GetParam();
    std::string joined;
    for (const std::string& t : c.tokens) joined += t + " ";
    EXPECT_EQ(PC_LATOR::ProcessBooleanExpression(c.tokens, c.component), c.expected) << joined;
}

INSTANTIATE_TEST_SUITE_P(
    Precedence, LatorBooleanExpression,
    ::testing::Values(ExpressionCase{{"A", "==", "A", "&&", "C", "!=", "D"}, "", "TRUE"},
                      ExpressionCase{{"A", "==", "B", "&&", "C", "!=", "D"}, "", "FALSE"},
                      ExpressionCase{{"A", "==", "A", "&&", "C", "!=", "C"}, "", "FALSE"},
                      // Relations bind before "||": left to right would give (TRUE || Y) == Z.
                      ExpressionCase{{"X", "==", "X", "||", "Y", "==", "Z"}, "", "TRUE"},
                      // Equal priorities reduce from the left: (FALSE && FALSE) || TRUE.
                      ExpressionCase{{"FALSE", "&&", "FALSE", "||", "TRUE"}, "", "TRUE"},
                      ExpressionCase{{"A", "==", "A", "==", "TRUE"}, "", "TRUE"},
                      ExpressionCase{{"1", ">", "2"}, "", "TRUE"},
                      ExpressionCase{{"LVDS"}, "", "LVDS"},
                      // Parentheses are plain operands: "A" == ")" is reduced, the "(" stays below.
                      ExpressionCase{{"(", "A", "==", "A", ")"}, "", "FALSE"}));

INSTANTIATE_TEST_SUITE_P(
    Component, LatorBooleanExpression,
    ::testing::Values(
        ExpressionCase{{"_COMP", "==", "LVDS!", "||", "_COMP", "==", "SSTL!"}, "SSTL18", "TRUE"},
        ExpressionCase{{"_COMP", "==", "LVDS!", "||", "_COMP", "==", "SSTL!"}, "HSTL15", "FALSE"},
        ExpressionCase{{"_COMP", "!=", "MIPI", "&&", "_COMP", "!=", "SUBLVDS"}, "LVDS", "TRUE"},
        ExpressionCase{{"_COMP", "!=", "MIPI", "&&", "_COMP", "!=", "SUBLVDS"}, "MIPI", "FALSE"}));

}  // namespace
