// Text helpers of the engine. All values of the calculator are text, so the
// rules below (where a number starts, which zero is cut) shape the results.
#ifndef PWC_PC_TEXT_H
#define PWC_PC_TEXT_H

#include <set>
#include <string>
#include <vector>

// Case-blind compare: 0 when equal, else the difference of the first differing
// characters after upper-casing.
int pc_stricmp(const char* a, const char* b);

// Resistors in parallel: a*b/(a+b). A zero sum is not guarded (0 and 0 give NaN).
double AddInParallel(double a, double b);

// True when every character is a digit; an empty text is all digits.
bool strisdigit(const std::string& text);

int CountCharInString(const std::string& text, char c);

// Appends the item unless the vector already holds it.
void AddToVector(std::vector<std::string>& items, const std::string& item);

// The value printed with "%.20lf".
std::string Getdouble2String(double value);

// Cuts the text at its FIRST "0" when that lies behind the first "." and
// neither is at position 0: "1.50" gives "1.5" but "1.05" gives "1.".
std::string RemoveLastZeros(const std::string& text);

// The first run of digits; empty when there is none.
std::string GetStringFirstNumberStr(const std::string& text);
// As above, but "." joins the run once digits have begun ("V1.2" -> "1.2").
std::string GetStringNumberStr(const std::string& text);
// The first run of digits as an integer; 0 when there is none.
int GetStringFirstNumber(const std::string& text);
// Voltage of an I/O standard name in tenths of a volt: 25 for the 2.5 V
// differential standards, else the first number in the name, else 33.
int GetStringFirstNumberforVoltage(const std::string& text);

// Splits at the first character of `delimiter`, keeping empty tokens; a
// separator as the last character ends the text without adding an empty
// token. `keepBlanks` true splits exactly so; false also drops blanks at both
// ends of each token.
std::vector<std::string> GetArrayOfTokensWithTrim(const std::string& text,
                                                  const std::string& delimiter, bool keepBlanks);
std::set<std::string> GetSetOfTokensWithTrim(const std::string& text, const std::string& delimiter,
                                             bool keepBlanks);

// Drops the "_" that begins a term: at the start and behind "*", "/", "(";
// behind "+" or "-" only the first time.
void RemoveUnderlinefromFormula(std::string& formula);

// Short name of a column title ("# Logic" -> "LUT"); the title itself when no
// rule applies.
void NameConvert(const std::string& title, std::string& out);

// Data section of a logic or routing key ("LUT" -> "SLICE"); empty when none.
std::string GetDataSectionType(const std::string& key);

#endif
