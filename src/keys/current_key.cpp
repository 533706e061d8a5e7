#include "keys/current_key.h"

#include <cstdlib>

namespace zr5 {

std::string_view SourceLine(KeySource source) {
    switch (source) {
    case KeySource::None:
        return "";
    case KeySource::KeyboardEntry:
        return "(keyboard entry)";
    case KeySource::NewRandomKeyfile:
        return "(new random key in keyfile)";
    case KeySource::ApparentlyRandomKeyfile:
        return "(apparently random key in keyfile)";
    case KeySource::TextKeyfile:
        return "(text key in keyfile)";
    case KeySource::NonRandomNonTextKeyfile:
        return "(non-random non-text key in keyfile)";
    }
    std::abort();
}

std::string_view ClassLine(KeySource source) {
    switch (source) {
    case KeySource::None:
        return "";
    case KeySource::KeyboardEntry:
        return "Key entered at keyboard";
    case KeySource::NewRandomKeyfile:
        return "New random key in file";
    case KeySource::ApparentlyRandomKeyfile:
        return "Apparently random key from file";
    case KeySource::TextKeyfile:
        return "Text key from file";
    case KeySource::NonRandomNonTextKeyfile:
        return "Non-random non-text key from file";
    }
    std::abort();
}

KeySource CurrentKey::Source() const {
    if (keyState == KeyState::NoKey) return KeySource::None;
    if (keyState == KeyState::Keyboard) return KeySource::KeyboardEntry;
    if (isNewRandomKey) return KeySource::NewRandomKeyfile;
    if (isApparentlyRandom) return KeySource::ApparentlyRandomKeyfile;
    if (isTextKey) return KeySource::TextKeyfile;
    return KeySource::NonRandomNonTextKeyfile;
}

void ReplaceKey(CurrentKey& key, CurrentKey next, CipherEngine& engine) {
    engine.operation_initialization({}, Direction::Encrypt);
    Wipe(std::as_writable_bytes(std::span(key.keyfilePath)));
    key = std::move(next);
}

void EraseKey(CurrentKey& key, CipherEngine& engine) {
    ReplaceKey(key, {}, engine);
}

} // namespace zr5
