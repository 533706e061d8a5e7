#include "operation/interruption_box.h"

#include "util/display.h"
#include "util/numbers.h"
#include "util/paths.h"

namespace zr5 {
namespace {

using Step = JournalRecord::Step;

constexpr const char* Title = "Interrupted operation";

bool Encrypts(const JournalRecord& record) {
    return record.direction == Direction::Encrypt;
}

/// Whether the file is whole and nothing is left to be mended.
bool IsSettled(InterruptionEnd end) {
    return end == InterruptionEnd::Finished || end == InterruptionEnd::Undone ||
           end == InterruptionEnd::Untouched;
}

std::string WhyItMayWait(InterruptionEnd end, const JournalRecord& record) {
    const std::string result = DisplayName(record.outputPath);
    std::string text;
    if (end == InterruptionEnd::Obstructed) {
        text = "Its result is complete, but the file cannot be replaced by it now: it cannot be "
               "overwritten or removed, or the disk has failed. Answer No, mend that and start the "
               "program again.";
    } else {
        text = end == InterruptionEnd::OtherFolder
                   ? "Its folder is not the one that it was then, or its disk is known to the "
                     "system by another number, so nothing has been touched. If the right one is "
                     "on a disk"
                   : "Not all of it can be found now. If it is on a disk";
        text += " that is not connected, answer No, connect the disk and start the program again.";
    }
    return text + "\r\n\r\nForget it? " +
           (record.step == Step::Replacing
                ? "Its result, which may be the only whole copy, then stays in\r\n\r\n" + result
                : "An unfinished result may then be left beside\r\n\r\n" + result);
}

std::string WhyLeftAlone(const JournalRecord& record) {
    const std::string part =
        record.step == Step::Replacing ? "" : " or in\r\n\r\n" + DisplayName(record.partPath);
    return std::string("The files may have been changed since, or cannot be written, so this was "
                       "not completed. Please look at both yourself; the result of the ") +
           (Encrypts(record) ? "encryption" : "decryption") + " is, or was, in the file\r\n\r\n" +
           DisplayName(record.outputPath) + part;
}

std::string WhatBecameOf(InterruptionEnd end, const JournalRecord& record) {
    const bool inPlace = record.step != Step::WritingElsewhere;
    const std::string result = DisplayName(record.outputPath);
    const std::string removed = Encrypts(record) ? "removed" : "overwritten and removed";
    std::string untouched = "The program has not touched the file.";
    switch (end) {
    case InterruptionEnd::Untouched:
        return untouched;
    case InterruptionEnd::UndoneReadable:
        return untouched +
               " What was decrypted of it has been removed, but could not be "
               "overwritten: it may still lie on the disk, or have another name "
               "(hard link). Its folder is\r\n\r\n" +
               DisplayName(SplitPath(record.partPath).folder);
    case InterruptionEnd::Undone:
        if (inPlace)
            return untouched + " The unfinished result beside it has been " + removed + ".";
        return untouched + " The unfinished result has been " + removed +
               " from the folder\r\n\r\n" + DisplayName(SplitPath(record.partPath).folder);
    case InterruptionEnd::Finished:
        if (inPlace) {
            return std::string("This has been completed: the file is ") +
                   (Encrypts(record) ? "encrypted" : "decrypted") + " now.";
        }
        if (Encrypts(record)) return untouched + " Its encryption is complete, in\r\n\r\n" + result;
        return untouched + " The result of the decryption is in\r\n\r\n" + result +
               "\r\n\r\nBut the report is lost that would say whether anything of the file was "
               "damaged: please decrypt it again.";
    case InterruptionEnd::LeftAlone:
        return WhyLeftAlone(record);
    case InterruptionEnd::NotConfirmed:
        return "This has been completed, but the disk has not confirmed it. The program looks at "
               "it once more at its next start.";
    case InterruptionEnd::OutOfReach:
    case InterruptionEnd::OtherFolder:
    case InterruptionEnd::Obstructed:
        break;
    }
    return WhyItMayWait(end, record);
}

/// Nothing, where the operation was about a single file.
std::string HowFarItWas(const JournalRecord& record) {
    const FileTally& files = record.files;
    if (record.step == Step::WritingElsewhere || files.inAll < 2) return {};
    return (files.done == 0 ? "None" : WithThousands(files.done)) + " of " +
           WithThousands(files.inAll) + " files had been " +
           (Encrypts(record) ? "encrypted" : "decrypted") + " before it.\r\n\r\n";
}

/// Nothing, where the user has to see to this file first, or no other was left.
std::string HowItGoesOn(InterruptionEnd end, const JournalRecord& record) {
    const std::uint64_t done = record.files.done + (end == InterruptionEnd::Finished ? 1 : 0);
    if (HowFarItWas(record).empty() || !IsSettled(end) || done >= record.files.inAll) return {};
    return std::string("\r\n\r\nTo go on, start the operation again and leave out what is ") +
           (Encrypts(record) ? "encrypted already." : "not encrypted.");
}

} // namespace

bool MayBeKept(InterruptionEnd end) {
    return end == InterruptionEnd::OutOfReach || end == InterruptionEnd::OtherFolder ||
           end == InterruptionEnd::Obstructed;
}

MessageBox BoxFor(InterruptionEnd end, const JournalRecord& record, const std::string& path) {
    std::string text = "Vaultline ZR5 was interrupted while this file was being ";
    text += Encrypts(record) ? "encrypted" : "decrypted";
    text += ":\r\n\r\n" + DisplayName(record.inputPath) + "\r\n\r\n";
    text += HowFarItWas(record) + WhatBecameOf(end, record) + HowItGoesOn(end, record);
    if (end == InterruptionEnd::OtherFolder)
        text += "\r\n\r\nThis is noted in\r\n\r\n" + DisplayName(path);
    if (MayBeKept(end)) return Question(std::move(text), Title, BoxIcon::Exclamation, Answer::No);
    return Notice(std::move(text), Title,
                  IsSettled(end) ? BoxIcon::Information : BoxIcon::Exclamation);
}

MessageBox RefusalBox(const std::string& refused) {
    return Notice(
        "What an interrupted run is said to have left was not looked at, because somebody "
        "else may have written this file:" +
            refused + "\r\n\r\nNothing that it names was touched. Delete it if it is not yours.",
        Title, BoxIcon::Exclamation);
}

} // namespace zr5
