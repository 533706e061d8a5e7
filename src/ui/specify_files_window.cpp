#include "ui/specify_files_window.h"

#include "ui/appearance.h"
#include "ui/labels.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QEvent>
#include <QLineEdit>
#include <QRadioButton>
#include <QStyle>

namespace zr5 {

SpecifyFilesWindow::SpecifyFilesWindow(SpecifyFiles& rules, const SpecifyFilesNames& names,
                                       QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      example_(MakeLabel("lblExample", rules.Example(), this)),
      extension_(Named(new QLineEdit(ToQt(rules.Extension()), this), "txbExtension")),
      accept_(MakeButton("cmdAccept", "Accept", this)),
      cancel_(MakeButton("cmdCancel", "Cancel", this)) {
    NameDialog(*this, names.window, ToQt(rules_.Title()));
    example_->setBuddy(extension_);
    extension_->setAccessibleName(QStringLiteral("Extension"));
    for (std::size_t option = 0; option < SpecifyFiles::Options; ++option)
        options_[option] = AddOption(names.options[option], option);
    LayOut();
    accept_->setDefault(true);
    connect(accept_, &QPushButton::clicked, this, [this] { TakeAnswer(); });
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
    ShowSelection();
    if (rules_.ExtensionIsEnabled()) {
        extension_->setFocus();
    } else {
        options_[rules_.Selected().value_or(0)]->setFocus();
    }
}

QRadioButton* SpecifyFilesWindow::AddOption(const char* name, std::size_t option) {
    auto* button = Named(new QRadioButton(ToQt(rules_.Caption(option)), this), name);
    button->setChecked(rules_.Selected() == option);
    ReserveRoomForBold(*button);
    button->installEventFilter(this);
    connect(button, &QRadioButton::clicked, this, [this, option] {
        rules_.Select(option);
        ShowSelection();
    });
    return button;
}

void SpecifyFilesWindow::LayOut() {
    auto* subject = Named(new ElidedLabel(this), "lblSubject");
    subject->setText(ToQt(rules_.Subject()));
    Soften(*subject, palette());

    auto* column = MakeColumn(*this);
    column->addWidget(subject);
    column->addLayout(OptionsColumn());
    column->addStretch(1);
    column->addLayout(MakeButtonRow({accept_, cancel_}));
    setTabOrder(options_.back(), extension_);
    setTabOrder(extension_, accept_);
    setTabOrder(accept_, cancel_);
}

QLayout* SpecifyFilesWindow::OptionsColumn() {
    auto* extension = MakeRow(RowSpacing);
    extension->addSpacing(style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) + RowSpacing);
    extension->addWidget(example_);
    extension->addWidget(extension_, 1);

    auto* options = new QVBoxLayout;
    options->setSpacing(RowSpacing);
    for (QRadioButton* option : options_)
        options->addWidget(option);
    options->addLayout(extension);
    return options;
}

/// A click on the option that asks for an extension leads to its box; the keys go on from option to
/// option.
bool SpecifyFilesWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease &&
        watched == options_[SpecifyFiles::ByExtension]) {
        const auto goOn = [this] {
            if (rules_.ExtensionIsEnabled()) extension_->setFocus();
        };
        QMetaObject::invokeMethod(this, goOn, Qt::QueuedConnection); // the option comes first
    }
    return QDialog::eventFilter(watched, event);
}

void SpecifyFilesWindow::ShowSelection() {
    example_->setEnabled(rules_.ExtensionIsEnabled());
    extension_->setEnabled(rules_.ExtensionIsEnabled());
    accept_->setEnabled(rules_.AcceptIsEnabled());
    ShowSelectedOptionsBold(*this);
}

void SpecifyFilesWindow::TakeAnswer() {
    rules_.SetExtension(FromQt(extension_->text()));
    extension_->setText(ToQt(rules_.Extension()));
    if (rules_.Accept()) accept();
}

} // namespace zr5
