// Writes the files of tests/data again: make_known_answers FOLDER. No test runs it: files that
// were encrypted once stay as they are.

#include "support/known_answers.h"

#include <cstdio>
#include <fstream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::puts("make_known_answers FOLDER");
        return 2;
    }
    for (const auto& [name, bytes] : zr5::test::MakeKnownFiles()) {
        std::ofstream file(std::string(argv[1]) + "/" + name, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush();
        if (!file) {
            std::printf("%s cannot be written\n", name.c_str());
            return 1;
        }
    }
    return 0;
}
