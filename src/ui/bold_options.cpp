#include "ui/bold_options.h"

#include <QRadioButton>

namespace zr5 {

void SetBold(QWidget& widget, bool bold) {
    if (widget.font().bold() == bold) return;
    QFont font = widget.font();
    font.setBold(bold);
    widget.setFont(font);
}

void ReserveRoomForBold(QAbstractButton& button) {
    const bool bold = button.font().bold();
    SetBold(button, true);
    button.ensurePolished();
    button.setMinimumWidth(button.sizeHint().width());
    SetBold(button, bold);
}

void ShowSelectedOptionsBold(QWidget& window) {
    for (auto* option : window.findChildren<QRadioButton*>())
        SetBold(*option, option->isChecked());
}

} // namespace zr5
