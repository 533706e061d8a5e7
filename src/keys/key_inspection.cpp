#include "keys/key_inspection.h"

#include "keys/classification.h"
#include "keys/normalise.h"
#include "libs/system/text_encoding.h"
#include "util/code_page.h"
#include "util/numbers.h"
#include "util/text.h"

#include <algorithm>
#include <cassert>
#include <cstdint>

namespace zr5 {
namespace {

/// Signs for the characters of a text that move the place of writing.
struct LayoutSign {
    std::uint8_t byte;
    char32_t sign;
    const char* meaning;
};
constexpr LayoutSign LayoutSigns[] = {{9, U'\u2192', "tab"},
                                      {10, U'\u2193', "line feed"},
                                      {12, U'\u25A1', "form feed"},
                                      {13, U'\u2190', "carriage return"},
                                      {0xA0, U'\u2423', "no-break blank"},
                                      {0xAD, U'\u00AC', "soft hyphen"}};

const LayoutSign* SignFor(std::uint8_t byte) {
    const auto* found = std::ranges::find(LayoutSigns, byte, &LayoutSign::byte);
    return found == std::end(LayoutSigns) ? nullptr : found;
}

void AppendDecimal(std::string& line, std::uint8_t byte) {
    const auto digit = [&](int value) { line += static_cast<char>('0' + value); };
    byte < 100 ? void(line += ' ') : digit(byte / 100);
    byte < 10 ? void(line += ' ') : digit(byte / 10 % 10);
    digit(byte % 10);
    line += ' ';
}

void AppendCharacter(std::string& line, std::uint8_t byte) {
    if (const LayoutSign* sign = SignFor(byte)) return AppendUtf8(line, sign->sign);
    if (byte < 32) {
        line += ' '; // the rest of a short keyfile
        return;
    }
    AppendUtf8(line, CodePage1252Character(byte));
}

/// A text that is wiped however its owner is left.
struct WipedText {
    std::string text;
    ~WipedText() { Wipe(std::as_writable_bytes(std::span(text))); }
};

} // namespace

KeyInspection::KeyInspection(const InspectedKey& key, FileKit& fileKit)
    : key_(key), fileKit_(fileKit), view_(OffersAscii() ? KeyView::Ascii : KeyView::Decimal) {
    assert(key.buffer.size() <= Rows * BytesInARow);
}

std::string KeyInspection::RandomnessLine() const {
    constexpr int Decimals = 3;
    if (!key_.isApparentlyRandom) return {};
    return "Randomness is " + WithThousands(KeyRandomness(fileKit_, key_.buffer), Decimals) + ".";
}

std::string KeyInspection::ChecksumLine() const {
    return ChecksumText(KeyChecksum(NormaliseKey(key_.buffer.text()).text())) + ".";
}

std::string_view KeyInspection::Part(std::size_t row) const {
    const std::string_view all = key_.buffer.text();
    return all.substr(std::min(row * BytesInARow, all.size()), BytesInARow);
}

SecretBytes KeyInspection::Row(std::size_t row) const {
    constexpr std::size_t WidestCell = 4;
    WipedText wiped;
    std::string& line = wiped.text;
    line.reserve(BytesInARow * WidestCell); // never moved, so that there is one copy to wipe
    for (const char character : Part(row)) {
        const auto byte = static_cast<std::uint8_t>(character);
        switch (view_) {
        case KeyView::Decimal:
            byte == 0 && key_.isTextKey ? void(line += "    ") : AppendDecimal(line, byte);
            break;
        case KeyView::Hexadecimal:
            line += ' ';
            AppendHex(line, std::byte{byte}, HexDigits::Upper);
            break;
        case KeyView::Ascii:
            AppendCharacter(line, byte);
            break;
        }
    }
    return SecretBytes::CopyOf(line);
}

std::string KeyInspection::LayoutNote() const {
    std::string note;
    if (view_ != KeyView::Ascii) return note;
    for (const LayoutSign& sign : LayoutSigns) {
        if (key_.buffer.text().find(static_cast<char>(sign.byte)) == std::string_view::npos)
            continue;
        if (!note.empty()) note += ",  ";
        AppendUtf8(note, sign.sign);
        note += std::string(" ") + sign.meaning;
    }
    return note;
}

void KeyInspection::Accept(UserPort& user) const {
    if (key_.isNewRandomKey)
        user.Ask(Notice("Be sure to remember the name of the keyfile!", "Key selected"));
}

} // namespace zr5
