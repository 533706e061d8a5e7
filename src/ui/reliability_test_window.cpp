#include "ui/reliability_test_window.h"

#include "ui/appearance.h"
#include "ui/labels.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QLineEdit>
#include <string>

namespace zr5 {
namespace {

constexpr int TextWidth = 480;
constexpr int NumberWidth = 72;

QPushButton* MakeWideButton(const char* name, const char* caption, QWidget* parent) {
    auto* button = MakeButton(name, caption, parent);
    button->setMinimumWidth(button->sizeHint().width() + 2 * FrameMargin);
    return button;
}

} // namespace

ReliabilityTestWindow::ReliabilityTestWindow(ReliabilityTestForm& form, QWidget* parent)
    : QDialog(parent),
      form_(form),
      number_(
          Named(new QLineEdit(ToQt(ReliabilityTestForm::InitialNumber()), this), "txbNumTests")) {
    NameDialog(*this, "frmReliabilityTest", "Reliability test");
    QLayout* number = NumberRow();
    auto* note = MakeParagraph("lblKeyNote", ReliabilityTestForm::KeyNote(), TextWidth, this);
    Soften(*note, palette());
    auto* start = MakeWideButton("cmdStart", "Start the test", this);
    start->setDefault(true);
    auto* abandon = MakeWideButton("cmdAbandon", "Abandon", this);

    auto* column = MakeColumn(*this);
    column->addWidget(MakeParagraph("lblText", ReliabilityTestForm::Text(), TextWidth, this));
    column->addLayout(number);
    column->addWidget(note);
    column->addStretch(1);
    column->addLayout(MakeButtonRow({start, abandon}));
    AskForNumber();

    connect(start, &QPushButton::clicked, this, [this] { Start(); });
    connect(abandon, &QPushButton::clicked, this, &QDialog::reject);
}

QLayout* ReliabilityTestWindow::NumberRow() {
    number_->setFixedWidth(NumberWidth);
    auto* caption = MakeLabel("lblNumTests", "Number of performances:", this);
    caption->setBuddy(number_);
    const std::string most = std::to_string(ReliabilityTestForm::MostPerformances);
    auto* range = MakeLabel("lblRange", "1 to " + most, this);
    Soften(*range, palette());
    auto* row = MakeRow(RowSpacing);
    row->addWidget(caption);
    row->addWidget(number_);
    row->addWidget(range);
    row->addStretch(1);
    return row;
}

void ReliabilityTestWindow::AskForNumber() {
    number_->setFocus();
    number_->selectAll();
}

void ReliabilityTestWindow::Start() {
    if (form_.Start(FromQt(number_->text()))) {
        accept();
        return;
    }
    AskForNumber();
}

} // namespace zr5
