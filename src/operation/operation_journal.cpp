#include "operation/operation_journal.h"

#include "libs/cipher/md5.h"
#include "setup/identity.h"

#include <algorithm>
#include <span>
#include <vector>

namespace zr5 {
namespace {

// One place: magic, sequence number, length of the record, record, MD5 of all that.
constexpr std::string_view JournalMagic = "ZR5 journal 2\r\n";
constexpr std::size_t PlaceBytes = 16'384;
constexpr std::size_t Places = 2;
constexpr std::size_t DigestBytes = std::tuple_size_v<Md5Digest>;

class Writer {
  public:
    void Number(std::uint64_t value) {
        for (int i = 0; i < 8; ++i) {
            text_ += static_cast<char>(value >> (8 * i) & 0xFFU);
        }
    }
    void Text(std::string_view text) {
        Number(text.size());
        text_ += text;
    }
    void Mark(const FileMark& mark) {
        Number(mark.inode);
        Number(mark.lengthBytes);
        Number(static_cast<std::uint64_t>(mark.modifiedNs));
    }
    [[nodiscard]] const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// Takes apart what a Writer joined; asks for too much make it invalid and give nothing.
class Reader {
  public:
    explicit Reader(std::string_view text) : left_(text) {}
    std::uint64_t Number() {
        const std::string_view bytes = Take(8);
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            value |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
        }
        return value;
    }
    std::string Text() { return std::string(Take(Number())); }
    FileMark Mark() {
        FileMark mark;
        mark.inode = Number();
        mark.lengthBytes = Number();
        mark.modifiedNs = static_cast<std::int64_t>(Number());
        return mark;
    }
    std::string_view Take(std::uint64_t count) {
        if (count > left_.size()) valid_ = false;
        if (!valid_) return {};
        const std::string_view taken = left_.substr(0, static_cast<std::size_t>(count));
        left_.remove_prefix(taken.size());
        return taken;
    }
    [[nodiscard]] std::string_view left() const { return left_; }
    [[nodiscard]] bool IsValid() const { return valid_; }

  private:
    std::string_view left_;
    bool valid_ = true;
};

std::string DigestText(std::string_view text) {
    const Md5Digest digest = MD5Digest(text);
    return {digest.begin(), digest.end()};
}

std::string Encoded(const JournalRecord& record, std::uint64_t sequence) {
    Writer fields;
    fields.Number(static_cast<std::uint64_t>(record.step));
    fields.Number(record.direction == Direction::Encrypt ? 1 : 0);
    fields.Text(record.inputPath);
    fields.Text(record.outputPath);
    fields.Text(record.partPath);
    fields.Mark(record.input);
    fields.Mark(record.output);
    fields.Number(record.outputFolder);
    fields.Text(record.overwriteHead);
    fields.Text(record.earlierHead);
    Writer place;
    place.Number(sequence);
    place.Text(fields.text());
    const std::string text = std::string(JournalMagic) + place.text();
    return text + DigestText(text);
}

struct Decoded {
    std::uint64_t sequence = 0; ///< 0: this place holds nothing whole
    JournalRecord record;
};

Decoded Decode(std::string_view place) {
    Decoded decoded;
    Reader reader(place);
    if (reader.Take(JournalMagic.size()) != JournalMagic) return {};
    decoded.sequence = reader.Number();
    Reader fields(reader.Take(reader.Number()));
    const std::string_view signedPart = place.substr(0, place.size() - reader.left().size());
    if (reader.Take(DigestBytes) != DigestText(signedPart) || !reader.IsValid()) return {};

    JournalRecord& record = decoded.record;
    const std::uint64_t step = fields.Number();
    if (step > static_cast<std::uint64_t>(JournalRecord::Step::WritingElsewhere)) return {};
    record.step = static_cast<JournalRecord::Step>(step);
    record.direction = fields.Number() != 0 ? Direction::Encrypt : Direction::Decrypt;
    record.inputPath = fields.Text();
    record.outputPath = fields.Text();
    record.partPath = fields.Text();
    record.input = fields.Mark();
    record.output = fields.Mark();
    record.outputFolder = fields.Number();
    record.overwriteHead = fields.Text();
    record.earlierHead = fields.Text();
    return fields.IsValid() ? decoded : Decoded{};
}

} // namespace

FileMark MarkOf(const FileInfo& info) {
    return {info.identity.inode, info.lengthBytes, info.modifiedNs};
}

std::optional<FileMark> MarkAt(FileSystem& fileSystem, const std::string& path) {
    const auto info = fileSystem.Info(path);
    if (!info || info->kind != FileKind::Regular) return std::nullopt;
    return MarkOf(*info);
}

std::string OperationJournal::PathIn(const std::string& ownFolder) {
    return ownFolder + JournalName;
}

std::string OperationJournal::Name(const std::string& path, int number) {
    return number == 1 ? path : path + "-" + std::to_string(number);
}

bool OperationJournal::OpenNew(const std::string& path) {
    basePath_ = path;
    for (int number = 1; number <= MostJournals; ++number) {
        path_ = Name(path, number);
        OpenResult opened = fileSystem_.OpenLocked(path_);
        if (opened.status == FsStatus::AlreadyExists) continue;
        if (opened.status != FsStatus::Ok) return false;
        file_ = std::move(opened.file);
        const Content content = Read();
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

bool OperationJournal::OpenLeft(const std::string& path) {
    const auto info = fileSystem_.Info(path);
    if (!info || info->kind != FileKind::Regular) return false;
    OpenResult opened = fileSystem_.OpenLocked(path);
    if (opened.status != FsStatus::Ok) return false;
    path_ = path;
    file_ = std::move(opened.file);
    if (Read() != Content::Unreadable) return true;
    file_.reset();
    return false;
}

void OperationJournal::Close() {
    if (!file_) return;
    if (last_.step == JournalRecord::Step::None) static_cast<void>(fileSystem_.Remove(path_));
    file_.reset();
}

void OperationJournal::SetAside() {
    if (basePath_.empty()) return;
    Close();
    hasFailed_ = !OpenNew(basePath_);
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
        Decoded decoded = Decode(place);
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

bool OperationJournal::Note(const JournalRecord& record, Durability durability) {
    if (!file_) return true;
    hasFailed_ = !Write(record, durability);
    return !hasFailed_;
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
