// The binary form of data files (docs/data-format.md): little-endian, strings
// as a u32 length and the bytes.
#include <cstdint>
#include <cstring>

#include "pd_format.h"

namespace {

const char kMagic[] = "PWCB";
const unsigned char kVersion = 1;
// The fewest bytes a section can take: kind, name length, one count.
const std::uint64_t kMinSection = 9;
const int kDcLetters = 9;

std::string* DcLetter(PD_DCBLOCK& b, int i) {
    std::string* const all[] = {&b.A, &b.B, &b.D, &b.E, &b.F, &b.G, &b.H, &b.I, &b.J};
    return all[i];
}

}  // namespace

class PD_FORMAT::BinReader {
  public:
    BinReader(PD_DATA& data, const std::string& bytes)
        : data_(data),
          p_(reinterpret_cast<const unsigned char*>(bytes.data())),
          size_(bytes.size()) {}

    bool Run(std::string* error);

  private:
    bool Fail(std::size_t at, const std::string& what) {
        error_ = "byte " + std::to_string(at) + ": " + what;
        return false;
    }
    std::uint64_t Left() const { return size_ - pos_; }
    bool U8(unsigned char& v) {
        if (Left() < 1) return Fail(pos_, "file ends early");
        v = p_[pos_++];
        return true;
    }
    bool U32(std::uint32_t& v) {
        if (Left() < 4) return Fail(pos_, "file ends early");
        v = static_cast<std::uint32_t>(p_[pos_]) | static_cast<std::uint32_t>(p_[pos_ + 1]) << 8 |
            static_cast<std::uint32_t>(p_[pos_ + 2]) << 16 |
            static_cast<std::uint32_t>(p_[pos_ + 3]) << 24;
        pos_ += 4;
        return true;
    }
    bool Str(std::string& out) {
        const std::size_t at = pos_;
        std::uint32_t len = 0;
        if (!U32(len)) return false;
        if (len > Left())
            return Fail(at, "string of " + std::to_string(len) + " bytes, only " +
                                std::to_string(Left()) + " left");
        out.assign(reinterpret_cast<const char*>(p_ + pos_), len);
        pos_ += len;
        return true;
    }
    // A count of items of at least `each` bytes must fit in what is left.
    bool Count(std::uint32_t& n, std::uint64_t each, const char* what) {
        const std::size_t at = pos_;
        if (!U32(n)) return false;
        if (static_cast<std::uint64_t>(n) * each > Left())
            return Fail(
                at, std::string(what) + " count " + std::to_string(n) + " exceeds the bytes left");
        return true;
    }

    bool KeyBody(PD_KEYSECT& s);
    bool TableBody(PD_TBLSECT& s);
    bool PowerBody(PD_PWRSECT& s);

    PD_DATA& data_;
    const unsigned char* p_;
    std::size_t size_;
    std::size_t pos_ = 0;
    std::string error_;
};

bool PD_FORMAT::BinReader::KeyBody(PD_KEYSECT& s) {
    std::uint32_t n = 0;
    if (!Count(n, 8, "key")) return false;
    s.keys.resize(n);
    for (std::uint32_t i = 0; i < n; ++i) {
        const std::size_t at = pos_;
        if (!Str(s.keys[i].first) || !Str(s.keys[i].second)) return false;
        if (!s.index_.emplace(s.keys[i].first, static_cast<int>(i)).second)
            return Fail(at, "duplicate key \"" + s.keys[i].first + "\"");
    }
    s.index_valid_ = true;
    return true;
}

bool PD_FORMAT::BinReader::TableBody(PD_TBLSECT& s) {
    std::uint32_t cols = 0, rows = 0;
    if (!Count(cols, 4, "column")) return false;
    s.columns.resize(cols);
    for (std::string& c : s.columns)
        if (!Str(c)) return false;
    const std::size_t at = pos_;
    if (!Count(rows, 4 * static_cast<std::uint64_t>(cols), "row")) return false;
    if (cols == 0 && rows > 0) return Fail(at, "rows in a table without columns");
    s.rows.resize(rows);
    for (PD_TABLE::Row& row : s.rows) {
        row.resize(cols);
        for (PD_TABLE::Cell& cell : row)
            if (!Str(cell.text)) return false;
    }
    return true;
}

