// Folding the tabs into the summary tables and the supply-by-block matrices.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>

#include "baspcengin.h"
#include "baspcformula/formula_util.h"
#include "eng_text.h"
#include "pc_families.h"
#include "pd_util.h"

using namespace pwc;

namespace {

// Where a block's dynamic power on a supply is read.
enum class Dyn {
    TotalDyn,               // "Total Dyn. Pwr (W)" of the total table
    TotalDynTag,            // "Total Dyn. <tag> Pwr (W)" of the total table
    TagColumns,             // "Dyn. <tag> Pwr (W)" over the item tables
    PlainColumn,            // "Dyn. Pwr (W)" over the item tables
    TotalDynTagAndColumns,  // both "Total Dyn. <tag> Pwr (W)" and the items' columns
};

// Where its static power is read.
enum class Static {
    Items,           // Leakage and DCbias over the items, Unused ones in the total
    EfbTotals,       // Total and Unused Leakage and DCbias of the total table
    TotalsOnly,      // Total Leakage and Total DCbias of the total table
    TotalsAndItems,  // Total Leakage and DCbias of the total table, and as Items
};

enum class Gate { None, HasSupply, HasVccbAndVccxp };

struct SupplyTerm {
    const char* row;  // row of "VDPM"
    const char* tag;  // supply in column names
    Dyn dyn;
    Static sta;
    Gate gate;
    bool matrixOnly;  // counted in the matrix, not in the supply rows
    // Read only on the part with supply categories; `row` is then mapped
    // through the plain category ("-1").
    bool categoryOnly = false;
};

enum class BlockRow { Always, IfDeviceHas, IfPanelExists };

struct BlockRule {
    std::vector<const char*> panels;  // summed together
    const char* block;                // row of "Block" and column of the matrices
    BlockRow row;
    const char* deviceKey;
    std::vector<SupplyTerm> terms;
};

SupplyTerm Vcc(Dyn d, Static s = Static::Items) {
    return {"Vcc", "VCC", d, s, Gate::None, false};
}
SupplyTerm Gated(const char* row, const char* tag, Dyn d, Static s = Static::Items,
                 Gate g = Gate::HasSupply) {
    return {row, tag, d, s, g, false};
}
// The plain VCCIO share of a core tab on the category part. Its switching
// power is also in the tab's "Total Dyn. Pwr (W)", which the Vcc term reads:
// see TermPower.
SupplyTerm CategoryVccio() {
    return {"Vccio", "VCCIO", Dyn::TagColumns, Static::Items, Gate::None, false, true};
}

// Each block's panels, supplies and the sources of its sums. A new tab adds
// its row here.
const std::vector<BlockRule>& BlockRules() {
    static const std::vector<BlockRule> rules = {
        {{"Logic Block"},
         "Logic Block",
         BlockRow::Always,
         nullptr,
         {Vcc(Dyn::TotalDyn), CategoryVccio()}},
        {{"I/O", "I/O Term"},
         "I/O",
         BlockRow::Always,
         nullptr,
         {Vcc(Dyn::TagColumns),
          {"Vccaux", "VCCAUX", Dyn::TagColumns, Static::Items, Gate::None, false}}},
        {{"Clocks"}, "Clocks", BlockRow::Always, nullptr, {Vcc(Dyn::TotalDyn), CategoryVccio()}},
        {{"EFB"}, "EFB", BlockRow::IfPanelExists, nullptr, {Vcc(Dyn::TotalDyn, Static::EfbTotals)}},
        {{"Block RAM"},
         "Block RAM",
         BlockRow::IfDeviceHas,
         "EBR",
         {Vcc(Dyn::PlainColumn), Gated("Vccm", "VCCM", Dyn::TagColumns)}},
        {{"DSP"}, "DSP", BlockRow::IfPanelExists, nullptr, {Vcc(Dyn::PlainColumn)}},
        {{"PLL"},
         "PLL",
         BlockRow::IfDeviceHas,
         "PLL",
         {Vcc(Dyn::TagColumns),
          Gated("Vccpll", "VCCPLL", Dyn::TagColumns),
          // Written to the matrix under "Vcc12", a row the matrix lacks.
          {"Vcc12", "VCC12", Dyn::TagColumns, Static::Items, Gate::None, true}}},
        {{"DLL"}, "DLL", BlockRow::IfDeviceHas, "DLL", {Vcc(Dyn::PlainColumn)}},
        {{"DQSDLL"}, "DQSDLL", BlockRow::IfDeviceHas, "DQSDLL", {Vcc(Dyn::PlainColumn)}},
        {{"DDRDLL"}, "DDRDLL", BlockRow::IfDeviceHas, "DDRDLL", {Vcc(Dyn::PlainColumn)}},
        {{"DLLDEL"}, "DLLDEL", BlockRow::IfPanelExists, nullptr, {Vcc(Dyn::TotalDyn)}},
        {{"DQS"}, "DQS", BlockRow::IfPanelExists, nullptr, {Vcc(Dyn::TotalDyn)}},
        {{"ESB"}, "ESB", BlockRow::IfPanelExists, nullptr, {Vcc(Dyn::TotalDyn)}},
        {{"MIPIDPHY"},
         "MIPIDPHY",
         BlockRow::IfPanelExists,
         nullptr,
         // One copy (the bare names) or two ("0", "1") of each supply, summed
         // per copy; only the package's own rows pass the supply gate.
         {Gated("Vcc_dphy", "VCC_DPHY", Dyn::TagColumns),
          Gated("Vcca_dphy", "VCCA_DPHY", Dyn::TagColumns),
          Gated("Vccpll_dphy", "VCCPLL_DPHY", Dyn::TagColumns),
          Gated("Vcc_dphy0", "VCC_DPHY0", Dyn::TagColumns),
          Gated("Vcc_dphy1", "VCC_DPHY1", Dyn::TagColumns),
          Gated("Vcca_dphy0", "VCCA_DPHY0", Dyn::TagColumns),
          Gated("Vcca_dphy1", "VCCA_DPHY1", Dyn::TagColumns),
          Gated("Vccpll_dphy0", "VCCPLL_DPHY0", Dyn::TagColumns),
          Gated("Vccpll_dphy1", "VCCPLL_DPHY1", Dyn::TagColumns)}},
        {{"FABA"}, "FABA", BlockRow::IfPanelExists, nullptr, {Vcc(Dyn::TotalDyn)}},
        // Its supplies go by row: see GetASCcurrentAndPower.
        {{"ASC"}, "ASC", BlockRow::IfPanelExists, nullptr, {}},
        {{"SERDES"},
         "SERDES",
         BlockRow::IfDeviceHas,
         "PCS",
         {Vcc(Dyn::TagColumns), Gated("Vcca", "VCCA", Dyn::TagColumns),
          Gated("Vcchtx", "VCCHTX", Dyn::TagColumns), Gated("Vcchrx", "VCCHRX", Dyn::TagColumns),
          Gated("Vccb", "VCCB", Dyn::TagColumns, Static::Items, Gate::HasVccbAndVccxp),
          Gated("Vccxp", "VCCXP", Dyn::TagColumns, Static::Items, Gate::HasVccbAndVccxp),
          Gated("Vccib", "VCCIB", Dyn::TagColumns), Gated("Vccob", "VCCOB", Dyn::TagColumns),
          Gated("Vcc1.2", "VCC12", Dyn::TagColumns), Gated("Vccauxa", "VCCAUXA", Dyn::TagColumns)}},
        // The always-on parts sit on the total table's own columns, the row
        // tables' power and what they leave free as in any other block.
        {{"Misc"},
         "Other",
         BlockRow::Always,
         nullptr,
         {Vcc(Dyn::TotalDynTagAndColumns, Static::TotalsAndItems),
          Gated("Vccj", "VCCJ", Dyn::TagColumns),
          {"Vccaux", "VCCAUX", Dyn::TotalDynTagAndColumns, Static::TotalsAndItems, Gate::None,
           false},
          Gated("Vcc1.2", "VCC12", Dyn::TotalDynTagAndColumns, Static::TotalsAndItems),
          Gated("Vccpm", "VCCPM", Dyn::TotalDynTag, Static::TotalsOnly),
          Gated("Vccjp", "VCCJP", Dyn::TotalDynTag, Static::TotalsOnly),
          Gated("Vccinp 3.3", "VCCINP33", Dyn::TotalDynTag, Static::TotalsOnly),
          Gated("Vccinp 5.0", "VCCINP50", Dyn::TotalDynTag, Static::TotalsOnly),
          Gated("Vccprog", "VCCPROG", Dyn::TotalDynTag, Static::TotalsOnly),
          Gated("Vpp2v5", "VPP2V5", Dyn::TotalDynTag, Static::TotalsOnly),
          Gated("Vccp", "VCCP", Dyn::TotalDynTag, Static::TotalsOnly)}},
        // Its supplies go by bank, through the category map (PfrSupplyTerms).
        {{"PFR"}, "PFR", BlockRow::IfPanelExists, nullptr, {}},
    };
    return rules;
}

// Sum of a named column over all rows of the tables; absent columns add 0.
double SumColumn(const std::vector<PD_TABLE*>& tables, const std::string& column) {
    double sum = 0.0;
    for (PD_TABLE* t : tables) {
        const int c = t->GetColumnIndex(column.c_str());
        if (c < 0) continue;
        for (int r = 0; r < t->GetNumOfRows(); ++r) sum += Num(t->GetValueAt(r, c));
    }
    return sum;
}

double Row0(PD_TABLE* t, const std::string& column) {
    return t ? Num(t->GetValueAt(0, t->GetColumnIndex(column.c_str()))) : 0.0;
}

// Static and dynamic power of one block on one supply, in watts.
struct BlockPower {
    double sta = 0.0;
    double dyn = 0.0;
};

// `vccioTerm`: the block's VCCIO columns are a term of their own (see
// CategoryVccio), so the total's dynamic power is read without them.
BlockPower TermPower(PC_PANEL* panel, const SupplyTerm& term, const std::string& tag,
                     bool vccioTerm) {
    std::vector<PD_TABLE*> items(panel->tables.begin(), panel->tables.end());
    PD_TABLE* total = items.empty() ? nullptr : items.back();
    if (!items.empty()) items.pop_back();
    BlockPower p;
    const double unused = Row0(total, "Unused Leakage " + tag + " Pwr (W)") +
                          Row0(total, "Unused DCbias " + tag + " Pwr (W)");
    const double totals = Row0(total, "Total Leakage " + tag + " Pwr (W)") +
                          Row0(total, "Total DCbias " + tag + " Pwr (W)");
    // Leakage and DCbias over the items and the unused row, after `start`.
    auto withItems = [&](double start) {
        return start + SumColumn(items, "Leakage " + tag + " Pwr (W)") +
               SumColumn(items, "DCbias " + tag + " Pwr (W)") + unused;
    };
    switch (term.sta) {
        case Static::Items:
            p.sta = withItems(0.0);
            break;
        case Static::EfbTotals:
            p.sta = totals + unused;
            break;
        case Static::TotalsOnly:
            p.sta = totals;
            break;
        case Static::TotalsAndItems:
            p.sta = withItems(totals);
            break;
    }
    // The banks' own columns hold no switching power of the I/O rows.
    items.erase(std::remove_if(items.begin(), items.end(),
                               [](PD_TABLE* t) { return t->name == "Bank Voltage"; }),
                items.end());
    switch (term.dyn) {
        case Dyn::TotalDyn:
            p.dyn = Row0(total, "Total Dyn. Pwr (W)");
            // The tab's total sums every dynamic column; the VCCIO share is
            // counted by the VCCIO term.
            if (vccioTerm) p.dyn -= SumColumn(items, "Dyn. VCCIO Pwr (W)");
            break;
        case Dyn::TotalDynTag:
            p.dyn = Row0(total, "Total Dyn. " + tag + " Pwr (W)");
            break;
        case Dyn::TagColumns:
            p.dyn = SumColumn(items, "Dyn. " + tag + " Pwr (W)");
            break;
        case Dyn::PlainColumn:
            p.dyn = SumColumn(items, "Dyn. Pwr (W)");
            break;
        case Dyn::TotalDynTagAndColumns:
            p.dyn = Row0(total, "Total Dyn. " + tag + " Pwr (W)") +
                    SumColumn(items, "Dyn. " + tag + " Pwr (W)");
            break;
    }
    return p;
}

}  // namespace

