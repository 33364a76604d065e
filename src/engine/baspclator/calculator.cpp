#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "baspclator/pc_lator.h"

namespace {

constexpr double kNumberMarker = 1.0;
// A literal is read from at most this many characters (sign, digits, dots).
constexpr std::size_t kLiteralBuffer = 100;

constexpr double kExactPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t kPow10U64[] = {1ULL,
                                       10ULL,
                                       100ULL,
                                       1000ULL,
                                       10000ULL,
                                       100000ULL,
                                       1000000ULL,
                                       10000000ULL,
                                       100000000ULL,
                                       1000000000ULL,
                                       10000000000ULL,
                                       100000000000ULL,
                                       1000000000000ULL,
                                       10000000000000ULL,
                                       100000000000000ULL,
                                       1000000000000000ULL,
                                       10000000000000000ULL,
                                       100000000000000000ULL,
                                       1000000000000000000ULL,
                                       10000000000000000000ULL};

// Reads an optional "-", digits and at most one "." like strtod, correctly
// rounded. Texts printed by "%.20lf" carry many zeros that are no significant
// digits; they are skipped so that most values take the exact one-operation
// path (mantissa below 2^53, power of ten up to 22). Others go to from_chars.
double ReadLiteral(const char* begin, const char* end) {
    const char* p = begin;
    bool negative = false;
    if (p < end && *p == '-') {
        negative = true;
        ++p;
    }
    std::uint64_t mantissa = 0;
    int digits = 0;         // significant digits held in mantissa
    int integerZeros = 0;   // zeros of the integer part not yet in mantissa
    int fractionZeros = 0;  // zeros of the fraction not yet in mantissa
    int scale = 0;          // value = mantissa * 10^(scale + integerZeros)
    bool fraction = false;
    for (; p < end; ++p) {
        const char c = *p;
        if (c == '.') {
            if (fraction) break;
            fraction = true;
            continue;
        }
        const unsigned d = static_cast<unsigned>(c - '0');
        if (d > 9) break;
        if (d == 0) {
            if (digits == 0) {
                if (fraction) --scale;
            } else if (fraction) {
                ++fractionZeros;
            } else {
                ++integerZeros;
            }
            continue;
        }
        const int pending = integerZeros + fractionZeros;
        if (digits + pending + 1 > 19) {
            double value = 0.0;
            std::from_chars(begin, end, value);
            return value;
        }
        mantissa = mantissa * kPow10U64[pending + 1] + d;
        digits += pending + 1;
        if (fraction) scale -= fractionZeros + 1;
        integerZeros = 0;
        fractionZeros = 0;
    }
    scale += integerZeros;
    if (mantissa > (1ULL << 53) || scale < -22 || scale > 22) {
        double value = 0.0;
        std::from_chars(begin, end, value);
        return value;
    }
    double value = static_cast<double>(mantissa);
    value = scale >= 0 ? value * kExactPow10[scale] : value / kExactPow10[-scale];
    return negative ? -value : value;
}

// "%.7f" of the base holds "2.718282": the base is taken as e.
bool IsEulerBase(double base) {
    char text[400];
    const auto result = std::to_chars(text, text + sizeof(text), base, std::chars_format::fixed, 7);
    static constexpr char kEuler[] = "2.718282";
    const std::size_t length = static_cast<std::size_t>(result.ptr - text);
    const std::size_t needle = sizeof(kEuler) - 1;
    for (std::size_t i = 0; i + needle <= length; ++i) {
        if (std::memcmp(text + i, kEuler, needle) == 0) return true;
    }
    return false;
}

}  // namespace

Token OperatorToToken(char c) {
    switch (c) {
        case '(':
            return TK_LEFT_PAREN;
        case ')':
            return TK_RIGHT_PAREN;
        case '^':
            return TK_POWER;
        case '*':
            return TK_MULTIPLY;
        case '/':
            return TK_DIVIDE;
        case '+':
            return TK_ADD;
        case '-':
            return TK_SUBTRACT;
        default:
            return TK_END;
    }
}

char TokenToChar(Token token) {
    static constexpr char kChars[] = "()^*/+-~";
    if (token < TK_LEFT_PAREN || token > TK_SUBTRACT) return '/';
    return kChars[token - TK_LEFT_PAREN];
}

Calculator::Calculator(const char* text) : Calculator(text, text ? std::strlen(text) : 0) {}

Calculator::Calculator(const char* text, std::size_t length) {
    const std::size_t room = length + 10;
    if (room <= kInlineText) {
        infix = inlineText;
    } else {
        heapText.reset(new char[room]);
        infix = heapText.get();
    }
    if (length > 0) std::memcpy(infix, text, length);
    if (length == 0 || infix[length - 1] != '\n') infix[length++] = '\n';
    infix[length] = '\0';
}

Calculator::~Calculator() = default;

void Calculator::AddNumber(double value) {
    if (postfixCount + 2 > kPostfixSlots) return;
    postfix[postfixCount++] = kNumberMarker;
    postfix[postfixCount++] = value;
}

void Calculator::AddOperator(Token token) {
    if (postfixCount >= kPostfixSlots) return;
    postfix[postfixCount++] = static_cast<double>(token);
}

void Calculator::InToPost() {
    postfixCount = 0;
    operators.Push(TK_END);
    bool lastWasNumber = false;
    const char* p = infix;
    while (*p != '\0') {
        const char c = *p;
        const bool negativeLiteral = c == '-' && !lastWasNumber && IsItNumber(p[1]);
        if (negativeLiteral || IsItNumber(c)) {
            const char* start = p;
            if (negativeLiteral) ++p;
            while (IsItNumber(*p) || *p == '.') ++p;
            const std::size_t length = static_cast<std::size_t>(p - start);
            AddNumber(ReadLiteral(start, start + std::min(length, kLiteralBuffer - 1)));
            lastWasNumber = true;
            continue;
        }
        Token popped;
        if (c == ')') {
            while (operators.Top() != TK_LEFT_PAREN) {
                operators.Pop(popped);
                AddOperator(popped);
            }
            operators.Pop(popped);
            ++p;
            continue;
        }
        const Token token = OperatorToToken(c);
        while (PrecTable[token][0] <= PrecTable[operators.Top()][1]) {
            operators.Pop(popped);
            AddOperator(popped);
        }
        if (c != '\n') {
            operators.Push(token);
            lastWasNumber = false;
        }
        ++p;
    }
}

double Calculator::Evaluate() {
    // Kept across operators: a missing operand reuses the previous one.
    double left = 0.0;
    double right = 0.0;
    for (int i = 0; i < postfixCount; ++i) {
        if (postfix[i] == kNumberMarker) {
            if (++i < postfixCount) operands.Push(postfix[i]);
            continue;
        }
        operands.Pop(right);
        operands.Pop(left);
        switch (static_cast<int>(postfix[i])) {
            case TK_POWER:
                operands.Push(IsEulerBase(left) ? std::exp(right) : std::pow(left, right));
                break;
            case TK_MULTIPLY:
                operands.Push(left * right);
                break;
            case TK_DIVIDE:
                operands.Push(left / right);
                break;
            case TK_ADD:
                operands.Push(left + right);
                break;
            case TK_SUBTRACT:
                operands.Push(left - right);
                break;
            default:
                break;
        }
    }
    return operands.Top();
}
