#include "ui/key_dialog_without_display.h"

#include "ui/key_dialog_box.h"
#include "ui/key_dialog_parts.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QHBoxLayout>

namespace zr5 {
namespace {

QLabel* MakeHint(std::size_t index) {
    return MakeKeyLabel(Indexed("lblHint", index), ToQt(KeyCharacterHint));
}

} // namespace

KeyDialogWithoutDisplay::KeyDialogWithoutDisplay(KeyboardWithoutDisplay& rules, UserPort& user,
                                                 QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      user_(user),
      prompt_(MakeKeyLabel(QStringLiteral("lblEntertheKey"), ToQt(rules.Prompt()))),
      reEnter_(MakeKeyLabel(QStringLiteral("lblReEnterTheKey"),
                            QStringLiteral("When done, re-enter the key exactly as above:"))),
      boxes_{MakeBox(0), MakeBox(1)},
      hints_{MakeHint(0), MakeHint(1)},
      checksum_(MakeKeyLabel(QStringLiteral("lblChecksumIs"))),
      ok_(MakeKeyButton(QStringLiteral("cmdOK"), QStringLiteral("OK"))),
      cancel_(MakeKeyButton(QStringLiteral("cmdCancel"), QStringLiteral("Cancel"))) {
    NameDialog(*this, "frmKeyboardWithoutDisplay", "Type key (without display)");
    prompt_->setBuddy(boxes_[0]);
    reEnter_->setBuddy(boxes_[1]);
    ok_->setDefault(true);
    connect(ok_, &QPushButton::clicked, this, &KeyDialogWithoutDisplay::CompareEntries);
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
    LayOut();
    Refresh();
    boxes_[0]->setFocus();
}

KeyBox* KeyDialogWithoutDisplay::MakeBox(std::size_t index) {
    auto* box = new KeyBox(
        KeyBox::Characters::Masked,
        [this, index](std::u16string_view typed) {
            const bool accepted = rules_.Edit(index, typed);
            Refresh();
            return accepted;
        },
        [this, index]() -> const SecretBytes& { return rules_.Entry(index); });
    box->setObjectName(Indexed("txbKey", index));
    return box;
}

void KeyDialogWithoutDisplay::LayOut() {
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(checksum_, 1);
    buttons->addWidget(ok_);
    buttons->addWidget(cancel_);

    auto* column = MakeKeyColumn(*this);
    column->addWidget(prompt_);
    column->addWidget(boxes_[0]);
    column->addWidget(hints_[0]);
    column->addWidget(reEnter_);
    column->addWidget(boxes_[1]);
    column->addWidget(hints_[1]);
    column->addStretch(1);
    AddGap(*column, *this);
    column->addLayout(buttons);
    FitToPrompt(*this, *prompt_);
}

void KeyDialogWithoutDisplay::Refresh() {
    const bool longEnough = rules_.FirstIsLongEnough();
    SetBold(*reEnter_, longEnough);
    boxes_[1]->setEnabled(rules_.SecondIsEnabled());
    if (longEnough) checksum_->setText(ToQt(rules_.ChecksumLine()));
    checksum_->setVisible(longEnough);
    ok_->setVisible(rules_.ShowsOk());
    for (std::size_t i = 0; i < hints_.size(); ++i)
        hints_[i]->setVisible(rules_.ShowsHint(i));
}

void KeyDialogWithoutDisplay::CompareEntries() {
    const bool match = rules_.EntriesMatch(user_);
    for (KeyBox* box : boxes_)
        box->ShowEntry();
    if (match) {
        accept();
        return;
    }
    Refresh();
    boxes_[1]->setFocus();
}

void GetKeyFromKeyboardWithoutDisplay(QWidget* parent, UserPort& user, Function operation,
                                      CurrentKey& key, KeyInspector& inspector) {
    KeyboardWithoutDisplay rules(operation);
    KeyDialogWithoutDisplay dialog(rules, user, parent);
    const bool entered = dialog.exec() == QDialog::Accepted;
    rules.Commit(entered ? rules.AskToInspect(user, inspector) : KeyAnswer::Cancel, key);
}

} // namespace zr5
