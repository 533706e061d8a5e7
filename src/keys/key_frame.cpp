#include "keys/key_frame.h"

namespace zr5 {

void KeyFrame::Open(CurrentKey& key, const KeyLabels& shown) {
    if (!isOpen_) savedLabels_ = shown;
    isOpen_ = true;
    key.keyChoiceAbandoned = false;
}

KeyFrame::FocusAfter KeyFrame::Close(const CurrentKey& key) {
    isOpen_ = false;
    return key.keyState == key_state::Keyboard ? FocusAfter::DoIt : FocusAfter::KeyFrom;
}

bool OffersNewKeyfile(Function operation) noexcept {
    return operation == Function::Encrypt;
}

void EraseKeyAndTell(CurrentKey& key, CipherEngine& engine, UserPort& user) {
    EraseKey(key, engine);
    user.Ask(Notice("Done", "Erase key"));
}

} // namespace zr5