bool PC_ENG::HasVccbAndVccxp() const {
    return HasSupply("Vccb") && HasSupply("Vccxp");
}

std::vector<int> PC_ENG::GetPowerColumnIndexVector(PD_TABLE* table) const {
    std::vector<int> columns;
    for (int c = 0; c < table->GetNumOfColumns(); ++c)
        if (table->columns[c].find("Pwr (W)") != std::string::npos) columns.push_back(c);
    return columns;
}

void PC_ENG::CalculateTotalPower() {
    if (IsPfrArch(ArchName())) {
        CalculateTotalPowerCategory();
        return;
    }
    FoldTotals(false);
}

void PC_ENG::FoldTotals(bool category) {
    PD_TABLE* vdpm = GetSupplyTable();
    PD_TABLE* power = GetPowerTable();
    PD_TABLE* current = GetCurrentTable();
    PD_TABLE* block = GetBlockTable();
    if (!vdpm || !power || !current || !block) return;

    // Per supply row: static and dynamic watts, and per block their sum.
    std::map<std::string, BlockPower> supplyPower;
    std::map<std::string, std::map<std::string, double>> perBlock;
    std::map<std::string, double> blockValue;

    for (const BlockRule& rule : BlockRules()) {
        double value = 0.0;
        bool any = false;
        bool vccioTerm = false;
        for (const SupplyTerm& term : rule.terms) vccioTerm |= category && term.categoryOnly;
        for (const char* panelName : rule.panels) {
            PC_PANEL* panel = GetPanel(GetPanelIndex(panelName));
            if (!panel || panel->GetNumOfTables() == 0) continue;
            any = true;
            value += Row0(panel->GetTable(panel->GetNumOfTables() - 1), "Total Pwr (W)");
            for (const SupplyTerm& term : rule.terms) {
                if (term.categoryOnly && !category) continue;
                if (term.gate == Gate::HasSupply && !HasSupply(term.row)) continue;
                if (term.gate == Gate::HasVccbAndVccxp && !HasVccbAndVccxp()) continue;
                std::string row = term.row, tag = term.tag;
                // A logic tab without VCC columns reports on the power-gated supply.
                if (rule.block == std::string("Logic Block") && !term.categoryOnly &&
                    panel->GetTable(0) &&
                    panel->GetTable(0)->GetColumnIndex("Leakage VCC Pwr (W)") < 0) {
                    row = "Vccpg";
                    tag = "VCCPG";
                }
                if (category) row = FindSupplyCategory(row, "-1");
                BlockPower p = TermPower(panel, term, tag, vccioTerm);
                perBlock[row][rule.block] += p.sta + p.dyn;
                if (term.matrixOnly) continue;
                supplyPower[row].sta += p.sta;
                supplyPower[row].dyn += p.dyn;
            }
        }
        if (any) blockValue[rule.block] = value;
    }
    if (category) {
        for (const CategoryTerm& term : PfrSupplyTerms()) {
            perBlock[term.supply]["PFR"] += term.sta + term.dyn;
            supplyPower[term.supply].sta += term.sta;
            supplyPower[term.supply].dyn += term.dyn;
        }
        for (const CategoryTerm& term : IoCategorySpill()) {
            perBlock[term.supply]["I/O"] += term.sta + term.dyn;
            supplyPower[term.supply].sta += term.sta;
            supplyPower[term.supply].dyn += term.dyn;
        }
    }

    // ASC rails on the core supply join its static power; external rails
    // have summary rows of their own.
    if (AscPanel()) {
        std::map<std::string, double> ascRails;
        const double onVcc = GetASCcurrentAndPower(ascRails);
        ascRails[category ? FindSupplyCategory("Vcc", "-1") : std::string("Vcc")] += onVcc;
        for (const auto& [row, watts] : ascRails) {
            supplyPower[row].sta += watts;
            perBlock[row]["ASC"] += watts;
        }
    }

    for (const auto& r : perBlock)
        for (const auto& b : r.second) SaveStaTable(r.first, b.second, b.first, powerMatrix);

    if (category) {
        SetIOstaVccioVttVccauxXXCategory("");
        SetIOdynVccioVttVccauxXXCategory("");
    } else {
        SetIOstaVccioVttVccauxXX();
        SetIOdynVccioVttVccauxXX();
    }
    setStaTableForIoVttVccio(ioStaticPower, ioDynamicPower, powerMatrix);
    setStaTableForIoVttVccio(ioStaticCurrent, ioDynamicCurrent, currentMatrix);

    for (int r = 0; r < vdpm->GetNumOfRows(); ++r) {
        const std::string supply = vdpm->GetValueAt(r, 0);
        auto it = supplyPower.find(supply);
        if (it == supplyPower.end()) continue;
        // An external ASC rail is a row of its own, not a category.
        if (supply != "Vcc" && supply != "Vccaux" && !HasSupply(supply) && !ascRails.count(supply))
            continue;
        // On the category part a bank's rail carries the I/O tab's share too.
        if (category) {
            auto sta = ioStaticPower.find(supply);
            auto dyn = ioDynamicPower.find(supply);
            if (sta != ioStaticPower.end()) it->second.sta += sta->second;
            if (dyn != ioDynamicPower.end()) it->second.dyn += dyn->second;
        }
        power->SetValueAt(PrintFixed(it->second.sta, 20).c_str(), r, 0);
        power->SetValueAt(PrintFixed(it->second.dyn, 20).c_str(), r, 1);
        const double volts = Num(vdpm->GetValueAt(r, 1));
        if (volts == 0.0) continue;
        current->SetValueAt(PrintFixed(it->second.sta / volts, 20).c_str(), r, 0);
        current->SetValueAt(PrintFixed(it->second.dyn / volts, 20).c_str(), r, 1);
        for (const auto& b : perBlock[supply])
            SaveStaTable(supply, b.second / volts, b.first, currentMatrix);
    }

    for (int r = 0; r + 1 < block->GetNumOfRows(); ++r) {
        const std::string name = block->GetValueAt(r, 0);
        for (const BlockRule& rule : BlockRules()) {
            if (name != rule.block) continue;
            bool write = rule.row == BlockRow::Always;
            if (rule.row == BlockRow::IfDeviceHas) write = DeviceHas(rule.deviceKey) != 0.0;
            if (rule.row == BlockRow::IfPanelExists) write = blockValue.count(rule.block) > 0;
            if (write) block->SetValueAt(PrintFixed(blockValue[rule.block], 20).c_str(), r, 1);
        }
    }

    const int last = power->GetNumOfRows() - 1;
    for (int c = 0; c < 3; ++c) {
        power->SetValueAt("0.0", last, c);
        current->SetValueAt("0.0", last, c);
    }
    block->SetValueAt("0.0", block->GetNumOfRows() - 1, 1);
    for (PD_TABLE* t : {current, power})
        for (int r = 0; r < t->GetNumOfRows(); ++r)
            t->SetValueAt(PrintFixed(GetTotalRowButLastCol(t, r), 20).c_str(), r, 2);
    const double blockTotal = GetTotalSumRowDData(block, 1, block->GetNumOfRows());
    for (PD_TABLE* t : {current, power})
        for (int c = 0; c < 3; ++c)
            t->SetValueAt(PrintFixed(GetTotalSumRowDData(t, c, t->GetNumOfRows()), 20).c_str(),
                          last, c);
    block->SetValueAt(PrintFixed(blockTotal, 20).c_str(), block->GetNumOfRows() - 1, 1);

    DataValuePrecisionAdjustment();
    GetTotalStaTableCount(powerMatrix);
    GetTotalStaTableCount(currentMatrix);
}

