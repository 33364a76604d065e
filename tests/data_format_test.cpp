#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "pd_data.h"

namespace {

std::string TempPath(const std::string& leaf) {
    return testing::TempDir() + "pwc_data_" + std::to_string(getpid()) + "_" + leaf;
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

// Structural comparison, independent of both writers.
bool SameBlock(const PD_DCBLOCK& a, const PD_DCBLOCK& b) {
    for (char l : std::string("ABDEFGHIJ"))
        if (*a.Letter(l) != *b.Letter(l)) return false;
    return true;
}

void ExpectSame(const PD_DATA& a, const PD_DATA& b) {
    ASSERT_EQ(a.GetNumOfSections(), b.GetNumOfSections());
    for (int i = 0; i < a.GetNumOfSections(); ++i) {
        const PD_SECTION* x = a.GetSection(i);
        const PD_SECTION* y = b.GetSection(i);
        ASSERT_EQ(x->GetSectionKind(), y->GetSectionKind());
        EXPECT_EQ(x->name, y->name);
        if (auto* kx = dynamic_cast<const PD_KEYSECT*>(x)) {
            EXPECT_EQ(kx->keys, dynamic_cast<const PD_KEYSECT*>(y)->keys);
        } else if (auto* tx = dynamic_cast<const PD_TABLE*>(x)) {
            auto* ty = dynamic_cast<const PD_TABLE*>(y);
            EXPECT_EQ(tx->columns, ty->columns);
            ASSERT_EQ(tx->GetNumOfRows(), ty->GetNumOfRows());
            for (int r = 0; r < tx->GetNumOfRows(); ++r)
                for (int c = 0; c < tx->GetNumOfColumns(); ++c)
                    EXPECT_STREQ(tx->GetValueAt(r, c), ty->GetValueAt(r, c));
        } else {
            auto* px = dynamic_cast<const PD_PWRSECT*>(x);
            auto* py = dynamic_cast<const PD_PWRSECT*>(y);
            ASSERT_EQ(px->supplies, py->supplies);
            ASSERT_EQ(px->GetNumOfMembers(), py->GetNumOfMembers());
            for (const PD_MEMBER& m : px->members)
                for (const std::string& s : px->supplies)
                    for (char l = 'A'; l <= 'J'; ++l)
                        EXPECT_STREQ(px->GetLetter(l, m.name.c_str(), s.c_str()),
                                     py->GetLetter(l, m.name.c_str(), s.c_str()));
            for (const std::string& s : px->supplies) {
                const char* n = s.c_str();
                EXPECT_TRUE(SameBlock(*px->GetDCblockUsed(n), *py->GetDCblockUsed(n)));
                EXPECT_TRUE(SameBlock(*px->GetDCblockUnused(n), *py->GetDCblockUnused(n)));
                ASSERT_EQ(!px->GetDCblockSleep(n), !py->GetDCblockSleep(n));
                ASSERT_EQ(!px->GetDCblockStandby(n), !py->GetDCblockStandby(n));
                if (px->GetDCblockSleep(n)) {
                    EXPECT_TRUE(SameBlock(*px->GetDCblockSleep(n), *py->GetDCblockSleep(n)));
                }
            }
        }
    }
}

// Texts that each need some care in the text form.
const std::vector<std::string> kTricky = {
    "plain",
    "",
    " lead",
    "trail ",
    "in side",
    "\"quoted\"",
    "a\"b",
    "x=y",
    "a,b",
    "#hash",
    "[br]",
    "null",
    "tab\tin",
    "\t",
    "back\\slash",
    "ctl\x01\x7f",
    std::string("nul\0z", 5),
    "line\nend\r",
    "\xc2\xb5"
    "A",
    "=",
    ",",
    "\"",
};

PD_DATA* MakeTricky() {
    auto* d = new PD_DATA;
    auto* k = new PD_KEYSECT("Info \"x\", [y]");
    for (std::size_t i = 0; i < kTricky.size(); ++i)
        k->AddKeyVal((kTricky[i] + "#" + std::to_string(i)).c_str(), kTricky[i].c_str());
    k->keys.emplace_back(std::string(), "empty key");
    k->keys.emplace_back("[k", "\"");
    d->AddSection(k);
    auto* t = new PD_TBLSECT("Table");
    t->columns = kTricky;
    for (std::size_t r = 0; r < kTricky.size(); ++r) {
        PD_TABLE::Row row(kTricky.size());
        for (std::size_t c = 0; c < kTricky.size(); ++c)
            row[c].text = kTricky[(r + c) % kTricky.size()];
        t->rows.push_back(row);
    }
    t->rows.push_back(PD_TABLE::Row(kTricky.size()));
    d->AddSection(t);
    auto* one = new PD_TBLSECT("");
    one->columns = {""};
    one->rows.assign(2, PD_TABLE::Row(1));
    d->AddSection(one);
    d->AddSection(new PD_TBLSECT("no columns"));
    auto* p = new PD_PWRSECT("SLICE");
    for (std::size_t i = 0; i < kTricky.size(); ++i) {
        PD_COEF c;
        for (char l = 'A'; l <= 'J'; ++l) *c.Letter(l) = kTricky[(i + l) % kTricky.size()];
        p->SetCoef(("m" + kTricky[i]).c_str(), kTricky[i % 4].c_str(), c);
    }
    p->Blocks("")->hasSleep = true;
    p->Blocks(" lead")->used.J = "";
    p->Blocks(" lead")->hasStandby = true;
    p->Blocks(" lead")->standby.A = "a,b";
    d->AddSection(p);
    d->AddSection(new PD_PWRSECT("empty power"));
    d->AddSection(new PD_KEYSECT("empty keys"));
    return d;
}

}  // namespace

TEST(DataFormat, HandWrittenTextReadsAsDocumented) {
    const std::string text =
        "#PWC-DATA 1\r\n"
        "# a comment\n\n"
        "[KEYSECT \"Scale Factors\"]\n"
        "Kvcc      = 1.0 + (dKvcc - 1.2) * 2.1\r\n"
        "  _TABLE = Logic Block, Logic Summary  \n"
        "\"odd = key\" = \"value, with \"\"quotes\"\"\"\n"
        "empty =\n"
        "[TBLSECT \"SUPPLIES\"]\n"
        "SupplyName, Default,   Max\n"
        "VCC,        1.200\n"
        "\" x \",,\"\\x41\\\\\"\n"
        "[PWRSECT \"SLICE\"]\n"
        "supplies: VCC, VCCPG\n"
        "coef: LUT@KZQ2-256HC_SG48, VCCPG, 0.0012, 0.0198,, 2e-5\n"
        "dcblock: sleep,  VCC, 2.0,  0.0198\n";
    PD_DATA d;
    ASSERT_TRUE(d.ParseText(text, "hand"));
    ASSERT_EQ(d.GetNumOfSections(), 3);
    auto* k = dynamic_cast<PD_KEYSECT*>(d.GetSection("Scale Factors"));
    EXPECT_STREQ(k->GetValue("Kvcc"), "1.0 + (dKvcc - 1.2) * 2.1");
    EXPECT_STREQ(k->GetValue("_TABLE"), "Logic Block, Logic Summary");
    EXPECT_STREQ(k->GetValue("odd = key"), "value, with \"quotes\"");
    EXPECT_EQ(k->GetKeyIndex("empty"), 3);
    auto* t = dynamic_cast<PD_TABLE*>(d.GetSection(1));
    EXPECT_EQ(t->columns, (std::vector<std::string>{"SupplyName", "Default", "Max"}));
    EXPECT_STREQ(t->GetValueAt(0, 1), "1.200");
    EXPECT_STREQ(t->GetValueAt(0, 2), "");
    EXPECT_STREQ(t->GetValueAt(1, 0), " x ");
    EXPECT_STREQ(t->GetValueAt(1, 2), "A\\");
    auto* p = dynamic_cast<PD_PWRSECT*>(d.GetSection("SLICE"));
    EXPECT_STREQ(p->GetB("LUT@KZQ2-256HC_SG48", "VCCPG"), "0.0198");
    EXPECT_STREQ(p->GetC("LUT@KZQ2-256HC_SG48", "VCCPG"), "");
    EXPECT_STREQ(p->GetE("LUT@KZQ2-256HC_SG48", "VCCPG"), "null");
    EXPECT_STREQ(p->GetA("LUT@KZQ2-256HC_SG48", "VCC"), "null");
    EXPECT_EQ(p->GetDCblockSleep("VCC")->A, "2.0");
    EXPECT_EQ(p->GetDCblockSleep("VCC")->D, "null");
    EXPECT_EQ(p->GetDCblockUsed("VCCPG")->A, "null");
    EXPECT_EQ(p->GetDCblockStandby("VCC"), nullptr);
}

TEST(DataFormat, RoundTripsAreExact) {
    std::unique_ptr<PD_DATA> original(MakeTricky());
    const std::string text = original->ToText();
    PD_DATA fromText;
    ASSERT_TRUE(fromText.ParseText(text, "tricky"));
    ExpectSame(*original, fromText);
    EXPECT_EQ(fromText.ToText(), text);

    const std::string bytes = fromText.ToBinary();
    PD_DATA fromBinary;
    ASSERT_TRUE(fromBinary.ParseBinary(bytes, "tricky.bin"));
    ExpectSame(*original, fromBinary);
    EXPECT_EQ(fromBinary.ToText(), text);
    EXPECT_EQ(fromBinary.ToBinary(), bytes);

    const std::string txtPath = TempPath("rt.pwr"), binPath = TempPath("rt.bin");
    ASSERT_TRUE(original->SaveTxtFile(txtPath.c_str()));
    ASSERT_TRUE(original->SaveBinFile(binPath.c_str()));
    EXPECT_EQ(ReadBytes(txtPath), text);
    EXPECT_EQ(ReadBytes(binPath), bytes);
    PD_DATA loaded;
    ASSERT_TRUE(loaded.LoadBinFile(binPath.c_str()));
    ASSERT_TRUE(loaded.SaveTxtFile(txtPath.c_str()));
    ASSERT_TRUE(loaded.LoadTxtFile(txtPath.c_str()));
    ASSERT_TRUE(loaded.SaveBinFile(binPath.c_str()));
    EXPECT_EQ(ReadBytes(binPath), bytes);
    std::remove(txtPath.c_str());
    std::remove(binPath.c_str());
}

TEST(DataFormat, FailedSaveKeepsTheOldFile) {
    PD_DATA d;
    d.AddSection(new PD_KEYSECT("K"));
    const std::string dir = TempPath("dir");
    ASSERT_EQ(system(("mkdir -p '" + dir + "'").c_str()), 0);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(d.SaveTxtFile((dir + "/missing/x.pwr").c_str()));
    EXPECT_FALSE(d.SaveBinFile(dir.c_str()));  // a directory: the rename fails
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("missing/x.pwr"), std::string::npos) << err;
    EXPECT_NE(err.find(dir + ": cannot be written"), std::string::npos) << err;
    std::remove(dir.c_str());
}

