// The sectioned data store: device data files, project files and the
// calculator's tables all live in PD_DATA objects made of named sections.
#ifndef PWC_PD_DATA_H
#define PWC_PD_DATA_H

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

// Kind of a section; the values are those of the file formats.
enum SectionKind { KEYSECT = 0, TBLSECT = 1, PWRSECT = 2 };

// Word used for a kind in messages: "_KEYSECT", "_TBLSECT", "_PWRSECT".
const char* SectionKindWord(SectionKind kind);

class PD_BASE {
  public:
    PD_BASE() = default;
    explicit PD_BASE(const char* n) : name(n ? n : "") {}
    virtual ~PD_BASE() = default;
    void SetName(const char* n) { name = n ? n : ""; }
    const char* GetName() const { return name.c_str(); }

    std::string name;
};

class PD_SECTION : public virtual PD_BASE {
  public:
    virtual SectionKind GetSectionKind() const = 0;
    // A deep copy of the section, of its own kind.
    virtual PD_SECTION* Clone() const = 0;
};

// Key to value, unique keys, file order.
class PD_KEYSECT : public PD_SECTION {
  public:
    PD_KEYSECT() = default;
    explicit PD_KEYSECT(const char* n) : PD_BASE(n) {}
    SectionKind GetSectionKind() const override { return KEYSECT; }
    PD_SECTION* Clone() const override { return new PD_KEYSECT(*this); }

    int GetNumOfKeys() const { return static_cast<int>(keys.size()); }
    // Empty text, never null, for an absent key or index.
    const char* GetValue(const char* key) const;
    const char* GetValue(int index) const;
    const char* GetKey(int index) const;
    int GetKeyIndex(const char* key) const;
    // Adds, or replaces the value of an existing key.
    void AddKeyVal(const char* key, const char* value);
    void RemoveKey(const char* key);
    // The store keeps formulas as text only: no key is backed by a tree.
    bool GetFromulaTree(const char* key) const;

    std::vector<std::pair<std::string, std::string>> keys;

  private:
    friend struct PD_FORMAT;
    void Reindex() const;
    mutable std::unordered_map<std::string, int> index_;
    mutable bool index_valid_ = false;
};

// A table of text cells. A cell may keep its full-precision text behind the
// text it shows (see SetRoundedValueAt).
class PD_TABLE : public virtual PD_BASE {
  public:
    struct Cell {
        std::string text;
        std::string full;  // empty: the text is the full value
    };
    using Row = std::vector<Cell>;

    PD_TABLE() = default;
    explicit PD_TABLE(const char* n) : PD_BASE(n) {}
    virtual ~PD_TABLE() = default;

    // Comma lists; blanks around entries dropped; in the first entry the first
    // "=" also separates ("first=second,third").
    void SetTableHeader(const char* list);
    void AddTableData(const char* list);
    // Appends a row of cells as they stand (short rows are padded, long cut).
    void AddRow(const std::vector<std::string>& cells);
    void SetColumns(const std::vector<std::string>& names);
    void AddColumn(const char* name, int position);
    void RemoveRow(int row);
    void RemoveAllRows();

    int GetNumOfColumns() const { return static_cast<int>(columns.size()); }
    int GetNumOfRows() const { return static_cast<int>(rows.size()); }
    const char* GetColumnName(int column) const;
    int GetColumnIndex(const char* name) const;

    // Empty text for any index out of range.
    const char* GetValueAt(int row, int column) const;
    const char* GetValueAt(const char* key, const char* column) const;
    double GetDoubleValueAt(int row, int column) const;
    std::string GetNoRoundValueAt(int row, int column) const;
    // Stores a copy; does nothing for an index out of range.
    void SetValueAt(const char* text, int row, int column);
    // Shows the rounded text and keeps the previous text as the full value.
    void SetRoundedValueAt(const char* rounded, int row, int column);

    int GetRowNumber(const std::string& key) const;
    int GetRowNumber(int number) const;
    int GetKeyTableRowIndex(const char* key) const;
    void SortRowData(const char* column);
    void Copy(const PD_TABLE* other);
    void Dump() const;

    std::vector<std::string> columns;
    std::vector<Row> rows;

  private:
    friend struct PD_FORMAT;
    void Reindex() const;
    mutable std::unordered_map<std::string, int> column_index_;
    mutable bool column_index_valid_ = false;
};

class PD_TBLSECT : public PD_SECTION, public PD_TABLE {
  public:
    PD_TBLSECT() = default;
    explicit PD_TBLSECT(const char* n) : PD_BASE(n) {}
    SectionKind GetSectionKind() const override { return TBLSECT; }
    PD_SECTION* Clone() const override { return new PD_TBLSECT(*this); }
};

