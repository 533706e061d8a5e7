#include "keys/current_key.h"

namespace zr5 {

KeySource CurrentKey::Source() const {
    if (keyState == key_state::Keyboard) return KeySource::KeyboardEntry;
    if (keyState != key_state::Keyfile) return KeySource::None;
    if (isNewRandomKey) return KeySource::NewRandomKeyfile;
    if (isApparentlyRandom) return KeySource::ApparentlyRandomKeyfile;
    if (isTextKey) return KeySource::TextKeyfile;
    return KeySource::NonRandomNonTextKeyfile;
}

void DiscardKey(CurrentKey& key) {
    Wipe(std::as_writable_bytes(std::span(key.keyfilePath)));
    key = CurrentKey{};
}

void EraseKey(CurrentKey& key, CipherEngine& engine) {
    DiscardKey(key);
    engine.operation_initialization({}, EngineEncrypt, 0, 0);
}

} // namespace zr5
