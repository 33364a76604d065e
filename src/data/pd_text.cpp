// The text form of data files (docs/data-format.md).
#include <cstdio>
#include <cstring>
#include <vector>

#include "pd_format.h"

namespace {

const char kHeader[] = "#PWC-DATA 1";

struct KindName {
    const char* word;
    SectionKind kind;
};
const KindName kKinds[] = {{"KEYSECT", KEYSECT}, {"TBLSECT", TBLSECT}, {"PWRSECT", PWRSECT}};

const char* const kBlockKinds[] = {"used", "unused", "sleep", "standby"};
const char kDcLetters[] = "ABDEFGHIJ";

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}
bool IsControl(unsigned char c) {
    return (c < 0x20 && c != '\t') || c == 0x7f;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

PD_DCBLOCK& BlockOf(PD_SUPPLYBLOCKS& b, int kind) {
    PD_DCBLOCK* const all[] = {&b.used, &b.unused, &b.sleep, &b.standby};
    return *all[kind];
}

std::string* DcLetter(PD_DCBLOCK& b, int i) {
    std::string* const all[] = {&b.A, &b.B, &b.D, &b.E, &b.F, &b.G, &b.H, &b.I, &b.J};
    return all[i];
}

}  // namespace

class PD_FORMAT::TextReader {
  public:
    TextReader(PD_DATA& data, const std::string& text)
        : data_(data), text_(text), budget_(16 * static_cast<long long>(text.size()) + 4096) {}

    bool Run(std::string* error);

  private:
    bool Fail(const std::string& what) {
        error_ = std::to_string(line_) + ": " + what;
        return false;
    }
    static std::string Show(const std::string& text) { return "\"" + text + "\""; }

    const char* SkipBlanks(const char* s) const {
        while (s < end_ && IsBlank(*s)) ++s;
        return s;
    }
    bool ReadQuoted(const char*& s, std::string& out);
    bool ReadValue(const char*& s, std::string& out);
    // Reads a comma list to the end of the line into `values`, reusing its
    // strings; returns the count, or -1 on an error.
    int ReadList(const char* s, std::vector<std::string>& values);

    bool SectionHeader(const char* s);
    bool KeyLine(const char* s);
    bool TableLine(const char* s);
    bool PowerLine(const char* s);

    PD_DATA& data_;
    const std::string& text_;
    const char* end_ = nullptr;  // end of the current line
    int line_ = 0;
    std::string error_;
    // Cells that padding creates without text of their own: short rows and
    // coefficient sets left out. Bounded by the size of the file, so that a
    // small file cannot demand a huge store.
    long long budget_;
    bool Spend(long long cells) {
        budget_ -= cells;
        return budget_ >= 0 || Fail("too many implied cells for the size of the file");
    }

    PD_SECTION* section_ = nullptr;
    bool tableHeader_ = false;
    bool suppliesListed_ = false;
    std::vector<unsigned char> coefSeen_;   // member * supplies + supply
    std::vector<unsigned char> blockSeen_;  // per supply, a bit per record kind
    std::vector<std::string> values_;
    std::string key_, value_;
};

bool PD_FORMAT::TextReader::ReadQuoted(const char*& s, std::string& out) {
    out.clear();
    ++s;
    for (;;) {
        const char* run = s;
        while (s < end_ && *s != '"' && *s != '\\') ++s;
        out.append(run, s);
        if (s == end_) return Fail("unterminated quote");
        if (*s == '"') {
            if (s + 1 < end_ && s[1] == '"') {
                out += '"';
                s += 2;
                continue;
            }
            ++s;
            return true;
        }
        if (s + 1 < end_ && s[1] == '\\') {
            out += '\\';
            s += 2;
        } else if (s + 3 < end_ && s[1] == 'x' && HexDigit(s[2]) >= 0 && HexDigit(s[3]) >= 0) {
            out += static_cast<char>(HexDigit(s[2]) * 16 + HexDigit(s[3]));
            s += 4;
        } else {
            out += '\\';
            ++s;
        }
    }
}

