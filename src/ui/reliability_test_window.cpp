#include "ui/reliability_test_window.h"

#include "ui/appearance.h"
#include "ui/labels.h"
#include "ui/text_edges.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace zr5 {
namespace {

constexpr int TextWidth = 480;
constexpr int NumberWidth = 72;

QLabel* Paragraph(const char* name, const std::string& text, QWidget* parent) {
    auto* label = new WrappingLabel(ToQt(text), parent);
    label->setObjectName(QLatin1String(name));
    label->setMinimumWidth(TextWidth);
    return label;
}

QPushButton* Button(const char* name, const char* caption, QWidget* parent) {
    auto* button = new QPushButton(QLatin1String(caption), parent);
    button->setObjectName(QLatin1String(name));
    button->setMinimumHeight(ButtonHeight);
    button->setMinimumWidth(button->sizeHint().width() + 2 * FrameMargin);
    return button;
}

} // namespace

ReliabilityTestWindow::ReliabilityTestWindow(ReliabilityTestForm& form, QWidget* parent)
    : QDialog(parent),
      form_(form),
      number_(new QLineEdit(ToQt(ReliabilityTestForm::InitialNumber()), this)) {
    setObjectName(QStringLiteral("frmReliabilityTest"));
    setWindowTitle(QStringLiteral("Reliability test"));
    UseArial(*this);

    number_->setObjectName(QStringLiteral("txbNumTests"));
    number_->setFixedWidth(NumberWidth);
    auto* caption = new QLabel(QStringLiteral("Number of performances:"), this);
    caption->setObjectName(QStringLiteral("lblNumTests"));
    caption->setBuddy(number_);
    auto* range =
        new QLabel(QStringLiteral("1 to %1").arg(ReliabilityTestForm::MostPerformances), this);
    range->setObjectName(QStringLiteral("lblRange"));
    Soften(*range, palette());
    auto* note = Paragraph("lblKeyNote", ReliabilityTestForm::KeyNote(), this);
    Soften(*note, palette());
    auto* start = Button("cmdStart", "Start the test", this);
    start->setDefault(true);
    auto* abandon = Button("cmdAbandon", "Abandon", this);

    auto* row = new QHBoxLayout;
    row->setSpacing(RowSpacing);
    row->addWidget(caption);
    row->addWidget(number_);
    row->addWidget(range);
    row->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(RowSpacing);
    buttons->addStretch(1);
    buttons->addWidget(start);
    buttons->addWidget(abandon);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(WindowMargin, WindowMargin, WindowMargin, WindowMargin);
    layout->setSpacing(GroupSpacing);
    layout->addWidget(Paragraph("lblText", ReliabilityTestForm::Text(), this));
    layout->addLayout(row);
    layout->addWidget(note);
    layout->addStretch(1);
    layout->addLayout(buttons);
    number_->setFocus();
    number_->selectAll();

    connect(start, &QPushButton::clicked, this, [this] { Start(); });
    connect(abandon, &QPushButton::clicked, this, &QDialog::reject);
}

void ReliabilityTestWindow::Start() {
    if (form_.Start(FromQt(number_->text()))) {
        accept();
        return;
    }
    number_->setFocus();
    number_->selectAll();
}

std::optional<int> AskForPerformances(UserPort& user, QWidget* parent) {
    ReliabilityTestForm form(user);
    ReliabilityTestWindow(form, parent).exec();
    return form.Performances();
}

} // namespace zr5
