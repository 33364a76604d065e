#include "pd_data.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "pd_format.h"
#include "pd_util.h"

namespace {

const char kNull[] = "null";

const char* Safe(const char* text) {
    return text ? text : "";
}

// Name look-up through an index that callers may have made stale by editing
// the public vectors: a hit is verified, a miss is confirmed by a scan, and a
// scan that finds the name rebuilds the index.
template <class NameAt, class Rebuild>
int LookUp(const std::unordered_map<std::string, int>& index, int size, NameAt nameAt,
           Rebuild rebuild, const char* name) {
    const std::string key(Safe(name));
    auto it = index.find(key);
    if (it != index.end() && it->second < size && nameAt(it->second) == key) return it->second;
    for (int i = 0; i < size; ++i) {
        if (nameAt(i) == key) {
            rebuild();
            return i;
        }
    }
    return -1;
}

bool ParseWholeInt(const std::string& text, long* value) {
    const char* p = text.c_str();
    while (*p == ' ' || *p == '\t') ++p;
    if (!*p) return false;
    char* end = nullptr;
    errno = 0;
    *value = std::strtol(p, &end, 10);
    if (end == p || errno == ERANGE) return false;
    while (*end == ' ' || *end == '\t') ++end;
    return *end == '\0';
}

bool ParseWholeDouble(const std::string& text, double* value) {
    const char* p = text.c_str();
    if (!*p) return false;
    char* end = nullptr;
    *value = std::strtod(p, &end);
    if (end == p || std::isnan(*value)) return false;
    while (*end == ' ' || *end == '\t') ++end;
    return *end == '\0';
}

PD_COEF NullCoef() {
    PD_COEF c;
    for (char l = 'A'; l <= 'J'; ++l) *c.Letter(l) = kNull;
    return c;
}

}  // namespace

const char* SectionKindWord(SectionKind kind) {
    static const char* const words[] = {"_KEYSECT", "_TBLSECT", "_PWRSECT"};
    const int k = static_cast<int>(kind);
    return k >= 0 && k < 3 ? words[k] : "";
}

// ---------------------------------------------------------------- PD_KEYSECT

void PD_KEYSECT::Reindex() const {
    index_.clear();
    for (std::size_t i = 0; i < keys.size(); ++i)
        index_.emplace(keys[i].first, static_cast<int>(i));
    index_valid_ = true;
}

int PD_KEYSECT::GetKeyIndex(const char* key) const {
    if (!index_valid_) Reindex();
    return LookUp(
        index_, GetNumOfKeys(), [this](int i) -> const std::string& { return keys[i].first; },
        [this] { Reindex(); }, key);
}

const char* PD_KEYSECT::GetValue(const char* key) const {
    return GetValue(GetKeyIndex(key));
}

const char* PD_KEYSECT::GetValue(int index) const {
    return index >= 0 && index < GetNumOfKeys() ? keys[index].second.c_str() : "";
}

const char* PD_KEYSECT::GetKey(int index) const {
    return index >= 0 && index < GetNumOfKeys() ? keys[index].first.c_str() : "";
}

void PD_KEYSECT::AddKeyVal(const char* key, const char* value) {
    const int i = GetKeyIndex(key);
    if (i >= 0) {
        keys[i].second = Safe(value);
        return;
    }
    keys.emplace_back(Safe(key), Safe(value));
    index_.emplace(keys.back().first, GetNumOfKeys() - 1);
}

void PD_KEYSECT::RemoveKey(const char* key) {
    const int i = GetKeyIndex(key);
    if (i < 0) return;
    keys.erase(keys.begin() + i);
    index_valid_ = false;
}

bool PD_KEYSECT::GetFromulaTree(const char*) const {
    return false;
}

// ------------------------------------------------------------------ PD_TABLE

