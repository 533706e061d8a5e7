#include "ui/toolkit_dialogs.h"

#include "ui/labels.h"

#include <algorithm>
#include <QApplication>
#include <QCloseEvent>
#include <QEvent>
#include <QFileInfo>
#include <QFontMetrics>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSpacerItem>
#include <QTreeView>

namespace zr5 {
namespace {

/// The window's buttons and its icon, beside the title.
constexpr int TitleSurroundings = 160;
/// The toolkit makes no box wider than this and a margin.
constexpr int WidestTitle = 900;

/// Texts of more than this width wrap.
constexpr int WidestText = 500;
/// Texts of more than this part of the screen's height scroll.
constexpr double TallestText = 0.66;

constexpr QSize PickerSize(800, 480);

int LongestLine(const QString& text, const QFontMetrics& metrics) {
    int width = 0;
    for (const QString& line : text.split(QLatin1Char('\n')))
        width = std::max(width, metrics.horizontalAdvance(line));
    return width + 1; // what the rounding of widths takes
}

int TitleWidth(const QMessageBox& box) {
    QFont font = QApplication::font("QMdiSubWindowTitleBar");
    font.setBold(true);
    const int wanted = QFontMetrics(font).horizontalAdvance(box.windowTitle()) + TitleSurroundings;
    return std::min({wanted, WidestTitle, box.screen()->availableGeometry().width() / 2});
}

/// The box fixes its own size, so that only what stands in it can make it wider; and its own label
/// cuts a word that is wider than the box.
void Dress(QMessageBox& box) {
    auto* cutting = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    box.setTextFormat(Qt::PlainText);
    if (cutting == nullptr || grid == nullptr) return;
    auto* wrapping = new WrappingLabel(box.text(), &box);
    wrapping->setObjectName(QStringLiteral("lblText"));
    wrapping->setMinimumWidth(
        std::min(LongestLine(box.text(), wrapping->fontMetrics()), WidestText));
    delete grid->replaceWidget(cutting, FitToScreen(wrapping, TallestText));
    cutting->hide();
    const int lastRow = grid->rowCount() - 1;
    grid->addItem(new QSpacerItem(TitleWidth(box), 0), lastRow, 0, 1, grid->columnCount());
}

} // namespace

MessageBoxDresser::MessageBoxDresser() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool MessageBoxDresser::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Polish) {
        if (auto* box = qobject_cast<QMessageBox*>(watched)) Dress(*box);
    }
    return QObject::eventFilter(watched, event);
}

void QuestionBox::LeaveByDefault() {
    if (mustBeAnswered_) {
        done(standardButton(defaultButton()));
    } else {
        reject();
    }
}

void QuestionBox::done(int button) {
    isAnswered_ = true;
    QMessageBox::done(button);
}

void QuestionBox::reject() {
    if (MayClose()) QMessageBox::reject();
}

void QuestionBox::closeEvent(QCloseEvent* event) {
    if (MayClose()) {
        QMessageBox::closeEvent(event);
    } else {
        event->ignore();
    }
}

void QuestionBox::keyPressEvent(QKeyEvent* event) {
    if (MayClose() || !event->matches(QKeySequence::Cancel)) QMessageBox::keyPressEvent(event);
}

NamePicker::NamePicker(QWidget* parent, const QString& title) : QFileDialog(parent, title) {
    // The list of the toolkit's own picker, which cuts sizes and dates.
    const auto* list = findChild<QTreeView*>(QStringLiteral("treeView"));
    if (list == nullptr) return;
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    resize(PickerSize);
}

QString NamePicker::Chosen() const {
    return literal_.isEmpty() ? selectedFiles().value(0) : literal_;
}

void NamePicker::accept() {
    // The box of the toolkit's own picker; a desktop's picker has none and reads no quotes.
    const auto* box = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (box == nullptr || !box->text().contains(QLatin1Char('"'))) {
        QFileDialog::accept();
        return;
    }
    const QString path = directory().absoluteFilePath(box->text());
    if (!MayReplace(path)) return;
    literal_ = path;
    // The picker's own acceptance is what reads the quotes.
    QDialog::accept(); // NOLINT(bugprone-parent-virtual-call)
}

bool NamePicker::MayReplace(const QString& path) {
    const bool asks = acceptMode() == AcceptSave && !testOption(DontConfirmOverwrite);
    if (!asks || !QFileInfo::exists(path)) return true;
    return QMessageBox::warning(this, windowTitle(),
                                QFileDialog::tr("%1 already exists.\nDo you want to replace it?")
                                    .arg(QFileInfo(path).fileName()),
                                QMessageBox::Yes | QMessageBox::No,
                                QMessageBox::No) == QMessageBox::Yes;
}

} // namespace zr5
