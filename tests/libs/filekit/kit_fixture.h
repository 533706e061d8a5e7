#pragma once

// The file kit on a disk that can be made to fail, with a fresh folder.

#include "libs/filekit/file_kit.h"
#include "libs/system/random.h"
#include "support/faulty_file_system.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <memory>

namespace zr5::test {

class KitTest : public testing::Test {
  protected:
    std::unique_ptr<FileSystem> system = MakeSystemFileSystem();
    FaultyFileSystem disk{*system};
    SystemRandom random;
    std::unique_ptr<FileKit> kit = MakeFileKit(disk, random);
    TemporaryFolder folder;
};

} // namespace zr5::test