void PC_ENG::DataValuePrecisionAdjustment() {
    const int decimals = IsSixDigitFamily(FamilyName()) ? 6 : 4;
    std::string text;
    auto round = [&](PD_TABLE* t, int c) {
        for (int r = 0; r < t->GetNumOfRows(); ++r) {
            pwcformula::PrintFixedTo(text, Num(t->GetValueAt(r, c)), decimals);
            t->SetRoundedValueAt(text.c_str(), r, c);
        }
    };
    for (PC_PANEL* panel : panels) {
        if (std::strcmp(panel->GetName(), "Summary") == 0) {
            for (const char* name : {"Power", "Current"})
                if (PD_TABLE* t = panel->GetTable(panel->GetTableIndex(name)))
                    for (int c = 0; c < 3; ++c) round(t, c);
            if (PD_TABLE* t = panel->GetTable(panel->GetTableIndex("Block"))) round(t, 1);
            continue;
        }
        for (PD_TABLE* t : panel->tables)
            for (int c : GetPowerColumnIndexVector(t)) round(t, c);
    }
}

// ---- The supply-by-block matrices ---------------------------------------

void PC_ENG::CreatePowerMatrices() {
    const char* zero = IsSixDigitMatrixFamily(FamilyName()) ? "0.000000" : "0.0000";
    std::vector<std::string> header{"Supply\\Blocks"};
    for (PC_PANEL* panel : panels) {
        std::string name = panel->GetName();
        if (name == "Summary" || name == "I/O Term") continue;
        header.push_back(name == "Misc" ? "Other" : name);
    }
    header.push_back("Total");
    std::vector<std::string> rows;
    if (PD_TABLE* vdpm = GetSupplyTable())
        for (int r = 0; r < vdpm->GetNumOfRows(); ++r) rows.push_back(vdpm->GetValueAt(r, 0));
    rows.push_back("Total");
    for (PD_TABLE** m : {&currentMatrix, &powerMatrix}) {
        delete *m;
        *m = new PD_TABLE(m == &currentMatrix ? "Power_Matrix_For_Current"
                                              : "Power_Matrix_For_Power");
        (*m)->SetColumns(header);
        for (const std::string& row : rows) {
            std::vector<std::string> cells(header.size(), zero);
            cells[0] = row;
            (*m)->AddRow(cells);
        }
    }
}

