#include "Commands.h"

#include <iostream>

int main(int argc, char** argv) {
    return qx::cli::Run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
}