bool PD_FORMAT::TextReader::ReadValue(const char*& s, std::string& out) {
    s = SkipBlanks(s);
    if (s < end_ && *s == '"') {
        if (!ReadQuoted(s, out)) return false;
        s = SkipBlanks(s);
        if (s < end_ && *s != ',') return Fail("text after a closing quote");
        return true;
    }
    const char* start = s;
    while (s < end_ && *s != ',') {
        if (*s == '"') return Fail("quote inside an unquoted value");
        ++s;
    }
    const char* stop = s;
    while (stop > start && IsBlank(stop[-1])) --stop;
    out.assign(start, stop);
    return true;
}

int PD_FORMAT::TextReader::ReadList(const char* s, std::vector<std::string>& values) {
    std::size_t n = 0;
    for (;;) {
        if (n == values.size()) values.emplace_back();
        if (!ReadValue(s, values[n++])) return -1;
        if (s == end_) return static_cast<int>(n);
        ++s;  // the comma
    }
}

bool PD_FORMAT::TextReader::SectionHeader(const char* s) {
    s = SkipBlanks(s + 1);
    const char* word = s;
    while (s < end_ && *s >= 'A' && *s <= 'Z') ++s;
    const std::string kindWord(word, s);
    const KindName* kind = nullptr;
    for (const KindName& k : kKinds)
        if (kindWord == k.word) kind = &k;
    if (!kind) return Fail("unknown section kind " + Show(kindWord));
    s = SkipBlanks(s);
    if (s == end_ || *s != '"') return Fail("section name must be quoted");
    std::string name;
    if (!ReadQuoted(s, name)) return false;
    s = SkipBlanks(s);
    if (s == end_ || *s != ']') return Fail("missing \"]\" after the section name");
    if (SkipBlanks(s + 1) != end_) return Fail("text after the section header");
    switch (kind->kind) {
        case KEYSECT:
            section_ = new PD_KEYSECT();
            break;
        case TBLSECT:
            section_ = new PD_TBLSECT();
            break;
        case PWRSECT:
            section_ = new PD_PWRSECT();
            break;
    }
    section_->name = std::move(name);
    data_.sections.push_back(section_);
    if (!data_.index_.emplace(section_->name, data_.GetNumOfSections() - 1).second)
        return Fail("duplicate section " + Show(section_->name));
    tableHeader_ = false;
    suppliesListed_ = false;
    coefSeen_.clear();
    blockSeen_.clear();
    return true;
}

bool PD_FORMAT::TextReader::KeyLine(const char* s) {
    auto* sect = static_cast<PD_KEYSECT*>(section_);
    if (*s == '"') {
        if (!ReadQuoted(s, key_)) return false;
        s = SkipBlanks(s);
        if (s == end_ || *s != '=') return Fail("missing \"=\" after the key");
    } else {
        const char* eq = static_cast<const char*>(std::memchr(s, '=', end_ - s));
        if (!eq) return Fail("missing \"=\" in a key line");
        const char* stop = eq;
        while (stop > s && IsBlank(stop[-1])) --stop;
        key_.assign(s, stop);
        s = eq;
    }
    s = SkipBlanks(s + 1);
    if (s < end_ && *s == '"') {
        if (!ReadQuoted(s, value_)) return false;
        if (SkipBlanks(s) != end_) return Fail("text after a closing quote");
    } else {
        const char* stop = end_;
        while (stop > s && IsBlank(stop[-1])) --stop;
        value_.assign(s, stop);
    }
    if (!sect->index_.emplace(key_, sect->GetNumOfKeys()).second)
        return Fail("duplicate key " + Show(key_));
    sect->keys.emplace_back(key_, value_);
    return true;
}

