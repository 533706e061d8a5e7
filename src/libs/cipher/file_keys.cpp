#include "libs/cipher/file_keys.h"

#include "libs/system/process.h"

#include <algorithm>

namespace zr5 {
namespace {

constexpr std::string_view HeaderKeyLabel = "ZR5 v1 header key";
constexpr std::string_view BlockKeyLabel = "ZR5 v1 block key";
constexpr std::string_view SaltKeyLabel = "ZR5 v1 salt key";
constexpr FileSalt NoSalt{}; ///< RFC 5869 takes zeros where there is none

std::span<const std::byte> BytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

/// Appends bytes or a number to a short message.
class Message {
  public:
    Message& operator<<(std::span<const std::byte> part) {
        bytes_.insert(bytes_.end(), part.begin(), part.end());
        return *this;
    }
    Message& operator<<(std::uint64_t number) {
        std::array<std::byte, sizeof number> bytes{};
        PutBigEndian(number, bytes);
        return *this << bytes;
    }
    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

  private:
    std::vector<std::byte> bytes_;
};

/// A key of KeyBytes; empty when the library failed.
SecretBytes Derive(MasterKey master, std::span<const std::byte> salt,
                   std::span<const std::byte> info) {
    SecretBytes key(KeyBytes);
    if (!Hkdf(master, salt, info, key.bytes())) key.Clear();
    return key;
}

std::span<const std::byte, FileSaltBytes> FileSaltOf(const HeaderImage& image) {
    return std::span(image).subspan<FileSaltAt, FileSaltBytes>();
}

/// Of all that stands before the tag.
std::optional<Tag256> HeaderTag(MasterKey master, const HeaderImage& image) {
    const SecretBytes key = Derive(master, FileSaltOf(image), BytesOf(HeaderKeyLabel));
    Tag256 tag{};
    if (key.empty() || !HmacSha256(key.bytes(), std::span(image).first<HeaderTagAt>(), tag)) {
        return std::nullopt;
    }
    return tag;
}

/// Everything that stands before the tag is bound to every block.
SecretBytes BlockKey(MasterKey master, const HeaderImage& image) {
    Message info;
    info << BytesOf(BlockKeyLabel) << std::span(image).first<HeaderTagAt>();
    return Derive(master, FileSaltOf(image), info.bytes());
}

} // namespace

void MasterKeys::SetKey(std::string_view key) {
    if (EqualInConstantTime(key_.bytes(), std::as_bytes(std::span(key)))) return;
    entries_.clear();
    Wipe(masters_.bytes());
    key_ = SecretBytes::CopyOf(key);
    ++generation_;
}

void MasterKeys::Clear() {
    entries_.clear();
    masters_.Clear();
    key_.Clear();
    ++generation_;
}

std::optional<MasterKey> MasterKeys::For(const RunSalt& salt) {
    const auto known = std::ranges::find(entries_, salt, &Entry::salt);
    if (known != entries_.end()) {
        std::rotate(known, known + 1, entries_.end());
        return MasterAt(entries_.back().place);
    }
    if (masters_.empty()) masters_ = SecretBytes(MostEntries * KeyBytes);
    const SecretBytes master = DeriveMaster(key_.bytes(), salt, cost_);
    if (master.empty()) return std::nullopt;
    std::size_t place = entries_.size();
    if (place == MostEntries) {
        place = entries_.front().place;
        entries_.erase(entries_.begin());
    }
    entries_.push_back({salt, place});
    std::ranges::copy(master.bytes(), MasterAt(place).begin());
    return MasterAt(place);
}

std::optional<FileSalt> FileSalts::Next(MasterKey master, const FileInfo& input,
                                        std::span<const std::byte> firstPiece) {
    const SecretBytes key = Derive(master, NoSalt, BytesOf(SaltKeyLabel));
    std::array<std::byte, FileSaltBytes> drawn{};
    random_.Fill(drawn);
    Tag256 content{};
    if (key.empty() || !HmacSha256(key.bytes(), firstPiece, content)) return std::nullopt;
    Message message;
    message << drawn << static_cast<std::uint64_t>(clock_.SinceEpoch().count()) << ++made_
            << ProcessNumber() << input.identity.inode << input.lengthBytes << content;
    FileSalt salt{};
    if (!HmacSha256(key.bytes(), message.bytes(), salt)) return std::nullopt;
    return salt;
}

std::optional<FileHeader> MakeHeader(MasterKey master, const RunSalt& runSalt,
                                     const FileSalt& fileSalt, std::uint64_t plainBytes) {
    FileHeader header{.plainBytes = plainBytes};
    const std::span image(header.image);
    std::ranges::copy(FormatName, image.begin());
    image[VersionAt] = FormatVersion;
    std::ranges::copy(runSalt, image.subspan(RunSaltAt).begin());
    std::ranges::copy(fileSalt, image.subspan(FileSaltAt).begin());
    PutBigEndian(plainBytes, image.subspan<LengthAt, LengthBytes>());
    const auto tag = HeaderTag(master, header.image);
    header.blockKey = BlockKey(master, header.image);
    if (!tag || header.blockKey.empty()) return std::nullopt;
    std::ranges::copy(*tag, image.subspan(HeaderTagAt).begin());
    return header;
}

OpenedHeader OpenHeader(const HeaderImage& image, MasterKeys& masters) {
    const std::span bytes(image);
    const std::uint64_t plainBytes = BigEndian(bytes.subspan<LengthAt, LengthBytes>());
    if (!LooksLikeHeader(bytes) || plainBytes == 0 || plainBytes > MostPlainBytes) return {};
    RunSalt runSalt{};
    std::ranges::copy(bytes.subspan<RunSaltAt, RunSaltBytes>(), runSalt.begin());
    const auto master = masters.For(runSalt);
    if (!master) return {EngineResult::NotInitialised, {}};
    const auto tag = HeaderTag(*master, image);
    if (!tag) return {EngineResult::LibraryFailed, {}};
    if (!EqualInConstantTime(*tag, bytes.subspan<HeaderTagAt, HeaderTagBytes>())) return {};
    SecretBytes blockKey = BlockKey(*master, image);
    if (blockKey.empty()) return {EngineResult::LibraryFailed, {}};
    return {EngineResult::Success, {image, plainBytes, std::move(blockKey)}};
}

bool LooksLikeHeader(std::span<const std::byte> image) {
    return image.size() > VersionAt && std::ranges::equal(image.first(VersionAt), FormatName) &&
           image[VersionAt] == FormatVersion;
}

bool LooksLikeNewerHeader(std::span<const std::byte> image) {
    return image.size() > VersionAt && std::ranges::equal(image.first(VersionAt), FormatName) &&
           image[VersionAt] > FormatVersion;
}

} // namespace zr5
