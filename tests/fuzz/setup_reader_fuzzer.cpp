// Any bytes as a setup file: reading ends, and what is written of the result reads as the same.

#include "setup/setup_text.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zr5;
    const SetupReading first = ReadSetupText({reinterpret_cast<const char*>(data), size});
    const auto text = WriteSetupText(first.setup);
    if (!first.complete || !text) return 0;
    const SetupReading second = ReadSetupText(*text);
    const bool same = second.complete && second.setup.Folder == first.setup.Folder &&
                      second.setup.FileName == first.setup.FileName &&
                      WriteSetupText(second.setup) == text;
    if (!same) std::abort();
    return 0;
}
