#include "baspclator/pc_lator.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

char PC_LATOR::valueBuffer[PC_LATOR::kValueBufferSize];

namespace {

// Text that lives on the stack while it is short and moves to the heap beyond N.
template <std::size_t N>
class SmallText {
  public:
    void clear() {
        size = 0;
        spill.clear();
    }
    void push_back(char c) { append(&c, 1); }
    void append(const char* text, std::size_t length) {
        if (length == 0) return;
        if (!spilled && size + length <= N) {
            std::memcpy(fixed + size, text, length);
            size += length;
            return;
        }
        if (!spilled) {
            spill.assign(fixed, size);
            spilled = true;
        }
        spill.append(text, length);
        size = spill.size();
    }
    const char* data() const { return spilled ? spill.data() : fixed; }
    std::size_t length() const { return size; }
    bool empty() const { return size == 0; }
    std::string_view view() const { return {data(), size}; }

  private:
    char fixed[N];
    std::size_t size = 0;
    bool spilled = false;
    std::string spill;
};

// The piece being collected: a view of the formula while its characters are
// adjacent, a copy once a dropped blank separates them.
class Piece {
  public:
    void Start(const char* begin, const char* end) {
        first = begin;
        length = static_cast<std::size_t>(end - begin);
        copied = false;
    }
    void Append(const char* begin, const char* end) {
        if (copied) {
            copy.append(begin, static_cast<std::size_t>(end - begin));
        } else if (length == 0) {
            Start(begin, end);
        } else if (first + length == begin) {
            length += static_cast<std::size_t>(end - begin);
        } else {
            copy.clear();
            copy.append(first, length);
            copy.append(begin, static_cast<std::size_t>(end - begin));
            copied = true;
        }
    }
    bool Empty() const { return copied ? copy.empty() : length == 0; }
    std::string_view View() const { return copied ? copy.view() : std::string_view(first, length); }

  private:
    const char* first = "";
    std::size_t length = 0;
    bool copied = false;
    SmallText<256> copy;
};

enum CharClass : unsigned char { kDigit = 1, kLetter = 2, kDot = 4 };

constexpr std::array<unsigned char, 256> MakeCharClasses() {
    std::array<unsigned char, 256> classes{};
    for (int c = 0; c < 256; ++c) {
        const char ch = static_cast<char>(c);
        classes[c] =
            (IsItNumber(ch) ? kDigit : 0) | (IsItLetter(ch) ? kLetter : 0) | (ch == '.' ? kDot : 0);
    }
    return classes;
}
constexpr std::array<unsigned char, 256> kCharClasses = MakeCharClasses();

inline bool HasClass(char c, unsigned char mask) {
    return (kCharClasses[static_cast<unsigned char>(c)] & mask) != 0;
}

// The pieces of a formula: names, numbers and single operator characters.
// Blanks, tabs and line ends are dropped, so a piece need not be contiguous.
// Runs of letters or digits are taken whole: inside a run the state does not
// change. emit(std::string_view) returns false to stop; the result tells
// whether the scan ran to the end.
template <typename Emit>
bool ScanPieces(const char* text, Emit&& emit) {
    enum { kName = 0, kNumber = 1, kOther = 4 };
    Piece piece;
    int state = kName;
    const char* p = text;
    while (*p != '\0') {
        const char c = *p;
        const char* end = p + 1;
        int kind;
        if (IsItNumber(c) || (c == '.' && p != text)) {
            while (HasClass(*end, kDigit | kDot)) ++end;
            kind = kNumber;
        } else if (IsItLetter(c)) {
            while (HasClass(*end, kLetter)) ++end;
            kind = kName;
        } else if (c == '\t' || c == '\n' || c == ' ') {
            ++p;
            continue;
        } else if (piece.Empty()) {
            // Only at the start: the character joins what follows, so "(A" is one piece.
            piece.Append(p, end);
            ++p;
            continue;
        } else {
            kind = kOther;
        }
        // A run of the piece's own kind extends it (across dropped blanks too);
        // any other run flushes it, even the empty piece before a leading digit.
        if (state == kind && kind != kOther) {
            piece.Append(p, end);
        } else {
            if (!emit(piece.View())) return false;
            piece.Start(p, end);
            state = kind;
        }
        p = end;
    }
    return piece.Empty() || emit(piece.View());
}

std::string_view FindInVectors(std::string_view name, const std::vector<std::string>& names,
                               const std::vector<std::string>& values, int count) {
    std::size_t limit = std::min(names.size(), values.size());
    if (count >= 0) limit = std::min(limit, static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < limit; ++i) {
        const std::string& candidate = names[i];
        if (candidate.size() == name.size() && (name.empty() || candidate[0] == name[0]) &&
            std::memcmp(candidate.data(), name.data(), name.size()) == 0) {
            // As read through the class's value buffer.
            const std::string& value = values[i];
            return {value.data(), std::min(value.size(), PC_LATOR::kValueBufferSize - 1)};
        }
    }
    return {};
}

// A piece against a zero-terminated name. Pieces hold no NUL, so the walk
// stops at the candidate's end at the latest.
bool SameName(std::string_view name, const char* candidate) {
    std::size_t k = 0;
    while (k < name.size() && candidate[k] == name[k]) ++k;
    return k == name.size() && candidate[k] == '\0';
}

std::string_view FindInArrays(std::string_view name, const char* const* names,
                              const char* const* values, int count) {
    if (names == nullptr || values == nullptr) return {};
    for (int i = 0; i < count; ++i) {
        const char* candidate = names[i];
        if (candidate == nullptr) continue;
        if (SameName(name, candidate))
            return values[i] ? std::string_view(values[i]) : std::string_view();
    }
    return {};
}

// The names of one row chained by a small hash of their first two characters
// and length, built once per evaluation so that each piece is found without
// walking the whole row. Chains run in index order: the first exact match
// comes first.
class NameIndex {
  public:
    static constexpr int kMaxNames = 254;

