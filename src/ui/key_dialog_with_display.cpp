#include "ui/key_dialog_with_display.h"

#include "ui/key_dialog_box.h"
#include "ui/key_dialog_parts.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QHBoxLayout>

namespace zr5 {

KeyDialogWithDisplay::KeyDialogWithDisplay(KeyboardWithDisplay& rules, QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      prompt_(MakeKeyLabel(QStringLiteral("lblEntertheKey"), ToQt(rules.Prompt()))),
      box_(new KeyBox(
          KeyBox::Characters::Shown,
          [this](std::u16string_view typed) {
              const bool accepted = rules_.Edit(typed);
              Refresh();
              return accepted;
          },
          [this]() -> const SecretBytes& { return rules_.Entry(); })),
      hint_(MakeKeyLabel(QStringLiteral("lblHint"), ToQt(KeyCharacterHint))),
      checksum_(MakeKeyLabel(QStringLiteral("lblChecksumIs"))),
      useThisKey_(MakeKeyLabel(QStringLiteral("lblUseThisKey"), QStringLiteral("Use this key?"))),
      yes_(MakeKeyButton(QStringLiteral("cmdYes"), QStringLiteral("Yes"))),
      no_(MakeKeyButton(QStringLiteral("cmdNo"), QStringLiteral("No"))),
      cancel_(MakeKeyButton(QStringLiteral("cmdCancel"), QStringLiteral("Cancel"))) {
    NameDialog(*this, "frmKeyboardWithDisplay", "Type key (with display)");
    box_->setObjectName(QStringLiteral("txbKey"));
    prompt_->setBuddy(box_);
    yes_->setDefault(true);
    connect(yes_, &QPushButton::clicked, this, [this] { End(KeyAnswer::Yes); });
    connect(no_, &QPushButton::clicked, this, [this] { End(KeyAnswer::No); });
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
    LayOut();
    box_->ShowEntry();
    Refresh();
    box_->setFocus();
}

void KeyDialogWithDisplay::LayOut() {
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(useThisKey_, 1);
    buttons->addWidget(yes_);
    buttons->addWidget(no_);
    buttons->addWidget(cancel_);

    auto* column = MakeKeyColumn(*this);
    column->addWidget(prompt_);
    column->addWidget(box_);
    column->addWidget(hint_);
    column->addWidget(checksum_);
    column->addStretch(1);
    AddGap(*column, *this);
    column->addLayout(buttons);
    FitToPrompt(*this, *prompt_);
}

void KeyDialogWithDisplay::Refresh() {
    const bool acceptable = rules_.IsAcceptable();
    if (acceptable) checksum_->setText(ToQt(rules_.ChecksumLine()));
    for (QWidget* widget : {static_cast<QWidget*>(checksum_), static_cast<QWidget*>(useThisKey_),
                            static_cast<QWidget*>(yes_), static_cast<QWidget*>(no_)}) {
        widget->setVisible(acceptable);
    }
    hint_->setVisible(rules_.ShowsHint());
}

void KeyDialogWithDisplay::End(KeyAnswer answer) {
    answer_ = answer;
    accept();
}

void GetKeyFromKeyboardWithDisplay(QWidget* parent, Function operation, CurrentKey& key) {
    KeyboardWithDisplay rules(operation, key);
    KeyDialogWithDisplay dialog(rules, parent);
    dialog.exec();
    rules.Commit(dialog.Answer(), key);
}

} // namespace zr5
