#include "ui/notices.h"

#include "ui/labels.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QCheckBox>
#include <QPlainTextEdit>

namespace zr5 {
namespace {

constexpr const char* HelpText =
    "To begin, select the operation (encryption or decryption) "
    "and the source of the input file(s): 'Single file' or 'Files in a folder'."
    "\r\n\r\n"
    "If the source is a single file, select that file, "
    "then choose whether the output file should be the same (the input file will be "
    "overwritten) or different. "
    "If different then specify the output folder and output file name."
    "\r\n\r\n"
    "If the source consists of files in a folder then select the input folder.  "
    "(The files in the input folder will be overwritten but will retain the same names.)"
    "\r\n\r\n"
    "If operating on files in a folder then (if the folder has subfolders) you can "
    "choose whether to include those subfolders, and you can specify that only files "
    "matching a given pattern (e.g., *.txt and ab*.docx) will be included."
    "\r\n\r\n"
    "If operating on files in a folder then it is highly recommended to list those files "
    "before performing the operation."
    "\r\n\r\n"
    "For a full explanation of the use of this program click on the 'Online user manual' "
    "button.";

/// 1675 position units of 15 to the pixel.
constexpr int BelowReportTop = 1675 / 15;
constexpr int WarningWidth = 520;
constexpr double TallestWarning = 0.5; // of the screen's height

} // namespace

HelpWindow::HelpWindow(QWidget* parent) : QDialog(parent) {
    setObjectName("frmHelp");
    setWindowTitle("Help on startup");
    setAttribute(Qt::WA_QuitOnClose, false);
    setSizeGripEnabled(true);

    auto* text = Named(new QPlainTextEdit(ToQt(HelpText), this), "txbHelp");
    text->setReadOnly(true);
    text->document()->setDocumentMargin(FrameMargin);
    auto* close = MakeButton("cmdClose", "Close", this);
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::close);

    auto* column = MakeColumn(*this);
    column->addWidget(text, 1);
    column->addWidget(close, 0, Qt::AlignRight);
    close->setFocus();
    resize(600, 460);
    setMinimumSize(360, 260);
}

PurgeWarningWindow::PurgeWarningWindow(PurgeWarning& warning, const std::string& path,
                                       QWidget* report)
    : QDialog(report) {
    NameDialog(*this, "frmPurgeWarning", "Purging of the input file");
    auto* message = MakeParagraph("lblMessage", warning.MessageFor(path), WarningWidth, this);
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
    column->addWidget(FitToScreen(message, TallestWarning), 1);
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
