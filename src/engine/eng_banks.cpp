// The bank model: bank records and voltages of the I/O banks.
#include "baspcengin.h"

// The bank records come with the I/O tabs; until then the device has none and
// the "Bank Voltage" table keeps the rows its template and project give it.
void PC_ENG::SetBankInformation() {}
void PC_ENG::BankDo() {}
