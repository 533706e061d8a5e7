#include "operation/file_randomness.h"

#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr std::int32_t WholeFile = 0;
constexpr int Decimals = 3;

std::string NameOf(const FileRandomness& file) {
    return DisplayName(SplitPath(file.path).name);
}

} // namespace

double MeasureWholeFile(Machine& machine, const std::string& path, ProgressFunction progress) {
    machine.fileKit.SetProgress(Throttled(machine.clock, std::move(progress)));
    const double value = machine.fileKit.fr(path, WholeFile);
    machine.fileKit.SetProgress({});
    return value;
}

std::string FileLine(const FileRandomness& file) {
    return (file.index == Input ? "Input file: " : "Output file: ") + NameOf(file);
}

std::string SizeLine(const FileRandomness& file) {
    return "Filesize = " + WithThousands(file.lengthBytes) + " bytes";
}

std::string RandomnessLine(const FileRandomness& file) {
    return "Randomness = " + WithThousands(file.value, Decimals);
}

std::string Meaning(const FileRandomness& file) {
    return file.value > 0 ? "Above 0: it looks encrypted or compressed."
                          : "Not above 0: it looks neither encrypted nor compressed.";
}

std::string WhyNoValue(const FileRandomness& file) {
    if (file.value == RandomnessTooSmall) {
        return NameOf(file) + " is too small (" + std::to_string(file.lengthBytes) +
               " bytes) to have a randomness value.";
    }
    if (file.value > RandomnessFailureLimit) return {};
    return "Cannot give a randomness report for this file.";
}

} // namespace zr5
