#pragma once

// What the two windows for typing a key build their contents from.

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>

namespace zr5 {

/// A label that breaks its lines and keeps its place while hidden.
[[nodiscard]] QLabel* MakeKeyLabel(const QString& name, const QString& text = {});

/// A button that keeps its place while hidden.
[[nodiscard]] QPushButton* MakeKeyButton(const QString& name, const QString& text);

/// The column of a key window, with margins and gaps in proportion to its font.
[[nodiscard]] QVBoxLayout* MakeKeyColumn(QWidget& window);

/// Makes the window wide enough for its contents and for the prompt in one line, as far as the
/// screen allows, and as high as that needs.
void FitToPrompt(QDialog& window, const QLabel& prompt);

/// A gap of about one line between groups of a column.
void AddGap(QVBoxLayout& column, const QWidget& window);

} // namespace zr5
