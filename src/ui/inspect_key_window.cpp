#include "ui/inspect_key_window.h"

#include "ui/appearance.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"

#include <QFont>
#include <QGridLayout>
#include <QRadioButton>
#include <string>

namespace zr5 {
namespace {

/// The widest row: sixteen bytes in decimal.
constexpr int RowCharacters = 64;
constexpr int RowPointsLarger = 2;

/// Hidden while it has nothing to say.
QLabel* MakeLine(const QString& name, const std::string& text, QWidget* parent) {
    QLabel* label = MakeLabel(name, text, parent);
    label->setVisible(!text.empty());
    return label;
}

} // namespace

InspectKeyWindow::InspectKeyWindow(KeyInspection& rules, UserPort& user, QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      options_{AddOption("optDecimal", "Decimal", KeyView::Decimal),
               AddOption("optHexadecimal", "Hexadecimal", KeyView::Hexadecimal),
               AddOption("optASCII", "ASCII", KeyView::Ascii)},
      layoutNote_(MakeLine("lblLayoutNote", {}, this)) {
    NameDialog(*this, "frmInspectKey", "Inspect the key");
    options_[2]->setVisible(rules_.OffersAscii());
    for (QRadioButton* option : options_)
        ReserveRoomForBold(*option);
    for (std::size_t row = 0; row < KeyInspection::Rows; ++row)
        MakeKeyRow(row);
    LayOut();
    connect(yes_, &QPushButton::clicked, this, [this, &user] {
        rules_.Accept(user);
        accept();
    });
    ShowView();
}

InspectKeyWindow::~InspectKeyWindow() {
    WipeRows();
}

QRadioButton* InspectKeyWindow::AddOption(const char* name, const char* caption, KeyView view) {
    auto* option = Named(new QRadioButton(QLatin1String(caption), this), name);
    option->setChecked(rules_.View() == view);
    connect(option, &QRadioButton::clicked, this, [this, view] {
        rules_.Select(view);
        ShowView();
    });
    return option;
}

/// The place of the row's first byte, and its bytes.
void InspectKeyWindow::MakeKeyRow(std::size_t row) {
    const std::size_t first = row * KeyInspection::BytesInARow + 1;
    const std::size_t last = first + KeyInspection::BytesInARow - 1;
    places_[row] = MakeLine(Indexed("lblPlace", row),
                            std::to_string(first) + " \u2013 " + std::to_string(last), this);
    Soften(*places_[row], palette());
    rows_[row] = MakeLabel(Indexed("lblKey", row), {}, this);
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
    auto* views = MakeRow(WindowMargin);
    for (QRadioButton* option : options_)
        views->addWidget(option);
    views->addStretch(1);
    QFrame* table = Table();
    QLayout* answers = Answers();

    auto* classLine = MakeLine("lbl64Byte", rules_.ClassLine(), this);
    SetBold(*classLine, true);
    auto* column = MakeColumn(*this);
    column->addWidget(classLine);
    column->addWidget(MakeLine("lblKeyFile", rules_.FileLine(), this));
    column->addLayout(views);
    column->addWidget(table);
    column->addWidget(layoutNote_);
    column->addWidget(MakeLine("lblRandomnessIs", rules_.RandomnessLine(), this));
    column->addWidget(MakeLine("lblChecksumIs", rules_.ChecksumLine(), this));
    column->addStretch(1);
    column->addLayout(answers);
}

QFrame* InspectKeyWindow::Table() {
    auto* table = new QFrame(this);
    table->setFrameShape(QFrame::StyledPanel);
    auto* grid = MakeLayout<QGridLayout>(*table);
    grid->setHorizontalSpacing(WindowMargin);
    for (std::size_t row = 0; row < KeyInspection::Rows; ++row) {
        grid->addWidget(places_[row], static_cast<int>(row), 0, Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(rows_[row], static_cast<int>(row), 1);
    }
    return table;
}

QLayout* InspectKeyWindow::Answers() {
    auto* row = MakeRow(RowSpacing);
    row->addWidget(MakeLabel("lblUseThisKey", "Use this key?", this), 1);
    yes_ = MakeButton("cmdYes", "Yes", this);
    yes_->setDefault(true);
    auto* no = MakeButton("cmdNo", "No", this);
    connect(no, &QPushButton::clicked, this, [this] { done(Rejected); });
    row->addWidget(yes_);
    row->addWidget(no);
    return row;
}

void InspectKeyWindow::ShowView() {
    WipeRows();
    for (std::size_t row = 0; row < KeyInspection::Rows; ++row)
        rows_[row]->setText(ToQt(rules_.Row(row).text()));
    const QString note = ToQt(rules_.LayoutNote());
    layoutNote_->setText(note);
    layoutNote_->setVisible(!note.isEmpty());
    ShowSelectedOptionsBold(*this);
    yes_->setFocus();
}

void InspectKeyWindow::WipeRows() {
    for (QLabel* row : rows_) {
        OverwriteInPlace(row->text());
        row->clear();
    }
}

bool InspectInWindow::Inspect(const InspectedKey& key) {
    KeyInspection rules(key, machine_.fileKit);
    InspectKeyWindow window(rules, machine_.user, parent_);
    return window.exec() == QDialog::Accepted;
}

} // namespace zr5