namespace {

// The project list form: comma separated, and in the first entry the first
// "=" separates too; blanks around entries dropped; no quoting.
std::vector<std::string> SplitList(const char* list) {
    std::vector<std::string> out;
    const std::string text(Safe(list));
    std::size_t start = 0;
    while (start < text.size() && (text[start] == ' ' || text[start] == '\t')) ++start;
    if (start == text.size()) return out;
    auto push = [&out, &text](std::size_t from, std::size_t to) {
        while (from < to && (text[from] == ' ' || text[from] == '\t')) ++from;
        while (to > from && (text[to - 1] == ' ' || text[to - 1] == '\t')) --to;
        out.emplace_back(text, from, to - from);
    };
    const std::size_t comma = text.find(',');
    const std::size_t eq = text.find('=');
    std::size_t pos = 0;
    if (eq != std::string::npos && (comma == std::string::npos || eq < comma)) {
        push(0, eq);
        pos = eq + 1;
    }
    for (;;) {
        const std::size_t next = text.find(',', pos);
        if (next == std::string::npos) {
            push(pos, text.size());
            break;
        }
        push(pos, next);
        pos = next + 1;
    }
    return out;
}

}  // namespace

void PD_TABLE::Reindex() const {
    column_index_.clear();
    for (std::size_t i = 0; i < columns.size(); ++i)
        column_index_.emplace(columns[i], static_cast<int>(i));
    column_index_valid_ = true;
}

void PD_TABLE::SetTableHeader(const char* list) {
    SetColumns(SplitList(list));
}

void PD_TABLE::AddTableData(const char* list) {
    AddRow(SplitList(list));
}

void PD_TABLE::AddRow(const std::vector<std::string>& cells) {
    Row row(columns.size());
    for (std::size_t i = 0; i < row.size() && i < cells.size(); ++i) row[i].text = cells[i];
    rows.push_back(std::move(row));
}

void PD_TABLE::SetColumns(const std::vector<std::string>& names) {
    columns = names;
    for (Row& row : rows) row.resize(columns.size());
    column_index_valid_ = false;
}

void PD_TABLE::AddColumn(const char* name, int position) {
    const int n = GetNumOfColumns();
    if (position < 0 || position > n) position = n;
    columns.insert(columns.begin() + position, Safe(name));
    for (Row& row : rows) {
        if (static_cast<int>(row.size()) >= position)
            row.insert(row.begin() + position, Cell());
        else
            row.resize(columns.size());
    }
    column_index_valid_ = false;
}

void PD_TABLE::RemoveRow(int row) {
    if (row >= 0 && row < GetNumOfRows()) rows.erase(rows.begin() + row);
}

void PD_TABLE::RemoveAllRows() {
    rows.clear();
}

const char* PD_TABLE::GetColumnName(int column) const {
    return column >= 0 && column < GetNumOfColumns() ? columns[column].c_str() : "";
}

int PD_TABLE::GetColumnIndex(const char* name) const {
    if (!column_index_valid_) Reindex();
    return LookUp(
        column_index_, GetNumOfColumns(),
        [this](int i) -> const std::string& { return columns[i]; }, [this] { Reindex(); }, name);
}

const char* PD_TABLE::GetValueAt(int row, int column) const {
    if (row < 0 || row >= GetNumOfRows() || column < 0) return "";
    const Row& r = rows[row];
    return column < static_cast<int>(r.size()) ? r[column].text.c_str() : "";
}

const char* PD_TABLE::GetValueAt(const char* key, const char* column) const {
    return GetValueAt(GetRowNumber(std::string(Safe(key))), GetColumnIndex(column));
}

double PD_TABLE::GetDoubleValueAt(int row, int column) const {
    return std::atof(GetValueAt(row, column));
}

std::string PD_TABLE::GetNoRoundValueAt(int row, int column) const {
    if (row < 0 || row >= GetNumOfRows() || column < 0) return "";
    const Row& r = rows[row];
    if (column >= static_cast<int>(r.size())) return "";
    return r[column].full.empty() ? r[column].text : r[column].full;
}

