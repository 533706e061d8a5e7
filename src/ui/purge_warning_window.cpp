#include "ui/purge_warning_window.h"

#include "ui/appearance.h"
#include "ui/labels.h"
#include "ui/text_edges.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace zr5 {
namespace {

/// 1675 position units of 15 to the pixel.
constexpr int BelowReportTop = 1675 / 15;
constexpr int TextWidth = 520;
constexpr double TallestText = 0.5; // of the screen's height

} // namespace

PurgeWarningWindow::PurgeWarningWindow(PurgeWarning& warning, const std::string& path,
                                       QWidget* report)
    : QDialog(report) {
    setObjectName(QStringLiteral("frmPurgeWarning"));
    setWindowTitle(QStringLiteral("Purging of the input file"));
    UseArial(*this);

    auto* message = new WrappingLabel(ToQt(warning.MessageFor(path)), this);
    message->setObjectName(QStringLiteral("lblMessage"));
    message->setMinimumWidth(TextWidth);
    auto* dontShowAgain = new QCheckBox(QStringLiteral("Don't show this again"), this);
    dontShowAgain->setObjectName(QStringLiteral("chkDontShowAgain"));
    dontShowAgain->setVisible(warning.OffersDontShowAgain());
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setMinimumHeight(ButtonHeight);
    ok->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(dontShowAgain);
    buttons->addStretch(1);
    buttons->addWidget(ok);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(WindowMargin, WindowMargin, WindowMargin, WindowMargin);
    layout->setSpacing(GroupSpacing);
    layout->addWidget(FitToScreen(message, TallestText), 1);
    layout->addLayout(buttons);
    ok->setFocus();

    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(dontShowAgain, &QCheckBox::toggled, this, [ok](bool ticked) {
        if (!ticked) ok->setFocus();
    });
    connect(this, &QDialog::finished, this,
            [&warning, dontShowAgain] { warning.Closed(dontShowAgain->isChecked()); });
    move(report->x() + WindowMargin, report->y() + BelowReportTop);
}

} // namespace zr5
