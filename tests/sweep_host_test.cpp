// `pwc sweep` (CSV, JSON, the SVG chart) and `pwc calc --constraints`.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "engine_fixture.h"
#include "host_fixture.h"
#include "svg_chart.h"

namespace {

using Json = nlohmann::json;
using pwctest::ScratchDir;

const std::string kData = PWC_TEST_DATA_DIR;
const std::string kDemo = kData + "/projects/demo.pcf";
const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new pwctest::SampleDataEnvironment);

using pwctest::Pwc;
using pwctest::PwcRun;

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
}

// ---- A small XML well-formedness check ------------------------------------------

struct XmlElement {
    std::string name;
    std::map<std::string, std::string> attributes;
};

// Fails the test at the first fault; the elements in document order.
std::vector<XmlElement> ParseXml(const std::string& doc) {
    std::vector<XmlElement> elements;
    std::vector<std::string> open;
    std::size_t i = 0, roots = 0;
    auto fail = [&](const std::string& why) {
        ADD_FAILURE() << why << " at byte " << i;
        return std::vector<XmlElement>{};
    };
    auto nameChar = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || c == ':' ||
               c == '.';
    };
    auto entitiesOk = [](const std::string& text) {
        for (std::size_t p = text.find('&'); p != std::string::npos; p = text.find('&', p + 1)) {
            const std::size_t semi = text.find(';', p);
            if (semi == std::string::npos) return false;
            const std::string e = text.substr(p + 1, semi - p - 1);
            if (e != "amp" && e != "lt" && e != "gt" && e != "quot" && e != "apos" &&
                (e.empty() || e[0] != '#'))
                return false;
        }
        return true;
    };
    if (doc.compare(0, 5, "<?xml") == 0) {
        i = doc.find("?>");
        if (i == std::string::npos) return fail("open declaration");
        i += 2;
    }
    while (i < doc.size()) {
        if (doc[i] != '<') {
            const std::size_t next = doc.find('<', i);
            const std::string text = doc.substr(i, next == std::string::npos ? next : next - i);
            if (open.empty() && text.find_first_not_of(" \r\n\t") != std::string::npos)
                return fail("text outside the root");
            if (!entitiesOk(text) || text.find('>') != std::string::npos) return fail("bad text");
            if (next == std::string::npos) break;
            i = next;
            continue;
        }
        if (doc.compare(i, 4, "<!--") == 0) {
            i = doc.find("-->", i);
            if (i == std::string::npos) return fail("open comment");
            i += 3;
            continue;
        }
        if (doc.compare(i, 2, "</") == 0) {
            std::size_t j = i + 2;
            while (j < doc.size() && nameChar(doc[j])) ++j;
            const std::string name = doc.substr(i + 2, j - i - 2);
            while (j < doc.size() && std::isspace(static_cast<unsigned char>(doc[j]))) ++j;
            if (j >= doc.size() || doc[j] != '>') return fail("bad end tag");
            if (open.empty() || open.back() != name) return fail("mismatched </" + name + ">");
            open.pop_back();
            i = j + 1;
            continue;
        }
        std::size_t j = i + 1;
        while (j < doc.size() && nameChar(doc[j])) ++j;
        XmlElement e;
        e.name = doc.substr(i + 1, j - i - 1);
        if (e.name.empty()) return fail("empty tag name");
        if (open.empty() && ++roots > 1) return fail("second root");
        bool selfClosing = false;
        for (;;) {
            while (j < doc.size() && std::isspace(static_cast<unsigned char>(doc[j]))) ++j;
            if (j >= doc.size()) return fail("open tag");
            if (doc[j] == '>') break;
            if (doc.compare(j, 2, "/>") == 0) {
                selfClosing = true;
                ++j;
                break;
            }
            std::size_t k = j;
            while (k < doc.size() && nameChar(doc[k])) ++k;
            const std::string attr = doc.substr(j, k - j);
            if (attr.empty() || k + 1 >= doc.size() || doc[k] != '=' ||
                (doc[k + 1] != '"' && doc[k + 1] != '\''))
                return fail("bad attribute in <" + e.name + ">");
            const std::size_t end = doc.find(doc[k + 1], k + 2);
            if (end == std::string::npos) return fail("open attribute");
            const std::string value = doc.substr(k + 2, end - k - 2);
            if (!entitiesOk(value) || value.find('<') != std::string::npos)
                return fail("bad attribute value");
            if (!e.attributes.emplace(attr, value).second) return fail("repeated attribute");
            j = end + 1;
        }
        if (!selfClosing) open.push_back(e.name);
        elements.push_back(e);
        i = j + 1;
    }
    if (!open.empty()) return fail("unclosed <" + open.back() + ">");
    if (roots != 1) return fail("no root");
    return elements;
}