bool PD_FORMAT::TextReader::TableLine(const char* s) {
    auto* table = static_cast<PD_TBLSECT*>(section_);
    if (!tableHeader_) {
        const int n = ReadList(s, values_);
        if (n < 0) return false;
        table->columns.assign(values_.begin(), values_.begin() + n);
        tableHeader_ = true;
        return true;
    }
    const int cols = table->GetNumOfColumns();
    PD_TABLE::Row row;
    row.reserve(cols);
    for (;;) {
        if (static_cast<int>(row.size()) == cols) {
            int n = cols;
            for (;;) {
                if (!ReadValue(s, value_)) return false;
                ++n;
                if (s == end_) break;
                ++s;
            }
            return Fail("row has " + std::to_string(n) + " cells, table has " +
                        std::to_string(cols) + " columns");
        }
        row.emplace_back();
        if (!ReadValue(s, row.back().text)) return false;
        if (s == end_) break;
        ++s;
    }
    if (!Spend(cols - static_cast<long long>(row.size()))) return false;
    row.resize(cols);
    table->rows.push_back(std::move(row));
    return true;
}

bool PD_FORMAT::TextReader::PowerLine(const char* s) {
    auto* pwr = static_cast<PD_PWRSECT*>(section_);
    auto starts = [&](const char* word) {
        const std::size_t len = std::strlen(word);
        return static_cast<std::size_t>(end_ - s) >= len && std::memcmp(s, word, len) == 0;
    };
    if (starts("supplies:")) {
        if (suppliesListed_) return Fail("supplies listed twice");
        suppliesListed_ = true;
        s += 9;
        if (SkipBlanks(s) == end_) return true;
        const int n = ReadList(s, values_);
        if (n < 0) return false;
        for (int i = 0; i < n; ++i) {
            if (!pwr->supply_index_.emplace(values_[i], i).second)
                return Fail("duplicate supply " + Show(values_[i]));
            pwr->supplies.push_back(values_[i]);
        }
        pwr->blocks.assign(n, PD_NullSupplyBlocks());
        blockSeen_.assign(n, 0);
        return true;
    }
    const bool coef = starts("coef:");
    if (!coef && !starts("dcblock:"))
        return Fail("expected \"supplies:\", \"coef:\" or \"dcblock:\"");
    const char* what = coef ? "coef" : "dcblock";
    const int most = coef ? 12 : 11;
    const int n = ReadList(s + (coef ? 5 : 8), values_);
    if (n < 0) return false;
    if (n < 2) return Fail(std::string(what) + " line needs a name and a supply");
    if (n > most)
        return Fail(std::string(what) + " line has " + std::to_string(n) + " values, at most " +
                    std::to_string(most));
    auto sup = pwr->supply_index_.find(values_[1]);
    if (sup == pwr->supply_index_.end())
        return Fail("supply " + Show(values_[1]) + " is not listed in \"supplies:\"");
    const int s_i = sup->second;
    const int nsup = pwr->GetNumOfSupplies();
    if (coef) {
        auto ins = pwr->member_index_.emplace(values_[0], pwr->GetNumOfMembers());
        if (ins.second) {
            if (!Spend(10LL * nsup)) return false;
            pwr->members.push_back(
                PD_MEMBER{values_[0], std::vector<PD_COEF>(nsup, PD_NullCoef())});
            coefSeen_.resize(coefSeen_.size() + nsup, 0);
        }
        const int m = ins.first->second;
        unsigned char& seen = coefSeen_[static_cast<std::size_t>(m) * nsup + s_i];
        if (seen)
            return Fail("second coef line for " + Show(values_[0]) + " on " + Show(values_[1]));
        seen = 1;
        PD_COEF& c = pwr->members[m].coefs[s_i];
        for (int i = 2; i < n; ++i) c.Letter(static_cast<char>('A' + i - 2))->swap(values_[i]);
        return true;
    }
    int kind = -1;
    for (int k = 0; k < 4; ++k)
        if (values_[0] == kBlockKinds[k]) kind = k;
    if (kind < 0) return Fail("unknown dcblock kind " + Show(values_[0]));
    if (blockSeen_[s_i] & (1u << kind))
        return Fail("second dcblock " + Show(values_[0]) + " on " + Show(values_[1]));
    blockSeen_[s_i] |= 1u << kind;
    PD_SUPPLYBLOCKS& b = pwr->blocks[s_i];
    if (kind == 2) b.hasSleep = true;
    if (kind == 3) b.hasStandby = true;
    PD_DCBLOCK& rec = BlockOf(b, kind);
    rec = PD_NullDcBlock();
    for (int i = 2; i < n; ++i) DcLetter(rec, i - 2)->swap(values_[i]);
    return true;
}

