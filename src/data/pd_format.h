// Internal to the store: the readers and writers of the two file forms, and
// the "null" records that a power section starts from.
#ifndef PWC_PD_FORMAT_H
#define PWC_PD_FORMAT_H

#include <string>

#include "pd_data.h"

PD_COEF PD_NullCoef();
PD_DCBLOCK PD_NullDcBlock();
PD_SUPPLYBLOCKS PD_NullSupplyBlocks();

struct PD_FORMAT {
    // On failure `error` gets the message without the origin: "LINE: what"
    // for text, "byte OFFSET: what" for binary; `data` is left empty.
    static bool ParseText(PD_DATA& data, const std::string& text, std::string* error);
    static bool ParseBinary(PD_DATA& data, const std::string& bytes, std::string* error);
    static std::string ToText(const PD_DATA& data);
    static std::string ToBinary(const PD_DATA& data);

  private:
    class TextReader;
    class BinReader;
};

#endif
