#include "ui/widgets.h"

#include "ui/appearance.h"
#include "ui/labels.h"
#include "ui/text_edges.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QRadioButton>

namespace zr5 {

void ReleaseButton::mouseReleaseEvent(QMouseEvent* event) {
    if (guard_ && guard_()) {
        setDown(false);
        event->accept();
        return;
    }
    QPushButton::mouseReleaseEvent(event);
}

OneButtonClicks::OneButtonClicks() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool OneButtonClicks::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWidgetType()) return false;
    if (event->type() == QEvent::MouseButtonPress) pressed_ = watched;
    return event->type() == QEvent::MouseButtonDblClick && watched != pressed_ &&
           qobject_cast<QAbstractButton*>(watched) != nullptr;
}

QString Indexed(const char* name, std::size_t k) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(k);
}

QPushButton* MakeButton(const QString& name, std::string_view caption, QWidget* parent) {
    auto* button = Named(new QPushButton(ToQt(caption), parent), name);
    button->setMinimumHeight(ButtonHeight);
    return button;
}

ReleaseButton* MakeReleaseButton(const QString& name, std::string_view caption, QWidget* parent) {
    auto* button = Named(new ReleaseButton(ToQt(caption), parent), name);
    button->setMinimumHeight(ButtonHeight);
    button->setAutoDefault(true);
    return button;
}

QLabel* MakeLabel(const QString& name, std::string_view text, QWidget* parent) {
    auto* label = Named(new QLabel(parent), name);
    label->setTextFormat(Qt::PlainText);
    label->setText(ToQt(text));
    return label;
}

WrappingLabel* MakeParagraph(const QString& name, std::string_view text, int leastWidth,
                             QWidget* parent) {
    auto* label = Named(new WrappingLabel(ToQt(text), parent), name);
    label->setMinimumWidth(leastWidth);
    return label;
}

QProgressBar* MakeProgressBar(const QString& name, QWidget* parent) {
    auto* bar = Named(new QProgressBar(parent), name);
    bar->setRange(0, ProgressSteps);
    bar->setTextVisible(false);
    return bar;
}

void NameDialog(QDialog& dialog, const QString& name, const QString& title) {
    dialog.setObjectName(name);
    dialog.setWindowTitle(title);
    UseArial(dialog);
}

QVBoxLayout* MakeColumn(QWidget& window) {
    auto* column = new QVBoxLayout(&window);
    column->setContentsMargins(WindowMargin, WindowMargin, WindowMargin, WindowMargin);
    column->setSpacing(GroupSpacing);
    return column;
}

QHBoxLayout* MakeRow(int spacing) {
    auto* row = new QHBoxLayout;
    row->setSpacing(spacing);
    return row;
}

QHBoxLayout* MakeButtonRow(std::initializer_list<QPushButton*> buttons) {
    QHBoxLayout* row = MakeRow(RowSpacing);
    row->addStretch(1);
    for (QPushButton* button : buttons)
        row->addWidget(button);
    return row;
}

void KeepRoomWhenHidden(QWidget& widget) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

void SetBold(QWidget& widget, bool bold) {
    if (widget.font().bold() == bold) return;
    QFont font = widget.font();
    font.setBold(bold);
    widget.setFont(font);
}

void ShowSelectedOptionsBold(QWidget& window) {
    for (auto* option : window.findChildren<QRadioButton*>())
        SetBold(*option, option->isChecked());
}

void ReserveRoomForBold(QAbstractButton& button) {
    const bool bold = button.font().bold();
    SetBold(button, true);
    button.ensurePolished();
    button.setMinimumWidth(button.sizeHint().width());
    SetBold(button, bold);
}

void MakePrimary(QPushButton& button) {
    button.setDefault(true);
    button.setMinimumHeight(PrimaryButtonHeight);
    SetBold(button, true);
}

} // namespace zr5
