#include "pc_text.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

bool IsDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string TrimBlanks(const std::string& text) {
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && IsBlank(text[begin])) ++begin;
    while (end > begin && IsBlank(text[end - 1])) --end;
    return text.substr(begin, end - begin);
}

// Standards without a voltage in their name that run at 2.5 V.
const char* const kStandards25[] = {"LVDS", "MLVDS", "RSDS", "HYPT"};

enum class TitleMatch { Holds, Is, Tail };

struct TitleRule {
    TitleMatch match;
    const char* pattern;
    const char* result;  // unused for Tail: the text behind the pattern
};

// First match wins. "# Shift Registers" does not hold "# Registers", so both
// rows are needed.
const TitleRule kTitleRules[] = {
    {TitleMatch::Holds, "# Logic", "LUT"},
    {TitleMatch::Holds, "# Dist", "RAM"},
    {TitleMatch::Holds, "# Ripple", "RIPPLE"},
    {TitleMatch::Holds, "# Registers", "REG"},
    {TitleMatch::Holds, "# Shift Registers", "SHIFTREG"},
    {TitleMatch::Is, "#ISBCLK", "ISBCLK"},
    {TitleMatch::Tail, "# ", nullptr},
    {TitleMatch::Is, "#Ebg", "Ebg"},
};

struct SectionKey {
    const char* key;
    const char* section;
};

const SectionKey kSectionKeys[] = {
    {"LUT", "SLICE"},
    {"LUT_unused", "SLICE"},
    {"RAM", "SLICE"},
    {"RIPPLE", "SLICE"},
    {"REG", "SLICE"},
    {"REG_unused", "SLICE"},
    {"LUT_RAM_RIP_REG", "SLICE"},
    {"LUT_REG", "SLICE"},
    {"X0", "ROUTING"},
    {"X0_unused", "ROUTING"},
    {"X1", "ROUTING"},
    {"X1_unused", "ROUTING"},
    {"X2", "ROUTING"},
    {"X2_unused", "ROUTING"},
    {"X6", "ROUTING"},
    {"X6_unused", "ROUTING"},
    {"ISB", "ROUTING"},
    {"ISB_unused", "ROUTING"},
    {"ISBCLK", "ROUTING"},
    {"ISBCLK_unused", "ROUTING"},
    {"ISBLUT", "ROUTING"},
    {"ISBLUT_unused", "ROUTING"},
    {"ISBCE", "ROUTING"},
    {"ISBCE_unused", "ROUTING"},
    {"ISBLSR", "ROUTING"},
    {"ISBLSR_unused", "ROUTING"},
    {"ISBM", "ROUTING"},
    {"ISBM_unused", "ROUTING"},
    {"Ptrunk", "PCLK"},
    {"Pbranch", "PCLK"},
    {"Pspine", "PCLK"},
    {"Pfeed", "PCLK"},
    {"Ptap", "PCLK"},
    {"Strunk", "SCLK"},
    {"Sspine", "SCLK"},
    {"Stap", "SCLK"},
    {"Sbranch", "SCLK"},
    {"Eclk", "ECLK"},
    {"Etb", "ECLK"},
    {"Elr", "ECLK"},
    {"I/P", "IO"},
    {"O/P", "IO"},
};

}  // namespace

int pc_stricmp(const char* a, const char* b) {
    if (a == nullptr) a = "";
    if (b == nullptr) b = "";
    const unsigned char* p = reinterpret_cast<const unsigned char*>(a);
    const unsigned char* q = reinterpret_cast<const unsigned char*>(b);
    for (;; ++p, ++q) {
        int ca = std::toupper(*p);
        int cb = std::toupper(*q);
        if (ca != cb || ca == 0) return ca - cb;
    }
}

double AddInParallel(double a, double b) {
    return a * b / (a + b);
}

bool strisdigit(const std::string& text) {
    return std::all_of(text.begin(), text.end(), IsDigit);
}

int CountCharInString(const std::string& text, char c) {
    return static_cast<int>(std::count(text.begin(), text.end(), c));
}

void AddToVector(std::vector<std::string>& items, const std::string& item) {
    if (std::find(items.begin(), items.end(), item) == items.end()) items.push_back(item);
}