bool PD_FORMAT::BinReader::PowerBody(PD_PWRSECT& s) {
    std::uint32_t nsup = 0, nmem = 0;
    if (!Count(nsup, 5, "supply")) return false;
    s.supplies.resize(nsup);
    for (std::uint32_t i = 0; i < nsup; ++i) {
        const std::size_t at = pos_;
        if (!Str(s.supplies[i])) return false;
        if (!s.supply_index_.emplace(s.supplies[i], static_cast<int>(i)).second)
            return Fail(at, "duplicate supply \"" + s.supplies[i] + "\"");
    }
    const std::size_t at = pos_;
    if (!Count(nmem, 4 + 40 * static_cast<std::uint64_t>(nsup), "member")) return false;
    if (nsup == 0 && nmem > 0) return Fail(at, "members in a power section without supplies");
    s.members.resize(nmem);
    for (std::uint32_t i = 0; i < nmem; ++i) {
        PD_MEMBER& m = s.members[i];
        const std::size_t nameAt = pos_;
        if (!Str(m.name)) return false;
        if (!s.member_index_.emplace(m.name, static_cast<int>(i)).second)
            return Fail(nameAt, "duplicate member \"" + m.name + "\"");
        m.coefs.resize(nsup);
        for (PD_COEF& c : m.coefs)
            for (char l = 'A'; l <= 'J'; ++l)
                if (!Str(*c.Letter(l))) return false;
    }
    // Each supply has at least its mask and the used and unused records.
    if (static_cast<std::uint64_t>(nsup) * (1 + 2 * kDcLetters * 4) > Left())
        return Fail(pos_, "file ends early");
    s.blocks.resize(nsup);
    for (PD_SUPPLYBLOCKS& b : s.blocks) {
        const std::size_t maskAt = pos_;
        unsigned char mask = 0;
        if (!U8(mask)) return false;
        if ((mask & 3) != 3 || (mask & 0xf0) != 0)
            return Fail(maskAt, "bad DC-block mask " + std::to_string(mask));
        b.hasSleep = (mask & 4) != 0;
        b.hasStandby = (mask & 8) != 0;
        PD_DCBLOCK* const recs[] = {&b.used, &b.unused, &b.sleep, &b.standby};
        for (int k = 0; k < 4; ++k) {
            if (!(mask & (1u << k))) continue;
            for (int l = 0; l < kDcLetters; ++l)
                if (!Str(*DcLetter(*recs[k], l))) return false;
        }
    }
    s.index_valid_ = true;
    return true;
}

bool PD_FORMAT::BinReader::Run(std::string* error) {
    bool ok = true;
    if (size_ < 4 || std::memcmp(p_, kMagic, 4) != 0) {
        ok = Fail(0, "not a binary data file (no \"PWCB\" magic)");
    } else {
        pos_ = 4;
        unsigned char version = 0;
        std::uint32_t count = 0;
        ok = U8(version);
        if (ok && version != kVersion)
            ok = Fail(4, "unsupported version " + std::to_string(version));
        ok = ok && Count(count, kMinSection, "section");
        for (std::uint32_t i = 0; ok && i < count; ++i) {
            const std::size_t at = pos_;
            unsigned char kind = 0;
            std::string name;
            if (!U8(kind) || !Str(name)) {
                ok = false;
                break;
            }
            PD_SECTION* sect = nullptr;
            switch (kind) {
                case KEYSECT:
                    sect = new PD_KEYSECT();
                    break;
                case TBLSECT:
                    sect = new PD_TBLSECT();
                    break;
                case PWRSECT:
                    sect = new PD_PWRSECT();
                    break;
                default:
                    ok = Fail(at, "unknown section kind " + std::to_string(kind));
                    continue;
            }
            sect->name = std::move(name);
            data_.sections.push_back(sect);
            if (!data_.index_.emplace(sect->name, static_cast<int>(i)).second) {
                ok = Fail(at, "duplicate section \"" + sect->name + "\"");
                break;
            }
            switch (kind) {
                case KEYSECT:
                    ok = KeyBody(*static_cast<PD_KEYSECT*>(sect));
                    break;
                case TBLSECT:
                    ok = TableBody(*static_cast<PD_TBLSECT*>(sect));
                    break;
                case PWRSECT:
                    ok = PowerBody(*static_cast<PD_PWRSECT*>(sect));
                    break;
            }
        }
        if (ok && pos_ != size_)
            ok = Fail(pos_,
                      std::to_string(size_ - pos_) + " bytes left over after the last section");
    }
    if (!ok) {
        if (error) *error = error_;
        return false;
    }
    data_.index_valid_ = true;
    return true;
}

