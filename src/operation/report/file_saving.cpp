#include "operation/report/file_saving.h"

#include "libs/system/safe_file.h"
#include "operation/report/report_screen.h"
#include "util/chosen_file.h"
#include "util/display.h"
#include "util/paths.h"

namespace zr5 {
namespace {

/// What is saved, and how the picker and the boxes call it.
struct Saving {
    const char* title;
    const char* filter;
    const char* extension; ///< without its dot
    std::string startFolder = {};
    std::string suggestedName = {};
    std::string source = {}; ///< a file that is never overwritten, and why
    const char* whyNotSource = "";
};

/// Why nothing can be saved at this path, where `there` stands; empty when it can.
std::string WhyNot(FileSystem& fileSystem, const std::string& path,
                   const std::optional<ChosenFile>& there, const Saving& saving) {
    if (!there) return WhyNotCreatable(fileSystem, path);
    if (there->kind != FileKind::Regular) return WhyNotAFile(there->kind);
    if (!saving.source.empty() && SameFile(fileSystem, path, saving.source))
        return saving.whyNotSource;
    return {};
}

std::string WhyNotWritten(FsStatus status) {
    if (status == FsStatus::NoSpace) return "was not written: the disk is full.";
    if (status == FsStatus::NotPermitted) return "was not written: that is not permitted.";
    if (status == FsStatus::AlreadyExists) return "was not written: it exists meanwhile.";
    return "was not written.";
}

bool Save(FileSystem& fileSystem, RandomSource& random, UserPort& user, const Saving& saving,
          std::span<const std::byte> content) {
    const auto chosen = user.PickFile({.kind = FilePicker::Kind::Save,
                                       .title = saving.title,
                                       .filter = saving.filter,
                                       .startFolder = saving.startFolder,
                                       .suggestedName = saving.suggestedName});
    if (!chosen || chosen->empty()) return false;
    const auto refuse = [&](const std::string& path, const std::string& reason) {
        user.Ask(Notice(DisplayName(path) + "\r\n" + reason, saving.title, BoxIcon::Exclamation));
        return false;
    };
    std::string path = MeantPath(fileSystem, *chosen);
    if (ExtensionOf(path) != saving.extension) path += std::string(".") + saving.extension;
    const auto there = ResolveChosen(fileSystem, path);
    const std::string reason = WhyNot(fileSystem, path, there, saving);
    if (!reason.empty()) return refuse(path, reason);
    if (there && user.Ask(OverwriteQuestion(DisplayName(path))) != Answer::Yes) return false;
    const FsStatus status = WriteSafely(fileSystem, random, there ? there->path : path, content,
                                        there ? IfThere::Replace : IfThere::Refuse);
    return status == FsStatus::Ok || refuse(path, WhyNotWritten(status));
}

} // namespace

void SavePicture(FileSystem& fileSystem, RandomSource& random, UserPort& user,
                 const std::string& pictured, std::span<const std::byte> png) {
    Save(fileSystem, random, user,
         {.title = "Save picture",
          .filter = "Picture (PNG) | *.png",
          .extension = "png",
          .startFolder = SplitPath(pictured).folder,
          .source = pictured,
          .whyNotSource = "is the file that the picture is of."},
         png);
}

bool SaveReport(FileSystem& fileSystem, RandomSource& random, UserPort& user,
                const ReportScreen& report) {
    constexpr const char* Title = "Save report";
    if (report.HoldsKey() &&
        user.Ask(Question("This report holds a key: whoever can read the saved file can read the "
                          "key.\r\n\r\nDo you wish to save it all the same?",
                          Title, BoxIcon::Exclamation, Answer::No)) != Answer::Yes) {
        return false;
    }
    std::string text = report.text();
    std::erase(text, '\r');
    const bool isSaved = Save(fileSystem, random, user,
                              {.title = Title,
                               .filter = "Text (*.txt) | *.txt",
                               .extension = "txt",
                               .suggestedName = "report.txt"},
                              std::as_bytes(std::span(text)));
    if (report.HoldsKey()) Wipe(std::as_writable_bytes(std::span(text)));
    return isSaved;
}

} // namespace zr5
