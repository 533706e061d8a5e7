#include "keys/typed_key.h"

#include "keys/normalise.h"
#include "setup/wording.h"
#include "util/code_page.h"
#include "util/text.h"

#include <algorithm>
#include <cassert>

namespace zr5 {
namespace {

/// The current key that `entry`, which is long enough, stands for.
CurrentKey TypedKey(const SecretBytes& entry) {
    CurrentKey key;
    key.keyText = NormaliseKey(entry.text());
    key.checksum = KeyChecksum(key.keyText.text());
    key.keyState = KeyState::Keyboard;
    return key;
}

bool IsNoBreakBlank(char16_t character) {
    return character == u'\u00A0' || character == u'\u2007' || character == u'\u202F';
}

bool SameKey(const SecretBytes& a, const SecretBytes& b) {
    return EqualInConstantTime(NormaliseKey(a.text()).bytes(), NormaliseKey(b.text()).bytes());
}

} // namespace

std::optional<SecretBytes> TypedKeyBytes(std::u16string_view typed) {
    SecretBytes bytes(typed.size());
    for (std::size_t i = 0; i < typed.size(); ++i) {
        const auto byte = CodePage1252Byte(IsNoBreakBlank(typed[i]) ? u' ' : typed[i]);
        if (!byte) return std::nullopt;
        bytes.bytes()[i] = std::byte{*byte};
    }
    return bytes;
}

bool KeyEntry::Edit(std::u16string_view typed) {
    if (typed.size() > MaxKeyLength && bytes_.size() >= MaxKeyLength) return false;
    auto bytes = TypedKeyBytes(typed.substr(0, MaxKeyLength));
    hint_ = std::ranges::any_of(typed, IsNoBreakBlank) ? NoBreakBlankHint : std::string_view();
    if (!bytes) hint_ = KeyCharacterHint;
    if (!bytes) return false;
    bytes_ = std::move(*bytes);
    return true;
}

bool KeyEntry::IsLongEnough() const {
    return KeyLengthSufficient(bytes_.text());
}

std::string KeyEntry::ChecksumLine() const {
    return ChecksumText(KeyChecksum(NormaliseKey(bytes_.text()).text()));
}

KeyboardWithDisplay::KeyboardWithDisplay(Direction operation, const CurrentKey& key)
    : prompt_("Enter the " + VerbForm(operation, "encryption") +
              " key (16-64 characters, spaces ignored, case not significant):") {
    if (IsPrintableText(key.rawKeyEntry.text())) entry_.Set(key.rawKeyEntry.Clone());
}

void KeyboardWithDisplay::Commit(KeyAnswer answer, CurrentKey& key, CipherEngine& engine) {
    if (answer == KeyAnswer::Cancel) return;
    CurrentKey next;
    if (answer == KeyAnswer::Yes) {
        assert(entry_.IsLongEnough());
        next = TypedKey(entry_.Bytes());
        next.isTextKey = true;
        next.rawKeyEntry = entry_.Bytes().Clone(); // fills the box again
    } else {
        entry_.Clear();
    }
    ReplaceKey(key, std::move(next), engine);
}

KeyboardWithoutDisplay::KeyboardWithoutDisplay(Direction operation)
    : prompt_("Enter the " + VerbForm(operation, "encryption") +
              " key, 16-64 non-space characters (which will not be displayed):") {}

bool KeyboardWithoutDisplay::Edit(std::size_t box, std::u16string_view typed) {
    const bool accepted = entries_.at(box).Edit(typed);
    if (accepted && entries_[0].IsLongEnough()) afterMismatch_ = false;
    return accepted;
}

bool KeyboardWithoutDisplay::SecondIsEnabled() const {
    return afterMismatch_ || entries_[0].IsLongEnough();
}

bool KeyboardWithoutDisplay::ShowsOk() const {
    return entries_[0].IsLongEnough() && entries_[1].IsLongEnough();
}

bool KeyboardWithoutDisplay::EntriesMatch(UserPort& user) {
    for (KeyEntry& entry : entries_)
        entry.Set(SecretBytes::CopyOf(Trim(entry.Bytes().text())));
    if (SameKey(entries_[0].Bytes(), entries_[1].Bytes())) return true;
    user.Ask(Notice("The key entries do not match!", "Error", BoxIcon::Exclamation));
    entries_[0].Clear();
    afterMismatch_ = true;
    return false;
}

KeyAnswer KeyboardWithoutDisplay::AskToInspect(UserPort& user, KeyInspector& inspector) {
    const Answer answer = user.Ask(MustAnswer("Inspect the key?", "Key specified"));
    if (answer == Answer::Cancel) return KeyAnswer::Cancel;
    if (answer != Answer::Yes) return KeyAnswer::Yes;
    inspected_ = true;
    const InspectedKey shown{.buffer = entries_[0].Bytes(),
                             .classLine = std::string(ClassLine(KeySource::KeyboardEntry)),
                             .fileLine = {},
                             .isTextKey = true};
    return inspector.Inspect(shown) ? KeyAnswer::Yes : KeyAnswer::No;
}

void KeyboardWithoutDisplay::Commit(KeyAnswer answer, CurrentKey& key, CipherEngine& engine) {
    if (answer != KeyAnswer::Cancel) {
        CurrentKey next;
        if (answer == KeyAnswer::Yes) {
            assert(ShowsOk());
            next = TypedKey(entries_[0].Bytes());
            next.isTextKey = inspected_;
            if (inspected_) next.keyBuffer = entries_[0].Bytes().Clone();
        }
        ReplaceKey(key, std::move(next), engine);
    }
    for (KeyEntry& entry : entries_)
        entry.Clear();
}

} // namespace zr5
