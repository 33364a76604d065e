// pwc: the command-line host of the engine.
#include <iostream>

#include "host.h"

int main(int argc, char** argv) {
    return pwchost::RunPwc(argc, argv, std::cout, std::cerr);
}
