#include "ui/find_bar.h"

#include "ui/widgets.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>

namespace zr5 {

FindBar::FindBar(QPlainTextEdit& text, QWidget* parent)
    : QWidget(parent),
      text_(text),
      words_(Named(new QLineEdit(this), "txbFind")),
      result_(MakeLabel("lblFind", {}, this)) {
    auto* caption = MakeLabel("lblFindCaption", "Find:", this);
    caption->setBuddy(words_);
    auto* row = MakeRow(RowSpacing);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(caption);
    row->addWidget(words_, 1);
    row->addWidget(result_);
    const auto addButton = [&](const char* name, const char* words, auto act) {
        QPushButton* button = MakeButton(name, words, this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, act);
        row->addWidget(button);
    };
    addButton("cmdFindPrevious", "Previous", [this] { Find(Way::Previous); });
    addButton("cmdFindNext", "Next", [this] { Find(Way::Next); });
    addButton("cmdFindClose", "Close", [this] { Close(); });
    setLayout(row);
    connect(words_, &QLineEdit::textEdited, result_, &QLabel::clear);
    const auto onKeys = [&](QKeySequence keys, auto act) {
        connect(new QShortcut(keys, parent), &QShortcut::activated, this, act);
    };
    onKeys(QKeySequence::Find, [this] { Open(); });
    onKeys(QKeySequence::FindNext, [this] { Find(Way::Next); });
    onKeys(QKeySequence::FindPrevious, [this] { Find(Way::Previous); });
    hide();
}

void FindBar::Open() {
    show();
    words_->setFocus();
    words_->selectAll();
}

void FindBar::Close() {
    hide();
    text_.setFocus();
}

void FindBar::Find(Way way) {
    if (words_->text().isEmpty()) return Open();
    const auto flags =
        way == Way::Previous ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    bool isFound = text_.find(words_->text(), flags);
    if (!isFound) {
        const QTextCursor before = text_.textCursor();
        text_.moveCursor(way == Way::Previous ? QTextCursor::End : QTextCursor::Start);
        isFound = text_.find(words_->text(), flags);
        if (!isFound) text_.setTextCursor(before);
    }
    result_->setText(isFound ? QString() : QStringLiteral("Not found"));
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) return Close();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        auto* button = qobject_cast<QPushButton*>(focusWidget());
        if (button != nullptr) return button->click();
        return Find(event->modifiers() & Qt::ShiftModifier ? Way::Previous : Way::Next);
    }
    QWidget::keyPressEvent(event);
}

} // namespace zr5