void PC_ENG::SaveStaTable(const std::string& supply, double value, const std::string& block,
                          PD_TABLE* table) {
    if (!table) return;
    const int row = table->GetRowNumber(supply);
    const int col = table->GetColumnIndex(block == "Misc" ? "Other" : block.c_str());
    if (row < 0 || col < 0) return;
    char buf[512];
    std::snprintf(buf, sizeof buf, IsSixDigitFamily(FamilyName()) ? "%.6lf" : "%.4lf", value);
    table->SetValueAt(buf, row, col);
}

void PC_ENG::SaveStaTable(const std::string& supply, const std::string& value,
                          const std::string& block, PD_TABLE* table) {
    SaveStaTable(supply, Num(value.c_str()), block, table);
}

double PC_ENG::GetStaTable(const std::string& supply, const std::string& block,
                           PD_TABLE* table) const {
    if (!table) return 0.0;
    const int row = table->GetRowNumber(supply);
    const int col = table->GetColumnIndex(block == "Misc" ? "Other" : block.c_str());
    return Num(table->GetValueAt(row, col));
}

void PC_ENG::GetTotalStaTableCount(PD_TABLE* table) {
    if (!table || table->GetNumOfRows() == 0 || table->GetNumOfColumns() < 2) return;
    const char* format = IsSixDigitMatrixFamily(FamilyName()) ? "%.6lf" : "%.4lf";
    char buf[512];
    const int lastRow = table->GetNumOfRows() - 1;
    const int lastCol = table->GetNumOfColumns() - 1;
    std::snprintf(buf, sizeof buf, format, 0.0);
    for (int r = 0; r <= lastRow; ++r) table->SetValueAt(buf, r, lastCol);
    for (int c = 1; c <= lastCol; ++c) table->SetValueAt(buf, lastRow, c);
    std::vector<double> columnSums(lastCol, 0.0);
    double corner = 0.0;
    for (int r = 0; r < lastRow; ++r) {
        double rowSum = 0.0;
        for (int c = 1; c < lastCol; ++c) {
            const double v = Num(table->GetValueAt(r, c));
            rowSum += v;
            columnSums[c] += v;
        }
        std::snprintf(buf, sizeof buf, format, rowSum);
        table->SetValueAt(buf, r, lastCol);
        corner += rowSum;
    }
    for (int c = 1; c < lastCol; ++c) {
        std::snprintf(buf, sizeof buf, format, columnSums[c]);
        table->SetValueAt(buf, lastRow, c);
    }
    std::snprintf(buf, sizeof buf, format, corner);
    table->SetValueAt(buf, lastRow, lastCol);
}