void PD_TABLE::SetValueAt(const char* text, int row, int column) {
    if (row < 0 || row >= GetNumOfRows() || column < 0) return;
    Row& r = rows[row];
    if (column >= static_cast<int>(r.size())) return;
    r[column].text = Safe(text);
    r[column].full.clear();
}

void PD_TABLE::SetRoundedValueAt(const char* rounded, int row, int column) {
    if (row < 0 || row >= GetNumOfRows() || column < 0) return;
    Row& r = rows[row];
    if (column >= static_cast<int>(r.size())) return;
    Cell& cell = r[column];
    // A second rounding keeps the full value of the first.
    if (cell.full.empty()) cell.full = cell.text;
    cell.text = Safe(rounded);
}

int PD_TABLE::GetRowNumber(const std::string& key) const {
    for (int i = 0; i < GetNumOfRows(); ++i)
        if (!rows[i].empty() && rows[i][0].text == key) return i;
    return -1;
}

int PD_TABLE::GetRowNumber(int number) const {
    long value = 0;
    for (int i = 0; i < GetNumOfRows(); ++i)
        if (!rows[i].empty() && ParseWholeInt(rows[i][0].text, &value) && value == number) return i;
    return -1;
}

int PD_TABLE::GetKeyTableRowIndex(const char* key) const {
    const std::string wanted(Safe(key));
    const std::size_t parts = 1 + std::count(wanted.begin(), wanted.end(), ',');
    std::string joined;
    for (int i = 0; i < GetNumOfRows(); ++i) {
        const Row& r = rows[i];
        if (r.size() < parts) continue;
        joined.clear();
        for (std::size_t k = 0; k < parts; ++k) {
            if (k) joined += ',';
            joined += r[k].text;
        }
        if (joined == wanted) return i;
    }
    return -1;
}

void PD_TABLE::SortRowData(const char* column) {
    const int c = GetColumnIndex(column);
    if (c < 0 || rows.size() < 2) return;
    struct Entry {
        const std::string* text;
        double number;
        bool numeric;
        std::size_t row;
    };
    std::vector<Entry> entries(rows.size());
    static const std::string empty;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        Entry& e = entries[i];
        e.text = static_cast<int>(rows[i].size()) > c ? &rows[i][c].text : &empty;
        e.numeric = ParseWholeDouble(*e.text, &e.number);
        e.row = i;
    }
    auto less = [](const Entry& a, const Entry& b) {
        if (a.numeric && b.numeric) return a.number < b.number;
        return *a.text < *b.text;
    };
    // Mixed numeric and text cells make no strict weak order, so a plain
    // bottom-up merge sort (stable, safe with any comparison) does the work.
    std::vector<Entry> buffer(entries.size());
    for (std::size_t width = 1; width < entries.size(); width *= 2) {
        for (std::size_t lo = 0; lo < entries.size(); lo += 2 * width) {
            const std::size_t mid = std::min(lo + width, entries.size());
            const std::size_t hi = std::min(lo + 2 * width, entries.size());
            std::size_t a = lo, b = mid, out = lo;
            while (a < mid && b < hi)
                buffer[out++] = less(entries[b], entries[a]) ? entries[b++] : entries[a++];
            while (a < mid) buffer[out++] = entries[a++];
            while (b < hi) buffer[out++] = entries[b++];
        }
        entries.swap(buffer);
    }
    std::vector<Row> sorted;
    sorted.reserve(rows.size());
    for (const Entry& e : entries) sorted.push_back(std::move(rows[e.row]));
    rows.swap(sorted);
}

void PD_TABLE::Copy(const PD_TABLE* other) {
    if (!other || other == this) return;
    columns = other->columns;
    rows = other->rows;
    column_index_valid_ = false;
}

void PD_TABLE::Dump() const {
    std::string line = "Table \"" + name + "\":";
    for (const std::string& c : columns) line += " [" + c + "]";
    PD_UTIL::Fprintln(line);
    for (const Row& r : rows) {
        line = " ";
        for (const Cell& cell : r) {
            line += " [" + cell.text;
            if (!cell.full.empty()) line += " | " + cell.full;
            line += "]";
        }
        PD_UTIL::Fprintln(line);
    }
}

