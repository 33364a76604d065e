// Helpers shared by the current models, and the two free leakage and bias
// functions that a host may link.
#ifndef PWC_FORMULA_UTIL_H
#define PWC_FORMULA_UTIL_H

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>
#include <system_error>
#include <vector>

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
    for (std::size_t i = 0; i < n; ++i)
        if (names[i].size() == length && std::memcmp(names[i].data(), name, length) == 0)
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

// snprintf of one double into out, reusing its storage. "%.<n>lf" goes
// through to_chars, which prints exactly as printf does and much faster.
inline void PrintTo(std::string& out, const char* format, double value) {
    char text[512];
    if (format[0] == '%' && format[1] == '.' && format[2] >= '0' && format[2] <= '9') {
        const char* p = format + 2;
        int precision = 0;
        while (*p >= '0' && *p <= '9') precision = precision * 10 + (*p++ - '0');
        if (std::strcmp(p, "lf") == 0 || std::strcmp(p, "f") == 0) {
            const std::to_chars_result r =
                std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, precision);
            if (r.ec == std::errc()) {
                out.assign(text, r.ptr);
                return;
            }
        }
    }
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

}  // namespace pwcformula

#endif
