#include "ui/confirm_window.h"

#include "ui/appearance.h"
#include "ui/labels.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QGridLayout>
#include <QStyle>
#include <string>

namespace zr5 {
namespace {

constexpr int TextWidth = 480;
/// Of the screen's height, beyond which a sentence with long names scrolls.
constexpr double TallestSentence = 0.25;
constexpr int WarningIconSize = 24;
constexpr int WarningSpacing = 4;

/// The two sentences that matter, side by side with what they are about.
QFrame* InputAndOutput(const Confirmation& confirmation, QWidget* parent) {
    auto* frame = new QFrame(parent);
    frame->setFrameShape(QFrame::StyledPanel);
    auto* grid = MakeLayout<QGridLayout>(*frame);
    grid->setHorizontalSpacing(GroupSpacing);
    grid->setColumnStretch(1, 1);
    const auto addRow = [&](const char* caption, const char* name, const std::string& sentence) {
        auto* label = new QLabel(QLatin1String(caption), frame);
        Soften(*label, parent->palette());
        const int row = grid->rowCount();
        grid->addWidget(label, row, 0, Qt::AlignTop);
        auto* text = MakeParagraph(name, sentence, TextWidth, frame);
        grid->addWidget(FitToScreen(text, TallestSentence), row, 1);
    };
    addRow("Input:", "lblInput", confirmation.input);
    addRow("Output:", "lblOutput", confirmation.output);
    return frame;
}

/// What may not be wanted, and below it what can be done about the last of it.
QLayout* Warnings(const std::vector<std::string>& warnings, QWidget* remedy, QWidget* parent) {
    auto* row = MakeRow(RowSpacing);
    auto* picture = new QLabel(parent);
    picture->setPixmap(
        parent->style()
            ->standardIcon(QStyle::SP_MessageBoxWarning)
            .pixmap(QSize(WarningIconSize, WarningIconSize), parent->devicePixelRatioF()));
    row->addWidget(picture, 0, Qt::AlignTop);
    auto* column = new QVBoxLayout;
    column->setSpacing(WarningSpacing);
    column->addStretch(1);
    for (std::size_t k = 0; k < warnings.size(); ++k) {
        column->addWidget(MakeParagraph(Indexed("lblWarning", k), warnings[k], TextWidth, parent));
    }
    if (remedy != nullptr) column->addWidget(remedy);
    column->addStretch(1);
    row->addLayout(column, 1);
    return row;
}

} // namespace

ConfirmWindow::ConfirmWindow(const Confirmation& confirmation, QWidget* parent) : QDialog(parent) {
    NameDialog(*this, "frmConfirmOperation", "Confirm operation");
    const auto paragraph = [this](const char* name, const std::string& text) {
        return MakeParagraph(name, text, TextWidth, this);
    };
    auto* operation = paragraph("lblOperation", confirmation.operation);
    SetBold(*operation, true);
    auto* question = paragraph("lblQuestion", confirmation.question);
    SetBold(*question, true);
    if (!confirmation.leaveOut.empty())
        leaveOut_ = Named(new QCheckBox(ToQt(confirmation.leaveOut), this), "chkLeaveOut");
    auto* yes = MakeButton("cmdYes", "Yes", this);
    auto* no = MakeButton("cmdNo", "No", this);
    no->setDefault(true);

    auto* column = MakeColumn(*this);
    column->addWidget(operation);
    column->addWidget(InputAndOutput(confirmation, this));
    if (!confirmation.warnings.empty())
        column->addLayout(Warnings(confirmation.warnings, leaveOut_, this));
    if (!confirmation.reminder.empty())
        column->addWidget(paragraph("lblReminder", confirmation.reminder));
    column->addWidget(question);
    column->addStretch(1);
    column->addLayout(MakeButtonRow({yes, no}));
    no->setFocus();

    connect(yes, &QPushButton::clicked, this, &QDialog::accept);
    connect(no, &QPushButton::clicked, this, &QDialog::reject);
}

ConfirmationAnswer ConfirmWindow::Answer() const {
    if (result() != Accepted) return ConfirmationAnswer::No;
    const bool leavesOut = leaveOut_ != nullptr && leaveOut_->isChecked();
    return leavesOut ? ConfirmationAnswer::YesLeavingOut : ConfirmationAnswer::Yes;
}

} // namespace zr5
