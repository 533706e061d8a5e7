#include "ui/key_dialogs.h"

#include "ui/inspect_key_window.h"
#include "ui/key_dialog_box.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <algorithm>
#include <initializer_list>
#include <QFontMetrics>
#include <QScreen>
#include <string_view>

namespace zr5 {
namespace {

/// A label that breaks its lines and keeps its place while hidden.
QLabel* MakeKeyLabel(const QString& name, std::string_view text = {}) {
    QLabel* label = MakeLabel(name, text, nullptr);
    label->setWordWrap(true);
    KeepRoomWhenHidden(*label);
    return label;
}

/// A button as high as its font asks, which keeps its place while hidden.
QPushButton* MakeKeyButton(const QString& name, std::string_view caption) {
    auto* button = Named(new QPushButton(ToQt(caption)), name);
    KeepRoomWhenHidden(*button);
    return button;
}

/// The column of a key window, with margins and gaps in proportion to its font.
QVBoxLayout* MakeKeyColumn(QWidget& window) {
    const int line = window.fontMetrics().height();
    auto* column = new QVBoxLayout(&window);
    column->setContentsMargins(line * 3 / 2, line * 5 / 4, line * 3 / 2, line * 5 / 4);
    column->setSpacing(line / 2);
    return column;
}

/// Makes the window wide enough for its contents and for the prompt in one line, as far as the
/// screen allows, and as high as that needs.
void FitToPrompt(QDialog& window, const QLabel& prompt) {
    const QLayout& layout = *window.layout();
    const QMargins margins = layout.contentsMargins();
    const QFontMetrics metrics = prompt.fontMetrics();
    const int oneLine = metrics.horizontalAdvance(prompt.text()) + metrics.averageCharWidth() +
                        margins.left() + margins.right();
    const int mostWidth = window.screen()->availableGeometry().width() * 9 / 10;
    const int width = std::min(std::max(oneLine, layout.totalSizeHint().width()), mostWidth);
    window.resize(width, layout.totalHeightForWidth(width));
}

/// A gap of about half a line between groups of a column.
void AddGap(QVBoxLayout& column, const QWidget& window) {
    column.addSpacing(window.fontMetrics().height() / 2);
}

QLabel* MakeHint(std::size_t index) {
    return MakeKeyLabel(Indexed("lblHint", index), KeyCharacterHint);
}

void ShowHint(QLabel& label, std::string_view hint) {
    if (!hint.empty()) label.setText(ToQt(hint));
    label.setVisible(!hint.empty());
}

} // namespace

KeyDialogWithDisplay::KeyDialogWithDisplay(KeyboardWithDisplay& rules, QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      prompt_(MakeKeyLabel("lblEntertheKey", rules.Prompt())),
      box_(new KeyBox(
          KeyBox::Characters::Shown,
          [this](std::u16string_view typed) {
              const bool accepted = rules_.Entry().Edit(typed);
              Refresh();
              return accepted;
          },
          [this]() -> const SecretBytes& { return rules_.Entry().Bytes(); })),
      hint_(MakeKeyLabel("lblHint", KeyCharacterHint)),
      checksum_(MakeKeyLabel("lblChecksumIs")),
      useThisKey_(MakeKeyLabel("lblUseThisKey", "Use this key?")),
      yes_(MakeKeyButton("cmdYes", "Yes")),
      no_(MakeKeyButton("cmdNo", "No")),
      cancel_(MakeKeyButton("cmdCancel", "Cancel")) {
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
    const KeyEntry& entry = rules_.Entry();
    const bool acceptable = entry.IsLongEnough();
    if (acceptable) checksum_->setText(ToQt(entry.ChecksumLine()));
    for (QWidget* widget : std::initializer_list<QWidget*>{checksum_, useThisKey_, yes_, no_}) {
        widget->setVisible(acceptable);
    }
    ShowHint(*hint_, entry.Hint());
}

void KeyDialogWithDisplay::End(KeyAnswer answer) {
    answer_ = answer;
    accept();
}

void GetKeyFromKeyboardWithDisplay(QWidget* parent, Direction operation, Machine& machine,
                                   CurrentKey& key) {
    KeyboardWithDisplay rules(operation, key);
    KeyDialogWithDisplay dialog(rules, parent);
    dialog.exec();
    rules.Commit(dialog.Answer(), key, machine.engine);
}

KeyDialogWithoutDisplay::KeyDialogWithoutDisplay(KeyboardWithoutDisplay& rules, UserPort& user,
                                                 QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      user_(user),
      prompt_(MakeKeyLabel("lblEntertheKey", rules.Prompt())),
      reEnter_(MakeKeyLabel("lblReEnterTheKey", "When done, re-enter the key exactly as above:")),
      boxes_{MakeBox(0), MakeBox(1)},
      hints_{MakeHint(0), MakeHint(1)},
      checksum_(MakeKeyLabel("lblChecksumIs")),
      ok_(MakeKeyButton("cmdOK", "OK")),
      cancel_(MakeKeyButton("cmdCancel", "Cancel")) {
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
        [this, index]() -> const SecretBytes& { return rules_.Entry(index).Bytes(); });
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
    const KeyEntry& first = rules_.Entry(0);
    const bool longEnough = first.IsLongEnough();
    SetBold(*reEnter_, longEnough);
    boxes_[1]->setEnabled(rules_.SecondIsEnabled());
    if (longEnough) checksum_->setText(ToQt(first.ChecksumLine()));
    checksum_->setVisible(longEnough);
    ok_->setVisible(rules_.ShowsOk());
    for (std::size_t i = 0; i < hints_.size(); ++i)
        ShowHint(*hints_[i], rules_.Entry(i).Hint());
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

void GetKeyFromKeyboardWithoutDisplay(QWidget* parent, Direction operation, Machine& machine,
                                      CurrentKey& key) {
    KeyboardWithoutDisplay rules(operation);
    KeyDialogWithoutDisplay dialog(rules, machine.user, parent);
    const bool entered = dialog.exec() == QDialog::Accepted;
    InspectInWindow inspector(parent, machine);
    rules.Commit(entered ? rules.AskToInspect(machine.user, inspector) : KeyAnswer::Cancel, key,
                 machine.engine);
}

} // namespace zr5