// ---- Sums over rows and columns -------------------------------------------

double PC_ENG::GetTotalSumRowDData(PD_TABLE* table, int column, int) const {
    if (!table) return 0.0;
    double sum = 0.0;
    for (int r = 0; r < table->GetNumOfRows(); ++r) sum += Num(table->GetValueAt(r, column));
    return sum;
}

int PC_ENG::GetTotalSumRowData(PD_TABLE* table, int column, int) const {
    if (!table) return 0;
    int sum = 0;
    for (int r = 0; r < table->GetNumOfRows(); ++r)
        sum += static_cast<int>(std::strtol(table->GetValueAt(r, column), nullptr, 10));
    return sum;
}

double PC_ENG::GetTotalRowButLastCol(PD_TABLE* table, int row) const {
    double sum = 0.0;
    for (int c = 0; table && c + 1 < table->GetNumOfColumns(); ++c)
        sum += Num(table->GetValueAt(row, c));
    return sum;
}

double PC_ENG::GetTotalRealRowButFirstCol(PD_TABLE* table, int row) const {
    double sum = 0.0;
    for (int c = 1; table && c < table->GetNumOfColumns(); ++c)
        sum += Num(table->GetValueAt(row, c));
    return sum;
}

double PC_ENG::GetTotalRealRowButFirstSecondCol(PD_TABLE* table, int row) const {
    double sum = 0.0;
    for (int c = 2; table && c < table->GetNumOfColumns(); ++c)
        sum += Num(table->GetValueAt(row, c));
    return sum;
}

