#include "ui/operation_dialogs.h"

#include "ui/confirm_window.h"
#include "ui/reliability_test_window.h"

#include <QEvent>
#include <utility>

namespace zr5 {

OperationDialogs::OperationDialogs(Operations& operations, UserPort& user, QWidget& mainWindow,
                                   std::function<void()> ended)
    : operations_(operations), user_(user), mainWindow_(mainWindow), ended_(std::move(ended)) {
    operations_.SetWindows(this);
    mainWindow_.installEventFilter(this);
}

OperationDialogs::~OperationDialogs() {
    operations_.SetWindows(nullptr);
}

ConfirmationAnswer OperationDialogs::Confirm(const Confirmation& confirmation) {
    ConfirmWindow window(confirmation, &mainWindow_);
    window.exec();
    return window.Answer();
}

std::optional<int> OperationDialogs::AskForPerformances() {
    ReliabilityTestForm form(user_);
    ReliabilityTestWindow(form, &mainWindow_).exec();
    return form.Performances();
}

void OperationDialogs::ShowReport() {
    if (!report_)
        report_ = std::make_unique<ReportWindow>(operations_.Screen(),
                                                 [this] { return operations_.SaveReport(); });
    report_->ShowAtEnd();
}

void OperationDialogs::SetOutOfUse(bool outOfUse) {
    isOutOfUse_ = outOfUse;
    if (outOfUse) focus_ = mainWindow_.focusWidget();
    mainWindow_.setEnabled(!outOfUse);
    if (!outOfUse && focus_ != nullptr) focus_->setFocus();
}

void OperationDialogs::AnnounceTest(bool runs) {
    auto* label = mainWindow_.findChild<QWidget*>("lblPerformingReliabilityTest");
    if (label != nullptr) label->setVisible(runs);
}

bool OperationDialogs::eventFilter(QObject* watched, QEvent* event) {
    const bool activated = event->type() == QEvent::WindowActivate && isOutOfUse_;
    if (activated && report_ && operations_.Screen().IsRunning()) report_->ComeToFront();
    return QObject::eventFilter(watched, event);
}

} // namespace zr5
