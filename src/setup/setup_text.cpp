#include "setup/setup_text.h"

#include "libs/system/text_encoding.h"
#include "setup/delimited_fields.h"
#include "setup/field_rules.h"
#include "setup/identity.h"
#include "setup/labels.h"
#include "util/code_page.h"
#include "util/display.h"
#include "util/paths.h"
#include "util/text.h"

#include <algorithm>
#include <array>

namespace zr5 {
namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view LineEnd = "\r\n";

/// One option button: each pair stands for a field of the setup.
struct OptionButton {
    bool (*isSelected)(const OperationSetup&);
    void (*select)(OperationSetup&);
};

template <auto Field, auto Value>
constexpr OptionButton Button{[](const OperationSetup& setup) { return setup.*Field == Value; },
                              [](OperationSetup& setup) { setup.*Field = Value; }};

using S = OperationSetup;
/// In the order of the file, the two of a pair one after the other.
constexpr std::array OptionButtons{
    Button<&S::Operation, Direction::Encrypt>,
    Button<&S::Operation, Direction::Decrypt>,
    Button<&S::InputMode, InputSource::SingleFile>,
    Button<&S::InputMode, InputSource::FilesInAFolder>,
    Button<&S::SubfolderAnswer, true>,
    Button<&S::SubfolderAnswer, false>,
    Button<&S::OutputMode, OutputTarget::OverwriteInput>,
    Button<&S::OutputMode, OutputTarget::SeparateOutput>,
};

/// Only folders of POSIX shape have escapes: elsewhere a backslash separates folders, and all names
/// are text. The first character decides, which no escape changes.
bool HasEscapes(std::string_view folder) {
    return folder.starts_with('/');
}

std::string StoredFolder(const std::string& folder) {
    return HasEscapes(folder) ? StorableName(folder) : folder;
}

std::string FolderFromStored(std::string_view stored) {
    return WithTrailingSeparator(HasEscapes(stored) ? NameFromDisplay(stored)
                                                    : std::string(stored));
}

bool HoldsNul(std::string_view name) {
    return name.find('\0') != std::string_view::npos;
}

/// Whether `name` can only mean something in `folder`, as the confirmation says.
bool StaysIn(std::string_view folder, std::string_view name) {
    return name != "." && name != ".." &&
           std::ranges::none_of(name, [&](char c) { return IsSeparatorIn(folder, c); });
}

using Captions = std::array<std::string, 2>;

/// Reads from a text into a setup; each step is false at the first field that cannot be read.
class SetupReader {
  public:
    SetupReader(std::string_view text, OperationSetup& setup) : fields_(text), setup_(setup) {
        setup_.SubfolderAnswer = false;
    }

    [[nodiscard]] bool Read() {
        if (!ReadOptions() || !ReadPaths(InputSide) || !ReadPaths(OutputSide) || !ReadLimits()) {
            if (!patternWasRead_) StayNarrow();
            return false;
        }
        setup_.FolderCaption = folderCaptions_;
        setup_.FilesCaption = filesCaptions_;
        if (setup_.InputMode == InputSource::FilesInAFolder) CompleteFolderOperation();
        if (setup_.FolderCaption[InputSide].empty()) setup_.FilesCaption[InputSide].clear();
        if (setup_.Folder[InputSide].empty()) { // a name alone is no file
            setup_.FileName[InputSide].clear();
            setup_.FolderCaption[InputSide].clear();
            setup_.FilesCaption[InputSide].clear();
        }
        return setup_.InputMode == InputSource::SingleFile ||
               setup_.OutputMode == OutputTarget::OverwriteInput;
    }

  private:
    [[nodiscard]] bool ReadOptions() {
        if (!fields_.NextText()) return false; // the version of the program that wrote the file
        for (const OptionButton& button : OptionButtons) {
            const auto selected = fields_.NextNumber();
            if (!selected) return false;
            if (*selected != 0) button.select(setup_);
        }
        return true;
    }