// Ten coefficient texts A to J of one member on one supply; "null" where the
// file gives none.
struct PD_COEF {
    std::string A, B, C, D, E, F, G, H, I, J;
    std::string* Letter(char letter);
    const std::string* Letter(char letter) const;
};

// A DC-block record: as PD_COEF without C.
struct PD_DCBLOCK {
    std::string A, B, D, E, F, G, H, I, J;
    const std::string* Letter(char letter) const;  // null for C or unknown
};

struct PD_MEMBER {
    std::string name;            // may carry "@" and a device pattern
    std::vector<PD_COEF> coefs;  // one per supply, in supply order
};

struct PD_SUPPLYBLOCKS {
    PD_DCBLOCK used, unused;
    bool hasSleep = false, hasStandby = false;
    PD_DCBLOCK sleep, standby;
};

class PD_PWRSECT : public PD_SECTION {
  public:
    PD_PWRSECT() = default;
    explicit PD_PWRSECT(const char* n) : PD_BASE(n) {}
    SectionKind GetSectionKind() const override { return PWRSECT; }
    PD_SECTION* Clone() const override { return new PD_PWRSECT(*this); }

    int GetNumOfSupplies() const { return static_cast<int>(supplies.size()); }
    int GetNumOfMembers() const { return static_cast<int>(members.size()); }
    const char* GetSupply(int index) const;
    const PD_MEMBER* GetMember(int index) const;
    const char* GetKeyPower(int index) const;
    int GetSupplyIndex(const char* supply) const;
    int GetMemberIndex(const char* member) const;

    // "null" when the member or supply is absent.
    const char* GetA(const char* member, const char* supply) const;
    const char* GetB(const char* member, const char* supply) const;
    const char* GetC(const char* member, const char* supply) const;
    const char* GetD(const char* member, const char* supply) const;
    const char* GetE(const char* member, const char* supply) const;
    const char* GetF(const char* member, const char* supply) const;
    const char* GetG(const char* member, const char* supply) const;
    const char* GetH(const char* member, const char* supply) const;
    const char* GetI(const char* member, const char* supply) const;
    const char* GetJ(const char* member, const char* supply) const;
    const char* GetLetter(char letter, const char* member, const char* supply) const;
    const PD_COEF* GetABCD(const char* member, const char* supply) const;  // null if absent

    // Null for an unknown supply; sleep and standby may be null.
    const PD_DCBLOCK* GetDCblockUsed(const char* supply) const;
    const PD_DCBLOCK* GetDCblockUnused(const char* supply) const;
    const PD_DCBLOCK* GetDCblockSleep(const char* supply) const;
    const PD_DCBLOCK* GetDCblockStandby(const char* supply) const;

    // Building (loaders, tests).
    int AddSupply(const char* supply);
    int AddMember(const char* member);  // existing index when present
    void SetCoef(const char* member, const char* supply, const PD_COEF& coef);
    PD_SUPPLYBLOCKS* Blocks(const char* supply);

    std::vector<std::string> supplies;
    std::vector<PD_MEMBER> members;
    std::vector<PD_SUPPLYBLOCKS> blocks;  // one per supply

  private:
    friend struct PD_FORMAT;
    void Reindex() const;
    mutable std::unordered_map<std::string, int> supply_index_, member_index_;
    mutable bool index_valid_ = false;
};

class PD_DATA {
  public:
    PD_DATA() = default;
    ~PD_DATA();
    PD_DATA(const PD_DATA&) = delete;
    PD_DATA& operator=(const PD_DATA&) = delete;

    // False, with a message on the error stream, when the file can't be read.
    bool LoadBinFile(const char* path);
    bool LoadTxtFile(const char* path);
    // Either form, told apart by PD_UTIL::IsBinaryFile.
    bool LoadFile(const char* path);
    // Written to a temporary file and renamed over the target.
    bool SaveBinFile(const char* path) const;
    bool SaveTxtFile(const char* path) const;
    // The same from and to memory; `origin` names the source in messages.
    bool ParseText(const std::string& text, const std::string& origin);
    bool ParseBinary(const std::string& bytes, const std::string& origin);
    std::string ToText() const;
    std::string ToBinary() const;

    int GetNumOfSections() const { return static_cast<int>(sections.size()); }
    PD_SECTION* GetSection(const char* name) const;
    PD_SECTION* GetSection(int index) const;
    int GetSectionIndex(const char* name) const;
    const char* GetSectionName(int index) const;
    bool DoesSectionExist(const char* name) const;
    void AddSection(PD_SECTION* section);
    void MergeSection(PD_SECTION* section);
    void RemoveSection(int index);
    void Clear();

    std::vector<PD_SECTION*> sections;

  private:
    friend struct PD_FORMAT;
    void Reindex() const;
    mutable std::unordered_map<std::string, int> index_;
    mutable bool index_valid_ = false;
};

#endif