struct BadText {
    const char* body;  // after the header line
    int line;
    const char* what;
};

class BadTextFile : public testing::TestWithParam<BadText> {};

TEST_P(BadTextFile, IsRefusedWithFileLineAndReason) {
    const BadText& c = GetParam();
    const std::string path = TempPath("bad.pwr");
    WriteBytes(path, std::string("#PWC-DATA 1\n") + c.body);
    PD_DATA d;
    d.AddSection(new PD_KEYSECT("stale"));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(d.LoadTxtFile(path.c_str()));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(d.GetNumOfSections(), 0);
    EXPECT_EQ(err, path + ":" + std::to_string(c.line) + ": " + c.what + "\n");
    std::remove(path.c_str());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadTextFile,
    testing::Values(BadText{"k = v\n", 2, "line outside a section"},
                    BadText{"[KEYSECT Info]\n", 2, "section name must be quoted"},
                    BadText{"[LISTSECT \"a\"]\n", 2, "unknown section kind \"LISTSECT\""},
                    BadText{"[KEYSECT \"a\"\n", 2, "missing \"]\" after the section name"},
                    BadText{"[KEYSECT \"a\"]\n[TBLSECT \"a\"]\n", 3, "duplicate section \"a\""},
                    BadText{"[KEYSECT \"a\"]\nk = 1\n\nk = 2\n", 5, "duplicate key \"k\""},
                    BadText{"[KEYSECT \"a\"]\njust text\n", 3, "missing \"=\" in a key line"},
                    BadText{"[KEYSECT \"a\"]\nk = \"open\n", 3, "unterminated quote"},
                    BadText{"[TBLSECT \"t\"]\na,b\n\"x\" y,z\n", 4, "text after a closing quote"},
                    BadText{"[TBLSECT \"t\"]\na,b\nx,y\"z\n", 4, "quote inside an unquoted value"},
                    BadText{"[TBLSECT \"t\"]\na,b,c,d\n1,2,3,4,5\n", 4,
                            "row has 5 cells, table has 4 columns"},
                    BadText{"[PWRSECT \"p\"]\nsupplies: V\ncoef: m, W, 1\n", 4,
                            "supply \"W\" is not listed in \"supplies:\""},
                    BadText{"[PWRSECT \"p\"]\nsupplies: V, V\n", 3, "duplicate supply \"V\""},
                    BadText{"[PWRSECT \"p\"]\nsupplies: V\ncoef: m, V\ncoef: m, V\n", 5,
                            "second coef line for \"m\" on \"V\""},
                    BadText{"[PWRSECT \"p\"]\nsupplies: V\ncoef: m, V,1,2,3,4,5,6,7,8,9,10,11\n", 4,
                            "coef line has 13 values, at most 12"},
                    BadText{"[PWRSECT \"p\"]\nsupplies: V\ndcblock: idle, V\n", 4,
                            "unknown dcblock kind \"idle\""},
                    BadText{"[PWRSECT \"p\"]\nsupplies: V\nmember: m\n", 4,
                            "expected \"supplies:\", \"coef:\" or \"dcblock:\""}));

