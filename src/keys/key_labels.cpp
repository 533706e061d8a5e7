#include "keys/key_labels.h"

namespace zr5 {
namespace {

constexpr const char* Specified = "Key specified";

/// The second line for a key that is held.
const char* SourceLine(KeySource source) {
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
    return "";
}

} // namespace

KeyLabels NoKeyLabels() {
    return {"Key not specified", ""};
}

KeyLabels UpdateKeyLabels(CurrentKey& key, const KeyLabels& shown, const KeyLabels& saved,
                          UserPort& user) {
    if (key.keyChoiceAbandoned) return saved;
    if (!key.IsHeld()) return NoKeyLabels();
    const KeySource source = key.Source();
    if (source == KeySource::None) return {Specified, shown[1]};
    if (key.keyText.empty()) {
        user.Ask(Notice("Error processing key!", "Error", BoxIcon::Critical));
        DiscardKey(key);
        return {};
    }
    return {Specified, SourceLine(source)};
}

} // namespace zr5
