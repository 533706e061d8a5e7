#include "keys/typed_key.h"

#include "keys/normalise.h"
#include "util/code_page.h"

namespace zr5 {

std::optional<SecretBytes> TypedKeyBytes(std::u16string_view typed) {
    SecretBytes bytes(typed.size());
    for (std::size_t i = 0; i < typed.size(); ++i) {
        const auto byte = CodePage1252Byte(typed[i]);
        if (!byte) return std::nullopt;
        bytes.bytes()[i] = std::byte{*byte};
    }
    return bytes;
}

void StoreTypedKey(CurrentKey& key, const SecretBytes& entry, TypedWith with, bool inspected) {
    DiscardKey(key);
    key.keyText = NormaliseKey(entry.text());
    key.checksum = KeyChecksum(key.keyText.text());
    key.keyState = key_state::Keyboard;
    key.isTextKey = with == TypedWith::Display || inspected;
    if (with == TypedWith::Display) key.rawKeyEntry = entry.Clone();
    if (inspected) key.keyBuffer = entry.Clone();
}

} // namespace zr5