    static unsigned Key(char first, char second, std::size_t length) {
        return (static_cast<unsigned char>(first) * 7u + static_cast<unsigned char>(second) * 3u +
                static_cast<unsigned>(length)) &
               (kSlots - 1);
    }
    static unsigned Key(std::string_view name) {
        return Key(name.empty() ? '\0' : name[0], name.size() > 1 ? name[1] : '\0', name.size());
    }

    template <typename KeyOf>
    void Build(int count, KeyOf&& keyOf) {
        std::memset(head, kNone, sizeof(head));
        for (int i = count - 1; i >= 0; --i) {
            const unsigned key = keyOf(i);
            next[i] = head[key];
            head[key] = static_cast<std::uint8_t>(i);
        }
    }
    int First(unsigned key) const { return head[key] == kNone ? -1 : head[key]; }
    int Next(int i) const { return next[i] == kNone ? -1 : next[i]; }

  private:
    static constexpr unsigned kSlots = 64;
    static constexpr std::uint8_t kNone = 255;
    std::uint8_t head[kSlots];
    std::uint8_t next[kMaxNames];
};

class VectorRow {
  public:
    // inOrder: the names are the formula's own pieces in their order, and a
    // repeated name has the same value at each place, so the next place is
    // tried before the index.
    VectorRow(const std::vector<std::string>& n, const std::vector<std::string>& v, int count,
              bool inOrder = false)
        : names(n), values(v), count(count), inOrder(inOrder) {
        limit = static_cast<int>(std::min(names.size(), values.size()));
        if (count >= 0) limit = std::min(limit, count);
    }
    std::string_view Find(std::string_view name) {
        if (inOrder) {
            // The formula's numbers hold places of their own: try one further too.
            for (int i = cursor; i < limit && i < cursor + 2; ++i) {
                const std::string& candidate = names[static_cast<std::size_t>(i)];
                if (candidate.size() == name.size() &&
                    std::memcmp(candidate.data(), name.data(), name.size()) == 0) {
                    cursor = i + 1;
                    return Value(i);
                }
            }
        }
        if (limit > NameIndex::kMaxNames) return FindInVectors(name, names, values, count);
        if (!indexed) {
            index.Build(limit, [&](int i) {
                const std::string& s = names[static_cast<std::size_t>(i)];
                return NameIndex::Key(s[0], s.size() > 1 ? s[1] : '\0', s.size());
            });
            indexed = true;
        }
        for (int i = index.First(NameIndex::Key(name)); i >= 0; i = index.Next(i)) {
            const std::string& candidate = names[static_cast<std::size_t>(i)];
            if (candidate.size() == name.size() &&
                std::memcmp(candidate.data(), name.data(), name.size()) == 0) {
                cursor = i + 1;
                return Value(i);
            }
        }
        return {};
    }
    bool Regulated() const { return PC_LATOR::IsRegulatorBeingUsed(names, values, count); }

  private:
    // As read through the class's value buffer.
    std::string_view Value(int i) const {
        const std::string& value = values[static_cast<std::size_t>(i)];
        return {value.data(), std::min(value.size(), PC_LATOR::kValueBufferSize - 1)};
    }

