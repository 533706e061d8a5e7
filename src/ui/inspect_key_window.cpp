#include "ui/inspect_key_window.h"

#include "ui/appearance.h"
#include "ui/bold_options.h"
#include "ui/text_edges.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zr5 {
namespace {

/// The widest row: sixteen bytes in decimal.
constexpr int RowCharacters = 64;
constexpr int RowPointsLarger = 2;

QLabel* Line(const char* name, const std::string& text, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setText(ToQt(text));
    label->setVisible(!text.empty());
    return label;
}

QPushButton* Button(const char* name, const char* caption, QWidget* parent) {
    auto* button = new QPushButton(QLatin1String(caption), parent);
    button->setObjectName(QLatin1String(name));
    button->setMinimumHeight(ButtonHeight);
    return button;
}

} // namespace

InspectKeyWindow::InspectKeyWindow(KeyInspection& rules, UserPort& user, QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      options_{AddOption("optDecimal", "Decimal", KeyView::Decimal),
               AddOption("optHexadecimal", "Hexadecimal", KeyView::Hexadecimal),
               AddOption("optASCII", "ASCII", KeyView::Ascii)},
      layoutNote_(Line("lblLayoutNote", {}, this)) {
    setObjectName(QStringLiteral("frmInspectKey"));
    setWindowTitle(QStringLiteral("Inspect the key"));
    UseArial(*this);
    options_[2]->setVisible(rules_.OffersAscii());
    for (QRadioButton* option : options_)
        ReserveRoomForBold(*option);
    for (std::size_t row = 0; row < KeyInspection::Rows; ++row)
        MakeRow(row);
    LayOut();
    connect(findChild<QPushButton*>("cmdYes"), &QPushButton::clicked, this, [this, &user] {
        rules_.Accept(user);
        accept();
    });
    connect(findChild<QPushButton*>("cmdNo"), &QPushButton::clicked, this,
            [this] { done(Rejected); });
    ShowView();
}

InspectKeyWindow::~InspectKeyWindow() {
    WipeRows();
}

QRadioButton* InspectKeyWindow::AddOption(const char* name, const char* caption, KeyView view) {
    auto* option = new QRadioButton(QLatin1String(caption), this);
    option->setObjectName(QLatin1String(name));
    option->setChecked(rules_.View() == view);
    connect(option, &QRadioButton::clicked, this, [this, view] {
        rules_.Select(view);
        ShowView();
    });
    return option;
}

/// The place of the row's first byte, and its bytes.
void InspectKeyWindow::MakeRow(std::size_t row) {
    const std::string index = "(" + std::to_string(row) + ")";
    const std::size_t first = row * KeyInspection::BytesInARow + 1;
    const std::size_t last = first + KeyInspection::BytesInARow - 1;
    places_[row] = Line(("lblPlace" + index).c_str(),
                        std::to_string(first) + " \u2013 " + std::to_string(last), this);
    Soften(*places_[row], palette());
    rows_[row] = Line(("lblKey" + index).c_str(), {}, this);
    rows_[row]->show();
    UseCourier(*rows_[row]);
    QFont font = rows_[row]->font();
    font.setPointSize(font.pointSize() + RowPointsLarger);
    rows_[row]->setFont(font);
    rows_[row]->setMinimumWidth(RowWidth());
}

int InspectKeyWindow::RowWidth() const {
    return rows_[0]->fontMetrics().horizontalAdvance(QString(RowCharacters, QLatin1Char('0')));
}

void InspectKeyWindow::LayOut() {
    auto* views = new QHBoxLayout;
    views->setSpacing(WindowMargin);
    for (QRadioButton* option : options_)
        views->addWidget(option);
    views->addStretch(1);

    auto* table = new QFrame(this);
    table->setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(table);
    grid->setContentsMargins(FrameMargin, FrameMargin, FrameMargin, FrameMargin);
    grid->setHorizontalSpacing(WindowMargin);
    grid->setVerticalSpacing(RowSpacing);
    for (std::size_t row = 0; row < KeyInspection::Rows; ++row) {
        grid->addWidget(places_[row], static_cast<int>(row), 0, Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(rows_[row], static_cast<int>(row), 1);
    }

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(RowSpacing);
    buttons->addWidget(Line("lblUseThisKey", "Use this key?", this), 1);
    auto* yes = Button("cmdYes", "Yes", this);
    yes->setDefault(true);
    auto* no = Button("cmdNo", "No", this);
    buttons->addWidget(yes);
    buttons->addWidget(no);

    auto* classLine = Line("lbl64Byte", rules_.ClassLine(), this);
    SetBold(*classLine, true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(WindowMargin, WindowMargin, WindowMargin, WindowMargin);
    column->setSpacing(GroupSpacing);
    column->addWidget(classLine);
    column->addWidget(Line("lblKeyFile", rules_.FileLine(), this));
    column->addLayout(views);
    column->addWidget(table);
    column->addWidget(layoutNote_);
    column->addWidget(Line("lblRandomnessIs", rules_.RandomnessLine(), this));
    column->addWidget(Line("lblChecksumIs", rules_.ChecksumLine(), this));
    column->addStretch(1);
    column->addLayout(buttons);
}

void InspectKeyWindow::ShowView() {
    WipeRows();
    for (std::size_t row = 0; row < KeyInspection::Rows; ++row)
        rows_[row]->setText(ToQt(rules_.Row(row).text()));
    const QString note = ToQt(rules_.LayoutNote());
    layoutNote_->setText(note);
    layoutNote_->setVisible(!note.isEmpty());
    ShowSelectedOptionsBold(*this);
    findChild<QPushButton*>("cmdYes")->setFocus();
}

void InspectKeyWindow::WipeRows() {
    for (QLabel* row : rows_) {
        OverwriteInPlace(row->text());
        row->clear();
    }
}

bool InspectInWindow::Inspect(const InspectedKey& key) {
    KeyInspection rules(key, fileKit_);
    InspectKeyWindow window(rules, user_, parent_);
    return window.exec() == QDialog::Accepted;
}

} // namespace zr5
