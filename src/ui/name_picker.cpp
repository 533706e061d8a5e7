#include "ui/name_picker.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QTreeView>

namespace zr5 {
namespace {

constexpr QSize PreferredSize(800, 480);

} // namespace

NamePicker::NamePicker(QWidget* parent, const QString& title) : QFileDialog(parent, title) {
    // The list of the toolkit's own picker, which cuts sizes and dates.
    const auto* list = findChild<QTreeView*>(QStringLiteral("treeView"));
    if (list == nullptr) return;
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    resize(PreferredSize);
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