bool PD_FORMAT::TextReader::Run(std::string* error) {
    const char* pos = text_.data();
    const char* const stop = pos + text_.size();
    bool ok = true;
    while (ok && pos < stop) {
        const char* nl = static_cast<const char*>(std::memchr(pos, '\n', stop - pos));
        end_ = nl ? nl : stop;
        const char* next = nl ? nl + 1 : stop;
        if (end_ > pos && end_[-1] == '\r') --end_;
        ++line_;
        if (line_ == 1) {
            const std::size_t len = sizeof kHeader - 1;
            if (static_cast<std::size_t>(end_ - pos) != len || std::memcmp(pos, kHeader, len) != 0)
                ok = Fail(std::string("missing header line \"") + kHeader + "\"");
            pos = next;
            continue;
        }
        const char* s = SkipBlanks(pos);
        pos = next;
        if (s == end_ || *s == '#') continue;
        if (*s == '[') {
            ok = SectionHeader(s);
        } else if (!section_) {
            ok = Fail("line outside a section");
        } else {
            switch (section_->GetSectionKind()) {
                case KEYSECT:
                    ok = KeyLine(s);
                    break;
                case TBLSECT:
                    ok = TableLine(s);
                    break;
                case PWRSECT:
                    ok = PowerLine(s);
                    break;
            }
        }
    }
    if (ok && line_ == 0) ok = Fail(std::string("missing header line \"") + kHeader + "\"");
    if (!ok) {
        if (error) *error = error_;
        return false;
    }
    for (PD_SECTION* sect : data_.sections) {
        if (sect->GetSectionKind() == KEYSECT) static_cast<PD_KEYSECT*>(sect)->index_valid_ = true;
        if (sect->GetSectionKind() == PWRSECT) static_cast<PD_PWRSECT*>(sect)->index_valid_ = true;
    }
    data_.index_valid_ = true;
    return true;
}

namespace {

// ------------------------------------------------------------------ writing

void AppendQuoted(std::string& out, const std::string& v) {
    static const char hex[] = "0123456789ABCDEF";
    out += '"';
    for (char ch : v) {
        const unsigned char c = static_cast<unsigned char>(ch);
        if (c == '"') {
            out += "\"\"";
        } else if (c == '\\') {
            out += "\\\\";
        } else if (IsControl(c)) {
            out += "\\x";
            out += hex[c >> 4];
            out += hex[c & 15];
        } else {
            out += ch;
        }
    }
    out += '"';
}

// Keys and list values: quoted when empty (where that matters), with a blank
// at an end, starting a comment or section line, or holding a separator.
bool NeedsQuotes(const std::string& v, bool emptyMatters) {
    if (v.empty()) return emptyMatters;
    if (IsBlank(v.front()) || IsBlank(v.back()) || v.front() == '#' || v.front() == '[')
        return true;
    for (char ch : v)
        if (ch == ',' || ch == '"' || ch == '=' || IsControl(static_cast<unsigned char>(ch)))
            return true;
    return false;
}

void AppendItem(std::string& out, const std::string& v, bool emptyMatters) {
    if (NeedsQuotes(v, emptyMatters))
        AppendQuoted(out, v);
    else
        out += v;
}

// Values joined by ", ", with no blank before an empty value; a lone empty
// value is written "" so that the line is not blank.
template <class Values>
void AppendList(std::string& out, const Values& values, std::size_t count, bool leadBlank) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::string& v = values(i);
        if (i) out += ',';
        if (!v.empty() && (i || leadBlank)) out += ' ';
        AppendItem(out, v, count == 1);
    }
    out += '\n';
}

