#include "files/forbidden_folder.h"

#include "util/paths.h"
#include "util/text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace zr5 {
namespace {

constexpr std::string_view RecycleBin = "Recycle Bin";
constexpr std::string_view VolumeInformation = "System Volume Information";
constexpr std::size_t AfterDrive = 3; // "X:\"

struct ForbiddenName {
    std::string_view name;
    std::string_view reported;
};

/// In the order in which they are tested.
constexpr auto UnderADriveRoot = std::to_array<ForbiddenName>({
    {"$RECYCLE.BIN", RecycleBin},
    {"RECYCLER", RecycleBin},
    {"RECYCLED", RecycleBin},
    {"Users", "Users"},
    {"Windows", "Windows"},
    {"Program Files", "Program Files"},
    {"Documents and Settings", "Documents and Settings"},
    {VolumeInformation, VolumeInformation},
});

constexpr auto SystemFolders = std::to_array<std::string_view>(
    {"bin", "sbin", "usr", "etc", "boot", "dev", "proc", "sys", "run"});

/// What the libraries' folders, which all begin alike, are called.
constexpr auto LibraryFolders =
    std::to_array<std::string_view>({"lib", "lib32", "lib64", "libx32", "var/lib"});

constexpr auto TrashNames =
    std::to_array<std::string_view>({".Trash", "$RECYCLE.BIN", "RECYCLER", "RECYCLED"});

using Components = std::vector<std::string_view>;

Components ComponentsOf(std::string_view path) {
    Components components;
    while (!path.empty()) {
        const std::size_t end = path.find('/');
        if (end != 0) components.push_back(path.substr(0, end));
        path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
    }
    return components;
}

std::optional<std::string> ForbiddenOnWindows(std::string_view path) {
    const std::string rest = LowerCaseWithAccents(path.substr(std::min(path.size(), AfterDrive)));
    for (const ForbiddenName& forbidden : UnderADriveRoot) {
        if (rest.starts_with(LowerCaseWithAccents(forbidden.name))) {
            return std::string(forbidden.reported);
        }
    }
    return std::nullopt;
}

bool IsTrash(const Components& components, std::size_t at) {
    const std::string_view name = components[at];
    const bool homeTrash = name == "Trash" && at >= 2 && components[at - 1] == "share" &&
                           components[at - 2] == ".local";
    return homeTrash || name.starts_with(".Trash-") ||
           std::ranges::find(TrashNames, name) != TrashNames.end();
}

std::optional<std::string> ForbiddenOnPosix(std::string_view path) {
    const Components components = ComponentsOf(path);
    if (components.empty()) return std::nullopt;
    const std::string_view first = components.front();
    if (first.starts_with("lib") ||
        std::ranges::find(SystemFolders, first) != SystemFolders.end()) {
        return std::string(first);
    }
    if (first == "var" && components.size() > 1 && components[1] == "lib") return "lib";
    for (std::size_t at = 0; at < components.size(); ++at) {
        if (IsTrash(components, at)) return std::string(RecycleBin);
        if (components[at] == VolumeInformation) return std::string(VolumeInformation);
    }
    return std::nullopt;
}

/// Of a folder's path, which ends in a separator.
std::string LastComponent(std::string_view folder) {
    folder.remove_suffix(1);
    return SplitPath(folder).name;
}

} // namespace

std::optional<std::string> ForbiddenFolderName(std::string_view path) {
    return IsWindowsShaped(path) ? ForbiddenOnWindows(path) : ForbiddenOnPosix(path);
}

ForbiddenFolders::ForbiddenFolders(const Machine& machine)
    : fileSystem_(machine.fileSystem),
      ownFolder_(WithTrailingSeparator(
          fileSystem_.CanonicalPath(machine.ownFolder).value_or(std::string{}))) {
    const auto add = [this](std::string_view name) {
        const auto identity = fileSystem_.IdentityOf("/" + std::string(name));
        if (identity) systemFolders_.emplace_back(*identity, name.substr(name.rfind('/') + 1));
    };
    std::ranges::for_each(SystemFolders, add);
    std::ranges::for_each(LibraryFolders, add);
    if (const auto own = fileSystem_.IdentityOf(ownFolder_); own && !ownFolder_.empty())
        systemFolders_.emplace_back(*own, LastComponent(ownFolder_));
}

std::optional<std::string> ForbiddenFolders::NameOfOwn(const std::string& path) const {
    if (ownFolder_.empty() || !path.starts_with(ownFolder_)) return std::nullopt;
    return LastComponent(ownFolder_);
}

std::optional<std::string> ForbiddenFolders::NameOf(const std::string& path) const {
    if (auto name = ForbiddenFolderName(path)) return name;
    if (auto name = NameOfOwn(path)) return name;
    const auto identity = fileSystem_.IdentityOf(path);
    if (!identity) return std::nullopt;
    const auto found =
        std::ranges::find(systemFolders_, *identity, &std::pair<FileIdentity, std::string>::first);
    if (found == systemFolders_.end()) return std::nullopt;
    return found->second;
}

std::optional<std::string> ForbiddenInput(const OperationSetup& setup, const Machine& machine) {
    const bool isFolder = setup.InputMode == InputSource::FilesInAFolder;
    if (!isFolder && setup.OutputMode != OutputTarget::OverwriteInput) return std::nullopt;
    const std::string& folder = setup.Folder[InputSide];
    const std::string judged =
        WithTrailingSeparator(machine.fileSystem.CanonicalPath(folder).value_or(folder));
    const ForbiddenFolders forbidden(machine);
    return isFolder ? forbidden.NameOf(judged) : forbidden.NameOfOwn(judged);
}

MessageBox ForbiddenFolderBox(const std::string& name, const std::string& title) {
    return Notice("A '" + name + "' folder cannot be selected.", title, BoxIcon::Information);
}

} // namespace zr5
