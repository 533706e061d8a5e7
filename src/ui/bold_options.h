#pragma once

// Option buttons are bold while selected, in every window, and nothing moves when they change.

#include <QAbstractButton>
#include <QWidget>

namespace zr5 {

/// Writes every option button of `window` in bold type while selected, else in normal type.
void ShowSelectedOptionsBold(QWidget& window);

/// Writes one widget in bold or normal type.
void SetBold(QWidget& widget, bool bold);

/// Gives a button the room that its caption takes in bold type. To be called when the caption
/// is set.
void ReserveRoomForBold(QAbstractButton& button);

} // namespace zr5
