#pragma once

// The rules of `frmSpecifyOutputFiles`: where the result of a single file goes.

#include "files/single_file_choice.h"
#include "files/specify_files.h"

namespace zr5 {

/// For a single file that is chosen and a result that goes to a different file.
class SpecifyOutputFiles final : public SpecifyFiles {
  public:
    static constexpr std::size_t ExistingFile = 0;
    static constexpr std::size_t NewFile = 1;

    SpecifyOutputFiles(UserPort& user, FileSystem& fileSystem, const SetupDesk& desk,
                       SingleFileChoice& choice);

    [[nodiscard]] std::string Title() const override;
    [[nodiscard]] std::string Subject() const override;
    [[nodiscard]] std::string Caption(std::size_t option) const override;
    [[nodiscard]] std::string Example() const override;

  protected:
    /// The first two options open a file picker.
    [[nodiscard]] bool Store(std::size_t option, const std::string& extension) override;

  private:
    const SetupDesk& desk_;
    SingleFileChoice& choice_;
};

} // namespace zr5
