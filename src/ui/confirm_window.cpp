#include "ui/confirm_window.h"

#include "ui/appearance.h"
#include "ui/text_edges.h"
#include "ui/wrapping_label.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace zr5 {
namespace {

constexpr int TextWidth = 480;

QLabel* Paragraph(const char* name, const std::string& text, QWidget* parent) {
    auto* label = new WrappingLabel(ToQt(text), parent);
    label->setObjectName(QLatin1String(name));
    label->setMinimumWidth(TextWidth);
    label->setVisible(!text.empty());
    return label;
}

void Embolden(QLabel& label) {
    QFont font = label.font();
    font.setBold(true);
    label.setFont(font);
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
    yes->setAutoDefault(false);
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
    layout->addWidget(Paragraph("lblInput", confirmation.input, this));
    layout->addWidget(Paragraph("lblOutput", confirmation.output, this));
    layout->addWidget(Paragraph("lblWarning", confirmation.warning, this));
    layout->addWidget(Paragraph("lblReminder", confirmation.reminder, this));
    layout->addWidget(question);
    layout->addStretch(1);
    layout->addLayout(buttons);
    no->setFocus();

    connect(yes, &QPushButton::clicked, this, &QDialog::accept);
    connect(no, &QPushButton::clicked, this, &QDialog::reject);
}

} // namespace zr5
