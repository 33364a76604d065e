// The "Block RAM" tab: four tables, one per way of using an embedded block
// RAM, on VCC and, where the memories have it, on VCCM.
#include <cstdio>

#include "baspcengin.h"
#include "eng_text.h"

using namespace pwc;

namespace {

// One memory table: its members, and its log texts on VCC and on VCCM (dyn,
// leak, bias; a null head logs nothing). Some middles keep " * vcc = " on
// VCCM and the dual-port leakage says "idx", as the logs always have.
struct MemoryTable {
    const char* table;
    PC_ENG::ProcessMember dyn, leak, bias;
    PC_ENG::RowLog vcc[3];
    PC_ENG::RowLog vccm[3];
};

const MemoryTable kMemoryTables[] = {
    {"SP RAM",
     &PC_ENG::ProcessSPRAMdynVcc,
     &PC_ENG::ProcessSPRAMLeakVccUsed,
     &PC_ENG::ProcessSPRAMbiasVccUsed,
     {{"PowerDynSPRAM row(", ") = IccDynSPRAM * vcc = "},
      {"PowerLeakSPRAM row(", ") = IccLeakSPRAM * vcc = "},
      {"PowerBiasSPRAM row(", ") = IccBiasSPRAM * vcc = "}},
     {{"PowerDynSPRAM row(", ") = IccDynSPRAM * vccm = "},
      {"PowerLeakSPRAM row(", ") = IccLeakSPRAM * vccm = "},
      {"PowerBiasSPRAM row(", ") = IccBiasSPRAM * vccm = "}}},
    {"DP RAM",
     &PC_ENG::ProcessDPRAMdynVcc,
     &PC_ENG::ProcessDPRAMleakVccUsed,
     &PC_ENG::ProcessDPRAMBiasVccUsed,
     {{"PowerDynDPRAM row(", ") = IccDynDPRAM * vcc = "},
      {"PowerLeakDPRAM row(", ") = idxLeakDPRAM * vcc = "},
      {"PowerBiasDPRAM row(", ") = IccBiasDPRAM * vcc = "}},
     {{"PowerDynDPRAM row(", ") = IccDynDPRAM * vcc = "},
      {"PowerLeakDPRAM row(", ") = idxLeakDPRAM * vcc = "},
      {"PowerBiasDPRAM row(", ") = IccBiasDPRAM * vcc = "}}},
    {"DP RAM True",
     &PC_ENG::ProcessDPRAMTrueDynVcc,
     &PC_ENG::ProcessDPRAMTrueLeakVccUsed,
     &PC_ENG::ProcessDPRAMTrueBiasVccUsed,
     {{"PowerDynDPRAMtrue row(", ") = IccDynDPRAMtrue * vcc = "},
      {nullptr, nullptr},
      {"PowerBiasDPRAMtrue row(", ") = IccBiasDPRAMtrue * vcc = "}},
     {{"PowerDynDPRAMtrue row(", ") = IccDynDPRAMtrue * vccm = "},
      {nullptr, nullptr},
      {"PowerBiasDPRAMtrue row(", ") = IccBiasDPRAMtrue * vccm = "}}},
    {"FIFO DC",
     &PC_ENG::ProcessFIFODynVcc,
     &PC_ENG::ProcessFIFOLeakVccUsed,
     &PC_ENG::ProcessFIFOBiasVccUsed,
     {{"PowerDynFIFODC row(", ") = IccDynFIFODC * vcc = "},
      {"PowerLeakFIFODC row(", ") = IccLeakFIFODC * vcc = "},
      {"PowerBiasFIFODC row(", ") = IccBiasFIFODC * vcc = "}},
     {{"PowerDynFIFODC row(", ") = IccDynFIFODC * vccm = "},
      {"PowerLeakFIFODC row(", ") = IccLeakFIFODC * vccm = "},
      {"PowerBiasFIFODC row(", ") = IccBiasFIFODC * vccm = "}}},
};

// The VCC pass walks the section's VCC and VCCPG; the VCCM pass runs only
// when the memories' section lists VCCM.
PC_ENG::TableFrame MemoryFrame(const MemoryTable& m) {
    using P = PC_ENG::PassIf;
    return {m.table,
            m.table,
            {{nullptr, "EBR", "Vcc", P::Always, false, m.dyn, m.leak, m.bias, "Dyn. Pwr (W)",
              "Leakage VCC Pwr (W)", "DCbias VCC Pwr (W)", m.vcc[0], m.vcc[1], m.vcc[2]},
             {"VCCM", "EBR", "Vccm", P::SectionHasSupply, false, m.dyn, m.leak, m.bias,
              "Dyn. VCCM Pwr (W)", "Leakage VCCM Pwr (W)", "DCbias VCCM Pwr (W)", m.vccm[0],
              m.vccm[1], m.vccm[2]}}};
}

}  // namespace

