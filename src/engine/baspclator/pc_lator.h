// The formula language: PC_LATOR binds the named values of a table row into an
// equation text, and Calculator evaluates the resulting numeric text through a
// postfix form. A small second evaluator compares text operands.
//
// Not reentrant: FindValueUsingIndex (vector form) returns one buffer shared by
// the whole class.
#ifndef PWC_PC_LATOR_H
#define PWC_PC_LATOR_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

enum Token {
    TK_END = 0,  // line end and every character that is no operator
    TK_OPERAND = 1,
    TK_LEFT_PAREN = 2,
    TK_RIGHT_PAREN = 3,
    TK_POWER = 4,
    TK_MULTIPLY = 5,
    TK_DIVIDE = 6,
    TK_ADD = 7,
    TK_SUBTRACT = 8
};

// Per token: {input precedence, stack precedence}. An operator is pushed once its
// input precedence is above the stack precedence of the top, so "^" binds to the
// right and the others to the left.
inline constexpr std::int32_t PrecTable[9][2] = {
    {0, -1}, {0, 0}, {100, 0}, {0, 99}, {6, 5}, {3, 4}, {3, 4}, {1, 2}, {1, 2},
};

Token OperatorToToken(char c);
char TokenToChar(Token token);

// Bounded stack of at most 100 entries. Push drops a value on a full stack, Pop
// leaves its argument untouched on an empty one, Top ends the process on an
// empty one.
template <typename T>
class LatorStack {
  public:
    static constexpr int kMaxCapacity = 100;

    explicit LatorStack(int size = kMaxCapacity)
        : capacity((size < 1 || size > kMaxCapacity - 1) ? kMaxCapacity : size) {}

    bool IsEmpty() const { return top < 0; }
    bool IsFull() const { return top >= capacity - 1; }
    int Size() const { return top + 1; }
    int Capacity() const { return capacity; }

    bool Push(const T& value) {
        if (IsFull()) return false;
        items[++top] = value;
        return true;
    }
    bool Pop(T& value) {
        if (IsEmpty()) return false;
        value = items[top--];
        return true;
    }
    const T& Top() const {
        if (IsEmpty()) std::exit(1);
        return items[top];
    }

  private:
    int capacity;
    int top = -1;
    T items[kMaxCapacity];  // left uninitialised: the evaluator builds one per formula
};

using Stack_Operator = LatorStack<Token>;
using Stack_Operand = LatorStack<double>;

// Evaluates one numeric text: numbers, + - * / ^ and parentheses.
class Calculator {
  public:
    static constexpr int kPostfixSlots = 100;

    explicit Calculator(const char* text);
    Calculator(const char* text, std::size_t length);
    Calculator(const Calculator&) = delete;
    Calculator& operator=(const Calculator&) = delete;
    ~Calculator();

    void InToPost();
    double Evaluate();

    const char* GetInfix() const { return infix; }
    int GetPostfixCount() const { return postfixCount; }
    const double* GetPostfix() const { return postfix; }

  private:
    static constexpr std::size_t kInlineText = 512;

    void AddNumber(double value);
    void AddOperator(Token token);

    Stack_Operator operators;
    Stack_Operand operands;
    char* infix;
    std::unique_ptr<char[]> heapText;  // only for texts beyond kInlineText
    char inlineText[kInlineText];
    // A number takes two slots (marker 1.0, value), an operator one (its token).
    double postfix[kPostfixSlots];
    int postfixCount = 0;
};

class PC_LATOR {
  public:
    static constexpr std::size_t kValueBufferSize = 100;

    explicit PC_LATOR(const char* name = nullptr);

    // Substitutes the named values into formula and evaluates it. trace becomes
    // the substituted text, "=" and the result by "%g". A name without a value
    // gives -1.0 and leaves trace as it was. In the vector forms a count below
    // 0 means all names.
    static double ProcessCalculator(const std::string& formula, std::string& trace,
                                    const char* const* names, const char* const* values, int count);
    static double ProcessCalculator(const std::string& formula, std::string& trace,
                                    const std::vector<std::string>& names,
                                    const std::vector<std::string>& values, int count = -1);

    // The same value without the trace, for a caller that shows none and
    // binds by name: names are the formula's pieces in their order (numbers
    // included), and a repeated name has the same value at each place.
    static double EvaluateFormula(const std::string& formula, const std::vector<std::string>& names,
                                  const std::vector<std::string>& values, int count = -1);

    // new[] array of new[] texts; the caller deletes each text and the array.
    static char** BreakIntoPieces(const char* text, int* count);
    static std::vector<std::string> BreakIntoComponets(const std::string& text);

    // Value of the first exact match, else "". The vector form copies it into
    // the class's buffer (truncated to kValueBufferSize - 1 characters), which
    // the next call overwrites.
    static const char* FindValueUsingIndex(const char* name, const char* const* names,
                                           const char* const* values, int count);
    static const char* FindValueUsingIndex(const char* name, const std::vector<std::string>& names,
                                           const std::vector<std::string>& values, int count = -1);
    static const char* FindValueUsingIndex(const std::string& name,
                                           const std::vector<std::string>& names,
                                           const std::vector<std::string>& values, int count = -1);

    // Whether the core supply comes from the on-chip regulator, by the pairs
    // "archName" and "Device".
    static bool IsRegulatorBeingUsed(const char* const* names, const char* const* values,
                                     int count);
    static bool IsRegulatorBeingUsed(const std::vector<std::string>& names,
                                     const std::vector<std::string>& values, int count = -1);

    static std::string CalculateBoolRelation(const std::string& left, const std::string& right,
                                             const std::string& op, const std::string& component);
    static std::string ProcessBooleanExpression(const std::vector<std::string>& tokens,
                                                const std::string& component);

    void PrintPostfix() {}

  private:
    static char valueBuffer[kValueBufferSize];
};

// Architectures whose core supply is regulated when the device name ends in "C".
bool ArchUsesRegulatorWhenDeviceEndsInC(std::string_view arch);
// Architectures whose core supply is always regulated.
bool ArchAlwaysUsesRegulator(std::string_view arch);
// The rule of IsRegulatorBeingUsed on the two texts themselves.
bool RegulatorInUse(std::string_view arch, std::string_view device);

constexpr bool IsItNumber(char c) {
    return c >= '0' && c <= '9';
}
bool IsItNumber(const char* text);
// A letter of either case or "_".
constexpr bool IsItLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
bool IsItLetter(const char* text);  // letters only; "_" does not count
// Digits with at most one "."; the empty text counts.
inline bool IsRightNumber(std::string_view text) {
    int dots = 0;
    for (const char c : text) {
        if (c == '.') {
            if (++dots > 1) return false;
        } else if (!IsItNumber(c)) {
            return false;
        }
    }
    return true;
}
// One of + - ( ) * ^ /.
inline bool IsOperand(std::string_view text) {
    if (text.size() != 1) return false;
    switch (text[0]) {
        case '+':
        case '-':
        case '(':
        case ')':
        case '*':
        case '^':
        case '/':
            return true;
        default:
            return false;
    }
}
bool IsBoolRelationOperand(std::string_view text);
int GetOperandPriority(std::string_view text);

#endif