// ---------------------------------------------------------------- PD_PWRSECT

std::string* PD_COEF::Letter(char letter) {
    std::string* const all[] = {&A, &B, &C, &D, &E, &F, &G, &H, &I, &J};
    return letter >= 'A' && letter <= 'J' ? all[letter - 'A'] : nullptr;
}

const std::string* PD_COEF::Letter(char letter) const {
    return const_cast<PD_COEF*>(this)->Letter(letter);
}

const std::string* PD_DCBLOCK::Letter(char letter) const {
    const std::string* const all[] = {&A, &B, nullptr, &D, &E, &F, &G, &H, &I, &J};
    return letter >= 'A' && letter <= 'J' ? all[letter - 'A'] : nullptr;
}

void PD_PWRSECT::Reindex() const {
    supply_index_.clear();
    member_index_.clear();
    for (std::size_t i = 0; i < supplies.size(); ++i)
        supply_index_.emplace(supplies[i], static_cast<int>(i));
    for (std::size_t i = 0; i < members.size(); ++i)
        member_index_.emplace(members[i].name, static_cast<int>(i));
    index_valid_ = true;
}

const char* PD_PWRSECT::GetSupply(int index) const {
    return index >= 0 && index < GetNumOfSupplies() ? supplies[index].c_str() : "";
}

const PD_MEMBER* PD_PWRSECT::GetMember(int index) const {
    return index >= 0 && index < GetNumOfMembers() ? &members[index] : nullptr;
}

const char* PD_PWRSECT::GetKeyPower(int index) const {
    return index >= 0 && index < GetNumOfMembers() ? members[index].name.c_str() : "";
}

int PD_PWRSECT::GetSupplyIndex(const char* supply) const {
    if (!index_valid_) Reindex();
    return LookUp(
        supply_index_, GetNumOfSupplies(),
        [this](int i) -> const std::string& { return supplies[i]; }, [this] { Reindex(); }, supply);
}

int PD_PWRSECT::GetMemberIndex(const char* member) const {
    if (!index_valid_) Reindex();
    return LookUp(
        member_index_, GetNumOfMembers(),
        [this](int i) -> const std::string& { return members[i].name; }, [this] { Reindex(); },
        member);
}

const PD_COEF* PD_PWRSECT::GetABCD(const char* member, const char* supply) const {
    const int m = GetMemberIndex(member);
    const int s = GetSupplyIndex(supply);
    if (m < 0 || s < 0 || s >= static_cast<int>(members[m].coefs.size())) return nullptr;
    return &members[m].coefs[s];
}

const char* PD_PWRSECT::GetLetter(char letter, const char* member, const char* supply) const {
    const PD_COEF* coef = GetABCD(member, supply);
    const std::string* text = coef ? coef->Letter(letter) : nullptr;
    return text ? text->c_str() : kNull;
}

const char* PD_PWRSECT::GetA(const char* m, const char* s) const {
    return GetLetter('A', m, s);
}
const char* PD_PWRSECT::GetB(const char* m, const char* s) const {
    return GetLetter('B', m, s);
}
const char* PD_PWRSECT::GetC(const char* m, const char* s) const {
    return GetLetter('C', m, s);
}
const char* PD_PWRSECT::GetD(const char* m, const char* s) const {
    return GetLetter('D', m, s);
}
const char* PD_PWRSECT::GetE(const char* m, const char* s) const {
    return GetLetter('E', m, s);
}
const char* PD_PWRSECT::GetF(const char* m, const char* s) const {
    return GetLetter('F', m, s);
}
const char* PD_PWRSECT::GetG(const char* m, const char* s) const {
    return GetLetter('G', m, s);
}
const char* PD_PWRSECT::GetH(const char* m, const char* s) const {
    return GetLetter('H', m, s);
}
const char* PD_PWRSECT::GetI(const char* m, const char* s) const {
    return GetLetter('I', m, s);
}
const char* PD_PWRSECT::GetJ(const char* m, const char* s) const {
    return GetLetter('J', m, s);
}

