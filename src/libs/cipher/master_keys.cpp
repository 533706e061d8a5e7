#include "libs/cipher/master_keys.h"

#include <algorithm>

namespace zr5 {

void MasterKeys::SetKey(std::string_view key) {
    if (EqualInConstantTime(key_.bytes(), std::as_bytes(std::span(key)))) return;
    entries_.clear();
    key_ = SecretBytes::CopyOf(key);
    ++generation_;
}

const SecretBytes* MasterKeys::For(const RunSalt& salt) {
    const auto known = std::ranges::find(entries_, salt, &Entry::salt);
    if (known != entries_.end()) {
        std::rotate(known, known + 1, entries_.end());
        return &entries_.back().master;
    }
    SecretBytes master = DeriveMaster(key_.bytes(), salt);
    if (master.empty()) return nullptr;
    if (entries_.size() == MostEntries) entries_.erase(entries_.begin());
    entries_.push_back({salt, std::move(master)});
    return &entries_.back().master;
}

} // namespace zr5