    const std::vector<std::string>& names;
    const std::vector<std::string>& values;
    int count;
    bool inOrder;
    int cursor = 0;
    int limit;
    bool indexed = false;
    NameIndex index;
};

class ArrayRow {
  public:
    ArrayRow(const char* const* n, const char* const* v, int count)
        : names(n), values(v), count(n && v ? count : 0) {}
    std::string_view Find(std::string_view name) {
        if (count > NameIndex::kMaxNames) return FindInArrays(name, names, values, count);
        if (!indexed) {
            // Without the lengths at hand the key uses 0 for them.
            index.Build(count, [&](int i) {
                const char* s = names[i] ? names[i] : "";
                return NameIndex::Key(s[0], s[0] ? s[1] : '\0', 0);
            });
            indexed = true;
        }
        const unsigned key =
            NameIndex::Key(name.empty() ? '\0' : name[0], name.size() > 1 ? name[1] : '\0', 0);
        for (int i = index.First(key); i >= 0; i = index.Next(i)) {
            const char* candidate = names[i];
            if (candidate == nullptr) continue;
            if (SameName(name, candidate))
                return values[i] ? std::string_view(values[i]) : std::string_view();
        }
        return {};
    }
    bool Regulated() const { return PC_LATOR::IsRegulatorBeingUsed(names, values, count); }

  private:
    const char* const* names;
    const char* const* values;
    int count;
    bool indexed = false;
    NameIndex index;
};

constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// |value| * 10^power with one rounding, for |power| <= 22.
inline double ScaleByPow10(double value, int power) {
    return power >= 0 ? value * kPow10[power] : value / kPow10[-power];
}

// The text of "%g": six significant digits, trailing zeros dropped, exponent
// form below 1e-4 and from 1e6 on. The six digits come from |value| scaled
// into [1e5, 1e6) by an exact power of ten; that product is off by less than
// 2^-33, so away from a rounding tie it rounds as the exact value does. Ties,
// and values far from 1, are printed by the library. Returns the length.
std::size_t FormatG(double value, char* out) {
    const double magnitude = std::fabs(value);
    if (!(magnitude >= 1e-17 && magnitude < 1e27)) {
        return static_cast<std::size_t>(
            std::to_chars(out, out + 32, value, std::chars_format::general, 6).ptr - out);
    }
    int exponent = 0;
    int exponentBinary = 0;
    std::frexp(magnitude, &exponentBinary);
    exponent = (exponentBinary * 1233) >> 12;  // about log10(2^e), at most one too high
    double scaled = ScaleByPow10(magnitude, 5 - exponent);
    if (scaled < 100000.0) {
        --exponent;
        scaled = ScaleByPow10(magnitude, 5 - exponent);
    }
    const double whole = std::floor(scaled);
    const double fraction = scaled - whole;
    if (std::fabs(fraction - 0.5) < 1e-6 || scaled < 100000.0 - 1e-6 || scaled >= 1000000.0 ||
        5 - exponent > 22 || 5 - exponent < -22) {
        return static_cast<std::size_t>(
            std::to_chars(out, out + 32, value, std::chars_format::general, 6).ptr - out);
    }
    auto digits = static_cast<std::uint32_t>(whole) + (fraction > 0.5 ? 1u : 0u);
    if (digits >= 1000000u) {
        digits /= 10;
        ++exponent;
    }
    char six[6];
    for (int k = 5; k >= 0; --k) {
        six[k] = static_cast<char>('0' + digits % 10);
        digits /= 10;
    }
    int significant = 6;
    while (significant > 1 && six[significant - 1] == '0') --significant;

    char* p = out;
    if (std::signbit(value)) *p++ = '-';
    if (exponent >= -4 && exponent < 6) {
        if (exponent < 0) {
            *p++ = '0';
            *p++ = '.';
            for (int k = -1; k > exponent; --k) *p++ = '0';
            for (int k = 0; k < significant; ++k) *p++ = six[k];
        } else {
            for (int k = 0; k <= exponent; ++k) *p++ = six[k];
            if (significant > exponent + 1) {
                *p++ = '.';
                for (int k = exponent + 1; k < significant; ++k) *p++ = six[k];
            }
        }
    } else {
        *p++ = six[0];
        if (significant > 1) {
            *p++ = '.';
            for (int k = 1; k < significant; ++k) *p++ = six[k];
        }
        *p++ = 'e';
        *p++ = exponent < 0 ? '-' : '+';
        const int shown = exponent < 0 ? -exponent : exponent;
        *p++ = static_cast<char>('0' + shown / 10);
        *p++ = static_cast<char>('0' + shown % 10);
    }
    return static_cast<std::size_t>(p - out);
}

constexpr std::string_view kSupplyWithRegulator = "VCC";
constexpr std::string_view kRegulatorOverride = "VCC_CORE_DYN_OVERRIDE";

// Without a trace (null) the result is neither printed nor kept.
template <typename Row>
double Process(const std::string& formula, std::string* trace, Row& row) {
    SmallText<512> text;
    const bool bound = ScanPieces(formula.c_str(), [&](std::string_view piece) {
        if (IsRightNumber(piece) || IsOperand(piece)) {
            text.append(piece.data(), piece.size());
            return true;
        }
        std::string_view value = row.Find(piece);
        if (value.empty()) return false;
        if (piece == kSupplyWithRegulator && row.Regulated()) value = row.Find(kRegulatorOverride);
        text.append(value.data(), value.size());
        return true;
    });
    if (!bound) return -1.0;

    Calculator calculator(text.data(), text.length());
    calculator.InToPost();
    const double result = calculator.Evaluate();
    if (!trace) return result;

    char number[64];
    const std::size_t printed = FormatG(result, number);
    trace->assign(text.data(), text.length());
    trace->push_back('=');
    trace->append(number, printed);
    return result;
}

struct RegulatedArch {
    const char* name;
    bool bySubstring;  // every architecture whose code holds the name
};

constexpr RegulatedArch kArchsRegulatedWhenDeviceEndsInC[] = {
    {"kt7g00", false},  {"hq7g00", false}, {"hq7g00e", false}, {"zn3c00a", false},
    {"zn3c00f", false}, {"wd7c00", false}, {"zn2c00", true},
};

constexpr const char* kArchsAlwaysRegulated[] = {"hq7g00p", "zn2c00p", "zn2c00ap", "wd7r00"};

constexpr const char* kBoolRelationOperators[] = {"==", ">=", "<=", "||", ">", "<", "!=", "&&"};

}  // namespace