const PD_DCBLOCK* PD_PWRSECT::GetDCblockUsed(const char* supply) const {
    const int s = GetSupplyIndex(supply);
    return s >= 0 && s < static_cast<int>(blocks.size()) ? &blocks[s].used : nullptr;
}

const PD_DCBLOCK* PD_PWRSECT::GetDCblockUnused(const char* supply) const {
    const int s = GetSupplyIndex(supply);
    return s >= 0 && s < static_cast<int>(blocks.size()) ? &blocks[s].unused : nullptr;
}

const PD_DCBLOCK* PD_PWRSECT::GetDCblockSleep(const char* supply) const {
    const int s = GetSupplyIndex(supply);
    return s >= 0 && s < static_cast<int>(blocks.size()) && blocks[s].hasSleep ? &blocks[s].sleep
                                                                               : nullptr;
}

const PD_DCBLOCK* PD_PWRSECT::GetDCblockStandby(const char* supply) const {
    const int s = GetSupplyIndex(supply);
    return s >= 0 && s < static_cast<int>(blocks.size()) && blocks[s].hasStandby
               ? &blocks[s].standby
               : nullptr;
}

PD_DCBLOCK PD_NullDcBlock() {
    PD_DCBLOCK b;
    for (std::string* s : {&b.A, &b.B, &b.D, &b.E, &b.F, &b.G, &b.H, &b.I, &b.J}) *s = kNull;
    return b;
}

PD_SUPPLYBLOCKS PD_NullSupplyBlocks() {
    PD_SUPPLYBLOCKS b;
    b.used = PD_NullDcBlock();
    b.unused = b.used;
    return b;
}

PD_COEF PD_NullCoef() {
    return NullCoef();
}

int PD_PWRSECT::AddSupply(const char* supply) {
    const int existing = GetSupplyIndex(supply);
    if (existing >= 0) return existing;
    supplies.emplace_back(Safe(supply));
    const int s = GetNumOfSupplies() - 1;
    supply_index_.emplace(supplies.back(), s);
    for (PD_MEMBER& m : members) m.coefs.resize(supplies.size(), NullCoef());
    blocks.resize(supplies.size(), PD_NullSupplyBlocks());
    return s;
}

int PD_PWRSECT::AddMember(const char* member) {
    const int existing = GetMemberIndex(member);
    if (existing >= 0) return existing;
    members.push_back(PD_MEMBER{Safe(member), std::vector<PD_COEF>(supplies.size(), NullCoef())});
    const int m = GetNumOfMembers() - 1;
    member_index_.emplace(members.back().name, m);
    return m;
}

void PD_PWRSECT::SetCoef(const char* member, const char* supply, const PD_COEF& coef) {
    const int s = AddSupply(supply);
    const int m = AddMember(member);
    std::vector<PD_COEF>& coefs = members[m].coefs;
    if (static_cast<int>(coefs.size()) <= s) coefs.resize(s + 1, NullCoef());
    coefs[s] = coef;
}

PD_SUPPLYBLOCKS* PD_PWRSECT::Blocks(const char* supply) {
    const int s = AddSupply(supply);
    if (static_cast<int>(blocks.size()) <= s) blocks.resize(s + 1, PD_NullSupplyBlocks());
    return &blocks[s];
}

// ------------------------------------------------------------------- PD_DATA

PD_DATA::~PD_DATA() {
    Clear();
}

void PD_DATA::Reindex() const {
    index_.clear();
    for (std::size_t i = 0; i < sections.size(); ++i)
        if (sections[i]) index_.emplace(sections[i]->name, static_cast<int>(i));
    index_valid_ = true;
}

