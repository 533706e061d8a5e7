#include "libs/cipher/file_keys.h"

#include <algorithm>

namespace zr5 {

void MasterKeys::SetKey(std::string_view key) {
    if (EqualInConstantTime(key_.bytes(), std::as_bytes(std::span(key)))) return;
    entries_.clear();
    key_ = SecretBytes::CopyOf(key);
    ++generation_;
}

void MasterKeys::Clear() {
    entries_.clear();
    key_.Clear();
    ++generation_;
}

const SecretBytes* MasterKeys::For(const RunSalt& salt) {
    const auto known = std::ranges::find(entries_, salt, &Entry::salt);
    if (known != entries_.end()) {
        std::rotate(known, known + 1, entries_.end());
        return &entries_.back().master;
    }
    SecretBytes master = DeriveMaster(key_.bytes(), salt, cost_);
    if (master.empty()) return nullptr;
    if (entries_.size() == MostEntries) entries_.erase(entries_.begin());
    entries_.push_back({salt, std::move(master)});
    return &entries_.back().master;
}

SecretBytes MakeHeader(const SecretBytes& master, const RunSalt& runSalt, RandomSource& random,
                       std::span<std::byte, HeaderBytes> header) {
    std::array<std::byte, FileSaltBytes> fileSalt{};
    random.Fill(fileSalt);
    std::ranges::copy(FormatMagic, header.begin());
    std::ranges::copy(runSalt, header.subspan(RunSaltAt).begin());
    std::ranges::copy(fileSalt, header.subspan(FileSaltAt).begin());
    FileKeys keys = DeriveFileKeys(master, fileSalt);
    Tag256 tag{};
    if (keys.header.empty() || !HmacSha256(keys.header.bytes(), header.first(HeaderTagAt), tag)) {
        return {};
    }
    std::ranges::copy(tag, header.subspan(HeaderTagAt).begin());
    return std::move(keys.block);
}

OpenedHeader OpenHeader(std::span<const std::byte, HeaderBytes> header, MasterKeys& masters) {
    if (!std::ranges::equal(header.first<FormatMagic.size()>(), FormatMagic)) return {};
    RunSalt runSalt{};
    std::ranges::copy(header.subspan<RunSaltAt, RunSaltBytes>(), runSalt.begin());
    const SecretBytes* master = masters.For(runSalt);
    FileKeys keys;
    Tag256 tag{};
    if (master != nullptr) {
        keys = DeriveFileKeys(*master, header.subspan<FileSaltAt, FileSaltBytes>());
    }
    if (keys.header.empty() || !HmacSha256(keys.header.bytes(), header.first<HeaderTagAt>(), tag)) {
        return {master == nullptr ? EngineResult::NotInitialised : EngineResult::LibraryFailed, {}};
    }
    if (!EqualInConstantTime(tag, header.subspan<HeaderTagAt, HeaderTagBytes>())) return {};
    return {EngineResult::Success, std::move(keys.block)};
}

} // namespace zr5