bool ArchUsesRegulatorWhenDeviceEndsInC(std::string_view arch) {
    return std::any_of(std::begin(kArchsRegulatedWhenDeviceEndsInC),
                       std::end(kArchsRegulatedWhenDeviceEndsInC), [&](const RegulatedArch& a) {
                           return a.bySubstring ? arch.find(a.name) != std::string_view::npos
                                                : arch == a.name;
                       });
}

bool ArchAlwaysUsesRegulator(std::string_view arch) {
    return std::any_of(std::begin(kArchsAlwaysRegulated), std::end(kArchsAlwaysRegulated),
                       [&](const char* name) { return arch == name; });
}

bool RegulatorInUse(std::string_view arch, std::string_view device) {
    if (arch.empty()) return false;
    if (ArchUsesRegulatorWhenDeviceEndsInC(arch) && !device.empty() && device.back() == 'C')
        return true;
    return ArchAlwaysUsesRegulator(arch);
}

bool IsItNumber(const char* text) {
    if (text == nullptr) return false;
    for (; *text != '\0'; ++text) {
        if (!IsItNumber(*text)) return false;
    }
    return true;
}

bool IsItLetter(const char* text) {
    if (text == nullptr) return false;
    for (; *text != '\0'; ++text) {
        if (*text == '_' || !IsItLetter(*text)) return false;
    }
    return true;
}

bool IsBoolRelationOperand(std::string_view text) {
    return std::any_of(std::begin(kBoolRelationOperators), std::end(kBoolRelationOperators),
                       [&](const char* op) { return text == op; });
}

int GetOperandPriority(std::string_view text) {
    if (text == "||" || text == "&&") return 3;
    if (text == "(" || text == ")") return 5;
    if (IsBoolRelationOperand(text)) return 4;
    return 0;
}

PC_LATOR::PC_LATOR(const char*) {}

double PC_LATOR::ProcessCalculator(const std::string& formula, std::string& trace,
                                   const char* const* names, const char* const* values, int count) {
    ArrayRow row(names, values, count);
    return Process(formula, &trace, row);
}

double PC_LATOR::ProcessCalculator(const std::string& formula, std::string& trace,
                                   const std::vector<std::string>& names,
                                   const std::vector<std::string>& values, int count) {
    VectorRow row(names, values, count);
    return Process(formula, &trace, row);
}

double PC_LATOR::EvaluateFormula(const std::string& formula, const std::vector<std::string>& names,
                                 const std::vector<std::string>& values, int count) {
    VectorRow row(names, values, count, true);
    return Process(formula, nullptr, row);
}