double PC_ENG::GetTotalPowerEachPanel(const std::string& name) const {
    if (name == "Total Power") {
        PD_TABLE* block = GetBlockTable();
        return block ? Num(block->GetValueAt(block->GetNumOfRows() - 1, 1)) : 0.0;
    }
    PC_PANEL* panel = GetPanel(GetPanelIndex(name));
    if (!panel || panel->GetNumOfTables() == 0) return 0.0;
    return Num(panel->GetTable(panel->GetNumOfTables() - 1)->GetValueAt(0, 1));
}

// ---- Peak start-up and merged power data --------------------------------

int PC_ENG::UpdatePeakStartupTable() {
    PD_TABLE* peak = GetPeakStartupTable();
    PD_SECTION* s = pwrData->GetSection("Peak Startup");
    if (!s || !peak) return 0;
    PD_TBLSECT* data = dynamic_cast<PD_TBLSECT*>(s);
    if (!data) {
        std::cerr << "PWR Peak Startup table must have _TBLSECT format" << std::endl;
        return 0;
    }
    int keyCol = data->GetColumnIndex("Devices");
    const std::string shortKey = DevicePackageKey();
    std::string key = shortKey;
    if (keyCol < 0) {
        // Keys take the operating condition's first character, as the
        // process tables do.
        keyCol = data->GetColumnIndex("Devices_Process_Operation");
        key +=
            std::string("_") + GetProcessType() + "_" + std::string(OperatingName()).substr(0, 1);
    }
    bool widths = false;
    for (const std::string& c : data->columns) widths |= c.find("_WIDTH") != std::string::npos;
    peak->SetTableHeader(widths ? "Supply, Peak Startup (A), Width of the Peak (m sec)"
                                : "Supply, Peak Startup (A)");
    peak->RemoveAllRows();
    if (keyCol < 0) return 0;
    for (int r = 0; r < data->GetNumOfRows(); ++r) {
        const char* pattern = data->GetValueAt(r, keyCol);
        if (PD_UTIL::SpecialCompare(pattern, key.c_str()) != 0 &&
            PD_UTIL::SpecialCompare(pattern, shortKey.c_str()) != 0)
            continue;
        for (int c = 0; c < data->GetNumOfColumns(); ++c) {
            const std::string& column = data->columns[c];
            if (c == keyCol || column.find("_WIDTH") != std::string::npos) continue;
            std::string supply;
            TranslateSupplyPWRtoPCF(column, supply);
            const char* cell = data->GetValueAt(r, c);
            // An uncharacterised supply is left empty or 0 in the data: both
            // show "N/A", as the set-up of the table has it.
            char amps[64] = "N/A";
            const double ma = Num(cell);
            if (ma != 0.0) std::snprintf(amps, sizeof amps, "%.4f", ma / 1000.0);
            std::vector<std::string> row{supply, amps};
            if (widths) {
                const char* w =
                    data->GetValueAt(r, data->GetColumnIndex((column + "_WIDTH").c_str()));
                row.push_back(*w ? w : "N/A");
            }
            peak->AddRow(row);
        }
        return 1;
    }
    return 0;
}

int PC_ENG::MergePFRPwr(const std::string& path, const std::string& name) {
    std::string file = name;
    if (!path.empty()) {
        size_t slash = path.find_last_of("/\\");
        file = (slash == std::string::npos ? std::string() : path.substr(0, slash + 1)) + name;
    }
    PD_DATA merged;
    bool ok = PD_UTIL::IsBinaryFile(file.c_str()) ? merged.LoadBinFile(file.c_str())
                                                  : merged.LoadTxtFile(file.c_str());
    if (!ok) {
        std::cerr << file << " cannot be processed!" << std::endl;
        return 0;
    }
    for (PD_SECTION* section : merged.sections) {
        const std::string& n = section->name;
        if (n == "Info" || n == "Worst Case Process Leakage Multiplier" || n == "SUPPLIES" ||
            n == "Scale Factors")
            continue;
        PD_SECTION* copy = section->Clone();
        if (pwrData->GetSection(n.c_str()))
            pwrData->MergeSection(copy);
        else
            pwrData->AddSection(copy);
    }
    return 1;
}
