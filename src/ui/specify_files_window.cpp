#include "ui/specify_files_window.h"

#include "ui/appearance.h"
#include "ui/bold_options.h"
#include "ui/labels.h"
#include "ui/text_edges.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>

namespace zr5 {

SpecifyFilesWindow::SpecifyFilesWindow(SpecifyFiles& rules, const SpecifyFilesNames& names,
                                       QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      example_(new QLabel(ToQt(rules.Example()), this)),
      extension_(new QLineEdit(ToQt(rules.Extension()), this)),
      accept_(AddButton("cmdAccept", "Accept")),
      cancel_(AddButton("cmdCancel", "Cancel")) {
    setObjectName(QLatin1String(names.window));
    setWindowTitle(ToQt(rules_.Title()));
    UseArial(*this);
    example_->setObjectName(QStringLiteral("lblExample"));
    example_->setBuddy(extension_);
    extension_->setObjectName(QStringLiteral("txbExtension"));
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
    auto* button = new QRadioButton(ToQt(rules_.Caption(option)), this);
    button->setObjectName(QLatin1String(name));
    button->setChecked(rules_.Selected() == option);
    ReserveRoomForBold(*button);
    button->installEventFilter(this);
    connect(button, &QRadioButton::clicked, this, [this, option] {
        rules_.Select(option);
        ShowSelection();
    });
    return button;
}

QPushButton* SpecifyFilesWindow::AddButton(const char* name, const char* caption) {
    auto* button = new QPushButton(QLatin1String(caption), this);
    button->setObjectName(QLatin1String(name));
    button->setMinimumHeight(ButtonHeight);
    return button;
}

void SpecifyFilesWindow::LayOut() {
    auto* subject = new ElidedLabel(this);
    subject->setObjectName(QStringLiteral("lblSubject"));
    subject->setText(ToQt(rules_.Subject()));
    Soften(*subject, palette());

    auto* extension = new QHBoxLayout;
    extension->setSpacing(RowSpacing);
    extension->addSpacing(style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) + RowSpacing);
    extension->addWidget(example_);
    extension->addWidget(extension_, 1);

    auto* options = new QVBoxLayout;
    options->setSpacing(RowSpacing);
    for (QRadioButton* option : options_)
        options->addWidget(option);
    options->addLayout(extension);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(RowSpacing);
    buttons->addStretch(1);
    buttons->addWidget(accept_);
    buttons->addWidget(cancel_);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(WindowMargin, WindowMargin, WindowMargin, WindowMargin);
    column->setSpacing(GroupSpacing);
    column->addWidget(subject);
    column->addLayout(options);
    column->addStretch(1);
    column->addLayout(buttons);
    QWidget* before = options_.back();
    for (QWidget* next : {static_cast<QWidget*>(extension_), static_cast<QWidget*>(accept_),
                          static_cast<QWidget*>(cancel_)}) {
        setTabOrder(before, next);
        before = next;
    }
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
