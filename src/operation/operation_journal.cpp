#include "operation/operation_journal.h"

#include "setup/identity.h"
#include "util/own_file.h"
#include "util/paths.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace zr5 {
namespace {

constexpr std::size_t PlaceBytes = 16'384;
constexpr std::size_t Places = 2;

} // namespace

std::string OperationJournal::PathIn(const std::string& ownFolder) {
    return ownFolder + JournalName;
}

std::string OperationJournal::Name(const std::string& path, int number) {
    return number == 1 ? path : path + "-" + std::to_string(number);
}

bool OperationJournal::OpenNew(const std::string& path) {
    basePath_ = path;
    // Elsewhere the next start would not obey it.
    if (!WhyForeignFolder(fileSystem_, SplitPath(path).folder).empty()) return false;
    for (int number = 1; number <= MostJournals; ++number) {
        path_ = Name(path, number);
        OpenResult opened = fileSystem_.OpenLocked(path_);
        if (opened.status != FsStatus::Ok) {
            if (opened.status == FsStatus::AlreadyExists || fileSystem_.Info(path_)) continue;
            return false;
        }
        file_ = std::move(opened.file);
        const Content content = WhyRefused().empty() ? Read() : Content::Unreadable;
        if (content == Content::Unreadable ||
            (content == Content::Record && last_.step != JournalRecord::Step::None)) {
            file_.reset(); // the next start sees to it
            continue;
        }
        if (WriteEmptyPlaces()) return true;
        Close();
        return false;
    }
    return false;
}

LeftJournal OperationJournal::OpenLeft(const std::string& path) {
    const auto named = fileSystem_.Info(path);
    if (!named) return {};
    path_ = path;
    OpenResult opened = named->kind == FileKind::Regular
                            ? fileSystem_.OpenLocked(path)
                            : OpenResult{FsStatus::NotRegularFile, nullptr};
    if (opened.status == FsStatus::NotPermitted || opened.status == FsStatus::NotRegularFile)
        return {false, WhyForeignFile(fileSystem_, path, *named)};
    if (opened.status != FsStatus::Ok) return {};
    file_ = std::move(opened.file);
    LeftJournal left{false, WhyRefused()};
    if (left.whyRefused.empty() && Read() != Content::Unreadable) {
        if (IsPlausible(last_)) return {true, {}};
        left.whyRefused = "It names files that this program does not work on in this way.";
    }
    file_.reset();
    return left;
}

/// Of the open file, whatever has taken its name meanwhile.
std::string OperationJournal::WhyRefused() const {
    const auto info = file_->Info();
    return info ? WhyForeignFile(fileSystem_, path_, *info) : "It cannot be looked at.";
}

void OperationJournal::Close() {
    if (!file_) return;
    if (last_.step == JournalRecord::Step::None) {
        Erase();
        static_cast<void>(fileSystem_.Remove(path_));
    }
    file_.reset();
}

void OperationJournal::GoOnInAnother() {
    if (basePath_.empty()) return;
    Close();
    isSpoilt_ = false;
    if (OpenNew(basePath_)) return;
    mustStop_ = true;
    hasFailed_ = true;
}

void OperationJournal::Forget() {
    if (!file_ || (Note({}) && !isSpoilt_) || basePath_.empty()) return;
    last_ = {}; // so closing removes what could not be written over
    GoOnInAnother();
}

bool OperationJournal::TakeFailure() {
    return std::exchange(hasFailed_, false);
}

/// Takes the newer of the two places. What begins otherwise than a place does is not ours.
OperationJournal::Content OperationJournal::Read() {
    sequence_ = 0;
    last_ = {};
    std::vector<std::byte> bytes(Places * PlaceBytes + 1); // one more than there may be
    if (file_->MoveTo(0) != FsStatus::Ok) return Content::Unreadable;
    const ReadResult got = file_->Read(bytes);
    if (got.status != FsStatus::Ok || got.count == bytes.size()) return Content::Unreadable;
    for (std::size_t i = 0; i < Places; ++i) {
        const auto raw = std::span(bytes).subspan(i * PlaceBytes, PlaceBytes);
        const std::string_view place(reinterpret_cast<const char*>(raw.data()), raw.size());
        if (place.front() != '\0' && !place.starts_with(JournalMagic)) return Content::Unreadable;
        DecodedRecord decoded = DecodeRecord(place);
        if (decoded.sequence <= sequence_) continue;
        sequence_ = decoded.sequence;
        last_ = std::move(decoded.record);
    }
    return sequence_ != 0 ? Content::Record : Content::Nothing;
}

/// Gives the file its whole length now, so that no record has to wait for room or finds none.
bool OperationJournal::WriteEmptyPlaces() {
    const std::vector<std::byte> nothing(Places * PlaceBytes);
    last_ = {};
    sequence_ = 0;
    return file_->MoveTo(0) == FsStatus::Ok && file_->Write(nothing) == FsStatus::Ok &&
           file_->Truncate(nothing.size()) == FsStatus::Ok && file_->Flush() == FsStatus::Ok &&
           fileSystem_.FlushFolderOf(path_) == FsStatus::Ok;
}

/// No path may stay readable in either place, nor in what is left of a longer record. Each place
/// begins with a note of nothing, so that whatever of this reaches the disk says the same.
void OperationJournal::Erase() {
    for (std::size_t i = 0; i < Places; ++i) {
        std::string text = Encoded({}, ++sequence_);
        text.resize(PlaceBytes);
        if (file_->MoveTo(sequence_ % Places * PlaceBytes) != FsStatus::Ok ||
            file_->Write(std::as_bytes(std::span(text))) != FsStatus::Ok) {
            return;
        }
    }
    static_cast<void>(file_->FlushContent());
}

bool OperationJournal::Note(const JournalRecord& record, Durability durability) {
    // A disk's error can stick to the open file; where nothing stands in it, another takes over.
    if (isSpoilt_ && last_.step == JournalRecord::Step::None) GoOnInAnother();
    if (!file_) return !mustStop_;
    if (Write(record, durability)) return true;
    isSpoilt_ = true;
    hasFailed_ = true;
    return false;
}

bool OperationJournal::Write(const JournalRecord& record, Durability durability) {
    const std::string text = Encoded(record, sequence_ + 1);
    if (text.size() > PlaceBytes) return false;
    const std::uint64_t place = (sequence_ + 1) % Places * PlaceBytes;
    if (file_->MoveTo(place) != FsStatus::Ok ||
        file_->Write(std::as_bytes(std::span(text))) != FsStatus::Ok) {
        return false;
    }
    if (durability == Durability::OfOrder) {
        file_->StartWriteback(place, PlaceBytes);
        file_->AwaitWriteback(place, PlaceBytes);
    }
    if (durability == Durability::OfDisk && file_->FlushContent() != FsStatus::Ok) return false;
    ++sequence_;
    last_ = record;
    return true;
}

} // namespace zr5
