#include "ui/purge_warning_window.h"

#include "ui/labels.h"
#include "ui/widgets.h"

#include <QCheckBox>

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
    NameDialog(*this, "frmPurgeWarning", "Purging of the input file");
    auto* message = MakeParagraph("lblMessage", warning.MessageFor(path), TextWidth, this);
    auto* dontShowAgain =
        Named(new QCheckBox(QStringLiteral("Don't show this again"), this), "chkDontShowAgain");
    dontShowAgain->setVisible(warning.OffersDontShowAgain());
    auto* ok = MakeButton("cmdOK", "OK", this);
    ok->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(dontShowAgain);
    buttons->addStretch(1);
    buttons->addWidget(ok);
    auto* column = MakeColumn(*this);
    column->addWidget(FitToScreen(message, TallestText), 1);
    column->addLayout(buttons);
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
