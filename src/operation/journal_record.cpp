#include "operation/journal_record.h"

#include "libs/cipher/md5.h"
#include "libs/system/safe_file.h"
#include "util/paths.h"

#include <tuple>

namespace zr5 {
namespace {

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

bool IsFullAndPlain(const std::string& path) {
    return !path.empty() && IsFullPath(path) && path.find('\0') == std::string::npos &&
           !ClimbsUp(path);
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

bool IsPlausible(const JournalRecord& record) {
    using Step = JournalRecord::Step;
    if (record.step == Step::None) return true;
    for (const std::string* path : {&record.inputPath, &record.outputPath, &record.partPath}) {
        if (!IsFullAndPlain(*path)) return false;
    }
    const PathParts part = SplitPath(record.partPath);
    const std::string folder = SplitPath(record.outputPath).folder;
    if (part.folder != folder || !IsPartName(part.name)) return false;
    return record.step == Step::WritingElsewhere ||
           (SplitPath(record.inputPath).folder == folder && record.inputPath != record.outputPath);
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
    fields.Number(record.outputVolume);
    fields.Text(record.overwriteHead);
    fields.Text(record.earlierHead);
    fields.Number(record.files.done);
    fields.Number(record.files.inAll);
    Writer place;
    place.Number(sequence);
    place.Text(fields.text());
    const std::string text = std::string(JournalMagic) + place.text();
    return text + DigestText(text);
}

DecodedRecord DecodeRecord(std::string_view place) {
    DecodedRecord decoded;
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
    record.outputVolume = fields.Number();
    record.overwriteHead = fields.Text();
    record.earlierHead = fields.Text();
    record.files.done = fields.Number();
    record.files.inAll = fields.Number();
    return fields.IsValid() ? decoded : DecodedRecord{};
}

} // namespace zr5