TEST(XmlCheck, RefusesWhatIsNotWellFormed) {
    EXPECT_EQ(ParseXml("<a><b x=\"1\"/>t &amp; u</a>").size(), 2u);
    for (const char* bad : {"<a><b></a></b>", "<a x=1/>", "<a>&nbsp;</a>", "<a/><b/>", "<a>"}) {
        ::testing::TestPartResultArray failures;
        {
            ::testing::ScopedFakeTestPartResultReporter reporter(
                ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD,
                &failures);
            ParseXml(bad);
        }
        EXPECT_EQ(failures.size(), 1) << bad;
    }
}

// ---- pwc sweep ---------------------------------------------------------------------

class SweepCommand : public ::testing::Test {
  protected:
    ScratchDir dir{"sweep_host"};
};

TEST_F(SweepCommand, ChartHasOnePolylinePerCornerWithOnePointPerStep) {
    const std::string svg = dir.File("ambient.svg");
    const PwcRun run = Pwc({"sweep", kDemo, "--ambient", "--from", "0", "--to", "100", "--step",
                            "25", "-o", svg, "--json"});
    ASSERT_EQ(run.code, 0) << run.err;
    const Json j = Json::parse(run.out);
    EXPECT_EQ(j["sweep"], "ambient");
    EXPECT_EQ(j["x"]["unit"], "C");
    ASSERT_GE(j["corners"].size(), 1u);
    std::vector<double> xs;
    for (const Json& p : j["corners"][0]["points"]) xs.push_back(p["x"].get<double>());
    EXPECT_EQ(xs, (std::vector<double>{100, 75, 50, 25, 0}));

    const std::vector<XmlElement> elements = ParseXml(ReadFile(svg));
    ASSERT_FALSE(elements.empty());
    EXPECT_EQ(elements.front().name, "svg");
    std::map<std::string, int> points;
    for (const XmlElement& e : elements) {
        if (e.name != "polyline") continue;
        std::istringstream in(e.attributes.at("points"));
        int n = 0;
        for (std::string pair; in >> pair;) ++n;
        points[e.attributes.at("data-name")] = n;
    }
    ASSERT_EQ(points.size(), j["corners"].size());
    for (const Json& c : j["corners"]) EXPECT_EQ(points[c["name"]], 5) << c["name"];
    const std::string text = ReadFile(svg);
    for (const char* label : {"Ambient (C)", "Total Power (W)", ">Typical<"})
        EXPECT_NE(text.find(label), std::string::npos) << label;
}

TEST_F(SweepCommand, CsvOfASupplySweepStopsAboveTheLowerLimit) {
    const std::string csv = dir.File("vcc.csv");
    const PwcRun run = Pwc({"sweep", kDemo, "--supply", "--rail", "Vcc", "--from", "1.14", "--to",
                            "1.26", "--step", "0.05", "--csv", csv});
    ASSERT_EQ(run.code, 0) << run.err;
    std::istringstream in(ReadFile(csv));
    std::string head;
    std::getline(in, head);
    EXPECT_EQ(head.rfind("Vcc (V),Typical (W)", 0), 0u) << head;
    std::vector<std::string> xs;
    for (std::string line; std::getline(in, line);) xs.push_back(line.substr(0, line.find(',')));
    EXPECT_EQ(xs, (std::vector<std::string>{"1.26", "1.21", "1.16"}));
}

TEST_F(SweepCommand, TheDefaultStepKeepsTheLowerEndOfARangeItDivides) {
    // 0.144 / 0.024 falls just short of 6 in doubles.
    const PwcRun run =
        Pwc({"sweep", kDemo, "--supply", "--from", "1.116", "--to", "1.26", "--json"});
    ASSERT_EQ(run.code, 0) << run.err;
    const Json j = Json::parse(run.out);
    for (const Json& c : j["corners"]) EXPECT_EQ(c["points"].size(), 7u) << c["name"];
}

TEST(ChartTicks, FlatOrUnreadableDataStillGivesAFewTicks) {
    const double half = 0.5, next = std::nextafter(0.5, 1.0);
    const std::vector<double> flat = pwchost::NiceTicks(half, next, 6);
    EXPECT_GE(flat.size(), 2u);
    EXPECT_LT(flat.size(), 64u);
    EXPECT_LE(flat.front(), half);
    EXPECT_GE(flat.back(), next);
    EXPECT_GE(pwchost::NiceTicks(NAN, NAN, 6).size(), 2u);

    pwchost::LineChart chart;
    chart.series.push_back({"Typical", "#000", {{1.0, NAN}, {2.0, INFINITY}}});
    EXPECT_NE(pwchost::RenderSvg(chart).find("<svg"), std::string::npos);
}

