#include "ui/key_dialog_box.h"

#include "keys/normalise.h"
#include "ui/appearance.h"
#include "ui/text_edges.h"
#include "util/code_page.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QSignalBlocker>
#include <utility>

namespace zr5 {
namespace {

/// How many code units one character of a key has at most before it is composed.
constexpr int LongestSpelling = 4;

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
    // Composing makes text shorter, so that it is cut to the longest key only afterwards.
    setMaxLength(LongestSpelling * static_cast<int>(MaxKeyLength));
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &KeyBox::OfferPasting);
    setAcceptDrops(false);
    if (characters == Characters::Masked) {
        setEchoMode(QLineEdit::Password);
        setStyleSheet(QStringLiteral("lineedit-password-character: 35")); // "#"
    }
    setInputMethodHints(inputMethodHints() | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                        Qt::ImhNoAutoUppercase);
    connect(this, &QLineEdit::textChanged, this, &KeyBox::TakeEdit);
    connect(this, &QLineEdit::selectionChanged, this,
            [this] { marked_ = marked_ || hasSelectedText(); });
}

KeyBox::~KeyBox() {
    const QSignalBlocker quiet(this);
    OverwriteText();
    clear();
    // What was marked with the mouse is offered to other programs on some desktops.
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (marked_ && clipboard->ownsSelection()) clipboard->clear(QClipboard::Selection);
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

bool KeyBox::event(QEvent* event) {
    // Held here, the old text is not given back by the toolkit when it makes the new one.
    const QString oldText = text();
    const QString oldShown = displayText();
    const bool taken = QLineEdit::event(event);
    if (oldText.constData() != text().constData()) OverwriteInPlace(oldText);
    if (oldShown.constData() != displayText().constData()) OverwriteInPlace(oldShown);
    return taken;
}

void KeyBox::keyPressEvent(QKeyEvent* event) {
    const bool meantForAMenu =
        event->modifiers().testFlag(Qt::AltModifier) && !event->text().isEmpty();
    if (meantForAMenu || event->matches(QKeySequence::Copy) || event->matches(QKeySequence::Cut)) {
        event->ignore();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

/// A key may be pasted, but never copied from here.
void KeyBox::OfferPasting(const QPoint& place) {
    QMenu menu(this);
    QAction* paste = menu.addAction(QLineEdit::tr("&Paste"), this, &QLineEdit::paste);
    paste->setEnabled(!QGuiApplication::clipboard()->text().isEmpty());
    menu.exec(mapToGlobal(place));
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
    setCursorPosition(static_cast<int>(std::min(place, static_cast<qsizetype>(text().size()))));
    OverwriteInPlace(composed);
    OverwriteInPlace(typed);
}

void KeyBox::OverwriteText() {
    OverwriteInPlace(displayText());
    OverwriteInPlace(text());
}

} // namespace zr5
