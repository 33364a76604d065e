// The preference reader of ".lpf" files.
#include "pr_prefcntl.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

std::string Upper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

std::vector<std::string> Words(const std::string& text) {
    // "A = B" reads as "A=B".
    std::string joined;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (std::isspace(static_cast<unsigned char>(text[i]))) {
            std::size_t j = i;
            while (j < text.size() && std::isspace(static_cast<unsigned char>(text[j]))) ++j;
            const bool nearEquals =
                (j < text.size() && text[j] == '=') || (!joined.empty() && joined.back() == '=');
            if (!nearEquals) joined += ' ';
            i = j - 1;
            continue;
        }
        joined += text[i];
    }
    std::vector<std::string> words;
    std::istringstream in(joined);
    for (std::string w; in >> w;) words.push_back(w);
    return words;
}

std::string Unquoted(const std::string& s) {
    if (s.size() >= 2 && s.front() == '"' && s.back() == '"') return s.substr(1, s.size() - 2);
    return s;
}

bool WholeNumber(const std::string& s, int& value) {
    if (s.empty() || s.size() > 6) return false;
    for (char c : s)
        if (!std::isdigit(static_cast<unsigned char>(c))) return false;
    value = std::atoi(s.c_str());
    return true;
}

bool Volts(std::string s, double& value) {
    if (!s.empty() && (s.back() == 'V' || s.back() == 'v')) s.pop_back();
    if (s.empty()) return false;
    char* end = nullptr;
    value = std::strtod(s.c_str(), &end);
    return *end == '\0' && value > 0.0 && value < 10.0;
}

}  // namespace

PR_PREFCNTL::PR_PREFCNTL() : dumpAdvice_(std::getenv("TW_DUMP_ADVICE") != nullptr) {}

bool PR_PREFCNTL::Load(const std::string& path, const std::string&, const std::string&) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        advice_.push_back("cannot read '" + path + "'");
        return false;
    }
    std::ostringstream all;
    all << in.rdbuf();
    Parse(all.str());
    return true;
}

void PR_PREFCNTL::Parse(const std::string& text) {
    std::string statement;
    int line = 1, start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool comment = c == '#' || (c == '/' && i + 1 < text.size() && text[i + 1] == '/');
        if (comment) {
            while (i < text.size() && text[i] != '\n') ++i;
            if (i == text.size()) break;
        }
        if (text[i] == '\n') {
            ++line;
            statement += ' ';
        } else if (text[i] == ';') {
            AddStatement(statement, start ? start : line);
            statement.clear();
            start = 0;
        } else {
            if (!start && !std::isspace(static_cast<unsigned char>(text[i]))) start = line;
            statement += text[i] == '\r' || text[i] == '\t' ? ' ' : text[i];
        }
    }
    if (start) advice_.push_back("line " + std::to_string(start) + ": no \";\" at the end");
}

void PR_PREFCNTL::AddStatement(const std::string& text, int line) {
    const std::vector<std::string> words = Words(text);
    if (words.empty()) return;
    PR_PREFOBJ obj;
    obj.line = line;
    obj.text = text;
    const std::string where = "line " + std::to_string(line) + ": ";
    const std::string keyword = Upper(words[0]);
    if (keyword == "SYSCONFIG") {
        obj.type = PR_PREFOBJ::kSysConfig;
        obj.valid = true;
        for (std::size_t w = 1; w < words.size(); ++w) {
            const std::size_t eq = words[w].find('=');
            if (eq == std::string::npos || eq == 0) {
                advice_.push_back(where + "\"" + words[w] + "\" is not NAME=VALUE");
                obj.valid = false;
                continue;
            }
            obj.pairs.emplace_back(Upper(words[w].substr(0, eq)),
                                   Unquoted(words[w].substr(eq + 1)));
        }
    } else if (keyword == "BANK") {
        obj.type = PR_PREFOBJ::kBankVccio;
        const bool shape = (words.size() == 4 || (words.size() == 5 && Upper(words[4]) == "V")) &&
                           Upper(words[2]) == "VCCIO";
        obj.valid = shape && WholeNumber(words[1], obj.bank) && Volts(words[3], obj.voltage);
        if (!obj.valid) advice_.push_back(where + "expected BANK <number> VCCIO <volts> [V]");
    } else if (keyword == "DEVICE" && words.size() == 2) {
        fileDevice_ = Unquoted(words[1]);
        return;
    } else {
        advice_.push_back(where + "\"" + words[0] + "\" is not used");
    }
    objects_.push_back(obj);
}

void PR_PREFCNTL::init_pm_specifics(const std::string&, const std::string& device) {
    if (fileDevice_.empty() || fileDevice_ == device) return;
    advice_.push_back("the file is for " + fileDevice_ + ", not " + device +
                      ": its preferences are not used");
    for (PR_PREFOBJ& obj : objects_) obj.valid = false;
}