TEST_F(SweepCommand, FrequencyOfOneClockAsATable) {
    const PwcRun run = Pwc({"sweep", kDemo, "--frequency", "--clock", "clk_spi", "--from", "10",
                            "--to", "30", "--step", "20"});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out.rfind("clk_spi (MHz)", 0), 0u) << run.out;
    EXPECT_NE(run.out.find("\n30 "), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\n10 "), std::string::npos) << run.out;
}

struct BadSweep {
    std::vector<std::string> args;
    const char* message;
};

class SweepRefuses : public ::testing::TestWithParam<BadSweep> {};

TEST_P(SweepRefuses, WithAMessageAndCodeTwo) {
    std::vector<std::string> args{"sweep", kDemo};
    for (const std::string& a : GetParam().args) args.push_back(a);
    const PwcRun run = Pwc(args);
    EXPECT_EQ(run.code, pwchost::kExitUsage);
    EXPECT_NE(run.err.find(GetParam().message), std::string::npos) << run.err;
    EXPECT_TRUE(run.out.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, SweepRefuses,
    ::testing::Values(BadSweep{{}, "one of --supply, --ambient, --frequency"},
                      BadSweep{{"--supply", "--ambient"}, "excludes"},
                      BadSweep{{"--ambient", "--step", "0"}, "--step must be above 0"},
                      BadSweep{{"--ambient", "--from", "50", "--to", "10"}, "--from must not"},
                      BadSweep{{"--supply", "--rail", "Vxx"}, "no such supply"},
                      BadSweep{{"--frequency", "--clock", "clk_none"}, "no such clock"},
                      BadSweep{{"--ambient", "--panel", "Nothing"}, "no such tab"},
                      // The project's range at the default step of 0.024 V.
                      BadSweep{{"--supply", "--step", "0.00001"}, "12001 points; at most"}));

// ---- pwc calc --constraints --------------------------------------------------------

std::string BankVccio(const Json& j, int bank) {
    for (const Json& b : j["banks"])
        if (b["bank"].get<int>() == bank) return b["vccio"];
    return "";
}

TEST(ConstraintsOption, AFixedBankVoltageShowsAndItsConflictIsReported) {
    const PwcRun sample =
        Pwc({"calc", kDemo, "--json", "--constraints", kData + "/projects/demo.pad"});
    ASSERT_EQ(sample.code, 0) << sample.err;
    EXPECT_EQ(BankVccio(Json::parse(sample.out), 2), "Vccio 1.8");
    ScratchDir dir("constraints_fixed");
    const std::string path = dir.File("lcd.lpf");
    std::ofstream(path) << "BANK 2 VCCIO 3.3 V;\n";
    const PwcRun fixed = Pwc({"calc", kDemo, "--json", "--constraints", path});
    EXPECT_EQ(fixed.code, pwchost::kExitDesignRule) << fixed.err;
    const Json f = Json::parse(fixed.out);
    EXPECT_EQ(BankVccio(f, 2), "Vccio 3.3");
    EXPECT_NE(f["messages"].dump().find("bank 2"), std::string::npos) << f["messages"].dump();
}

TEST(ConstraintsOption, WhatTheDeviceCantDoIsADesignRuleFailure) {
    ScratchDir dir("constraints_host");
    const std::string path = dir.File("bad.lpf");
    std::ofstream(path) << "BANK 9 VCCIO 3.3 V;\n";
    const PwcRun run = Pwc({"calc", kDemo, "--json", "--constraints", path});
    EXPECT_EQ(run.code, pwchost::kExitDesignRule) << run.err;
    const Json j = Json::parse(run.out);
    EXPECT_NE(j["messages"].dump().find("Invalid bank id 9 in constraints file."),
              std::string::npos);
}

TEST(ConstraintsOption, MissingOrUnknownFilesAreRefusedBeforeTheEngine) {
    ScratchDir dir("constraints_missing");
    const PwcRun missing = Pwc({"calc", kDemo, "--constraints", dir.File("none.pad")});
    EXPECT_EQ(missing.code, pwchost::kExitUsage);
    EXPECT_NE(missing.err.find("does not exist"), std::string::npos) << missing.err;
    const std::string other = dir.File("pins.txt");
    std::ofstream(other) << "x";
    const PwcRun unknown = Pwc({"calc", kDemo, "--constraints", other});
    EXPECT_EQ(unknown.code, pwchost::kExitUsage);
    EXPECT_NE(unknown.err.find("unknown kind"), std::string::npos) << unknown.err;
}

}  // namespace
