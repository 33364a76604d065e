// The pwc command run inside the test's process, with what it prints.
#ifndef PWC_TESTS_HOST_FIXTURE_H
#define PWC_TESTS_HOST_FIXTURE_H

#include <sstream>
#include <string>
#include <vector>

#include "host.h"

namespace pwctest {

struct PwcRun {
    int code;
    std::string out, err;
};

// `pwc` with the arguments given.
inline PwcRun Pwc(const std::vector<std::string>& args) {
    std::vector<const char*> argv{"pwc"};
    for (const std::string& a : args) argv.push_back(a.c_str());
    std::ostringstream out, err;
    const int code = pwchost::RunPwc(static_cast<int>(argv.size()), argv.data(), out, err);
    return {code, out.str(), err.str()};
}

}  // namespace pwctest

#endif
