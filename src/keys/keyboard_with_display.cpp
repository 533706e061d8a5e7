#include "keys/keyboard_with_display.h"

#include "keys/normalise.h"
#include "setup/verb_form.h"
#include "util/text.h"

#include <cassert>

namespace zr5 {

KeyboardWithDisplay::KeyboardWithDisplay(Function operation, const CurrentKey& key)
    : prompt_("Enter the " + VerbForm(operation, "encryption") +
              " key (16-64 characters, spaces ignored, case not significant):") {
    if (IsPrintableText(key.rawKeyEntry.text())) entry_ = key.rawKeyEntry.Clone();
}

bool KeyboardWithDisplay::Edit(std::u16string_view typed) {
    auto bytes = TypedKeyBytes(typed);
    showsHint_ = !bytes;
    if (!bytes) return false;
    entry_ = std::move(*bytes);
    return true;
}

bool KeyboardWithDisplay::IsAcceptable() const {
    return KeyLengthSufficient(entry_.text());
}

std::string KeyboardWithDisplay::ChecksumLine() const {
    return ChecksumText(KeyChecksum(NormaliseKey(entry_.text()).text()));
}

void KeyboardWithDisplay::Commit(KeyAnswer answer, CurrentKey& key) {
    switch (answer) {
    case KeyAnswer::Yes:
        assert(IsAcceptable());
        StoreTypedKey(key, entry_, TypedWith::Display, false);
        return;
    case KeyAnswer::No:
        entry_.Clear();
        DiscardKey(key);
        return;
    case KeyAnswer::Cancel:
        return;
    }
}

} // namespace zr5
