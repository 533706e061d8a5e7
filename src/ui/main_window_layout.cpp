// Makes the controls of the main window and lays them out.

#include "ui/main_window.h"

#include "setup/identity.h"
#include "ui/labels.h"
#include "ui/outcome_strip.h"
#include "ui/randomness_pane.h"
#include "ui/widgets.h"

#include <algorithm>
#include <initializer_list>
#include <QButtonGroup>
#include <QGridLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <string_view>

namespace zr5 {
namespace {

/// Added to the width that a caption needs.
constexpr int ButtonPadding = 20;

constexpr const char* OutcomeName = "fraOutcome";

enum class Border { None, Panel };

QFrame* Frame(const char* name, QWidget* parent, Border border) {
    auto* frame = Named(new QFrame(parent), name);
    if (border == Border::Panel) frame->setFrameShape(QFrame::StyledPanel);
    return frame;
}

ReleaseButton* Button(const char* name, QWidget* parent) {
    return MakeReleaseButton(name, {}, parent);
}

QLabel* Text(const char* name, QWidget* parent) {
    return MakeLabel(name, {}, parent);
}

/// A pair of option buttons of which at most one is selected.
void AddOptions(QWidget* parent, QBoxLayout* layout, std::initializer_list<const char*> names) {
    auto* group = new QButtonGroup(parent);
    for (const char* name : names) {
        auto* option = Named(new QRadioButton(parent), name);
        group->addButton(option);
        layout->addWidget(option);
    }
}

QFrame* ChoiceFrame(const char* frameName, const char* labelName,
                    std::initializer_list<const char*> options, QWidget* parent) {
    QFrame* frame = Frame(frameName, parent, Border::Panel);
    auto* layout = MakeLayout<QVBoxLayout>(*frame);
    layout->addWidget(Text(labelName, frame));
    AddOptions(frame, layout, options);
    return frame;
}

QFrame* SelectFileFrame(QWidget* parent) {
    QFrame* outer = Frame("fraSelectFile", parent, Border::Panel);
    QFrame* inner = Frame("fraSingleFile", outer, Border::None);
    MakeLayout<QVBoxLayout>(*outer)->addWidget(inner);
    auto* layout = MakeLayout<QHBoxLayout>(*inner);
    layout->addWidget(Button("cmdSingleFile(0)", inner), 1);
    layout->addWidget(Button("cmdSingleFile(1)", inner), 1);
    return outer;
}

/// A row with a caption and the box to which it belongs.
void AddBox(QGridLayout& grid, int row, const char* labelName, const char* boxName, int width) {
    QWidget* frame = grid.parentWidget();
    auto* label = Text(labelName, frame);
    auto* box = Named(new QLineEdit(frame), boxName);
    box->setMinimumHeight(ButtonHeight - 4);
    box->setFixedWidth(width);
    box->setTextMargins(3, 0, 3, 0);
    label->setBuddy(box);
    grid.addWidget(label, row, 0, 1, 2);
    grid.addWidget(box, row, 2, Qt::AlignLeft);
}

QFrame* FolderFrame(QWidget* parent) {
    QFrame* frame = Frame("fraFilesInAFolder", parent, Border::Panel);
    auto* grid = MakeLayout<QGridLayout>(*frame);
    grid->setHorizontalSpacing(GroupSpacing);
    grid->addWidget(Button("cmdSpecifyDirectory", frame), 0, 0);

    auto* subfolders = MakeRow(GroupSpacing);
    subfolders->addWidget(Text("lblIncludeAllSubfolders", frame));
    AddOptions(frame, subfolders, {"optSubfolders", "optNotSubfolders"});
    subfolders->addStretch(1);
    grid->addLayout(subfolders, 0, 1, 1, 2);

    AddBox(*grid, 1, "lblIncludeFilesMatching", "txbFilePattern", 180);
    AddBox(*grid, 2, "lblMaxNumFiles", "txbMaxNumFiles", 90);

    grid->addWidget(Button("cmdListFiles", frame), 3, 0);
    auto* inPlace = Text("lblFilesInAFolder", frame);
    KeepRoomWhenHidden(*inPlace);
    grid->addWidget(inPlace, 3, 1, 1, 2);
    grid->setColumnStretch(2, 1);
    return frame;
}

/// What was chosen: a grid of captions and names.
QFrame* ChoiceSummary(QWidget* parent) {
    QFrame* frame = Frame("fraFileLabels", parent, Border::Panel);
    auto* grid = MakeLayout<QGridLayout>(*frame);
    grid->setHorizontalSpacing(GroupSpacing);
    constexpr struct {
        const char* caption;
        const char* value;
    } Rows[] = {{"lblInputFolder", "lblFolder(0)"},
                {"lblInputFile", "lblFiles(0)"},
                {"lblOutputFolder", "lblFolder(1)"},
                {"lblOutputFile", "lblFiles(1)"},
                {"lblSetupFilename", "lblFiles(2)"}};
    int row = 0;
    for (const auto& [caption, value] : Rows) {
        auto* name = Text(caption, frame);
        KeepRoomWhenHidden(*name);
        grid->addWidget(name, row, 0);
        grid->addWidget(Named(new ElidedLabel(frame), value), row, 1);
        grid->setRowMinimumHeight(row++, 22);
    }
    grid->addWidget(Text("lblSize", frame), 1, 2, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(Button("cmdSpecifyFiles(0)", frame), 0, 3, 2, 1);
    grid->addWidget(Button("cmdSpecifyFiles(1)", frame), 2, 3, 2, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(row, 1);
    return frame;
}

QFrame* OperationFrames(QWidget* parent) {
    QFrame* main = Frame("fraMain", parent, Border::None);
    auto* column = MakeLayout<QVBoxLayout>(*main);
    column->setSpacing(GroupSpacing);
    auto* choices = MakeRow(GroupSpacing);
    choices->addWidget(
        ChoiceFrame("fraFunction", "lblFunction", {"optEncrypt", "optDecrypt"}, main), 1);
    choices->addWidget(
        ChoiceFrame("fraInput", "lblInput", {"optSingleFile", "optFilesInAFolder"}, main), 1);
    QFrame* output = ChoiceFrame("fraOutput", "lblOutput",
                                 {"optOverwriteInputFiles", "optWriteToSeparateOutputFiles"}, main);
    KeepRoomWhenHidden(*output);
    choices->addWidget(output, 1);
    column->addLayout(choices);
    column->addWidget(SelectFileFrame(main));
    column->addWidget(FolderFrame(main));
    column->addWidget(ChoiceSummary(main), 1);
    return main;
}

QLayout* KeyStatus(QWidget* parent) {
    auto* row = MakeRow(GroupSpacing);
    auto* picture = Named(new QLabel(parent), "picKeyFrom");
    row->addWidget(picture, 0, Qt::AlignTop);
    auto* lines = new QVBoxLayout;
    lines->setSpacing(2);
    constexpr struct {
        const char* name;
        int mostLines;
    } statements[] = {{"lblKeyFrom(0)", 1}, {"lblKeyFrom(1)", 2}};
    for (const auto& [name, mostLines] : statements) {
        auto* statement = Text(name, parent);
        statement->setWordWrap(true);
        statement->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        // What stands below must not move under the pointer when this comes, goes or changes.
        statement->setMinimumHeight(mostLines * statement->fontMetrics().lineSpacing());
        KeepRoomWhenHidden(*statement);
        lines->addWidget(statement);
    }
    lines->addStretch(1);
    row->addLayout(lines, 1);
    return row;
}

/// A column of buttons, and how the last run went; an empty name is a gap, "/" takes the room that
/// is left.
QFrame* ButtonPane(const char* name, QWidget* parent, std::initializer_list<const char*> buttons) {
    QFrame* frame = Frame(name, parent, Border::Panel);
    KeepRoomWhenHidden(*frame);
    auto* column = MakeLayout<QVBoxLayout>(*frame);
    for (const std::string_view button : buttons) {
        if (button.empty()) {
            column->addSpacing(RowSpacing);
        } else if (button == "/") {
            column->addStretch(1);
        } else if (button == OutcomeName) {
            column->addWidget(
                Named(new OutcomeStrip(OutcomeStrip::Wrapping::TwoLines, frame), button.data()));
        } else {
            column->addWidget(Button(button.data(), frame));
        }
    }
    return frame;
}

/// All in one cell: one of them is shown.
QLayout* Panes(QWidget* parent) {
    auto* cell = new QGridLayout;
    for (QFrame* pane : std::initializer_list<QFrame*>{
             ButtonPane("fraMenu", parent,
                        {"cmdKeyFrom", "cmdDoIt", "cmdCheckFiles", "", "cmdRandomnessReport",
                         "cmdReportScreen", OutcomeName, "cmdSetup", "cmdHelp(0)", "cmdHelp(1)",
                         "/", "cmdQuit"}),
             ButtonPane("fraSetup", parent,
                        {"cmdLoadSetup", "cmdSaveSetup", "cmdClearSetup", "", "cmdKeepSetup", "/"}),
             ButtonPane("fraSaveSetup", parent,
                        {"cmdSaveSetupForNextRun", "cmdSaveSetupAsOperationFile", "",
                         "cmdDontSaveSetup", "/"}),
             ButtonPane("fraKey", parent,
                        {"cmdKeyboardWithDisplay", "cmdKeyboardWithoutDisplay", "cmdKeyFile(0)",
                         "cmdKeyFile(1)", "", "cmdEraseKey", "cmdDontSpecifyKeyNow", "/"}),
             new RandomnessPane(parent)})
        cell->addWidget(pane, 0, 0);
    return cell;
}

QLayout* RightColumn(QWidget* parent) {
    auto* column = new QVBoxLayout;
    column->setSpacing(GroupSpacing);
    column->addLayout(KeyStatus(parent));
    column->addLayout(Panes(parent), 1);
    return column;
}

QLayout* Foot(QWidget* parent) {
    auto* row = new QHBoxLayout;
    auto* maker = Named(new QLabel(parent), "lblMaker");
    maker->setText(QStringLiteral("<a href=\"maker\">%1</a>").arg(QString(MakerName)));
    maker->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    row->addWidget(maker);
    row->addStretch(1);
    row->addWidget(Text("lblPerformingReliabilityTest", parent));
    return row;
}

} // namespace

void MainWindow::LayOut() {
    auto* column = MakeColumn(*this);
    auto* introduction = Text("lblIntro", this);
    introduction->setWordWrap(true);
    column->addWidget(introduction);

    auto* body = MakeRow(WindowMargin);
    body->addWidget(OperationFrames(this), 1);
    body->addLayout(RightColumn(this));
    column->addLayout(body, 1);
    column->addLayout(Foot(this));
    for (auto* widget : findChildren<QWidget*>()) {
        if (!widget->objectName().isEmpty()) controls_.insert(widget->objectName(), widget);
    }
    MakePrimary(Find<QPushButton>("cmdDoIt"));
    KeepRoomWhenHidden(Find<QPushButton>("cmdCheckFiles"));
}

void MainWindow::Settle() {
    for (auto* option : findChildren<QRadioButton*>())
        ReserveRoomForBold(*option);
    for (auto* button : findChildren<QPushButton*>())
        button->setMinimumWidth(button->sizeHint().width() + ButtonPadding);
    int paneWidth = 0;
    for (const char* name : {"fraMenu", "fraSetup", "fraSaveSetup", "fraKey"})
        paneWidth = std::max(paneWidth, Find<QFrame>(name).sizeHint().width());
    for (const char* name : {"fraMenu", "fraSetup", "fraSaveSetup", "fraKey", "fraRandomnessFiles"})
        Find<QFrame>(name).setFixedWidth(paneWidth);
}

} // namespace zr5