    [[nodiscard]] bool ReadPaths(std::size_t index) {
        const auto folder = fields_.NextText();
        if (!folder) return false;
        const std::string path = FolderFromStored(*folder);
        if (HoldsNul(path) || (!path.empty() && !IsFullPath(path))) return false;
        setup_.Folder[index] = path;
        const auto folderCaption = fields_.NextText();
        if (!folderCaption) return false;
        // A folder written by hand without its separator is shown as it is written.
        folderCaptions_[index] = *folderCaption == *folder ? LabelFor(path) : *folderCaption;
        const auto shownName = fields_.NextText();
        if (!shownName) return false;
        const std::string name = NameFromDisplay(*shownName);
        if (HoldsNul(name)) return false;
        if (StaysIn(path, name)) {
            setup_.FileName[index] = name;
        } else if (setup_.InputMode == InputSource::SingleFile) {
            return false; // the files of a folder are named by the pattern
        }
        const auto filesCaption = fields_.NextText();
        if (!filesCaption) return false;
        filesCaptions_[index] = *filesCaption;
        return true;
    }

    [[nodiscard]] bool ReadLimits() {
        const auto pattern = fields_.NextText();
        if (!pattern) return false;
        patternWasRead_ = true;
        if (!HasForbiddenCharacter(*pattern, Wildcards::Allowed)) {
            setup_.FilePattern = Trim(*pattern);
        }
        const auto maximum = fields_.NextText();
        if (!maximum) return false;
        setup_.MaxNumFiles = StoredMaxNumFiles(*maximum);
        return true;
    }

    /// A file that ends before its pattern must not come to mean all files.
    void StayNarrow() {
        if (setup_.InputMode != InputSource::FilesInAFolder) return;
        const std::string& name = setup_.FileName[InputSide];
        if (name.empty() || HasForbiddenCharacter(name, Wildcards::Allowed)) {
            setup_.Folder[InputSide].clear();
        } else {
            setup_.FilePattern = name;
        }
    }

    /// The files of a folder are named by the pattern, whatever the file says.
    void CompleteFolderOperation() {
        if (setup_.Folder[InputSide].empty()) return;
        const std::string pattern = setup_.EffectivePattern();
        setup_.FileName = {pattern, pattern};
        setup_.FilesCaption[InputSide] = PatternLabelFor(pattern, PatternLabel::AfterFolderChoice);
    }

    DelimitedFields fields_;
    OperationSetup& setup_;
    Captions folderCaptions_;
    Captions filesCaptions_;
    bool patternWasRead_ = false;
};

} // namespace

std::optional<std::string> WriteSetupText(const OperationSetup& setup) {
    std::string text = VersionText;
    text += LineEnd;
    for (const OptionButton& button : OptionButtons) {
        text += button.isSelected(setup) ? "-1" : "0";
        text += LineEnd;
    }
    bool fits = true;
    const auto addString = [&](std::string_view value) {
        fits = fits && IsUtf8(value) && value.find_first_of("\"\r\n") == std::string_view::npos;
        text += '"';
        text += value;
        text += '"';
        text += LineEnd;
    };
    for (const std::size_t i : {InputSide, OutputSide}) {
        addString(StoredFolder(setup.Folder[i]));
        addString(setup.FolderCaption[i]);
        addString(StorableName(setup.FileName[i]));
        addString(setup.FilesCaption[i]);
    }
    addString(setup.FilePattern);
    addString(std::to_string(setup.MaxNumFiles));
    if (!fits) return std::nullopt;
    return text;
}

SetupReading ReadSetupText(std::string_view content) {
    SetupReading reading;
    if (content.starts_with(ByteOrderMark)) content.remove_prefix(ByteOrderMark.size());
    const std::string text = IsUtf8(content) ? std::string(content) : FromCodePage1252(content);
    reading.complete = SetupReader(text, reading.setup).Read();
    return reading;
}

} // namespace zr5
