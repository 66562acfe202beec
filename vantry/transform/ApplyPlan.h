// The shape of a variable's function tree, read once at its first evaluation: every node with its children
// as plain indexes, the class of its function, and for field leaves what was resolved about their field.
// The walk then reads no child through the tree's virtual operations and tests no function twice.
//
// A node whose function only folds or collects the numbers of its children ("+", "*", "max", the
// comparisons, the logic, the distributions...) is evaluated on plain doubles: a connected group of such
// nodes is compiled into a flat program over a stack of numbers, and a plain numeric field (a DictVar
// without declared missing values) is read straight from the record. Every other node goes through the
// general walk.
//
// The tree belongs to its variable and keeps its shape after SetRoot, which drops the plan. What a field
// leaf learns about its variable is kept too, as the leaf's stats keep the variable itself: a dictionary's
// variables keep their kind and missing values once cases are evaluated. Internal to the library.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "vantry/transform/FunctionSupport.h"
#include "vantry/transform/TransformVar.h"

namespace QXVantry_920 {

struct TransformVar::ApplyPlan {
    enum Kind : std::uint8_t {
        kNull,      // an empty child slot
        kConstant,  // a constant leaf
        kField,     // a field leaf
        kNumeric,   // a function of the numbers of its children
        kGeneral,   // any other function
    };

    // The classes of a function that the general walk tests.
    enum Class : unsigned {
        kString = 1u << 0,        // lowercase to substring
        kDate = 1u << 1,          // the date and time functions
        kAccumulating = 1u << 2,  // collects all its numbers before computing
        kPairTest = 1u << 3,      // equal, notEqual
        kSetTest = 1u << 4,       // isIn, isNotIn
        kCopy = 1u << 5,          // value and the recasts: the last child's value
    };

    enum Operator : std::uint8_t { kNoOperator, kPlus, kMinus, kMultiply, kDivide };

    // One step of the program of a numeric region (a kNumeric node whose parent is not one, with all the
    // kNumeric nodes below it): the children's numbers in order, each function after its children. An
    // operator whose rules cannot change its result has a step of its own for each operator and each kind
    // of second operand (on the stack, the step's constant, the field leaf at), so that one dispatch does
    // the work.
    enum Op : std::uint8_t {
        kPushConstant,  // constant
        kPushField,     // the number of the field leaf at
        kPushOther,     // the number of the node at, through the general walk
        kApply,         // the kNumeric node at, on the numbers of its children on top of the stack
        kPlusStack,
        kPlusConstant,
        kPlusField,
        kPlusFieldConstant,
        kMinusStack,
        kMinusConstant,
        kMinusField,
        kMinusFieldConstant,
        kMultiplyStack,
        kMultiplyConstant,
        kMultiplyField,
        kMultiplyFieldConstant,
        kDivideStack,
        kDivideConstant,
        kDivideField,
        kDivideFieldConstant,
    };
    // The operands of an arithmetic step: both on the stack, the first on the stack and the second the
    // step's constant or its field leaf, or the field leaf and the constant (pushing the result).
    enum Operands : std::uint8_t { kOnStack, kConstantOperand, kFieldOperand, kFieldAndConstant };

    static Op ArithmeticStep(Operator binary, Operands operands) {
        return static_cast<Op>(kPlusStack + 4 * (binary - kPlus) + operands);
    }

    struct Step {
        Op op;
        int at;
        double constant;
    };

    struct Node {
        FunctionTree* tree = nullptr;
        Kind kind = kNull;
        TransformFunction fn = TransformationDictionary::TF_UNKNOWN;
        // The function of the tree parent, which decides whether a leaf applies its missing-value rules.
        TransformFunction parentFn = TransformationDictionary::TF_UNKNOWN;
        unsigned classes = 0;
        // The children are children[first] to children[first + count - 1].
        int first = 0;
        int count = 0;
        // An inner node's stats; the node keeps them at the same place for its life.
        ApplyNodeStats const* stats = nullptr;
        // A constant leaf's number.
        double constant = 0.0;
        // A field leaf, once its stats name a variable: a numeric DictVar without declared missing values
        // is missing exactly when the record's value is the system-missing number.
        bool resolved = false;
        bool plainNumber = false;
        ScoreDictVar const* variable = nullptr;
        int index = -1;
        ScoreValue const* mapped = nullptr;
        // A kNumeric node: its operator when it is one of the four arithmetic operators with two
        // children (else kNoOperator), whether its missing and invalid rules can change a result, and
        // the numbers it collects, kept from case to case.
        Operator binary = kNoOperator;
        bool asMissing = false;
        bool mapsMissing = false;
        std::vector<double> numbers;
        // The root of a numeric region: its program and the stack the program runs on.
        std::vector<Step> program;
        std::vector<double> stack;
    };

    static std::unique_ptr<ApplyPlan> Build(FunctionTree* root);

    // The four operators as the built-in functions compute them: a missing operand or a zero divisor
    // gives the missing number.
    template <Operator kOperator>
    static double Arithmetic(double a, double b) {
        if (detail::IsSysmis(a) || detail::IsSysmis(b)) {
            return detail::kSysmis;
        }
        switch (kOperator) {
            case kPlus:
                return a + b;
            case kMinus:
                return a - b;
            case kMultiply:
                return a * b;
            default:
                return b != 0.0 ? a / b : detail::kSysmis;
        }
    }

    static double Arithmetic(Operator binary, double a, double b) {
        switch (binary) {
            case kPlus:
                return Arithmetic<kPlus>(a, b);
            case kMinus:
                return Arithmetic<kMinus>(a, b);
            case kMultiply:
                return Arithmetic<kMultiply>(a, b);
            default:
                return Arithmetic<kDivide>(a, b);
        }
    }

    // Fills a field leaf's cache from the variable its stats now name.
    static void Resolve(Node& node);

    // The values of the case being walked when its record is a plain CaseRecord, else null; a field
    // leaf reads its slot there without a virtual call.
    std::vector<ScoreValue*> const* values = nullptr;
    FunctionTree const* root = nullptr;
    std::vector<Node> nodes;  // in depth-first order, the root first
    std::vector<int> children;

  private:
    int Add(FunctionTree* tree);
    void Emit(int at, std::vector<Step>& program) const;
    static unsigned Classify(int fn);
    static bool IsNumbersOnly(int fn, unsigned classes);
    static Operator BinaryOperator(int fn);
};

}  // namespace QXVantry_920
