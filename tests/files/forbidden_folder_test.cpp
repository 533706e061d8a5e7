#include "files/forbidden_folder.h"

#include <gtest/gtest.h>

namespace zr5 {
namespace {

struct FolderCase {
    std::string_view path, reported;
};
class Folder : public testing::TestWithParam<FolderCase> {};

TEST_P(Folder, IsForbiddenUnderTheNameThatIsReported) {
    EXPECT_EQ(ForbiddenFolderName(GetParam().path).value_or(""), GetParam().reported)
        << GetParam().path;
}

INSTANTIATE_TEST_SUITE_P(
    Windows, Folder,
    testing::Values(FolderCase{"C:\\Users\\someone\\Documents\\", "Users"},
                    FolderCase{"C:\\$Recycle.Bin\\", "Recycle Bin"},
                    FolderCase{"d:\\recycler", "Recycle Bin"},
                    FolderCase{"C:\\windows2\\", "Windows"},
                    FolderCase{"C:\\Program Files (x86)\\a\\", "Program Files"},
                    FolderCase{"C:\\System Volume Information\\", "System Volume Information"},
                    FolderCase{"C:\\data\\Windows\\", ""}, FolderCase{"C:\\", ""},
                    FolderCase{"C:", ""}));
INSTANTIATE_TEST_SUITE_P(
    Posix, Folder,
    testing::Values(FolderCase{"/usr", "usr"}, FolderCase{"/usr/share/doc/", "usr"},
                    FolderCase{"/USR/", ""}, FolderCase{"/usrlocal/", ""},
                    FolderCase{"/lib64/", "lib64"}, FolderCase{"/var/lib/x/", "lib"},
                    FolderCase{"/var/log/", ""}, FolderCase{"/home/a/usr/", ""},
                    FolderCase{"/home/a/.local/share/Trash/files/", "Recycle Bin"},
                    FolderCase{"/home/a/Trash/", ""},
                    FolderCase{"/media/stick/.Trash-1000/", "Recycle Bin"},
                    FolderCase{"/media/stick/$RECYCLE.BIN/", "Recycle Bin"},
                    FolderCase{"/mnt/d/System Volume Information/", "System Volume Information"},
                    FolderCase{"/home/", ""}, FolderCase{"/root/a/", ""}, FolderCase{"/tmp/", ""},
                    FolderCase{"/", ""}));

} // namespace
} // namespace zr5
