#include "files/seen_search.h"

#include "setup/operation_setup.h"
#include "util/display.h"
#include "util/numbers.h"

namespace zr5 {
namespace {

std::string Counted(std::uint64_t count, const std::string& word) {
    return WithThousands(count) + " " + word + (count == 1 ? "" : "s");
}

} // namespace

std::string SeenSearch::Text() const {
    return "Searching " + DisplayName(folder_) + "\r\n\r\n" + Counted(files_, "file") + " found" +
           (folders_ == 0 ? "" : " in " + Counted(folders_, "folder"));
}

bool SeenSearch::GoesOn() {
    const bool goesOn = ConsiderateVisitor::GoesOn();
    if (goesOn && shown_.IsTimeToShow())
        shown_.Show({.text = Text(), .stop = [this] { stopPressed_ = true; }});
    return goesOn && !stopPressed_;
}

WalkResult SearchForOneFile(const Machine& machine, WalkRequest request, const StopAsked& stopped) {
    request.limit = 1;
    SeenSearch search(machine, request.folder, stopped);
    return WalkFolder(machine, request, search);
}

std::string NothingFoundYetText(const WalkRequest& request, const WalkResult& found) {
    const std::string folder = DisplayName(request.folder);
    const std::string suffix =
        request.pattern == AllFilesPattern ? "" : " " + DisplayName(request.pattern);
    if (found.subfolders == 0) {
        return "The search of " + folder + "\r\nwas stopped early. There are no files" + suffix +
               "\r\nas far as it came (but perhaps in the rest).";
    }
    const std::string number = std::to_string(found.subfolders);
    return number + " subfolders of " + folder + " were checked\r\nand there are no files" +
           suffix + "\r\nin this folder or any of these " + number +
           " subfolders\r\n(but perhaps in others).";
}

} // namespace zr5
