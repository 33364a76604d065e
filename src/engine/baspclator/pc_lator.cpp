#include "baspclator/pc_lator.h"

#include <algorithm>
#include <charconv>
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
    const char* first = nullptr;
    std::size_t length = 0;
    bool copied = false;
    SmallText<256> copy;
};

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
            while (IsItNumber(*end) || *end == '.') ++end;
            kind = kNumber;
        } else if (IsItLetter(c)) {
            while (IsItLetter(*end)) ++end;
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
        // A number always starts a piece, even after an empty one; a name only
        // ends a number or an operator.
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

std::string_view FindInArrays(std::string_view name, const char* const* names,
                              const char* const* values, int count) {
    if (names == nullptr || values == nullptr) return {};
    for (int i = 0; i < count; ++i) {
        const char* candidate = names[i];
        if (candidate == nullptr) continue;
        // Pieces hold no NUL, so the walk stops at the candidate's end at the latest.
        std::size_t k = 0;
        while (k < name.size() && candidate[k] == name[k]) ++k;
        if (k == name.size() && candidate[k] == '\0') {
            return values[i] ? std::string_view(values[i]) : std::string_view();
        }
    }
    return {};
}

constexpr std::string_view kSupplyWithRegulator = "VCC";
constexpr std::string_view kRegulatorOverride = "VCC_CORE_DYN_OVERRIDE";

// find(name) gives a value text; regulated() tells IsRegulatorBeingUsed.
template <typename Find, typename Regulated>
double Process(const std::string& formula, std::string& trace, Find&& find, Regulated&& regulated) {
    SmallText<512> text;
    const bool bound = ScanPieces(formula.c_str(), [&](std::string_view piece) {
        if (IsRightNumber(piece) || IsOperand(piece)) {
            text.append(piece.data(), piece.size());
            return true;
        }
        std::string_view value = find(piece);
        if (value.empty()) return false;
        if (piece == kSupplyWithRegulator && regulated()) value = find(kRegulatorOverride);
        text.append(value.data(), value.size());
        return true;
    });
    if (!bound) return -1.0;

    Calculator calculator(text.data(), text.length());
    calculator.InToPost();
    const double result = calculator.Evaluate();

    char number[64];
    const auto printed =
        std::to_chars(number, number + sizeof(number), result, std::chars_format::general, 6);
    trace.assign(text.data(), text.length());
    trace.push_back('=');
    trace.append(number, static_cast<std::size_t>(printed.ptr - number));
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
    return Process(
        formula, trace,
        [&](std::string_view name) { return FindInArrays(name, names, values, count); },
        [&] { return IsRegulatorBeingUsed(names, values, count); });
}

double PC_LATOR::ProcessCalculator(const std::string& formula, std::string& trace,
                                   const std::vector<std::string>& names,
                                   const std::vector<std::string>& values, int count) {
    return Process(
        formula, trace,
        [&](std::string_view name) { return FindInVectors(name, names, values, count); },
        [&] { return IsRegulatorBeingUsed(names, values, count); });
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
    std::memcpy(valueBuffer, value.data(), value.size());
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
