#pragma once

// The folder in which the reliability test keeps its copies: a new one, so that nothing else is
// ever overwritten or removed, and gone with the copies unless they are to be kept.

#include "libs/system/file_system.h"

#include <string>
#include <vector>

namespace zr5 {

class CopiesFolder {
  public:
    /// Nothing is made yet. `names` are those of the files of which there will be copies.
    CopiesFolder(FileSystem& fileSystem, std::vector<std::string> names);
    ~CopiesFolder();
    CopiesFolder(const CopiesFolder&) = delete;
    CopiesFolder& operator=(const CopiesFolder&) = delete;

    /// Makes it in `parent` (ending in a separator) under a name that is free: "zr5test-copies",
    /// "zr5test-copies-2", to "-999". False when that cannot be done; nothing is left then.
    [[nodiscard]] bool Make(const std::string& parent);

    /// Whether it got a number because the name without one was taken.
    [[nodiscard]] bool HasNumber() const { return hasNumber_; }
    /// These end in a separator and are set once it is made.
    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] const std::string& Encrypted() const { return encrypted_; }
    [[nodiscard]] const std::string& Decrypted() const { return decrypted_; }

    /// Removes the copies. False when one of them is still there.
    bool RemoveCopies();
    /// Removes copies and folders, once. False when something is still there: a copy that cannot
    /// be removed, or what somebody else has put into the folder.
    bool Remove();
    /// Copies and folders stay from here on.
    void Keep() { mayRemove_ = false; }

  private:
    FileSystem& fileSystem_;
    std::vector<std::string> names_;
    std::string path_;
    std::string encrypted_;
    std::string decrypted_;
    bool hasNumber_ = false;
    bool mayRemove_ = false;
};

} // namespace zr5
