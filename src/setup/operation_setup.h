#pragma once

// The one record of what an operation does. The key is not part of it.

#include "libs/cipher/cipher_engine.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace zr5 {

enum class InputSource { SingleFile, FilesInAFolder };
/// Nowhere is nobody's choice: with it a decryption is a check, which writes nothing.
enum class OutputTarget { OverwriteInput, SeparateOutput, Nowhere };

/// Indices of the two-element fields.
inline constexpr std::size_t InputSide = 0;
inline constexpr std::size_t OutputSide = 1;

inline constexpr std::int16_t MaxNumFilesUpper = 10000;
inline constexpr std::int16_t MaxNumFilesLower = 5;
inline constexpr std::int16_t MaxNumFilesAfterReset = 20;

/// The pattern that every name matches.
inline constexpr const char* AllFilesPattern = "*.*";

/// Field names are those that users of setup files and the program's windows know.
struct OperationSetup {
    Direction Operation = Direction::Encrypt;
    InputSource InputMode = InputSource::SingleFile;
    OutputTarget OutputMode = OutputTarget::OverwriteInput;
    /// Whether the question "Include all subfolders?" was answered, and how.
    std::optional<bool> SubfolderAnswer;
    std::array<std::string, 2> Folder;        ///< full paths that end in a separator; empty = none
    std::array<std::string, 2> FileName;      ///< empty = none
    std::array<std::string, 2> FolderCaption; ///< what the labels show for them
    std::array<std::string, 2> FilesCaption;
    std::string FilePattern; ///< empty = all files
    std::int16_t MaxNumFiles = MaxNumFilesAfterReset;
    std::string SetupFileName; ///< operation file last loaded or saved

    [[nodiscard]] bool IsCheck() const { return OutputMode == OutputTarget::Nowhere; }
    [[nodiscard]] bool IncludeSubfolders() const { return SubfolderAnswer.value_or(false); }
    /// The pattern that decides: the field, or "*.*" when it is empty.
    [[nodiscard]] std::string EffectivePattern() const {
        return FilePattern.empty() ? AllFilesPattern : FilePattern;
    }
    /// Full path of the single input or output file; empty when not specified.
    [[nodiscard]] std::string FilePath(std::size_t side) const {
        return FileName[side].empty() ? std::string{} : Folder[side] + FileName[side];
    }
};

} // namespace zr5