std::string Getdouble2String(double value) {
    // Up to 309 integer digits for the largest doubles.
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, "%.20lf", value);
    return buffer;
}

std::string RemoveLastZeros(const std::string& text) {
    std::size_t zero = text.find('0');
    std::size_t dot = text.find('.');
    if (zero != std::string::npos && dot != std::string::npos && zero > 0 && dot > 0 && zero > dot)
        return text.substr(0, zero);
    return text;
}

std::string GetStringFirstNumberStr(const std::string& text) {
    auto begin = std::find_if(text.begin(), text.end(), IsDigit);
    auto end = std::find_if_not(begin, text.end(), IsDigit);
    return std::string(begin, end);
}

std::string GetStringNumberStr(const std::string& text) {
    auto begin = std::find_if(text.begin(), text.end(), IsDigit);
    auto end = std::find_if_not(begin, text.end(), [](char c) { return IsDigit(c) || c == '.'; });
    return std::string(begin, end);
}

int GetStringFirstNumber(const std::string& text) {
    std::string digits = GetStringFirstNumberStr(text);
    if (digits.empty()) return 0;
    long long value = std::strtoll(digits.c_str(), nullptr, 10);
    return static_cast<int>(std::min<long long>(value, INT_MAX));
}

int GetStringFirstNumberforVoltage(const std::string& text) {
    for (const char* standard : kStandards25)
        if (text == standard) return 25;
    if (GetStringFirstNumberStr(text).empty()) return 33;
    return GetStringFirstNumber(text);
}

std::vector<std::string> GetArrayOfTokensWithTrim(const std::string& text,
                                                  const std::string& delimiter, bool keepBlanks) {
    std::vector<std::string> tokens;
    const bool hasSeparator = !delimiter.empty();
    const char separator = hasSeparator ? delimiter[0] : '\0';
    std::string token;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isSeparator = hasSeparator && text[i] == separator;
        if (i + 1 == text.size()) {
            // The last character closes the final token, without adding an
            // empty one behind a trailing separator.
            if (!isSeparator) token += text[i];
            tokens.push_back(token);
        } else if (isSeparator) {
            tokens.push_back(token);
            token.clear();
        } else {
            token += text[i];
        }
    }
    if (!keepBlanks)
        for (std::string& t : tokens) t = TrimBlanks(t);
    return tokens;
}

std::set<std::string> GetSetOfTokensWithTrim(const std::string& text, const std::string& delimiter,
                                             bool keepBlanks) {
    std::vector<std::string> tokens = GetArrayOfTokensWithTrim(text, delimiter, keepBlanks);
    return std::set<std::string>(tokens.begin(), tokens.end());
}

void RemoveUnderlinefromFormula(std::string& formula) {
    std::string out;
    out.reserve(formula.size());
    bool droppedBehindSign = false;
    for (std::size_t i = 0; i < formula.size(); ++i) {
        if (formula[i] == '_') {
            const char before = i == 0 ? '\0' : formula[i - 1];
            if (i == 0 || before == '*' || before == '/' || before == '(') continue;
            if ((before == '+' || before == '-') && !droppedBehindSign) {
                droppedBehindSign = true;
                continue;
            }
        }
        out += formula[i];
    }
    formula = out;
}

void NameConvert(const std::string& title, std::string& out) {
    for (const TitleRule& rule : kTitleRules) {
        switch (rule.match) {
            case TitleMatch::Holds:
                if (title.find(rule.pattern) != std::string::npos) {
                    out = rule.result;
                    return;
                }
                break;
            case TitleMatch::Is:
                if (title == rule.pattern) {
                    out = rule.result;
                    return;
                }
                break;
            case TitleMatch::Tail: {
                std::size_t at = title.find(rule.pattern);
                if (at != std::string::npos) {
                    out = title.substr(at + std::strlen(rule.pattern));
                    return;
                }
                break;
            }
        }
    }
    out = title;
}

std::string GetDataSectionType(const std::string& key) {
    for (const SectionKey& entry : kSectionKeys)
        if (key == entry.key) return entry.section;
    return std::string();
}