const PC_ENG::PanelFrame& PC_ENG::BlockRamFrame() {
    static const PanelFrame frame = [] {
        PanelFrame f;
        f.panel = "Block RAM";
        for (const MemoryTable& m : kMemoryTables) f.tables.push_back(MemoryFrame(m));
        f.unusedNames = &PC_ENG::GetArrayOfColumnUnusedNamesBLOCK;
        f.unusedValues = &PC_ENG::GetArrayOfColumnUnusedValuesBLOCK;
        f.unused = {
            {nullptr, "EBR", "Vcc", PassIf::Always, &PC_ENG::ProcessBlockRAMleakUnused,
             &PC_ENG::ProcessBlockRAMbiasUnused, "Unused Leakage VCC Pwr (W)",
             "Unused DCbias VCC Pwr (W)", "PowerLeakSPRAMunused = IccLeakSPRAMunused * vcc = ",
             "PowerBiasSPRAMunused = IccBiasSPRAMunused * vcc = "},
            {"VCCM", "EBR", "Vccm", PassIf::SectionHasSupply, &PC_ENG::ProcessBlockRAMleakUnused,
             &PC_ENG::ProcessBlockRAMbiasUnused, "Unused Leakage VCCM Pwr (W)",
             "Unused DCbias VCCM Pwr (W)", "PowerLeakSPRAMunused = IccLeakSPRAMunused * vccm = ",
             "PowerBiasSPRAMunused = IccBiasSPRAMunused * vccm = "}};
        f.plainDyn = PlainDyn::None;
        return f;
    }();
    return frame;
}

void PC_ENG::BlockRamCalculation() {
    RunPanelFrame(BlockRamFrame());
}

// ---- The made-up row of the blocks the design leaves free --------------------------

void PC_ENG::GetArrayOfColumnUnusedNamesBLOCK(PD_TABLE*, std::vector<std::string>& names) {
    names = {"BRAM_unused", "BRAM_used", "VCC",   "VCCM", "Device",
             "Package",     "Operating", "Speed", "TJ",   "Process"};
}

void PC_ENG::GetArrayOfColumnUnusedValuesBLOCK(PD_TABLE*, std::vector<std::string>& values) {
    int used = 0;
    if (PC_PANEL* panel = GetPanel(GetPanelIndex("Block RAM")))
        for (const MemoryTable& m : kMemoryTables)
            if (PD_TABLE* t = panel->GetTable(panel->GetTableIndex(m.table)))
                used += GetTotalSumRowData(t, t->GetColumnIndex("# EBR Blocks"), 0);
    char text[2][32];
    std::snprintf(text[0], sizeof text[0], "%d", static_cast<int>(DeviceHas("EBR")) - used);
    std::snprintf(text[1], sizeof text[1], "%d", used);
    values = {text[0],      text[1],         GetVDPM("Vcc", "Voltage"), GetVDPM("Vccm", "Voltage"),
              DeviceName(), PackageName(),   OperatingName(),           SpeedGrade(),
              CurrentTJ(),  GetProcessType()};
}
