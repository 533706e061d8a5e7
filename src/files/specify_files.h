#pragma once

// The rules of the dialogs that specify the input files of a folder and the output file of a single
// one: three options, the last of which takes an extension.

#include "files/file_choice.h"
#include "setup/setup_desk.h"
#include "util/user_port.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

class SpecifyFiles {
  public:
    static constexpr std::size_t Options = 3;
    /// The option that takes an extension.
    static constexpr std::size_t ByExtension = 2;

    explicit SpecifyFiles(UserPort& user) : user_(user) {}
    virtual ~SpecifyFiles() = default;
    SpecifyFiles(const SpecifyFiles&) = delete;
    SpecifyFiles& operator=(const SpecifyFiles&) = delete;

    [[nodiscard]] virtual std::string Title() const = 0;
    /// The folder or file that the options speak of, as it is shown.
    [[nodiscard]] virtual std::string Subject() const = 0;
    [[nodiscard]] virtual std::string Caption(std::size_t option) const = 0;
    /// Stands before the box for the extension.
    [[nodiscard]] virtual std::string Example() const = 0;

    /// At first what the setup says; none where no option says the same.
    [[nodiscard]] std::optional<std::size_t> Selected() const { return selected_; }
    void Select(std::size_t option) { selected_ = option; }
    [[nodiscard]] bool AcceptIsEnabled() const { return selected_.has_value(); }
    [[nodiscard]] bool ExtensionIsEnabled() const { return selected_ == ByExtension; }

    /// What the box is to show; it is tidied when it is set.
    [[nodiscard]] const std::string& Extension() const { return extension_; }
    void SetExtension(std::string_view typed);

    /// Stores the choice; true when the dialog is to close. A refusal has been explained and has
    /// changed nothing.
    [[nodiscard]] bool Accept();

  protected:
    /// `extension` can be used when the option takes one.
    [[nodiscard]] virtual bool Store(std::size_t option, const std::string& extension) = 0;

    UserPort& user_;

  private:
    std::optional<std::size_t> selected_;
    std::string extension_;
};

/// The rules of `frmSpecifyInputFiles`: which files of the chosen folder are meant. The options
/// stand for subfolder switch and pattern of the setup.
class SpecifyInputFiles final : public SpecifyFiles {
  public:
    static constexpr std::size_t AllFiles = 0;
    static constexpr std::size_t AllFilesAndSubfolders = 1;

    SpecifyInputFiles(UserPort& user, SetupDesk& desk);

    [[nodiscard]] std::string Title() const override;
    [[nodiscard]] std::string Subject() const override;
    [[nodiscard]] std::string Caption(std::size_t option) const override;
    [[nodiscard]] std::string Example() const override;

  protected:
    [[nodiscard]] bool Store(std::size_t option, const std::string& extension) override;

  private:
    SetupDesk& desk_;
};

/// The rules of `frmSpecifyOutputFiles`: where the result of the chosen single file goes, when it
/// does not take its place.
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