TEST(DataFormat, MissingEmptyAndForeignFilesAreRefused) {
    const std::string missing = TempPath("nothing.pwr");
    const std::string empty = TempPath("empty.pwr");
    const std::string wrong = TempPath("wrong.pwr");
    WriteBytes(empty, "");
    WriteBytes(wrong, "#PWC-DATA 2\n");
    for (const std::string& path : {missing, empty, wrong}) {
        PD_DATA d;
        testing::internal::CaptureStderr();
        EXPECT_FALSE(d.LoadTxtFile(path.c_str()));
        EXPECT_FALSE(d.LoadBinFile(path.c_str()));
        const std::string err = testing::internal::GetCapturedStderr();
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 2) << err;
        EXPECT_EQ(err.find(path), 0u) << err;
        EXPECT_NE(err.find("\n" + path), std::string::npos) << err;
    }
    std::remove(empty.c_str());
    std::remove(wrong.c_str());
}

TEST(DataFormat, EveryCutAndCorruptionOfABinaryFileIsSafe) {
    PD_DATA small;
    auto* k = new PD_KEYSECT("K");
    k->AddKeyVal("a", "1");
    small.AddSection(k);
    small.AddSection(new PD_TBLSECT("T"));
    dynamic_cast<PD_TABLE*>(small.GetSection(1))->SetTableHeader("x,y");
    dynamic_cast<PD_TABLE*>(small.GetSection(1))->AddTableData("1,2");
    auto* p = new PD_PWRSECT("P");
    p->SetCoef("m", "V", PD_COEF{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"});
    p->Blocks("V")->hasSleep = true;
    small.AddSection(p);
    const std::string bytes = small.ToBinary();

    testing::internal::CaptureStderr();
    int refused = 0;
    for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
        PD_DATA d;
        refused += !d.ParseBinary(bytes.substr(0, cut), "cut.bin");
        EXPECT_EQ(d.GetNumOfSections(), 0);
    }
    EXPECT_EQ(refused, static_cast<int>(bytes.size()));
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        for (unsigned char flip : {0x01, 0x80, 0xff}) {
            std::string bad = bytes;
            bad[at] = static_cast<char>(bad[at] ^ flip);
            PD_DATA d;
            if (d.ParseBinary(bad, "flip.bin")) {
                EXPECT_EQ(d.ToBinary(), bad) << at;
            }
        }
    }
    PD_DATA d;
    std::string huge = bytes.substr(0, 5) + std::string("\xff\xff\xff\x7f", 4);
    EXPECT_FALSE(d.ParseBinary(huge, "huge.bin"));
    huge = bytes;
    huge.replace(9 + 1 + 4 + 1, 4, "\xff\xff\xff\xff");  // the key count
    EXPECT_FALSE(d.ParseBinary(huge, "huge.bin"));
    EXPECT_FALSE(d.ParseBinary(bytes + "x", "long.bin"));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("cut.bin: byte "), std::string::npos);
    EXPECT_NE(err.find("huge.bin: byte 5: section count 2147483647 exceeds the bytes left"),
              std::string::npos)
        << err;
    EXPECT_NE(err.find("huge.bin: byte 15: key count 4294967295 exceeds the bytes left"),
              std::string::npos)
        << err;
    EXPECT_NE(err.find("long.bin: byte " + std::to_string(bytes.size()) +
                       ": 1 bytes left over after the last section"),
              std::string::npos)
        << err;
}

TEST(DataFormat, PaddingIsBoundedByTheFileSize) {
    std::string text = "#PWC-DATA 1\n[TBLSECT \"wide\"]\nc0";
    for (int c = 1; c < 2000; ++c) text += ",c" + std::to_string(c);
    text += "\n";
    PD_DATA d;
    ASSERT_TRUE(d.ParseText(text + "x\n", "wide"));
    for (int r = 0; r < 100; ++r) text += "x\n";
    testing::internal::CaptureStderr();
    EXPECT_FALSE(d.ParseText(text, "wide"));
    EXPECT_NE(testing::internal::GetCapturedStderr().find(
                  "too many implied cells for the size of the file"),
              std::string::npos);
}