char** PC_LATOR::BreakIntoPieces(const char* text, int* count) {
    int capacity = 10;
    int used = 0;
    char** pieces = new char*[capacity];
    if (text != nullptr) {
        ScanPieces(text, [&](std::string_view piece) {
            if (used == capacity) {
                char** grown = new char*[capacity * 2];
                std::copy(pieces, pieces + used, grown);
                delete[] pieces;
                pieces = grown;
                capacity *= 2;
            }
            char* copy = new char[piece.size() + 1];
            std::memcpy(copy, piece.data(), piece.size());
            copy[piece.size()] = '\0';
            pieces[used++] = copy;
            return true;
        });
    }
    if (count != nullptr) *count = used;
    return pieces;
}

std::vector<std::string> PC_LATOR::BreakIntoComponets(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (IsItLetter(c) || (IsItNumber(c) && i > 0)) {
            word.push_back(c);
        } else if (!word.empty()) {
            words.push_back(word);
            word.clear();
        }
    }
    if (!word.empty()) words.push_back(word);
    return words;
}

const char* PC_LATOR::FindValueUsingIndex(const char* name, const char* const* names,
                                          const char* const* values, int count) {
    if (name == nullptr) return "";
    const std::string_view value = FindInArrays(name, names, values, count);
    return value.empty() ? "" : value.data();
}

const char* PC_LATOR::FindValueUsingIndex(const char* name, const std::vector<std::string>& names,
                                          const std::vector<std::string>& values, int count) {
    const std::string_view value =
        name ? FindInVectors(name, names, values, count) : std::string_view();
    if (!value.empty()) std::memcpy(valueBuffer, value.data(), value.size());
    valueBuffer[value.size()] = '\0';
    return valueBuffer;
}

const char* PC_LATOR::FindValueUsingIndex(const std::string& name,
                                          const std::vector<std::string>& names,
                                          const std::vector<std::string>& values, int count) {
    return FindValueUsingIndex(name.c_str(), names, values, count);
}

bool PC_LATOR::IsRegulatorBeingUsed(const char* const* names, const char* const* values,
                                    int count) {
    return RegulatorInUse(FindInArrays("archName", names, values, count),
                          FindInArrays("Device", names, values, count));
}

bool PC_LATOR::IsRegulatorBeingUsed(const std::vector<std::string>& names,
                                    const std::vector<std::string>& values, int count) {
    return RegulatorInUse(FindInVectors("archName", names, values, count),
                          FindInVectors("Device", names, values, count));
}

std::string PC_LATOR::CalculateBoolRelation(const std::string& left, const std::string& right,
                                            const std::string& op, const std::string& component) {
    std::string l = left;
    std::string r = right;
    if (left == "_COMP") {
        l = component;
    } else if (right == "_COMP") {
        r = component;
    }
    // A "!" turns the comparison into one of prefixes, cut where the "!" stands.
    const std::size_t leftMark = left.find('!');
    const std::size_t rightMark = right.find('!');
    if (leftMark != std::string::npos) {
        l.resize(std::min(l.size(), leftMark));
        r.resize(std::min(r.size(), l.size()));
    } else if (rightMark != std::string::npos) {
        r.resize(std::min(r.size(), rightMark));
        l.resize(std::min(l.size(), r.size()));
    }
    bool result = true;  // ">=", "<=", ">", "<" and unknown operators compare nothing
    if (op == "==") {
        result = l == r;
    } else if (op == "!=") {
        result = l != r;
    } else if (op == "||") {
        result = l == "TRUE" || r == "TRUE";
    } else if (op == "&&") {
        result = l == "TRUE" && r == "TRUE";
    }
    return result ? "TRUE" : "FALSE";
}

std::string PC_LATOR::ProcessBooleanExpression(const std::vector<std::string>& tokens,
                                               const std::string& component) {
    std::vector<std::string> operands;
    std::vector<std::string> operators;
    auto pop = [](std::vector<std::string>& stack) {
        std::string top;
        if (!stack.empty()) {
            top = std::move(stack.back());
            stack.pop_back();
        }
        return top;
    };
    auto reduce = [&] {
        const std::string right = pop(operands);
        const std::string left = pop(operands);
        const std::string op = pop(operators);
        operands.push_back(CalculateBoolRelation(left, right, op, component));
    };
    for (const std::string& token : tokens) {
        if (!IsBoolRelationOperand(token)) {
            operands.push_back(token);
            continue;
        }
        const int priority = GetOperandPriority(token);
        while (!operators.empty() && GetOperandPriority(operators.back()) >= priority) reduce();
        operators.push_back(token);
    }
    while (!operators.empty()) reduce();
    return operands.empty() ? std::string() : operands.back();
}
