// Helpers shared by the current models, and the two free leakage and bias
// functions that a host may link.
#ifndef PWC_FORMULA_UTIL_H
#define PWC_FORMULA_UTIL_H

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>
#include <system_error>
#include <vector>

#include "pd_util.h"

// k * a * e^(b * 100) * count into leakOut; returns leakOut * dfb.
double LeakageAndDFB(double count, double a, double b, double& leakOut, double dfb, double k);
// count * d into biasOut; returns biasOut * dfb.
double BiasAndDFB(double count, double d, double& biasOut, double dfb);

namespace pwcformula {

// The cell of the first column of that name, without the copy into the
// evaluator's shared buffer; empty when the row has no such column.
inline const std::string& RowValue(const char* name, std::size_t length,
                                   const std::vector<std::string>& names,
                                   const std::vector<std::string>& values) {
    static const std::string none;
    const std::size_t n = names.size() < values.size() ? names.size() : values.size();
    // The first character settles most candidates of the same length.
    for (std::size_t i = 0; i < n; ++i)
        if (names[i].size() == length && (length == 0 || names[i][0] == name[0]) &&
            std::memcmp(names[i].data(), name, length) == 0)
            return values[i];
    return none;
}
inline const std::string& RowValue(const char* name, const std::vector<std::string>& names,
                                   const std::vector<std::string>& values) {
    return RowValue(name, std::strlen(name), names, values);
}
inline const std::string& RowValue(const std::string& name, const std::vector<std::string>& names,
                                   const std::vector<std::string>& values) {
    return RowValue(name.data(), name.size(), names, values);
}

// strtod of the text. A whole text of at most 15 significant digits and 22
// decimals is one exact mantissa divided by one exact power of ten, which
// rounds as strtod does; other plain decimal literals go through from_chars;
// the rest (blanks, "+", hexadecimal, infinity, overflow) through strtod.
inline double ToNumber(const char* text, std::size_t length) {
    static constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const char* end = text + length;
    const bool negative = length > 0 && *text == '-';
    const char* p = text + (negative ? 1 : 0);
    const char* point = nullptr;
    const char* q = p;
    for (; q != end && ((*q >= '0' && *q <= '9') || (*q == '.' && !point)); ++q)
        if (*q == '.') point = q;
    if (q == end && q != p && !(point && q == p + 1)) {
        const char* last = end;
        if (point) {
            while (last > point + 1 && last[-1] == '0') --last;
            if (last == point + 1) last = point;
        }
        std::uint64_t mantissa = 0;
        int significant = 0, decimals = 0;
        for (const char* c = p; c != last && significant <= 15; ++c) {
            if (c == point) continue;
            if (point && c > point) ++decimals;
            if (mantissa == 0 && *c == '0') continue;
            ++significant;
            mantissa = mantissa * 10 + static_cast<unsigned>(*c - '0');
        }
        if (significant <= 15 && decimals <= 22) {
            const double magnitude = static_cast<double>(mantissa) / kPow10[decimals];
            return negative ? -magnitude : magnitude;
        }
    }
    const bool decimal = p != end && ((*p >= '0' && *p <= '9') || *p == '.') &&
                         !(p + 1 != end && *p == '0' && (p[1] == 'x' || p[1] == 'X'));
    if (decimal) {
        double value = 0.0;
        const std::from_chars_result r = std::from_chars(text, end, value);
        if (r.ec == std::errc()) return value;
    }
    return std::strtod(text, nullptr);
}
inline double ToNumber(const std::string& text) {
    return ToNumber(text.c_str(), text.size());
}

// The texts as one key of a cache, each closed by a character that no name
// holds.
inline void JoinKey(std::string& key, std::initializer_list<const std::string*> parts) {
    key.clear();
    for (const std::string* part : parts) {
        key += *part;
        key += '\x1f';
    }
}

// A hash of the texts together, eight bytes at a time; each text's length
// goes in first, so that no two lists of texts run into each other.
inline std::uint64_t HashTexts(std::initializer_list<const std::string*> parts) {
    constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15ULL;
    std::uint64_t h = 0;
    for (const std::string* part : parts) {
        const char* p = part->data();
        std::size_t n = part->size();
        h = (h ^ n) * kMultiplier;
        for (; n >= 8; n -= 8, p += 8) {
            std::uint64_t word;
            std::memcpy(&word, p, 8);
            h = (h ^ word) * kMultiplier;
            h ^= h >> 29;
        }
        std::uint64_t tail = 0;
        std::memcpy(&tail, p, n);
        h = (h ^ tail) * kMultiplier;
        h ^= h >> 29;
    }
    return h;
}

// Equality with a literal, without measuring it at run time.
template <std::size_t N>
inline bool Is(const std::string& text, const char (&literal)[N]) {
    return text.size() == N - 1 && std::memcmp(text.data(), literal, N - 1) == 0;
}

inline void TrimBlanks(std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        text.clear();
        return;
    }
    text = text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// round(|value| * 10^precision) to the nearest, ties to even, as printf rounds
// the exact binary value; false when it would not fit 128 bits.
inline bool ScaledFixed(double magnitude, int precision, unsigned __int128& scaled) {
    static constexpr std::uint64_t kPow5[] = {1ULL,
                                              5ULL,
                                              25ULL,
                                              125ULL,
                                              625ULL,
                                              3125ULL,
                                              15625ULL,
                                              78125ULL,
                                              390625ULL,
                                              1953125ULL,
                                              9765625ULL,
                                              48828125ULL,
                                              244140625ULL,
                                              1220703125ULL,
                                              6103515625ULL,
                                              30517578125ULL,
                                              152587890625ULL,
                                              762939453125ULL,
                                              3814697265625ULL,
                                              19073486328125ULL,
                                              95367431640625ULL,
                                              476837158203125ULL,
                                              2384185791015625ULL};
    if (precision < 0 || precision > 22) return false;
    int exponent = 0;
    const double fraction = std::frexp(magnitude, &exponent);
    // magnitude = mantissa * 2^(exponent - 53), and magnitude * 10^precision
    // = mantissa * 5^precision * 2^(exponent - 53 + precision).
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
    const unsigned __int128 product = static_cast<unsigned __int128>(mantissa) * kPow5[precision];
    const int shift = exponent - 53 + precision;
    if (shift >= 0) {
        if (shift >= 23) return false;  // product < 2^105
        scaled = product << shift;
        return true;
    }
    if (-shift >= 106) {
        scaled = 0;  // below a quarter of the last digit
        return true;
    }
    const int right = -shift;
    unsigned __int128 quotient = product >> right;
    const unsigned __int128 rest = product - (quotient << right);
    const unsigned __int128 half = static_cast<unsigned __int128>(1) << (right - 1);
    if (rest > half || (rest == half && (quotient & 1) != 0)) ++quotient;
    scaled = quotient;
    return true;
}

// "%.<precision>lf" of value into out, reusing its storage. The exact scaled
// integer, or to_chars, print exactly as printf does, and much faster.
inline void PrintFixedTo(std::string& out, double value, int precision) {
    char text[512];
    if (value == std::floor(value) && std::fabs(value) < 1e15 && precision < 400) {
        // A whole number: its digits, the point and zeros.
        char* p = text;
        if (std::signbit(value)) *p++ = '-';
        p = std::to_chars(p, text + 32, static_cast<std::uint64_t>(std::fabs(value))).ptr;
        if (precision > 0) {
            *p++ = '.';
            std::memset(p, '0', static_cast<std::size_t>(precision));
            p += precision;
        }
        out.assign(text, p);
        return;
    }
    unsigned __int128 scaled = 0;
    if (std::isfinite(value) && ScaledFixed(std::fabs(value), precision, scaled)) {
        // The digits from the right, at least one before the point.
        char digits[48];
        char* d = digits + sizeof digits;
        int count = 0;
        while (scaled >= 10000000000000000000ULL) {
            std::uint64_t chunk = static_cast<std::uint64_t>(scaled % 10000000000000000000ULL);
            scaled /= 10000000000000000000ULL;
            for (int k = 0; k < 19; ++k, ++count) {
                *--d = static_cast<char>('0' + chunk % 10);
                chunk /= 10;
            }
        }
        for (auto rest = static_cast<std::uint64_t>(scaled); rest != 0 || count <= precision;
             ++count) {
            *--d = static_cast<char>('0' + rest % 10);
            rest /= 10;
        }
        char* p = text;
        if (std::signbit(value)) *p++ = '-';
        const int whole = count - precision;
        std::memcpy(p, d, static_cast<std::size_t>(whole));
        p += whole;
        if (precision > 0) {
            *p++ = '.';
            std::memcpy(p, d + whole, static_cast<std::size_t>(precision));
            p += precision;
        }
        out.assign(text, p);
        return;
    }
    const std::to_chars_result r =
        std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, precision);
    if (r.ec == std::errc()) {
        out.assign(text, r.ptr);
        return;
    }
    const int n = std::snprintf(text, sizeof text, "%.*f", precision, value);
    out.assign(text, n < 0 ? 0 : (n < static_cast<int>(sizeof text) ? n : sizeof text - 1));
}

