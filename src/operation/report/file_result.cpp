#include "operation/report/file_result.h"

#include "setup/wording.h"
#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

#include <cstdlib>

namespace zr5 {
namespace {

std::string ContinuationLine(const std::string& text) {
    return std::string("\r\n") + ContinuationIndent + text;
}

std::string BlockErrorsText(int count) {
    const std::string counted = count == 1
                                    ? "One block expansion error occurred."
                                    : std::to_string(count) + " block expansion errors occurred.";
    return counted + ContinuationLine("Ciphertext is corrupt or decryption key is incorrect.");
}

std::string UnknownError(EngineResult result) {
    return "Unknown error #" + std::to_string(static_cast<int>(result)) + ".";
}

std::string ReasonText(EngineResult result) {
    if (const int blocks = DamagedBlocksIn(result); blocks != 0) return BlockErrorsText(blocks);
    switch (result) {
    case EngineResult::InputNotFound:
        return "Input file not found.";
    case EngineResult::InputNotOpened:
        return "Unable to open input file.";
    case EngineResult::OutputNotOpened:
        return "Unable to open output file.";
    case EngineResult::ReadError:
    case EngineResult::ReadErrorPartial:
        return "Read error.";
    case EngineResult::WriteError:
    case EngineResult::WriteErrorPartial:
        return "Write error.";
    case EngineResult::WrongKeyOrCorrupt:
    case EngineResult::CorruptEndPartial:
        return "Invalid block size." +
               ContinuationLine("Decryption key is incorrect or ciphertext is corrupt.");
    case EngineResult::DiskFull:
        return "Write error: disk full.";
    case EngineResult::Stopped:
    case EngineResult::LibraryFailed:
    case EngineResult::Success:
    case EngineResult::OneDamagedBlock:
    case EngineResult::NineDamagedBlocks:
        break;
    case EngineResult::NotInitialised:
        return UnknownError(result) + ContinuationLine("There is not enough memory for the key.");
    }
    return UnknownError(result);
}

std::string Counted(std::uint64_t bytes, const char* verb) {
    return WithThousands(bytes) + (bytes == 1 ? " byte" : " bytes") + verb;
}

/// Of an encrypted file that is longer, shorter or otherwise than its header says.
std::string WrongEndText(const WrongEnd& end, bool isPlaintextComplete) {
    const bool isFront = end.side == Side::Front;
    const std::string begin = isPlaintextComplete ? "The plaintext is complete; " : "";
    if (end.surplusBytes == 0) {
        return begin + (begin.empty() ? "The" : "the") + " header " +
               (isFront ? "in front" : "at the end") + " is damaged.";
    }
    if (end.surplusBytes > 0) {
        return begin + Counted(static_cast<std::uint64_t>(end.surplusBytes), " too much") +
               (isFront ? " in front." : ".");
    }
    const auto missing = static_cast<std::uint64_t>(-end.surplusBytes);
    return begin + Counted(missing, missing == 1 ? " is missing" : " are missing") +
           (isFront ? " in front." : " at the end.");
}

std::string LostText(const ByteRange& lost, bool isKept) {
    const std::string first = WithThousands(lost.offset + 1);
    if (lost.lengthBytes == 1) return "Byte " + first + " is lost" + (isKept ? " (zero)." : ".");
    return "Bytes " + first + " to " + WithThousands(lost.offset + lost.lengthBytes) + " are lost" +
           (isKept ? " (zeros)." : ".");
}

/// A line for everything that is known to be lost. Where the rest was kept, zeros stand for it.
std::string DamageText(const Damage& damage, bool isKept) {
    std::string text;
    for (const ByteRange& lost : damage.lost)
        text += ContinuationLine(LostText(lost, isKept));
    if (const std::uint64_t more = damage.lostStretches - damage.lost.size(); more != 0) {
        text += ContinuationLine("And " + WithThousands(more) + " more " +
                                 (more == 1 ? "stretch is lost." : "stretches are lost."));
    }
    if (damage.missingPlainBytes != 0) {
        text += ContinuationLine("The end of the plaintext is missing: " +
                                 Counted(damage.missingPlainBytes, "."));
    }
    const bool isSaid = damage.missingPlainBytes != 0; // that the end is wrong
    if (damage.wrongEnd && !(isSaid && damage.wrongEnd->side == Side::End)) {
        text +=
            ContinuationLine(WrongEndText(*damage.wrongEnd, !isSaid && damage.lostStretches == 0));
    }
    return text;
}

std::string EngineText(const FileResult& result, const std::string& output) {
    std::string text = ReasonText(result.engineResult);
    if (result.damage.isOfNewerVersion) {
        text += ContinuationLine("The file was made by a newer version of this program.");
    }
    if (!IsPartial(result.engineResult)) return text;
    const bool isKept = !output.empty();
    if (isKept) text += ContinuationLine("Partial plaintext may be in " + output + ".");
    return text + DamageText(result.damage, isKept);
}

std::string RemarkText(Remark remark) {
    switch (remark) {
    case Remark::None:
        return {};
    case Remark::NotOverwritten:
        return "The old content was not overwritten completely before it was removed.";
    case Remark::NotFlushed:
        return "The disk has not confirmed the new name.  After a power failure, start this "
               "program again: it sees to it.";
    case Remark::NotNoted:
        return "The file is unchanged: the last step could not be noted first.";
    case Remark::NotWritable:
        return "The file is unchanged: it cannot be overwritten.";
    case Remark::NotRemovable:
        return "The file is unchanged: it cannot be removed from its folder.";
    case Remark::HasSeveralNames:
        return "The file is unchanged: it has other names (hard links), which show the same "
               "content.";
    case Remark::NoRoom:
        return "The file is unchanged: the disk has no room to overwrite it.";
    case Remark::Changed:
        return "The file was changed meanwhile and is left as it is.";
    case Remark::Unreadable:
        return "The file cannot be read any more, so the result could not be compared with it.";
    case Remark::Vanished:
        return "The file itself has vanished.";
    case Remark::NameTaken:
        return "Another file has taken its name and is left as it is.";
    case Remark::NotNamed:
        return "The file itself is gone: the result is the only copy.";
    case Remark::NotRemoved:
        return "The file was overwritten but cannot be removed: the result is the only copy.";
    case Remark::TooLarge:
        return "The result would be larger than a file may be on this disk or for this user.";
    case Remark::OutputAppeared:
        return "A file of this name has appeared meanwhile and is left as it is.";
    }
    std::abort();
}

std::string ResultIsIn(const std::string& output, Direction direction) {
    return "The result of the " + VerbForm(direction, "encryption") + " operation is in the file " +
           output + ".";
}

} // namespace

FileResult FileResult::OfEngine(EngineResult result, std::string outputPath) {
    const bool succeeded = result == EngineResult::Success;
    return {succeeded ? Outcome::Done : Outcome::EngineFailed, result, std::move(outputPath)};
}

EntryKind FileResult::Kind() const {
    switch (outcome) {
    case Outcome::Done:
    case Outcome::Intact:
        return remark == Remark::None ? EntryKind::Success : EntryKind::Warned;
    case Outcome::LeftOut:
        return EntryKind::LeftOut;
    case Outcome::IsExecutable:
    case Outcome::IsKeyfile:
    case Outcome::IsEmpty:
    case Outcome::IsTooSmall:
    case Outcome::IsExcludedType:
        return EntryKind::LeftAlone;
    case Outcome::NoTemporaryName:
    case Outcome::NotRenamed: // the input is still what it was
    case Outcome::NotRenamedOnFloppy:
    case Outcome::EngineFailed:
        break;
    }
    return EntryKind::Failed;
}

bool FileResult::IsProcessed() const {
    return outcome == Outcome::Done || outcome == Outcome::NotRenamed ||
           outcome == Outcome::NotRenamedOnFloppy;
}

bool FileResult::NamesOutput() const {
    return IsProcessed() || (outcome == Outcome::EngineFailed && IsPartial(engineResult));
}

namespace {

std::string OutcomeText(const FileResult& result, const std::string& inputPath, Direction direction,
                        std::uint64_t outputBytes) {
    const auto verb = [direction](const char* word) { return VerbForm(direction, word); };
    const std::string output = DisplayName(result.outputPath);
    switch (result.outcome) {
    case Outcome::Done:
        return "-> " + (result.outputPath == inputPath ? "" : output + "  ") +
               WithThousands(outputBytes) + " bytes";
    case Outcome::IsExecutable:
        return "This is the ZR5 executable.  " + verb("Encryption") + " not performed.";
    case Outcome::IsKeyfile:
        return "This is the current keyfile.  " + verb("Encryption") + " not performed.";
    case Outcome::IsEmpty:
        return "  This file is empty (0 bytes).";
    case Outcome::IsTooSmall:
        return "  This file is too small to have been ZR5-encrypted.";
    case Outcome::NoTemporaryName:
        return "Unable to get temporary output filename.";
    case Outcome::NotRenamed:
        return "Error when renaming temporary output file. " + ResultIsIn(output, direction);
    case Outcome::IsExcludedType:
        return "ZR5 does not " + verb("encrypt") + "-in-place files with extension " +
               ExtensionOf(inputPath) + ".";
    case Outcome::NotRenamedOnFloppy:
        return "Error: probably insufficient space on the floppy disk in drive " +
               inputPath.substr(0, 1) + ".  " + ResultIsIn(output, direction);
    case Outcome::Intact:
        return "intact";
    case Outcome::LeftOut:
        return direction == Direction::Encrypt ? "left out (encrypted already)"
                                               : "left out (not encrypted)";
    case Outcome::EngineFailed:
        return EngineText(result, output);
    }
    std::abort();
}

} // namespace

std::string ResultText(const FileResult& result, const std::string& inputPath, Direction direction,
                       std::uint64_t outputBytes) {
    std::string text = OutcomeText(result, inputPath, direction, outputBytes);
    if (result.remark == Remark::None) return text;
    return text + ContinuationLine(RemarkText(result.remark));
}

} // namespace zr5
