#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "baspclator/pc_lator.h"

namespace {

constexpr double kNumberMarker = 1.0;
// A literal is read from at most this many characters (sign, digits, dots).
constexpr std::size_t kLiteralBuffer = 100;
// Defined bytes behind the infix text's terminator, so that 8-byte loads that
// start at or before the terminator stay inside the buffer.
constexpr std::size_t kLoadSlack = 8;
constexpr std::uint64_t kEightZeros = 0x3030303030303030ULL;

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

// Eight characters, the first one in the lowest byte.
inline std::uint64_t Load8(const char* p) {
    unsigned char b[8];
    std::memcpy(b, p, 8);
    return std::uint64_t{b[0]} | std::uint64_t{b[1]} << 8 | std::uint64_t{b[2]} << 16 |
           std::uint64_t{b[3]} << 24 | std::uint64_t{b[4]} << 32 | std::uint64_t{b[5]} << 40 |
           std::uint64_t{b[6]} << 48 | std::uint64_t{b[7]} << 56;
}

// First character at or after p that is no digit. Reads 8 bytes at a time: the
// lowest flagged byte is exact, since carries and borrows only move upwards.
inline const char* SkipDigits(const char* p) {
    for (;;) {
        const std::uint64_t v = Load8(p);
        const std::uint64_t nonDigit =
            ((v + 0x4646464646464646ULL) | (v - kEightZeros)) & 0x8080808080808080ULL;
        if (nonDigit != 0) return p + (__builtin_ctzll(nonDigit) >> 3);
        p += 8;
    }
}

// Value of a run of at most 19 digits.
inline std::uint64_t ReadDigits(const char* p, const char* end) {
    std::uint64_t value = 0;
    for (; end - p >= 8; p += 8) {
        std::uint64_t v = Load8(p) - kEightZeros;
        v = v * 10 + (v >> 8);
        v = ((v & 0x000000FF000000FFULL) * (100 + (1000000ULL << 32)) +
             ((v >> 16) & 0x000000FF000000FFULL) * (1 + (10000ULL << 32))) >>
            32;
        value = value * 100000000ULL + v;
    }
    for (; p < end; ++p) value = value * 10 + static_cast<unsigned>(*p - '0');
    return value;
}

// mantissa / 10^decimals correctly rounded, through one division on 64-bit
// significands: both operands are exact there and the quotient is rounded
// once. Rounding that quotient to a double again gives the correct double
// unless it lies exactly halfway between two doubles; then, or where long
// double has no 64-bit significand, false.
bool ExtendedQuotient(std::uint64_t mantissa, std::ptrdiff_t decimals, double& magnitude) {
    if constexpr (std::numeric_limits<long double>::digits != 64) {
        return false;
    } else {
        // Exact up to 10^27, whose factor 5^27 still fits 64 bits.
        static constexpr long double kPow10L[] = {1e0L,  1e1L,  1e2L,  1e3L,  1e4L,  1e5L,  1e6L,
                                                  1e7L,  1e8L,  1e9L,  1e10L, 1e11L, 1e12L, 1e13L,
                                                  1e14L, 1e15L, 1e16L, 1e17L, 1e18L, 1e19L, 1e20L,
                                                  1e21L, 1e22L, 1e23L, 1e24L, 1e25L, 1e26L, 1e27L};
        if (decimals < 0 || decimals > 27) return false;
        const long double quotient = static_cast<long double>(mantissa) / kPow10L[decimals];
        int exponent = 0;
        const auto bits =
            static_cast<std::uint64_t>(std::ldexp(std::frexp(quotient, &exponent), 64));
        if ((bits & 0x7FF) == 0x400) return false;
        magnitude = static_cast<double>(quotient);
        return true;
    }
}

// Reads a literal like strtod, correctly rounded: an optional "-", digits, and
// from a "." on the digits of the fraction. Texts printed by "%.20lf" carry
// many zeros that are no significant digits; without them most values take
// the exact one-operation path (mantissa below 2^53, power of ten up to 22).
// Returns the end of the literal: all following digits and dots.
const char* ScanLiteral(const char* start, double& value) {
    const bool negative = *start == '-';
    const char* intBegin = start + (negative ? 1 : 0);
    const char* intEnd = SkipDigits(intBegin);
    const char* fracBegin = intEnd;
    const char* fracEnd = intEnd;
    if (*intEnd == '.') {
        fracBegin = intEnd + 1;
        fracEnd = SkipDigits(fracBegin);
    }
    const char* end = fracEnd;
    while (IsItNumber(*end) || *end == '.') ++end;
    const std::size_t length = static_cast<std::size_t>(end - start);
    if (length >= kLiteralBuffer) {
        std::from_chars(start, start + kLiteralBuffer - 1, value);
        return end;
    }

    while (intBegin < intEnd && *intBegin == '0') ++intBegin;
    while (fracEnd - fracBegin >= 8 && Load8(fracEnd - 8) == kEightZeros) fracEnd -= 8;
    while (fracEnd > fracBegin && fracEnd[-1] == '0') --fracEnd;
    const char* fracDigits = fracBegin;
    if (intBegin == intEnd) {
        while (fracEnd - fracDigits >= 8 && Load8(fracDigits) == kEightZeros) fracDigits += 8;
        while (fracDigits < fracEnd && *fracDigits == '0') ++fracDigits;
    }
    const std::ptrdiff_t fracCount = fracEnd - fracDigits;
    const std::ptrdiff_t decimals = fracEnd - fracBegin;
    const std::ptrdiff_t intCount = intEnd - intBegin;
    double magnitude = 0.0;
    if (intCount + fracCount <= 19) {
        const std::uint64_t mantissa =
            ReadDigits(intBegin, intEnd) * kPow10U64[fracCount] + ReadDigits(fracDigits, fracEnd);
        if (mantissa <= (1ULL << 53) && decimals <= 22) {
            magnitude = static_cast<double>(mantissa) / kExactPow10[decimals];
            value = negative ? -magnitude : magnitude;
            return end;
        }
        if (ExtendedQuotient(mantissa, decimals, magnitude)) {
            value = negative ? -magnitude : magnitude;
            return end;
        }
    } else if (intCount <= 19) {
        // More digits than 64 bits hold: the first 19 and the next number up
        // bound the value from both sides (a later digit is not zero), and
        // where both bounds round to one double, so does the value.
        const std::ptrdiff_t taken = 19 - intCount;
        const std::uint64_t low = ReadDigits(intBegin, intEnd) * kPow10U64[taken] +
                                  ReadDigits(fracDigits, fracDigits + taken);
        const std::ptrdiff_t scale = (fracDigits - fracBegin) + taken;
        double high = 0.0;
        if (ExtendedQuotient(low, scale, magnitude) && ExtendedQuotient(low + 1, scale, high) &&
            magnitude == high) {
            value = negative ? -magnitude : magnitude;
            return end;
        }
    }
    std::from_chars(start, fracEnd, value);
    return end;
}

// "%.7f" of the base holds "2.718282": the base is taken as e. That text is
// round(|base| * 1e7) with the point before its last 7 digits, so the needle
// can only stand across the point. While the product is below 2^40 its
// rounding error stays under 2^-13, and away from a tie it gives that integer
// exactly; otherwise the text itself is printed.
bool IsEulerBase(double base) {
    const double scaled = std::fabs(base) * 1e7;
    if (scaled < 0x1p40) {
        const double whole = std::floor(scaled);
        const double fraction = scaled - whole;
        if (std::fabs(fraction - 0.5) > 1e-3) {
            const auto digits = static_cast<std::uint64_t>(whole) + (fraction > 0.5 ? 1 : 0);
            return (digits / 10) % 1000000 == 718282 && (digits / 10000000) % 10 == 2;
        }
    }
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
    const std::size_t room = length + 2 + kLoadSlack;  // line end, terminator, slack
    if (room <= kInlineText) {
        infix = inlineText;
    } else {
        heapText.reset(new char[room]);
        infix = heapText.get();
    }
    if (length > 0) std::memcpy(infix, text, length);
    if (length == 0 || infix[length - 1] != '\n') infix[length++] = '\n';
    std::memset(infix + length, 0, room - length);
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
            double value = 0.0;
            p = ScanLiteral(p, value);
            AddNumber(value);
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
