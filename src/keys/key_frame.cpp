#include "keys/key_frame.h"

namespace zr5 {

KeyLabels NoKeyLabels() {
    return {"Key not specified", ""};
}

KeyLabels UpdateKeyLabels(CurrentKey& key, const KeyLabels& saved, UserPort& user,
                          CipherEngine& engine) {
    if (key.keyChoiceAbandoned) return saved;
    if (!key.IsHeld()) return NoKeyLabels();
    if (key.keyText.empty()) {
        user.Ask(Notice("Error processing key!", "Error", BoxIcon::Critical));
        EraseKey(key, engine);
        return {};
    }
    return {"Key specified", std::string(SourceLine(key.Source()))};
}

void KeyFrame::Open(CurrentKey& key, const KeyLabels& shown) {
    if (!isOpen_) savedLabels_ = shown;
    isOpen_ = true;
    key.keyChoiceAbandoned = false;
}

KeyFrame::FocusAfter KeyFrame::Close(const CurrentKey& key) {
    isOpen_ = false;
    return key.keyState == KeyState::Keyboard ? FocusAfter::DoIt : FocusAfter::KeyFrom;
}

bool OffersNewKeyfile(Direction operation) noexcept {
    return operation == Direction::Encrypt;
}

void EraseKeyAndTell(CurrentKey& key, CipherEngine& engine, UserPort& user) {
    EraseKey(key, engine);
    user.Ask(Notice("Done", "Erase key"));
}

} // namespace zr5
