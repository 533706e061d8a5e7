#pragma once

// What every window is made of: distances, makers of controls under their names, and bold type
// that moves nothing.

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <QDialog>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QObject>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>
#include <string_view>
#include <utility>

namespace zr5 {

class WrappingLabel;

/// Distances in device-independent pixels.
inline constexpr int WindowMargin = 16;
inline constexpr int FrameMargin = 12;
inline constexpr int GroupSpacing = 12;
inline constexpr int RowSpacing = 8;
inline constexpr int ButtonHeight = 32;
inline constexpr int PrimaryButtonHeight = 44;

/// The range of every progress bar.
inline constexpr int ProgressSteps = 1000;

/// A button of the main window that acts when the left mouse button is released inside it,
/// unless that release belongs to the double-click that just closed a file picker.
class ReleaseButton : public QPushButton {
  public:
    using QPushButton::QPushButton;
    /// While `guard` answers true, releases of the mouse are not for this button.
    void SetGuard(std::function<bool()> guard) { guard_ = std::move(guard); }

  protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    std::function<bool()> guard_;
};

/// While it lives, the second press of a double click counts only for the button that got the
/// first: what the first click brings under the pointer is not pressed unseen.
class OneButtonClicks final : public QObject {
  public:
    OneButtonClicks();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QPointer<QObject> pressed_;
};

/// Gives a control its name; returns it.
template <typename Object>
Object* Named(Object* object, const QString& name) {
    object->setObjectName(name);
    return object;
}

/// The name of the k-th control of a group: "name(k)".
[[nodiscard]] QString Indexed(const char* name, std::size_t k);

/// What was looked up under `name`. Aborts when nothing was found, or something else.
template <typename Widget>
[[nodiscard]] Widget& Checked(QWidget* found, const char* name) {
    auto* widget = dynamic_cast<Widget*>(found);
    if (widget == nullptr) qFatal("There is no control \"%s\" of the kind expected.", name);
    return *widget;
}

[[nodiscard]] QPushButton* MakeButton(const QString& name, std::string_view caption,
                                      QWidget* parent);
/// Enter presses it where it has the focus.
[[nodiscard]] ReleaseButton* MakeReleaseButton(const QString& name, std::string_view caption,
                                               QWidget* parent);
/// Shows its text as it is, never as markup.
[[nodiscard]] QLabel* MakeLabel(const QString& name, std::string_view text, QWidget* parent);
[[nodiscard]] WrappingLabel* MakeParagraph(const QString& name, std::string_view text,
                                           int leastWidth, QWidget* parent);
[[nodiscard]] QProgressBar* MakeProgressBar(const QString& name, QWidget* parent);

/// The name, the title and the typeface of a dialog.
void NameDialog(QDialog& dialog, const QString& name, const QString& title);
/// The column that fills a window.
[[nodiscard]] QVBoxLayout* MakeColumn(QWidget& window);
[[nodiscard]] QHBoxLayout* MakeRow(int spacing);
/// Buttons at the right end of a row.
[[nodiscard]] QHBoxLayout* MakeButtonRow(std::initializer_list<QPushButton*> buttons);
/// The layout that fills `frame`; its margin is that of a panel, or none without a border.
template <typename Layout>
[[nodiscard]] Layout* MakeLayout(QFrame& frame) {
    auto* layout = new Layout(&frame);
    const int margin = frame.frameShape() == QFrame::NoFrame ? 0 : FrameMargin;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(RowSpacing);
    return layout;
}

/// Nothing moves when the widget is hidden or shown.
void KeepRoomWhenHidden(QWidget& widget);

/// Writes one widget in bold or normal type.
void SetBold(QWidget& widget, bool bold);
/// Writes every option button of `window` in bold type while selected, else in normal type.
void ShowSelectedOptionsBold(QWidget& window);
/// Gives a button the room that its caption takes in bold type. To be called when the caption
/// is set.
void ReserveRoomForBold(QAbstractButton& button);
/// The look of the button that does what the window is for.
void MakePrimary(QPushButton& button);

} // namespace zr5
