#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pd_data.h"

namespace {

std::vector<std::string> Column(const PD_TABLE& t, int c) {
    std::vector<std::string> out;
    for (int r = 0; r < t.GetNumOfRows(); ++r) out.push_back(t.GetValueAt(r, c));
    return out;
}

PD_TBLSECT* MakeTable(const char* name, const char* header, const std::vector<const char*>& rows) {
    auto* t = new PD_TBLSECT(name);
    t->SetTableHeader(header);
    for (const char* r : rows) t->AddTableData(r);
    return t;
}

}  // namespace

TEST(DataStore, AbsentNamesGiveEmptyNullOrMinusOne) {
    PD_DATA data;
    auto* keys = new PD_KEYSECT("Info");
    keys->AddKeyVal("_STATUS", "Advanced");
    data.AddSection(keys);
    data.AddSection(MakeTable("T", "A,B", {"1,2"}));
    auto* pwr = new PD_PWRSECT("IO");
    pwr->AddSupply("VCC");
    data.AddSection(pwr);

    EXPECT_EQ(data.GetSection(-1), nullptr);
    EXPECT_EQ(data.GetSection(3), nullptr);
    EXPECT_EQ(data.GetSection("info"), nullptr);
    EXPECT_EQ(data.GetSection(data.GetSectionIndex("nope")), nullptr);
    EXPECT_FALSE(data.DoesSectionExist("nope"));
    EXPECT_STREQ(data.GetSectionName(7), "");
    ASSERT_NE(keys->GetValue("missing"), nullptr);
    EXPECT_STREQ(keys->GetValue("missing"), "");
    EXPECT_STREQ(keys->GetValue(1), "");
    EXPECT_STREQ(keys->GetKey(-1), "");
    EXPECT_EQ(keys->GetKeyIndex("_status"), -1);
    auto* t = dynamic_cast<PD_TABLE*>(data.GetSection("T"));
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->GetColumnIndex("C"), -1);
    EXPECT_STREQ(t->GetValueAt(1, 0), "");
    EXPECT_STREQ(t->GetValueAt(0, 2), "");
    EXPECT_STREQ(t->GetValueAt("9", "A"), "");
    EXPECT_STREQ(t->GetColumnName(5), "");
    EXPECT_EQ(t->GetRowNumber(std::string("9")), -1);
    EXPECT_STREQ(pwr->GetA("LUT", "VCC"), "null");
    EXPECT_STREQ(pwr->GetJ("LUT", "VCCX"), "null");
    EXPECT_EQ(pwr->GetABCD("LUT", "VCC"), nullptr);
    EXPECT_EQ(pwr->GetDCblockUsed("VCCX"), nullptr);
    EXPECT_EQ(pwr->GetDCblockSleep("VCC"), nullptr);
    EXPECT_EQ(pwr->GetMember(0), nullptr);
    EXPECT_STREQ(pwr->GetSupply(1), "");
}

