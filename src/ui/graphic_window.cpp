#include "ui/graphic_window.h"

#include "ui/labels.h"
#include "ui/pair_picture.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"
#include "util/display.h"
#include "util/paths.h"

#include <QAction>
#include <QBuffer>
#include <QCloseEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace zr5 {
namespace {

constexpr const char* Explanation =
    "Each point is a pair of neighbouring bytes, brighter the more often it occurs. Encrypted and "
    "compressed files fill the square as random bytes do. Clusters, lines, single points and dark "
    "areas are structure.";
constexpr int TrackHeight = 8;

} // namespace

GraphicWindow::GraphicWindow(BytePairPicture& rules, SaveFunction save, QWidget* parent)
    : QDialog(parent),
      rules_(rules),
      save_(std::move(save)),
      picture_(Named(new PairPicture(this), "Picture1")),
      random_(Named(new PairPicture(this), "picRandom")),
      track_(new QFrame(this)),
      progress_(Named(new QLabel(track_), "lblProgressBar")),
      display_(MakeButton("cmdDisplay", {}, this)),
      saving_(Named(new QAction(tr("Save picture as PNG …"), this), "mnuSave")) {
    setObjectName(QStringLiteral("frmGraphic"));
    setWindowTitle(QStringLiteral("Randomness report"));
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setSizeGripEnabled(true);
    const int captionWidth = display_->fontMetrics().horizontalAdvance(QStringLiteral("Display"));
    display_->setMinimumWidth(captionWidth + 4 * FrameMargin);
    display_->setDefault(true);
    connect(display_, &QPushButton::clicked, this, [this] { rules_.Press(); });
    OfferSaving();
    LayOut();
    rules_.SetView([this] { Show(); });
    Show();
    display_->setFocus();
}

GraphicWindow::~GraphicWindow() {
    rules_.SetView({});
}

/// Right click, the menu key and a shortcut lead to it.
void GraphicWindow::OfferSaving() {
    saving_->setShortcut(QKeySequence::Save);
    connect(saving_, &QAction::triggered, this, [this] { Save(); });
    picture_->setContextMenuPolicy(Qt::ActionsContextMenu);
    picture_->setFocusPolicy(Qt::StrongFocus);
    picture_->setAccessibleName(tr("Picture of the byte pairs of the file"));
    picture_->addAction(saving_);
    addAction(saving_); // for the shortcut, wherever the focus is
}

void GraphicWindow::LayOut() {
    auto* column = MakeColumn(*this);
    column->addWidget(new WrappingLabel(ToQt(Explanation), this));
    column->addLayout(Pictures(), 1);
    column->addLayout(Foot());
}

QLayout* GraphicWindow::Pictures() {
    auto* name = Named(new ElidedLabel(this), "lblFile");
    name->setText(ToQt(DisplayName(SplitPath(rules_.Path()).name)));
    auto* reference = new QLabel(tr("As many random bytes"), this);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(WindowMargin);
    grid->setVerticalSpacing(RowSpacing);
    int column = 0;
    for (const auto& [caption, picture] :
         {std::pair<QLabel*, PairPicture*>{name, picture_}, {reference, random_}}) {
        SetBold(*caption, true);
        grid->addWidget(caption, 0, column);
        grid->addWidget(picture, 1, column);
        grid->setColumnStretch(column++, 1);
    }
    grid->setRowStretch(1, 1);
    return grid;
}

QLayout* GraphicWindow::Foot() {
    track_->setFixedHeight(TrackHeight);
    track_->setAutoFillBackground(true);
    track_->setBackgroundRole(QPalette::Midlight);
    progress_->setAutoFillBackground(true);
    progress_->setBackgroundRole(QPalette::Highlight);
    auto* row = MakeRow(GroupSpacing);
    row->addWidget(track_, 1, Qt::AlignVCenter);
    row->addWidget(display_);
    return row;
}

void GraphicWindow::Show() {
    display_->setText(ToQt(rules_.ButtonCaption()));
    saving_->setEnabled(rules_.CanSave());
    picture_->setToolTip(rules_.CanSave() ? tr("Right-click, or press %1, to save the picture.")
                                                .arg(saving_->shortcut().toString())
                                          : QString());
    picture_->ShowCounts(rules_.Counts());
    if (rules_.state() != BytePairPicture::State::Drawing) random_->ShowCounts(rules_.Random());
    ShowProgress();
    if (rules_.ClosesNow()) QDialog::reject();
}

void GraphicWindow::ShowProgress() {
    progress_->setGeometry(0, 0, rules_.ProgressWidth(track_->width()), track_->height());
}

void GraphicWindow::Save() {
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !picture_->Page().save(&buffer, "PNG")) return;
    save_(std::as_bytes(std::span(png.constData(), static_cast<std::size_t>(png.size()))));
}

void GraphicWindow::closeEvent(QCloseEvent* event) {
    reject();
    event->setAccepted(!isVisible());
}

void GraphicWindow::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    ShowProgress();
}

/// Every way of closing comes here: the button, Escape and the window's frame.
void GraphicWindow::reject() {
    if (rules_.MayClose()) QDialog::reject();
}

} // namespace zr5
