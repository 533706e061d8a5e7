#include "ui/key_dialog_box.h"

#include "keys/normalise.h"
#include "ui/secret_text.h"
#include "util/code_page.h"

#include <algorithm>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <utility>

namespace zr5 {
namespace {

QString Shown(const SecretBytes& entry) {
    QString text(static_cast<qsizetype>(entry.size()), QChar());
    std::ranges::transform(entry.bytes(), text.begin(), [](std::byte byte) {
        return QChar(
            static_cast<char16_t>(CodePage1252Character(std::to_integer<std::uint8_t>(byte))));
    });
    return text;
}

} // namespace

KeyBox::KeyBox(Characters characters, Edit edit, Entry entry)
    : edit_(std::move(edit)), entry_(std::move(entry)) {
    UseCourier(*this);
    setMaxLength(static_cast<int>(MaxKeyLength));
    setAcceptDrops(false);
    if (characters == Characters::Masked) {
        setEchoMode(QLineEdit::Password);
        setStyleSheet(QStringLiteral("lineedit-password-character: 35")); // "#"
    }
    setInputMethodHints(inputMethodHints() | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                        Qt::ImhNoAutoUppercase);
    connect(this, &QLineEdit::textChanged, this, &KeyBox::TakeEdit);
}

KeyBox::~KeyBox() {
    const QSignalBlocker quiet(this);
    OverwriteText();
    clear();
}

void KeyBox::ShowEntry() {
    const QSignalBlocker quiet(this);
    const QString shown = Shown(entry_());
    OverwriteText();
    setText(shown); // this also drops what could be undone
}

QSize KeyBox::sizeHint() const {
    constexpr int Spare = 4; // the frame and the cursor
    QSize size = QLineEdit::sizeHint();
    const int widest = fontMetrics().horizontalAdvance(QLatin1Char('W'));
    size.setWidth(widest * (static_cast<int>(MaxKeyLength) + Spare));
    return size;
}

void KeyBox::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers().testFlag(Qt::AltModifier) && !event->text().isEmpty()) {
        event->ignore();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void KeyBox::TakeEdit() {
    const auto compose = [](const QString& text) {
        return text.normalized(QString::NormalizationForm_C);
    };
    const QString typed = text();
    const QString composed = compose(typed);
    const auto before = static_cast<qsizetype>(entry_().size());
    const qsizetype cursor = cursorPosition();
    const bool accepted = edit_(std::u16string_view(
        reinterpret_cast<const char16_t*>(composed.utf16()), // NOLINT: QString is UTF-16
        static_cast<std::size_t>(composed.size())));
    qsizetype place = std::max<qsizetype>(cursor - (typed.size() - before), 0);
    if (accepted) {
        const QString head = typed.left(cursor);
        const QString composedHead = compose(head);
        place = composedHead.size();
        OverwriteInPlace(composedHead);
        if (head.constData() != typed.constData()) OverwriteInPlace(head);
    }
    ShowEntry();
    setCursorPosition(static_cast<int>(place));
    OverwriteInPlace(composed);
    OverwriteInPlace(typed);
}

void KeyBox::OverwriteText() {
    OverwriteInPlace(displayText());
    OverwriteInPlace(text());
}

} // namespace zr5
