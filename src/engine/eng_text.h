// Small text helpers of the engine's own files: numbers cross the tables as
// text, so reading and printing them is done one way everywhere.
#ifndef PWC_ENG_TEXT_H
#define PWC_ENG_TEXT_H

#include <cstdlib>
#include <cstring>
#include <string>

#include "baspcformula/formula_util.h"

namespace pwc {

// strtod of the text (exactly, by a faster path where it can).
inline double Num(const char* text) {
    return pwcformula::ToNumber(text, std::strlen(text));
}
inline double Num(const std::string& text) {
    return pwcformula::ToNumber(text);
}

// The value printed by "%.<precision>lf".
inline std::string PrintFixed(double value, int precision) {
    std::string text;
    pwcformula::PrintFixedTo(text, value, precision);
    return text;
}

// An environment variable set to exactly that value.
inline bool EnvIs(const char* name, const char* value) {
    const char* v = std::getenv(name);
    return v && std::strcmp(v, value) == 0;
}

// Text a browser shows as written, in element content and quoted attributes.
inline std::string HtmlEscaped(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

// A speed grade keeps only what follows its first "-".
inline std::string CutSpeed(const char* speed) {
    std::string s = speed ? speed : "";
    const size_t dash = s.find('-');
    return dash == std::string::npos ? s : s.substr(dash + 1);
}

}  // namespace pwc

#endif
