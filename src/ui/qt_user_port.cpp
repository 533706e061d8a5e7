#include "ui/qt_user_port.h"

#include "ui/text_edges.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QSettings>
#include <QUrl>

namespace zr5 {
namespace {

constexpr std::int32_t AddressOpened = 42;
constexpr std::int32_t AddressNotFound = 2;
constexpr std::int32_t NoProgramForAddress = 31;

QMessageBox::Icon IconOf(BoxIcon icon) {
    switch (icon) {
    case BoxIcon::None:
        return QMessageBox::NoIcon;
    case BoxIcon::Information:
        return QMessageBox::Information;
    case BoxIcon::Question:
        return QMessageBox::Question;
    case BoxIcon::Exclamation:
        return QMessageBox::Warning;
    case BoxIcon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(BoxButtons buttons) {
    switch (buttons) {
    case BoxButtons::Ok:
        return QMessageBox::Ok;
    case BoxButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case BoxButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case BoxButtons::RetryCancel:
        return QMessageBox::Retry | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton ButtonOf(Answer answer) {
    switch (answer) {
    case Answer::Ok:
        return QMessageBox::Ok;
    case Answer::Yes:
        return QMessageBox::Yes;
    case Answer::No:
        return QMessageBox::No;
    case Answer::Cancel:
        return QMessageBox::Cancel;
    case Answer::Retry:
        return QMessageBox::Retry;
    }
    return QMessageBox::NoButton;
}

/// The toolkit's picker keeps the folders that were visited, a keyfile's among them, in a file of
/// its settings. Where no file can be, it neither finds nor leaves any.
void KeepNoHistory() {
    for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, QStringLiteral("/dev/null/settings"));
}

/// Of a box that nobody has answered because the program was to end.
Answer AnswerAtTheEnd(const MessageBox& box) {
    const bool hasNoSuchAnswer = box.mustBeAnswered || box.buttons == BoxButtons::Ok;
    return hasNoSuchAnswer ? Answer::Cancel : AnswerThatChangesNothing(box.buttons);
}

/// The toolkit reads "[*]" in a title as a mark of its own, and twice as itself.
QString TitleOf(const MessageBox& box) {
    return ToQt(box.title).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

/// "Any file | *.*" reads "Any file" and lets every name through.
QString NameFilter(const std::string& filter) {
    return ToQt(filter).section('|', 0, 0).trimmed() + QStringLiteral(" (*)");
}

} // namespace

QtUserPort::QtUserPort() {
    KeepNoHistory();
}

QtUserPort::~QtUserPort() = default;

void QtUserPort::EndQuestions() {
    questionsEnded_ = true;
    dialogEnder_.emplace();
}

Answer QtUserPort::Ask(const MessageBox& box) {
    if (questionsEnded_) return AnswerAtTheEnd(box);
    QuestionBox window(QApplication::activeWindow(), box.mustBeAnswered);
    window.setWindowTitle(TitleOf(box));
    window.setText(ToQt(box.text));
    window.setIcon(IconOf(box.icon));
    window.setStandardButtons(ButtonsOf(box.buttons));
    window.setDefaultButton(ButtonOf(box.defaultButton));
    const Answer unchanged = AnswerThatChangesNothing(box.buttons);
    if (!box.mustBeAnswered) window.setEscapeButton(ButtonOf(unchanged));
    const int pressed = window.exec();
    if (questionsEnded_) return AnswerAtTheEnd(box);
    for (const Answer answer :
         {Answer::Ok, Answer::Yes, Answer::No, Answer::Cancel, Answer::Retry}) {
        if (pressed == ButtonOf(answer)) return answer;
    }
    return unchanged;
}

std::optional<std::string> QtUserPort::PickFile(const FilePicker& picker) {
    if (questionsEnded_) return std::nullopt;
    PickerIcons icons;
    NamePicker dialog(QApplication::activeWindow(), ToQt(picker.title), icons);
    const bool saves = picker.kind == FilePicker::Kind::Save;
    dialog.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    // A name that the toolkit cannot spell may be typed with escapes, so it must not be asked
    // whether the file exists; who called the picker judges that.
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !picker.asksBeforeOverwriting);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilter(NameFilter(picker.filter));
    if (!saves) dialog.setLabelText(QFileDialog::Accept, QFileDialog::tr("&Open"));
    dialog.Suggest(ToQt(picker.suggestedName));
    return Run(dialog, picker.startFolder);
}

std::optional<std::string> QtUserPort::PickFolder(const FolderPicker& picker) {
    if (questionsEnded_) return std::nullopt;
    PickerIcons icons;
    NamePicker dialog(QApplication::activeWindow(), ToQt(picker.title), icons);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return Run(dialog, picker.startFolder);
}

std::optional<std::string> QtUserPort::Run(NamePicker& dialog, const std::string& startFolder) {
    QString& lastFolder = lastFolders_[dialog.windowTitle()];
    if (lastFolder.isEmpty()) lastFolder = QDir::homePath();
    dialog.setDirectory(startFolder.empty()
                            ? lastFolder
                            : QFile::decodeName(QByteArray::fromStdString(startFolder)));
    if (dialog.exec() != QDialog::Accepted || dialog.Chosen().isEmpty()) return std::nullopt;
    lastFolder = dialog.directory().absolutePath();
    return QFile::encodeName(dialog.Chosen()).toStdString();
}

void QtUserPort::ProcessEvents() {
    QCoreApplication::processEvents();
}

void QtUserPort::WaitForEvents() {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtUserPort::ShowWork(const LongWork& work) {
    if (!work_) {
        const bool canBeStopped = static_cast<bool>(work.stop);
        work_ = std::make_unique<WorkWindow>(QApplication::activeWindow(), canBeStopped);
    }
    work_->Show(work);
    ProcessEvents();
}

void QtUserPort::EndWork() {
    ProcessEvents(); // input that came meanwhile falls on a window that is in the way
    work_.reset();
}

void QtUserPort::CopyToClipboard(const std::string& text) {
    QGuiApplication::clipboard()->setText(ToQt(text));
}

std::int32_t QtUserPort::OpenAddress(const std::string& address) {
    const QUrl url = QUrl::fromEncoded(QByteArray::fromStdString(address));
    if (url.isLocalFile() && !QFile::exists(url.toLocalFile())) return AddressNotFound;
    return QDesktopServices::openUrl(url) ? AddressOpened : NoProgramForAddress;
}

} // namespace zr5
