#include "operation/disk_space.h"

#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr std::uint64_t KilobyteBytes = 1024;
constexpr std::uint64_t MegabyteKilobytes = 1024;

std::string ParentOf(std::string folder) {
    while (folder.size() > 1 && folder.ends_with('/'))
        folder.pop_back();
    return SplitPath(folder).folder;
}

enum class Rounding { Down, Up };

/// With a blank before the number. Megabytes have a decimal where they are not whole, and are
/// rounded away from each other so that two that differ do not read the same.
std::string Amount(std::uint64_t kilobytes, Rounding rounding) {
    if (kilobytes < MegabyteKilobytes) return " " + std::to_string(kilobytes) + " KB";
    const std::uint64_t rest = rounding == Rounding::Up ? MegabyteKilobytes - 1 : 0;
    const std::uint64_t tenths = (kilobytes * 10 + rest) / MegabyteKilobytes;
    const std::string decimal = tenths % 10 == 0 ? "" : "." + std::to_string(tenths % 10);
    return " " + WithThousands(tenths / 10) + decimal + " MB";
}

} // namespace

std::string DriveOf(FileSystem& fileSystem, const std::string& folder) {
    if (IsWindowsShaped(folder)) return folder.substr(0, 2);
    std::string there = folder;
    auto canonical = fileSystem.CanonicalPath(there);
    while (!canonical && there.size() > 1) {
        there = ParentOf(there);
        canonical = fileSystem.CanonicalPath(there);
    }
    std::string drive = canonical.value_or("/");
    const auto device = [&](const std::string& path) -> std::optional<std::uint64_t> {
        const auto identity = fileSystem.IdentityOf(path);
        if (!identity) return std::nullopt;
        return identity->device;
    };
    const auto own = device(drive);
    while (drive.size() > 1 && device(ParentOf(drive)) == own)
        drive = ParentOf(drive);
    while (drive.size() > 1 && drive.ends_with('/'))
        drive.pop_back();
    return drive;
}

std::optional<MessageBox> ProblemWithSpace(FileSystem& fileSystem, const std::string& folder,
                                           std::uint64_t totalBytes) {
    const std::string drive = DisplayName(DriveOf(fileSystem, folder));
    const auto freeBytes = fileSystem.FreeBytes(folder);
    if (!freeBytes) {
        return Notice("Error when attempting to access drive " + drive, "Error",
                      BoxIcon::Exclamation);
    }
    const std::uint64_t freeKilobytes =
        *freeBytes / KilobyteBytes + (*freeBytes % KilobyteBytes >= KilobyteBytes / 2 ? 1 : 0);
    const std::uint64_t neededKilobytes = totalBytes / KilobyteBytes;
    const bool fits = neededKilobytes < freeKilobytes ||
                      (neededKilobytes == freeKilobytes && totalBytes % KilobyteBytes == 0);
    if (fits) return std::nullopt;
    return Notice("Estimated space required on drive " + drive + " is" +
                      Amount(neededKilobytes, Rounding::Up) + ", but there is only" +
                      Amount(freeKilobytes, Rounding::Down) + " available.",
                  "Insufficient disk space", BoxIcon::Exclamation);
}

} // namespace zr5