void AppendKeyValue(std::string& out, const std::string& key, const std::string& value) {
    AppendItem(out, key, true);
    out += " =";
    if (value.empty()) {
        out += '\n';
        return;
    }
    out += ' ';
    bool quote = IsBlank(value.front()) || IsBlank(value.back()) || value.front() == '"';
    for (char ch : value) quote = quote || IsControl(static_cast<unsigned char>(ch));
    if (quote)
        AppendQuoted(out, value);
    else
        out += value;
    out += '\n';
}

}  // namespace

bool PD_FORMAT::ParseText(PD_DATA& data, const std::string& text, std::string* error) {
    data.Clear();
    TextReader reader(data, text);
    if (reader.Run(error)) return true;
    data.Clear();
    return false;
}

std::string PD_FORMAT::ToText(const PD_DATA& data) {
    std::string out = kHeader;
    out += '\n';
    static const std::string null = "null";
    static const std::string empty;
    for (const PD_SECTION* sect : data.sections) {
        if (!sect) continue;
        out += '\n';
        out += '[';
        out += kKinds[sect->GetSectionKind()].word;
        out += ' ';
        AppendQuoted(out, sect->name);
        out += "]\n";
        switch (sect->GetSectionKind()) {
            case KEYSECT:
                for (const auto& kv : static_cast<const PD_KEYSECT*>(sect)->keys)
                    AppendKeyValue(out, kv.first, kv.second);
                break;
            case TBLSECT: {
                const auto* t = dynamic_cast<const PD_TBLSECT*>(sect);
                const std::size_t cols = t->columns.size();
                if (cols == 0) break;
                AppendList(
                    out, [t](std::size_t i) -> const std::string& { return t->columns[i]; }, cols,
                    false);
                for (const PD_TABLE::Row& row : t->rows)
                    AppendList(
                        out,
                        [&row](std::size_t i) -> const std::string& {
                            return i < row.size() ? row[i].text : empty;
                        },
                        cols, false);
                break;
            }
            case PWRSECT: {
                const auto* p = static_cast<const PD_PWRSECT*>(sect);
                const std::size_t nsup = p->supplies.size();
                if (nsup == 0) break;
                out += "supplies:";
                AppendList(
                    out, [p](std::size_t i) -> const std::string& { return p->supplies[i]; }, nsup,
                    true);
                static const PD_COEF nullCoef = PD_NullCoef();
                for (const PD_MEMBER& m : p->members) {
                    for (std::size_t s = 0; s < nsup; ++s) {
                        const PD_COEF& c = s < m.coefs.size() ? m.coefs[s] : nullCoef;
                        out += "coef:";
                        AppendList(
                            out,
                            [&](std::size_t i) -> const std::string& {
                                if (i == 0) return m.name;
                                if (i == 1) return p->supplies[s];
                                return *c.Letter(static_cast<char>('A' + i - 2));
                            },
                            12, true);
                    }
                }
                static const PD_SUPPLYBLOCKS nullBlocks = PD_NullSupplyBlocks();
                for (std::size_t s = 0; s < nsup; ++s) {
                    const PD_SUPPLYBLOCKS& b = s < p->blocks.size() ? p->blocks[s] : nullBlocks;
                    const bool present[] = {true, true, b.hasSleep, b.hasStandby};
                    const PD_DCBLOCK* recs[] = {&b.used, &b.unused, &b.sleep, &b.standby};
                    for (int k = 0; k < 4; ++k) {
                        if (!present[k]) continue;
                        const std::string kind = kBlockKinds[k];
                        out += "dcblock:";
                        AppendList(
                            out,
                            [&](std::size_t i) -> const std::string& {
                                if (i == 0) return kind;
                                if (i == 1) return p->supplies[s];
                                return *recs[k]->Letter(kDcLetters[i - 2]);
                            },
                            11, true);
                    }
                }
                break;
            }
        }
    }
    return out;
}
