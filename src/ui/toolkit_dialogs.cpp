#include "ui/toolkit_dialogs.h"

#include "ui/labels.h"
#include "ui/widgets.h"

#include <algorithm>
#include <QApplication>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QFontMetrics>
#include <QGridLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QSpacerItem>
#include <QStyle>
#include <QTreeView>
#include <utility>

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

/// The name box of the toolkit's own picker, which `picker` becomes. A desktop's picker cannot be
/// relied on: that of GTK searches for what is typed, can name no new file where one is opened,
/// reads files for their icons, and remembers what was chosen.
QLineEdit& OwnNameBox(QFileDialog& picker) {
    constexpr const char* Name = "fileNameEdit";
    picker.setOption(QFileDialog::DontUseNativeDialog);
    return Checked<QLineEdit>(picker.findChild<QWidget*>(QLatin1String(Name)), Name);
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

void QuestionBox::Leave() {
    isAnswered_ = true;
    QMessageBox::reject();
}

DialogEnder::DialogEnder() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<QDialog*>(window);
        if (dialog != nullptr && dialog->isVisible() && dialog->isModal()) Leave(*dialog);
    }
    QCoreApplication::instance()->installEventFilter(this);
}

void DialogEnder::Leave(QDialog& dialog) {
    if (auto* question = dynamic_cast<QuestionBox*>(&dialog)) {
        question->Leave();
    } else {
        dialog.reject();
    }
}

/// A dialog's own loop has to run before it can be left.
bool DialogEnder::eventFilter(QObject* watched, QEvent* event) {
    auto* dialog = qobject_cast<QDialog*>(watched);
    if (dialog != nullptr && event->type() == QEvent::Polish && dialog->isModal()) {
        dialog->setWindowOpacity(0);
        QMetaObject::invokeMethod(
            dialog, [dialog] { Leave(*dialog); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
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

PickerIcons::PickerIcons()
    : folder_(QApplication::style()->standardIcon(QStyle::SP_DirIcon)),
      link_(QApplication::style()->standardIcon(QStyle::SP_FileLinkIcon)),
      file_(QApplication::style()->standardIcon(QStyle::SP_FileIcon)) {}

QIcon PickerIcons::icon(const QFileInfo& entry) const {
    if (entry.isSymLink()) return link_; // first: all else would ask what it leads to
    return entry.isDir() ? folder_ : file_;
}

QString PickerIcons::type(const QFileInfo& entry) const {
    if (entry.isSymLink()) return QStringLiteral("Link");
    if (entry.isDir()) return QStringLiteral("Folder");
    const QString suffix = entry.suffix();
    return suffix.isEmpty() ? QStringLiteral("File") : suffix + QStringLiteral(" file");
}

/// The toolkit lists a folder before it can be given icons: here one that holds nothing to look
/// into.
NamePicker::NamePicker(QWidget* parent, const QString& title, PickerIcons& icons)
    : QFileDialog(parent, title, QDir::rootPath()), box_(OwnNameBox(*this)) {
    setIconProvider(&icons);
    SetUpList();
    SetUpNameBox();
}

/// The toolkit marks in the list, after each key, the names of the path as far as it is typed, and
/// writes what is marked into the box where that has not the focus of the desktop.
void NamePicker::SetUpNameBox() {
    disconnect(&box_, &QLineEdit::textChanged, this, nullptr);
    connect(&box_, &QLineEdit::textChanged, this, [this] {
        markedFolder_.clear();
        const auto* row = findChild<QDialogButtonBox*>();
        for (QAbstractButton* button : row->buttons())
            if (row->buttonRole(button) == QDialogButtonBox::AcceptRole) button->setEnabled(true);
    });
}

void NamePicker::SetUpList() {
    auto& list = Checked<QTreeView>(findChild<QWidget*>(QStringLiteral("treeView")), "treeView");
    list.header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list.header()->setSectionResizeMode(0, QHeaderView::Stretch);
    resize(PickerSize);
    connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this, &list] {
        const QModelIndexList marked = list.selectionModel()->selectedRows();
        const QString path = marked.empty()
                                 ? QString()
                                 : marked.front().data(QFileSystemModel::FilePathRole).toString();
        markedFolder_ = QFileInfo(path).isDir() ? path : QString();
    });
}

void NamePicker::Suggest(const QString& name) {
    box_.setText(name);
}

/// The picker's own acceptance takes what is marked in the list before what is typed, and reads
/// quotes as the ends of several names.
void NamePicker::accept() {
    const QString typed = box_.text();
    const bool picksFile = fileMode() != Directory;
    if (picksFile && !markedFolder_.isEmpty())
        return setDirectory(std::exchange(markedFolder_, {}));
    if (picksFile && typed.isEmpty()) return;
    const QString path = TypedPath();
    const bool goesUp = typed == QLatin1String("..");
    if (goesUp || (picksFile && QFileInfo(path).isDir())) return EnterTyped(path);
    if (!MayReplace(path)) return;
    chosen_ = path;
    QDialog::accept(); // NOLINT(bugprone-parent-virtual-call)
}

QString NamePicker::TypedPath() const {
    QString typed = box_.text();
    const bool atHome = typed == QLatin1String("~") || typed.startsWith(QLatin1String("~/"));
    if (atHome && !QFileInfo::exists(directory().absoluteFilePath(typed)))
        typed.replace(0, 1, QDir::homePath());
    const QString path = QDir::cleanPath(directory().absoluteFilePath(typed));
    const bool meansFolder = typed.endsWith(QLatin1Char('/')) && !path.endsWith(QLatin1Char('/'));
    return meansFolder ? path + QLatin1Char('/') : path;
}

void NamePicker::EnterTyped(const QString& folder) {
    setDirectory(QDir::cleanPath(folder));
    box_.clear();
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
