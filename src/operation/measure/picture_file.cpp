#include "operation/measure/picture_file.h"

#include "libs/system/safe_file.h"
#include "util/chosen_file.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr const char* Title = "Save picture";

/// Why the picture cannot be put at this path, where `there` stands; empty when it can.
std::string WhyNot(FileSystem& fileSystem, const std::string& path,
                   const std::optional<ChosenFile>& there, const std::string& pictured) {
    if (!there) return WhyNotCreatable(fileSystem, path);
    if (there->kind != FileKind::Regular) return WhyNotAFile(there->kind);
    if (SameFile(fileSystem, path, pictured)) return "is the file that the picture is of.";
    return {};
}

std::string WhyNotWritten(FsStatus status) {
    if (status == FsStatus::NoSpace) return "was not written: the disk is full.";
    if (status == FsStatus::NotPermitted) return "was not written: that is not permitted.";
    if (status == FsStatus::AlreadyExists) return "was not written: it exists meanwhile.";
    return "was not written.";
}

} // namespace

void SavePicture(FileSystem& fileSystem, RandomSource& random, UserPort& user,
                 const std::string& pictured, std::span<const std::byte> png) {
    const auto chosen = user.PickFile({.kind = FilePicker::Kind::Save,
                                       .title = Title,
                                       .filter = "Picture (PNG) | *.png",
                                       .startFolder = SplitPath(pictured).folder});
    if (!chosen || chosen->empty()) return;
    const auto refuse = [&](const std::string& path, const std::string& reason) {
        user.Ask(Notice(DisplayName(path) + "\r\n" + reason, Title, BoxIcon::Exclamation));
    };
    std::string path = MeantPath(fileSystem, *chosen);
    if (ExtensionOf(path) != "png") path += ".png";
    const auto there = ResolveChosen(fileSystem, path);
    const std::string reason = WhyNot(fileSystem, path, there, pictured);
    if (!reason.empty()) return refuse(path, reason);
    if (there && user.Ask(OverwriteQuestion(DisplayName(path))) != Answer::Yes) {
        return;
    }
    const FsStatus status = WriteSafely(fileSystem, random, there ? there->path : path, png,
                                        there ? IfThere::Replace : IfThere::Refuse);
    if (status != FsStatus::Ok) refuse(path, WhyNotWritten(status));
}

} // namespace zr5