// Callers may rename sections and edit the public vectors directly.
TEST(DataStore, LookUpsFollowDirectEdits) {
    PD_DATA data;
    data.AddSection(new PD_KEYSECT("A"));
    data.AddSection(new PD_KEYSECT("B"));
    EXPECT_EQ(data.GetSectionIndex("B"), 1);
    data.GetSection(1)->SetName("C");
    EXPECT_EQ(data.GetSectionIndex("B"), -1);
    EXPECT_EQ(data.GetSectionIndex("C"), 1);
    std::swap(data.sections[0], data.sections[1]);
    EXPECT_EQ(data.GetSectionIndex("C"), 0);
    EXPECT_EQ(data.GetSectionIndex("A"), 1);
    data.RemoveSection(0);
    EXPECT_EQ(data.GetSectionIndex("A"), 0);

    PD_KEYSECT keys("K");
    keys.AddKeyVal("x", "1");
    keys.AddKeyVal("y", "2");
    keys.keys[0].first = "z";
    EXPECT_EQ(keys.GetKeyIndex("x"), -1);
    EXPECT_STREQ(keys.GetValue("z"), "1");

    PD_TABLE t("t");
    t.SetTableHeader("a,b");
    EXPECT_EQ(t.GetColumnIndex("b"), 1);
    t.columns = {"b", "a"};
    EXPECT_EQ(t.GetColumnIndex("b"), 0);

    PD_PWRSECT p("p");
    p.SetCoef("m", "V1", PD_COEF{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"});
    p.supplies[0] = "V2";
    EXPECT_STREQ(p.GetC("m", "V1"), "null");
    EXPECT_STREQ(p.GetC("m", "V2"), "3");
}

TEST(DataStore, KeySectionAddReplaceRemoveKeepOrder) {
    PD_KEYSECT k("Settings");
    k.AddKeyVal("b", "1");
    k.AddKeyVal("a", "2");
    k.AddKeyVal("c", "3");
    k.AddKeyVal("a", "20");
    EXPECT_EQ(k.GetNumOfKeys(), 3);
    EXPECT_STREQ(k.GetValue("a"), "20");
    EXPECT_EQ(k.GetKeyIndex("a"), 1);
    k.RemoveKey("b");
    k.RemoveKey("nope");
    EXPECT_EQ(k.GetNumOfKeys(), 2);
    EXPECT_STREQ(k.GetKey(0), "a");
    EXPECT_EQ(k.GetKeyIndex("c"), 1);
    EXPECT_STREQ(k.GetValue(1), "3");
    EXPECT_FALSE(k.GetFromulaTree("a"));
}

struct ListCase {
    const char* list;
    std::vector<std::string> entries;
};

class ListParser : public testing::TestWithParam<ListCase> {};

TEST_P(ListParser, HeaderAndRowSplitAlike) {
    const ListCase& c = GetParam();
    PD_TABLE t;
    t.SetTableHeader(c.list);
    EXPECT_EQ(t.columns, c.entries);
    t.AddTableData(c.list);
    ASSERT_EQ(t.GetNumOfRows(), 1);
    for (int i = 0; i < t.GetNumOfColumns(); ++i) EXPECT_EQ(t.GetValueAt(0, i), c.entries[i]);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ListParser,
    testing::Values(ListCase{"a, b ,c", {"a", "b", "c"}},
                    ListCase{"first=second,third", {"first", "second", "third"}},
                    ListCase{" Name = Freq (MHz) , AF % ", {"Name", "Freq (MHz)", "AF %"}},
                    ListCase{"a=b=c,d", {"a", "b=c", "d"}}, ListCase{"a,b=c", {"a", "b=c"}},
                    ListCase{"a,,b,", {"a", "", "b", ""}}, ListCase{"=x", {"", "x"}},
                    ListCase{"one cell", {"one cell"}}, ListCase{"   ", {}}));

TEST(DataStore, TableEditing) {
    PD_TABLE t("Logic");
    t.SetTableHeader("Name,Count");
    t.AddTableData("r1,10");
    t.AddTableData("r2");           // padded
    t.AddTableData("r3,30,extra");  // cut
    ASSERT_EQ(t.GetNumOfRows(), 3);
    EXPECT_STREQ(t.GetValueAt(1, 1), "");
    EXPECT_EQ(t.rows[2].size(), 2u);

    t.AddColumn("Freq", 1);
    EXPECT_EQ(t.columns, (std::vector<std::string>{"Name", "Freq", "Count"}));
    EXPECT_EQ(Column(t, 1), (std::vector<std::string>{"", "", ""}));
    EXPECT_EQ(Column(t, 2), (std::vector<std::string>{"10", "", "30"}));
    EXPECT_EQ(t.GetColumnIndex("Count"), 2);
    t.AddColumn("Last", 99);
    EXPECT_EQ(t.GetColumnIndex("Last"), 3);

    t.SetValueAt("5", 9, 0);
    t.SetValueAt("5", 0, 9);
    t.SetValueAt("5", -1, 0);
    EXPECT_STREQ(t.GetValueAt("r1", "Count"), "10");
    t.SetValueAt("0.12345678", 0, 1);
    t.SetRoundedValueAt("0.1235", 0, 1);
    EXPECT_STREQ(t.GetValueAt(0, 1), "0.1235");
    EXPECT_EQ(t.GetNoRoundValueAt(0, 1), "0.12345678");
    EXPECT_DOUBLE_EQ(t.GetDoubleValueAt(0, 1), 0.1235);
    t.SetRoundedValueAt("0.12", 0, 1);
    EXPECT_EQ(t.GetNoRoundValueAt(0, 1), "0.12345678");
    t.SetValueAt("7", 0, 1);
    EXPECT_EQ(t.GetNoRoundValueAt(0, 1), "7");
    EXPECT_EQ(t.GetNoRoundValueAt(1, 0), "r2");

    t.RemoveRow(1);
    t.RemoveRow(5);
    EXPECT_EQ(Column(t, 0), (std::vector<std::string>{"r1", "r3"}));

    PD_TABLE copy;
    copy.Copy(&t);
    EXPECT_EQ(copy.columns, t.columns);
    EXPECT_EQ(Column(copy, 1), Column(t, 1));
    EXPECT_EQ(copy.GetNoRoundValueAt(0, 1), "7");
    t.RemoveAllRows();
    EXPECT_EQ(copy.GetNumOfRows(), 2);
}

TEST(DataStore, RowNumbersAndKeyTableIndex) {
    PD_TABLE banks;
    banks.SetTableHeader("Bank,Vcc");
    for (const char* r : {"Bank 1,3.3", " 2 ,2.5", "03,1.8", "-1,0", "4a,1", ",0"})
        banks.AddTableData(r);
    banks.rows[1][0].text = " 2 ";
    EXPECT_EQ(banks.GetRowNumber(2), 1);
    EXPECT_EQ(banks.GetRowNumber(3), 2);
    EXPECT_EQ(banks.GetRowNumber(-1), 3);
    EXPECT_EQ(banks.GetRowNumber(1), -1);
    EXPECT_EQ(banks.GetRowNumber(4), -1);
    EXPECT_EQ(banks.GetRowNumber(0), -1);
    EXPECT_EQ(banks.GetRowNumber(std::string("Bank 1")), 0);

    PD_TABLE keyed;
    keyed.SetTableHeader("Dev,Pkg,Grade,Value");
    keyed.AddTableData("D1,P1,6,a");
    keyed.AddTableData("D1,P2,6,b");
    keyed.AddTableData("D1,P2,7,c");
    EXPECT_EQ(keyed.GetKeyTableRowIndex("D1"), 0);
    EXPECT_EQ(keyed.GetKeyTableRowIndex("D1,P2"), 1);
    EXPECT_EQ(keyed.GetKeyTableRowIndex("D1,P2,7"), 2);
    EXPECT_EQ(keyed.GetKeyTableRowIndex("D1,P3"), -1);
    EXPECT_EQ(keyed.GetKeyTableRowIndex("D1,P1,6,a,x"), -1);
}

TEST(DataStore, SortIsStableAndNumericWhereBothAreNumbers) {
    PD_TABLE t;
    t.SetTableHeader("Key,Order");
    for (const char* r : {"10,a", "9,b", "1e1,c", "x,d", "-2.5,e", "9.0,f", "b,g"})
        t.AddTableData(r);
    t.SortRowData("Key");
    EXPECT_EQ(Column(t, 1), (std::vector<std::string>{"e", "b", "f", "a", "c", "g", "d"}));
    t.SortRowData("Missing");
    EXPECT_EQ(Column(t, 1).front(), "e");
}

TEST(DataStore, PowerSectionGettersAndDcBlocks) {
    PD_PWRSECT p("SLICE");
    p.SetCoef("LUT", "VCC", PD_COEF{"1", "2", "3", "4", "null", "", "7", "8", "9", "10"});
    p.AddSupply("VCCAUX");
    p.AddMember("REG@KZ?2-256");
    EXPECT_EQ(p.GetNumOfSupplies(), 2);
    EXPECT_EQ(p.GetNumOfMembers(), 2);
    EXPECT_EQ(p.AddSupply("VCC"), 0);
    EXPECT_EQ(p.AddMember("LUT"), 0);
    EXPECT_STREQ(p.GetKeyPower(1), "REG@KZ?2-256");
    EXPECT_EQ(p.GetMember(0)->name, "LUT");
    const char* want[] = {"1", "2", "3", "4", "null", "", "7", "8", "9", "10"};
    const char* (PD_PWRSECT::*getters[])(const char*, const char*)
        const = {&PD_PWRSECT::GetA, &PD_PWRSECT::GetB, &PD_PWRSECT::GetC, &PD_PWRSECT::GetD,
                 &PD_PWRSECT::GetE, &PD_PWRSECT::GetF, &PD_PWRSECT::GetG, &PD_PWRSECT::GetH,
                 &PD_PWRSECT::GetI, &PD_PWRSECT::GetJ};
    for (int i = 0; i < 10; ++i) {
        EXPECT_STREQ((p.*getters[i])("LUT", "VCC"), want[i]) << i;
        EXPECT_STREQ((p.*getters[i])("LUT", "VCCAUX"), "null") << i;
        EXPECT_STREQ((p.*getters[i])("REG@KZ?2-256", "VCC"), "null") << i;
    }
    EXPECT_EQ(p.GetABCD("LUT", "VCC")->D, "4");
    EXPECT_EQ(p.GetLetter('K', "LUT", "VCC"), std::string("null"));

    ASSERT_NE(p.GetDCblockUsed("VCCAUX"), nullptr);
    EXPECT_EQ(p.GetDCblockUnused("VCCAUX")->J, "null");
    EXPECT_EQ(p.GetDCblockStandby("VCC"), nullptr);
    PD_SUPPLYBLOCKS* b = p.Blocks("VCC");
    b->used.A = "12.0";
    b->hasSleep = true;
    b->sleep.B = "0.02";
    EXPECT_EQ(p.GetDCblockUsed("VCC")->A, "12.0");
    EXPECT_EQ(*p.GetDCblockSleep("VCC")->Letter('B'), "0.02");
    EXPECT_EQ(p.GetDCblockSleep("VCC")->Letter('C'), nullptr);
    EXPECT_EQ(p.GetDCblockStandby("VCC"), nullptr);
}

TEST(DataStore, MergeFoldsIntoTheSectionOfTheSameName) {
    PD_DATA data;
    auto* k = new PD_KEYSECT("K");
    k->AddKeyVal("a", "1");
    data.AddSection(k);
    data.AddSection(MakeTable("T", "A,B", {"1,2"}));
    auto* p = new PD_PWRSECT("P");
    p->SetCoef("m", "V1", PD_COEF{"1", "1", "1", "1", "1", "1", "1", "1", "1", "1"});
    data.AddSection(p);

    auto* k2 = new PD_KEYSECT("K");
    k2->AddKeyVal("a", "10");
    k2->AddKeyVal("b", "2");
    data.MergeSection(k2);
    data.MergeSection(MakeTable("T", "B,C", {"x,y"}));
    auto* p2 = new PD_PWRSECT("P");
    p2->SetCoef("n", "V2", PD_COEF{"2", "2", "2", "2", "2", "2", "2", "2", "2", "2"});
    p2->SetCoef("m", "V1", PD_COEF{"3", "3", "3", "3", "3", "3", "3", "3", "3", "3"});
    p2->Blocks("V2")->hasStandby = true;
    data.MergeSection(p2);
    data.MergeSection(new PD_KEYSECT("New"));

    ASSERT_EQ(data.GetNumOfSections(), 4);
    EXPECT_STREQ(k->GetValue("a"), "10");
    EXPECT_STREQ(k->GetValue("b"), "2");
    auto* t = dynamic_cast<PD_TABLE*>(data.GetSection("T"));
    EXPECT_EQ(t->columns, (std::vector<std::string>{"A", "B", "C"}));
    EXPECT_EQ(Column(t[0], 1), (std::vector<std::string>{"2", "x"}));
    EXPECT_EQ(Column(t[0], 2), (std::vector<std::string>{"", "y"}));
    EXPECT_EQ(p->GetNumOfSupplies(), 2);
    EXPECT_STREQ(p->GetA("m", "V1"), "3");
    EXPECT_STREQ(p->GetA("n", "V2"), "2");
    EXPECT_STREQ(p->GetA("m", "V2"), "null");
    EXPECT_NE(p->GetDCblockStandby("V2"), nullptr);
    EXPECT_STREQ(SectionKindWord(data.GetSection("New")->GetSectionKind()), "_KEYSECT");
}
