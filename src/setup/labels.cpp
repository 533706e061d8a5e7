#include "setup/labels.h"

#include "util/display.h"
#include "util/text.h"

namespace zr5 {
namespace {

constexpr std::string_view AllFiles = "All files";
constexpr std::string_view AllFilesMatching = "All files matching ";
constexpr std::string_view AllFilesMatchingColon = "All files matching: ";

/// Whether `caption` is what `full` becomes when it is shortened to the caption's own length.
bool IsShortenedForm(std::string_view caption, std::string_view full) {
    return caption != full && caption == ShortenPath(full, CharacterCount(caption));
}

bool Shows(std::string_view caption, std::string_view full) {
    return caption == full || IsShortenedForm(caption, full);
}

/// The pattern's part of an "All files matching" label; the whole caption for any other.
std::string_view PatternPart(std::string_view caption) {
    for (const auto start : {AllFilesMatching, AllFilesMatchingColon}) {
        if (caption.starts_with(start)) return caption.substr(start.size());
    }
    return caption;
}

bool PatternLabelAgrees(std::string_view caption, std::string_view pattern) {
    if (caption == AllFiles) return pattern == AllFilesPattern;
    return PatternPart(caption) != caption && Shows(PatternPart(caption), DisplayName(pattern));
}

struct EqualityNotes {
    std::string folder;
    std::string file;
};

EqualityNotes NotesFor(InputSource source, const ProgramTextLookup& programText) {
    return {programText(ProgramText::SameAsInputFolder),
            programText(source == InputSource::SingleFile ? ProgramText::SameAsInputFile
                                                          : ProgramText::SameAsInputFiles)};
}

enum class OutputLabel { Agrees, FalseNote, Disagrees };

OutputLabel JudgeOutput(std::string_view caption, std::string_view input, std::string_view output,
                        std::string_view note) {
    if (Shows(caption, DisplayName(output))) return OutputLabel::Agrees;
    const bool isNote = caption == note || caption.starts_with(EqualityNoteStart);
    if (!isNote) return OutputLabel::Disagrees;
    return input == output ? OutputLabel::Agrees : OutputLabel::FalseNote;
}

int CheckInput(const OperationSetup& setup) {
    if (!Shows(setup.FolderCaption[InputSide], DisplayName(setup.Folder[InputSide]))) return -1;
    const std::string& caption = setup.FilesCaption[InputSide];
    if (setup.InputMode == InputSource::SingleFile)
        return Shows(caption, DisplayName(setup.FileName[InputSide])) ? 0 : -2;
    if (setup.Folder[InputSide].empty() && caption.empty()) return 0;
    if (PatternLabelAgrees(caption, setup.EffectivePattern())) return 0;
    return caption == AllFiles ? -3 : -4;
}

} // namespace

std::string LabelFor(std::string_view value) {
    return ShortenPath(DisplayName(value), LabelWidth);
}

std::string PatternLabelFor(std::string_view pattern, PatternLabel form) {
    if (pattern == AllFilesPattern) return std::string(AllFiles);
    const auto start = form == PatternLabel::AfterEdit ? AllFilesMatching : AllFilesMatchingColon;
    return std::string(start) + ShortenPath(DisplayName(pattern), PatternLabelWidth);
}

std::string ToolTipFor(std::string_view caption, std::string_view value) {
    std::string full = DisplayName(value);
    return IsShortenedForm(caption, full) ? full : std::string{};
}

std::string PatternToolTipFor(std::string_view caption, std::string_view pattern) {
    return ToolTipFor(PatternPart(caption), pattern);
}

void WriteEqualityNotes(OperationSetup& setup, const ProgramTextLookup& programText) {
    const EqualityNotes notes = NotesFor(setup.InputMode, programText);
    if (!setup.Folder[InputSide].empty() && setup.Folder[InputSide] == setup.Folder[OutputSide])
        setup.FolderCaption[OutputSide] = notes.folder;
    if (!setup.FileName[InputSide].empty() &&
        setup.FileName[InputSide] == setup.FileName[OutputSide])
        setup.FilesCaption[OutputSide] = notes.file;
}

void RewriteCaptions(OperationSetup& setup, const ProgramTextLookup& programText) {
    for (const std::size_t i : {InputSide, OutputSide}) {
        setup.FolderCaption[i] = LabelFor(setup.Folder[i]);
        if (i == OutputSide || setup.InputMode == InputSource::SingleFile)
            setup.FilesCaption[i] = LabelFor(setup.FileName[i]);
    }
    if (setup.InputMode == InputSource::FilesInAFolder) {
        if (setup.Folder[InputSide].empty()) {
            setup.FilesCaption[InputSide].clear();
        } else {
            const bool edited = setup.FilesCaption[InputSide].starts_with(AllFilesMatching);
            setup.FilesCaption[InputSide] =
                PatternLabelFor(setup.EffectivePattern(),
                                edited ? PatternLabel::AfterEdit : PatternLabel::AfterFolderChoice);
        }
    }
    WriteEqualityNotes(setup, programText);
}

int CheckConsistency(const OperationSetup& setup, const ProgramTextLookup& programText) {
    if (const int code = CheckInput(setup); code != 0) return code;
    const EqualityNotes notes = NotesFor(setup.InputMode, programText);
    const bool overwrites = setup.OutputMode == OutputTarget::OverwriteInput;
    const auto folder = JudgeOutput(setup.FolderCaption[OutputSide], setup.Folder[InputSide],
                                    setup.Folder[OutputSide], notes.folder);
    if (folder != OutputLabel::Agrees) return folder == OutputLabel::FalseNote ? -5 : -6;
    if (overwrites && setup.Folder[InputSide] != setup.Folder[OutputSide]) return -6;
    const auto name = JudgeOutput(setup.FilesCaption[OutputSide], setup.FileName[InputSide],
                                  setup.FileName[OutputSide], notes.file);
    if (name != OutputLabel::Agrees) return name == OutputLabel::FalseNote ? -7 : -8;
    if (overwrites && setup.FileName[InputSide] != setup.FileName[OutputSide]) return -8;
    return setup.InputMode == InputSource::FilesInAFolder && !overwrites ? -9 : 0;
}

} // namespace zr5
