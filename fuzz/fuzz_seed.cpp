// fuzz_seed TEXTDIR BINDIR [FILE...]: copies each readable data file (text or
// binary) into the corpus in both forms; with none, writes built-in samples.
#include <cstdio>
#include <string>

#include "pd_data.h"
#include "pd_util.h"

namespace {

const char* const kSamples[] = {
    "#PWC-DATA 1\n"
    "# sample device data\n"
    "[KEYSECT \"Info\"]\n"
    "_FILE_FORMAT = 2\n"
    "_STATUS = Advanced\n"
    "Kvcc = 1.0 + (dKvcc - 1.2) * 2.1\n"
    "\"odd = key\" = \" value, with \"\"quotes\"\" \"\n"
    "empty =\n",

    "#PWC-DATA 1\n"
    "[TBLSECT \"SUPPLIES\"]\n"
    "SupplyName, Default, Min, Max\n"
    "VCC, 1.200, 1.140, 1.260\n"
    "VCCIO_33, 3.300\n"
    "\" x \",, \"\\x41\\\\\", \"#\"\n"
    "[TBLSECT \"one\"]\n"
    "x\n"
    "\"\"\n",

    "#PWC-DATA 1\n"
    "[PWRSECT \"SLICE\"]\n"
    "supplies: VCC, VCCPG\n"
    "coef: LUT_used, VCC, 0.0012, 0.0198, 0.0031, 0.00002\n"
    "coef: REG@KZQ2-256HC_SG48, VCCPG, 0.0004, 0.0198,, null, 1, 2, 3, 4, 5, 6\n"
    "dcblock: used, VCC, 12.0, 0.0198, 0.05\n"
    "dcblock: sleep, VCCPG, 2.0, 0.0198, 0.0\n"
    "dcblock: standby, VCC, 3.0\n"
    "[KEYSECT \"Scale Factors\"]\n"
    "a = 1\n",
};

bool WriteFile(const std::string& path, const std::string& bytes) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return std::fclose(f) == 0 && ok;
}

bool Emit(const std::string& textDir, const std::string& binDir, const std::string& leaf,
          const PD_DATA& data) {
    return WriteFile(textDir + "/" + leaf + ".txt", data.ToText()) &&
           WriteFile(binDir + "/" + leaf + ".bin", data.ToBinary());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: fuzz_seed TEXTDIR BINDIR [FILE...]\n");
        return 2;
    }
    int written = 0;
    for (int i = 3; i < argc; ++i) {
        if (!PD_UTIL::FileExists(argv[i])) continue;
        PD_DATA data;
        const bool ok =
            PD_UTIL::IsBinaryFile(argv[i]) ? data.LoadBinFile(argv[i]) : data.LoadTxtFile(argv[i]);
        std::string leaf = argv[i];
        leaf = leaf.substr(leaf.rfind('/') + 1);
        if (ok && Emit(argv[1], argv[2], leaf, data)) ++written;
    }
    if (written == 0) {
        for (const char* sample : kSamples) {
            PD_DATA data;
            if (!data.ParseText(sample, "sample")) return 1;
            if (!Emit(argv[1], argv[2], "sample" + std::to_string(written++), data)) return 1;
        }
    }
    std::printf("%d seed files in each form\n", written);
    return 0;
}
