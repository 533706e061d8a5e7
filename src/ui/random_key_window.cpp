#include "ui/random_key_window.h"

#include "ui/appearance.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <cstdint>
#include <QEvent>
#include <QPointerEvent>

namespace zr5 {
namespace {

/// At least this large, so that there is room for movements.
constexpr QSize LeastSize(6195 / RandomKeyCollector::UnitsPerPixel,
                          3105 / RandomKeyCollector::UnitsPerPixel);

constexpr const char* Instruction =
    "To create a random keyfile move the mouse cursor rapidly and randomly within and across this "
    "window.";
constexpr const char* Hint =
    "Nothing is moving.  Please move the mouse, a pen or a finger across this window until the "
    "whole line is filled.";

/// A label that lets every movement through to the window.
QLabel* MakeLine(const char* name, const char* text, QWidget* parent) {
    QLabel* label = MakeLabel(name, text, parent);
    label->setWordWrap(true);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

} // namespace

RandomKeyWindow::RandomKeyWindow(RandomKeyCollector& rules, QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      clock_(this),
      instruction_(MakeLine("Label1", Instruction, this)),
      progress_(MakeLine("lblProgressBar", "", this)),
      hint_(MakeLine("lblHint", Hint, this)) {
    NameDialog(*this, "frmRandomKey", "Create random keyfile");
    setMouseTracking(true);
    setTabletTracking(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
    clock_.setObjectName(QStringLiteral("Clock"));
    clock_.setInterval(RandomKeyCollector::TickInterval);
    connect(&clock_, &QTimer::timeout, this, [this] {
        rules_.Tick();
        ShowProgress();
        if (rules_.IsComplete()) accept();
    });
    ShowProgress();
    LayOut();
}

void RandomKeyWindow::LayOut() {
    UseTerminal(*progress_);
    progress_->setWordWrap(false);
    KeepRoomWhenHidden(*hint_);
    auto* column = MakeColumn(*this);
    column->addWidget(instruction_);
    column->addStretch(1);
    column->addWidget(progress_);
    column->addStretch(1);
    column->addWidget(hint_);
    setMinimumSize(LeastSize.expandedTo(column->totalMinimumSize()));
}

void RandomKeyWindow::ShowProgress() {
    progress_->setText(ToQt(rules_.Progress()));
    hint_->setVisible(rules_.IsWaiting());
}

void RandomKeyWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    clock_.start();
}

bool RandomKeyWindow::event(QEvent* event) {
    if (event->isPointerEvent()) {
        for (const QEventPoint& point : static_cast<QPointerEvent*>(event)->points()) {
            const QPointF units = point.position() * RandomKeyCollector::UnitsPerPixel;
            rules_.PointerAt(static_cast<std::int64_t>(units.x()),
                             static_cast<std::int64_t>(units.y()));
        }
        const bool touch = event->type() == QEvent::TouchBegin ||
                           event->type() == QEvent::TouchUpdate ||
                           event->type() == QEvent::TouchEnd;
        if (touch) { // or the rest of the movement goes elsewhere
            event->accept();
            return true;
        }
    }
    return QDialog::event(event);
}

SecretBytes CollectInWindow::Collect() {
    RandomKeyCollector rules(machine_.clock, machine_.random);
    RandomKeyWindow window(rules, parent_);
    window.exec();
    return rules.Take();
}

} // namespace zr5