// snprintf of one double into out, reusing its storage; "%.<n>lf" goes
// through PrintFixedTo.
inline void PrintTo(std::string& out, const char* format, double value) {
    if (format[0] == '%' && format[1] == '.' && format[2] >= '0' && format[2] <= '9') {
        const char* p = format + 2;
        int precision = 0;
        while (*p >= '0' && *p <= '9') precision = precision * 10 + (*p++ - '0');
        if (std::strcmp(p, "lf") == 0 || std::strcmp(p, "f") == 0) {
            PrintFixedTo(out, value, precision);
            return;
        }
    }
    char text[512];
    const int n = std::snprintf(text, sizeof text, format, value);
    out.assign(text, n < 0 ? 0 : (n < static_cast<int>(sizeof text) ? n : sizeof text - 1));
}

inline std::string Print(const char* format, double value) {
    std::string out;
    PrintTo(out, format, value);
    return out;
}

// The log line of a model: the format filled with three names and the equation.
inline std::string LogLine(const char* format, const std::string& a, const std::string& b,
                           const std::string& c, const std::string& equation) {
    const int n =
        std::snprintf(nullptr, 0, format, a.c_str(), b.c_str(), c.c_str(), equation.c_str());
    std::string out(n > 0 ? n : 0, '\0');
    if (n > 0)
        std::snprintf(&out[0], out.size() + 1, format, a.c_str(), b.c_str(), c.c_str(),
                      equation.c_str());
    return out;
}

// The numbers' sum, in their order.
inline double Sum(const std::vector<double>& numbers) {
    double sum = 0.0;
    for (double n : numbers) sum += n;
    return sum;
}

// "name = term + term = n + n = sum", the summary line of a member's terms,
// to the calculation log when it is open.
inline void LogTermSum(const std::string& name, const std::vector<std::string>& terms,
                       const std::vector<double>& numbers, double sum) {
    if (!PD_UTIL::IsCalcLogOpen()) return;
    std::string line = name + " = ";
    for (size_t i = 0; i < terms.size(); ++i) line += (i ? " + " : "") + terms[i];
    line += " = ";
    for (size_t i = 0; i < numbers.size(); ++i) line += (i ? " + " : "") + Print("%g", numbers[i]);
    PD_UTIL::FCprintln(line + " = " + Print("%g", sum));
}

// The same with the sum of the numbers, in their order.
inline void LogTermSum(const std::string& name, const std::vector<std::string>& terms,
                       const std::vector<double>& numbers) {
    if (PD_UTIL::IsCalcLogOpen()) LogTermSum(name, terms, numbers, Sum(numbers));
}

}  // namespace pwcformula

#endif
