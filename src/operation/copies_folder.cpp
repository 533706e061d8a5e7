#include "operation/copies_folder.h"

#include "libs/system/safe_file.h"
#include "util/paths.h"

namespace zr5 {
namespace {

constexpr int LastNumber = 999;

std::string NameWithNumber(int number) {
    return number == 1 ? "zr5test-copies" : "zr5test-copies-" + std::to_string(number);
}

} // namespace

CopiesFolder::CopiesFolder(FileSystem& fileSystem, std::vector<std::string> names)
    : fileSystem_(fileSystem), names_(std::move(names)) {}

CopiesFolder::~CopiesFolder() {
    Remove();
}

bool CopiesFolder::Make(const std::string& parent) {
    FsStatus status = FsStatus::AlreadyExists;
    std::string path;
    for (int number = 1; number <= LastNumber && status == FsStatus::AlreadyExists; ++number) {
        path = parent + NameWithNumber(number);
        hasNumber_ = number > 1;
        status = fileSystem_.MakeFolder(path);
    }
    if (status != FsStatus::Ok) return false;
    mayRemove_ = true;
    const char separator = SeparatorOf(parent);
    path_ = path + separator;
    encrypted_ = path_ + "encrypted" + separator;
    decrypted_ = path_ + "decrypted" + separator;
    if (fileSystem_.MakeFolder(encrypted_) == FsStatus::Ok &&
        fileSystem_.MakeFolder(decrypted_) == FsStatus::Ok) {
        return true;
    }
    Remove();
    return false;
}

bool CopiesFolder::RemoveCopies() {
    bool allGone = true;
    for (const std::string& folder : {encrypted_, decrypted_}) {
        for (const std::string& name : names_) {
            for (const std::string& path :
                 {folder + name,
                  NumberedName(fileSystem_, folder + name, std::string(SalvageSuffix), 1)}) {
                const FsStatus status = fileSystem_.Remove(path);
                allGone = allGone && (status == FsStatus::Ok || status == FsStatus::NotFound);
            }
        }
    }
    return allGone;
}

bool CopiesFolder::Remove() {
    if (!mayRemove_) return true;
    mayRemove_ = false; // what is left now stays, for it is reported
    RemoveCopies();
    static_cast<void>(fileSystem_.RemoveFolder(encrypted_));
    static_cast<void>(fileSystem_.RemoveFolder(decrypted_));
    const FsStatus status = fileSystem_.RemoveFolder(path_);
    return status == FsStatus::Ok || status == FsStatus::NotFound;
}

} // namespace zr5
