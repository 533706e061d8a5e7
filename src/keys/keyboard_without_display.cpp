#include "keys/keyboard_without_display.h"

#include "keys/normalise.h"
#include "setup/verb_form.h"
#include "util/text.h"

#include <cassert>

namespace zr5 {
namespace {

bool IsLongEnough(const SecretBytes& entry) {
    return KeyLengthSufficient(entry.text());
}

bool SameKey(const SecretBytes& a, const SecretBytes& b) {
    return EqualInConstantTime(NormaliseKey(a.text()).bytes(), NormaliseKey(b.text()).bytes());
}

} // namespace

KeyboardWithoutDisplay::KeyboardWithoutDisplay(Function operation)
    : prompt_("Enter the " + VerbForm(operation, "encryption") +
              " key, 16-64 non-space characters (which will not be displayed):") {}

bool KeyboardWithoutDisplay::Edit(std::size_t box, std::u16string_view typed) {
    auto bytes = TypedKeyBytes(typed);
    showsHint_.at(box) = !bytes;
    if (!bytes) return false;
    entries_.at(box) = std::move(*bytes);
    if (FirstIsLongEnough()) afterMismatch_ = false;
    return true;
}

bool KeyboardWithoutDisplay::FirstIsLongEnough() const {
    return IsLongEnough(entries_[0]);
}

bool KeyboardWithoutDisplay::SecondIsEnabled() const {
    return afterMismatch_ || FirstIsLongEnough();
}

bool KeyboardWithoutDisplay::ShowsOk() const {
    return FirstIsLongEnough() && IsLongEnough(entries_[1]);
}

std::string KeyboardWithoutDisplay::ChecksumLine() const {
    return ChecksumText(KeyChecksum(NormaliseKey(entries_[0].text()).text()));
}

bool KeyboardWithoutDisplay::EntriesMatch(UserPort& user) {
    for (SecretBytes& entry : entries_)
        entry = SecretBytes::CopyOf(Trim(entry.text()));
    if (SameKey(entries_[0], entries_[1])) return true;
    user.Ask(Notice("The key entries do not match!", "Error", BoxIcon::Exclamation));
    entries_[0].Clear();
    afterMismatch_ = true;
    return false;
}

KeyAnswer KeyboardWithoutDisplay::AskToInspect(UserPort& user, KeyInspector& inspector) {
    if (user.Ask(MustAnswer("Inspect the key?", "Key specified")) != Answer::Yes)
        return KeyAnswer::Yes;
    inspected_ = true;
    const InspectedKey shown{.buffer = entries_[0],
                             .classLine = "Key entered at keyboard",
                             .fileLine = {},
                             .isTextKey = true};
    return inspector.Inspect(shown) ? KeyAnswer::Yes : KeyAnswer::No;
}

void KeyboardWithoutDisplay::Commit(KeyAnswer answer, CurrentKey& key) {
    switch (answer) {
    case KeyAnswer::Yes:
        assert(ShowsOk());
        StoreTypedKey(key, entries_[0], TypedWith::NoDisplay, inspected_);
        break;
    case KeyAnswer::No:
        DiscardKey(key);
        break;
    case KeyAnswer::Cancel:
        break;
    }
    for (SecretBytes& entry : entries_)
        entry.Clear();
}

} // namespace zr5
