#include "ui/confirm_window.h"

#include "ui/appearance.h"
#include "ui/labels.h"
#include "ui/text_edges.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace zr5 {
namespace {

constexpr int TextWidth = 480;
/// Of the screen's height, beyond which a sentence with long names scrolls.
constexpr double TallestSentence = 0.25;
constexpr int WarningIconSize = 24;

WrappingLabel* Paragraph(const char* name, const std::string& text, QWidget* parent) {
    auto* label = new WrappingLabel(ToQt(text), parent);
    label->setObjectName(QLatin1String(name));
    label->setMinimumWidth(TextWidth);
    return label;
}

void Embolden(QLabel& label) {
    QFont font = label.font();
    font.setBold(true);
    label.setFont(font);
}

/// The two sentences that matter, side by side with what they are about.
QFrame* InputAndOutput(const Confirmation& confirmation, QWidget* parent) {
    auto* frame = new QFrame(parent);
    frame->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(frame);
    grid->setContentsMargins(FrameMargin, FrameMargin, FrameMargin, FrameMargin);
    grid->setHorizontalSpacing(GroupSpacing);
    grid->setVerticalSpacing(RowSpacing);
    grid->setColumnStretch(1, 1);
    const auto addRow = [&](const char* caption, WrappingLabel* sentence) {
        auto* label = new QLabel(QLatin1String(caption), frame);
        Soften(*label, parent->palette());
        const int row = grid->rowCount();
        grid->addWidget(label, row, 0, Qt::AlignTop);
        grid->addWidget(FitToScreen(sentence, TallestSentence), row, 1);
    };
    addRow("Input:", Paragraph("lblInput", confirmation.input, frame));
    addRow("Output:", Paragraph("lblOutput", confirmation.output, frame));
    return frame;
}

QLayout* Warning(const std::string& text, QWidget* parent) {
    auto* row = new QHBoxLayout;
    row->setSpacing(RowSpacing);
    auto* picture = new QLabel(parent);
    picture->setPixmap(
        parent->style()
            ->standardIcon(QStyle::SP_MessageBoxWarning)
            .pixmap(QSize(WarningIconSize, WarningIconSize), parent->devicePixelRatioF()));
    row->addWidget(picture, 0, Qt::AlignTop);
    row->addWidget(Paragraph("lblWarning", text, parent), 1, Qt::AlignVCenter);
    return row;
}

} // namespace

ConfirmWindow::ConfirmWindow(const Confirmation& confirmation, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmConfirmOperation"));
    setWindowTitle(QStringLiteral("Confirm operation"));
    UseArial(*this);

    auto* operation = Paragraph("lblOperation", confirmation.operation, this);
    Embolden(*operation);
    auto* question = Paragraph("lblQuestion", confirmation.question, this);
    Embolden(*question);
    auto* yes = new QPushButton(QStringLiteral("Yes"), this);
    yes->setObjectName(QStringLiteral("cmdYes"));
    yes->setMinimumHeight(ButtonHeight);
    auto* no = new QPushButton(QStringLiteral("No"), this);
    no->setObjectName(QStringLiteral("cmdNo"));
    no->setMinimumHeight(ButtonHeight);
    no->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(RowSpacing);
    buttons->addStretch(1);
    buttons->addWidget(yes);
    buttons->addWidget(no);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(WindowMargin, WindowMargin, WindowMargin, WindowMargin);
    layout->setSpacing(GroupSpacing);
    layout->addWidget(operation);
    layout->addWidget(InputAndOutput(confirmation, this));
    if (!confirmation.warning.empty()) layout->addLayout(Warning(confirmation.warning, this));
    if (!confirmation.reminder.empty())
        layout->addWidget(Paragraph("lblReminder", confirmation.reminder, this));
    layout->addWidget(question);
    layout->addStretch(1);
    layout->addLayout(buttons);
    no->setFocus();

    connect(yes, &QPushButton::clicked, this, &QDialog::accept);
    connect(no, &QPushButton::clicked, this, &QDialog::reject);
}

} // namespace zr5