int PD_DATA::GetSectionIndex(const char* name) const {
    if (!index_valid_) Reindex();
    static const std::string none;
    return LookUp(
        index_, GetNumOfSections(),
        [this](int i) -> const std::string& { return sections[i] ? sections[i]->name : none; },
        [this] { Reindex(); }, name);
}

PD_SECTION* PD_DATA::GetSection(const char* name) const {
    return GetSection(GetSectionIndex(name));
}

PD_SECTION* PD_DATA::GetSection(int index) const {
    return index >= 0 && index < GetNumOfSections() ? sections[index] : nullptr;
}

const char* PD_DATA::GetSectionName(int index) const {
    const PD_SECTION* s = GetSection(index);
    return s ? s->GetName() : "";
}

bool PD_DATA::DoesSectionExist(const char* name) const {
    return GetSectionIndex(name) >= 0;
}

void PD_DATA::AddSection(PD_SECTION* section) {
    if (!section) return;
    sections.push_back(section);
    if (index_valid_) index_.emplace(section->name, GetNumOfSections() - 1);
}

void PD_DATA::MergeSection(PD_SECTION* section) {
    if (!section) return;
    const int i = GetSectionIndex(section->GetName());
    if (i < 0) {
        AddSection(section);
        return;
    }
    PD_SECTION* target = sections[i];
    if (target == section) return;
    if (target->GetSectionKind() != section->GetSectionKind()) {
        // Another kind cannot be folded in: the newer section replaces it.
        delete target;
        sections[i] = section;
        return;
    }
    switch (section->GetSectionKind()) {
        case KEYSECT: {
            auto* to = static_cast<PD_KEYSECT*>(target);
            for (const auto& kv : static_cast<PD_KEYSECT*>(section)->keys)
                to->AddKeyVal(kv.first.c_str(), kv.second.c_str());
            break;
        }
        case TBLSECT: {
            auto* to = dynamic_cast<PD_TBLSECT*>(target);
            auto* from = dynamic_cast<PD_TBLSECT*>(section);
            std::vector<int> map(from->columns.size());
            for (std::size_t c = 0; c < from->columns.size(); ++c) {
                int at = to->GetColumnIndex(from->columns[c].c_str());
                if (at < 0) {
                    at = to->GetNumOfColumns();
                    to->AddColumn(from->columns[c].c_str(), at);
                }
                map[c] = at;
            }
            for (PD_TABLE::Row& row : from->rows) {
                PD_TABLE::Row out(to->columns.size());
                for (std::size_t c = 0; c < row.size() && c < map.size(); ++c)
                    out[map[c]] = std::move(row[c]);
                to->rows.push_back(std::move(out));
            }
            break;
        }
        case PWRSECT: {
            auto* to = static_cast<PD_PWRSECT*>(target);
            auto* from = static_cast<PD_PWRSECT*>(section);
            for (const std::string& s : from->supplies) to->AddSupply(s.c_str());
            for (const PD_MEMBER& m : from->members)
                for (std::size_t s = 0; s < from->supplies.size() && s < m.coefs.size(); ++s)
                    to->SetCoef(m.name.c_str(), from->supplies[s].c_str(), m.coefs[s]);
            for (std::size_t s = 0; s < from->supplies.size() && s < from->blocks.size(); ++s) {
                const PD_SUPPLYBLOCKS& b = from->blocks[s];
                PD_SUPPLYBLOCKS* into = to->Blocks(from->supplies[s].c_str());
                into->used = b.used;
                into->unused = b.unused;
                if (b.hasSleep) into->sleep = b.sleep, into->hasSleep = true;
                if (b.hasStandby) into->standby = b.standby, into->hasStandby = true;
            }
            break;
        }
    }
    delete section;
}

void PD_DATA::RemoveSection(int index) {
    if (index < 0 || index >= GetNumOfSections()) return;
    delete sections[index];
    sections.erase(sections.begin() + index);
    index_valid_ = false;
}

void PD_DATA::Clear() {
    for (PD_SECTION* s : sections) delete s;
    sections.clear();
    index_.clear();
    index_valid_ = false;
}
