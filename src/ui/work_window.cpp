#include "ui/work_window.h"

#include "setup/identity.h"
#include "ui/labels.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QCloseEvent>

namespace zr5 {
namespace {

constexpr int TextWidth = 420;

} // namespace

WorkWindow::WorkWindow(QWidget* parent, bool canBeStopped)
    : QDialog(parent),
      text_(MakeParagraph("lblWork", {}, TextWidth, this)),
      bar_(MakeProgressBar("prgWork", this)),
      stop_(MakeButton("cmdStop", "Stop", this)) {
    NameDialog(*this, "frmWork", QString::fromLatin1(ProductName));
    setWindowFlag(Qt::WindowCloseButtonHint, canBeStopped);
    setModal(!canBeStopped);
    if (canBeStopped && parent != nullptr) parent->installEventFilter(this);
    bar_->setAccessibleName(windowTitle());
    stop_->setAutoDefault(false);
    stop_->setVisible(canBeStopped);
    connect(stop_, &QPushButton::clicked, this, &WorkWindow::reject);
    auto* column = MakeColumn(*this);
    column->addWidget(text_, 1);
    column->addWidget(bar_);
    column->addWidget(stop_, 0, Qt::AlignRight);
}

void WorkWindow::Show(const LongWork& work) {
    whatStops_ = work.stop;
    text_->setText(ToQt(work.text));
    bar_->setRange(0, work.totalBytes == 0 ? 0 : ProgressSteps);
    if (work.totalBytes != 0) {
        const double part =
            static_cast<double>(work.doneBytes) / static_cast<double>(work.totalBytes);
        bar_->setValue(static_cast<int>(part * ProgressSteps));
    }
    if (isVisible()) return;
    show();
    if (parentWidget() != nullptr) activateWindow(); // for Escape; never from another program
}

/// The work hears of it at its next step; until then the window stands there.
void WorkWindow::reject() {
    if (!whatStops_) return;
    stop_->setEnabled(false);
    whatStops_();
}

void WorkWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    reject();
}

bool WorkWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowActivate && watched == parent() && isVisible()) {
        raise();
        activateWindow();
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace zr5