namespace {

void PutU32(std::string& out, std::size_t v) {
    const char b[4] = {static_cast<char>(v), static_cast<char>(v >> 8), static_cast<char>(v >> 16),
                       static_cast<char>(v >> 24)};
    out.append(b, 4);
}

void PutStr(std::string& out, const std::string& s) {
    PutU32(out, s.size());
    out += s;
}

}  // namespace

bool PD_FORMAT::ParseBinary(PD_DATA& data, const std::string& bytes, std::string* error) {
    data.Clear();
    BinReader reader(data, bytes);
    if (reader.Run(error)) return true;
    data.Clear();
    return false;
}

std::string PD_FORMAT::ToBinary(const PD_DATA& data) {
    std::string out(kMagic, 4);
    out += static_cast<char>(kVersion);
    std::size_t count = 0;
    for (const PD_SECTION* s : data.sections) count += s != nullptr;
    PutU32(out, count);
    static const std::string empty;
    static const PD_COEF nullCoef = PD_NullCoef();
    static const PD_SUPPLYBLOCKS nullBlocks = PD_NullSupplyBlocks();
    for (const PD_SECTION* sect : data.sections) {
        if (!sect) continue;
        out += static_cast<char>(sect->GetSectionKind());
        PutStr(out, sect->name);
        switch (sect->GetSectionKind()) {
            case KEYSECT: {
                const auto& keys = static_cast<const PD_KEYSECT*>(sect)->keys;
                PutU32(out, keys.size());
                for (const auto& kv : keys) {
                    PutStr(out, kv.first);
                    PutStr(out, kv.second);
                }
                break;
            }
            case TBLSECT: {
                const auto* t = dynamic_cast<const PD_TBLSECT*>(sect);
                const std::size_t cols = t->columns.size();
                PutU32(out, cols);
                for (const std::string& c : t->columns) PutStr(out, c);
                PutU32(out, cols ? t->rows.size() : 0);
                if (cols == 0) break;
                for (const PD_TABLE::Row& row : t->rows)
                    for (std::size_t c = 0; c < cols; ++c)
                        PutStr(out, c < row.size() ? row[c].text : empty);
                break;
            }
            case PWRSECT: {
                const auto* p = static_cast<const PD_PWRSECT*>(sect);
                const std::size_t nsup = p->supplies.size();
                PutU32(out, nsup);
                for (const std::string& s : p->supplies) PutStr(out, s);
                PutU32(out, nsup ? p->members.size() : 0);
                if (nsup == 0) break;
                for (const PD_MEMBER& m : p->members) {
                    PutStr(out, m.name);
                    for (std::size_t s = 0; s < nsup; ++s) {
                        const PD_COEF& c = s < m.coefs.size() ? m.coefs[s] : nullCoef;
                        for (char l = 'A'; l <= 'J'; ++l) PutStr(out, *c.Letter(l));
                    }
                }
                for (std::size_t s = 0; s < nsup; ++s) {
                    PD_SUPPLYBLOCKS b = s < p->blocks.size() ? p->blocks[s] : nullBlocks;
                    out += static_cast<char>(3 | (b.hasSleep ? 4 : 0) | (b.hasStandby ? 8 : 0));
                    const bool present[] = {true, true, b.hasSleep, b.hasStandby};
                    PD_DCBLOCK* const recs[] = {&b.used, &b.unused, &b.sleep, &b.standby};
                    for (int k = 0; k < 4; ++k)
                        if (present[k])
                            for (int l = 0; l < kDcLetters; ++l)
                                PutStr(out, *DcLetter(*recs[k], l));
                }
                break;
            }
        }
    }
    return out;
}
