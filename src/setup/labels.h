#pragma once

// What the labels for folders and files show, and whether what they show agrees with the setup.

#include "setup/operation_setup.h"
#include "util/program_text.h"

#include <string>
#include <string_view>

namespace zr5 {

/// Begins every note that an output is the same as its input.
inline constexpr std::string_view EqualityNoteStart = "Same as";

/// Characters that a folder or file label has room for.
inline constexpr std::size_t LabelWidth = 56;
/// Characters of a pattern that its label has room for.
inline constexpr std::size_t PatternLabelWidth = 12;

/// How a pattern label is written: with a colon after choosing a folder or loading a setup,
/// without one after editing the pattern.
enum class PatternLabel { AfterFolderChoice, AfterEdit };

/// A folder or a name as its label shows it: displayable, shortened to LabelWidth.
[[nodiscard]] std::string LabelFor(std::string_view value);
/// "All files", or "All files matching" and the pattern, shortened to PatternLabelWidth.
[[nodiscard]] std::string PatternLabelFor(std::string_view pattern, PatternLabel form);

/// The whole value when `caption` shows a shortened form of it, else empty.
[[nodiscard]] std::string ToolTipFor(std::string_view caption, std::string_view value);
[[nodiscard]] std::string PatternToolTipFor(std::string_view caption, std::string_view pattern);

/// Writes the notes "Same as …" where output and input are equal.
void WriteEqualityNotes(OperationSetup& setup, const ProgramTextLookup& programText);
/// Writes all four captions anew from folders, names and pattern. A pattern label that fits the
/// pattern keeps its form.
void RewriteCaptions(OperationSetup& setup, const ProgramTextLookup& programText);

/// 0 when folders, names and pattern agree with the labels, else the first disagreement:
/// -1 input folder, -2 input name, -3 "All files" with a narrower pattern, -4 pattern label,
/// -5 "Same as" with different folders, -6 output folder, -7 "Same as" with different names,
/// -8 output name, -9 a folder operation with separate output. An output that is not the input
/// while the input is to be overwritten is -6 or -8 too.
[[nodiscard]] int CheckConsistency(const OperationSetup& setup,
                                   const ProgramTextLookup& programText);

} // namespace zr5
