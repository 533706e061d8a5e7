#pragma once

// Makes the controls of the main window under their names and lays them out. Captions come
// later, with the first refresh.

#include <QWidget>

namespace zr5 {

void LayOutMainWindow(QWidget& window);

/// Gives buttons and option buttons the room that their captions need at most; to be called
/// once the captions are there.
void SettleMainWindow(QWidget& window);

} // namespace zr5
