#include "ui/graphic_window.h"

#include "ui/labels.h"
#include "ui/text_edges.h"
#include "ui/widgets.h"
#include "util/display.h"
#include "util/paths.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <QAction>
#include <QBuffer>
#include <QCloseEvent>
#include <QGridLayout>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <utility>
#include <vector>

namespace zr5 {
namespace {

constexpr const char* Explanation =
    "Each point is a pair of neighbouring bytes, brighter the more often it occurs. Encrypted and "
    "compressed files fill the square as random bytes do. Clusters, lines, single points and dark "
    "areas are structure.";
constexpr int TrackHeight = 8;

constexpr int Side = static_cast<int>(PairSide);
constexpr int LeastSide = 176;
constexpr int PreferredSide = 360;
constexpr int SavedScale = 4;

/// Every pair keeps sharp edges when the picture grows, and none is lost when it shrinks.
QImage ScaledTo(const QImage& image, int side) {
    const int times = (side + Side - 1) / Side;
    const QImage grown = times > 1 ? image.scaled(times * Side, times * Side) : image;
    return grown.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// "0", the name and "255" along an axis of this length, which begins at the origin.
void DrawAxis(QPainter& painter, int length, int room, const QString& name) {
    const QRect line(0, -room, length, room);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("0"));
    painter.drawText(line, Qt::AlignCenter, name);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, QString::number(Side - 1));
}

} // namespace

PairPicture::PairPicture(QWidget* parent)
    : QWidget(parent), image_(Side, Side, QImage::Format_Grayscale8) {
    image_.fill(0);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setSizePolicy(policy);
}

void PairPicture::ShowCounts(const PairCounts& counts) {
    const std::vector<std::uint8_t> brightness = counts.Brightness();
    auto pixels = brightness.begin();
    for (int row = 0; row < Side; ++row, pixels += Side)
        std::copy_n(pixels, Side, image_.scanLine(row));
    update();
}

QImage PairPicture::Page() const {
    PairPicture drawn;
    drawn.image_ = image_;
    drawn.setPalette(QPalette(Qt::white));
    const int side = Side * SavedScale + AxisRoom() + 1;
    drawn.resize(side, side);
    QImage page(drawn.size(), QImage::Format_RGB32);
    drawn.render(&page);
    return page;
}

QSize PairPicture::sizeHint() const {
    return {PreferredSide + AxisRoom(), PreferredSide + AxisRoom()};
}

QSize PairPicture::minimumSizeHint() const {
    return {LeastSide + AxisRoom(), LeastSide + AxisRoom()};
}

void PairPicture::paintEvent(QPaintEvent* /*event*/) {
    const int room = AxisRoom();
    const int side = std::max(std::min(width(), height()) - room - 1, 1);
    QPainter painter(this);
    const int left = (width() - side - room) / 2;
    painter.translate(left + room, room);
    const qreal ratio = devicePixelRatioF();
    painter.drawImage(QRect(0, 0, side, side),
                      ScaledTo(image_, static_cast<int>(std::lround(side * ratio))));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(-1, -1, side + 1, side + 1);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = QRect(-3, -3, side + 6, side + 6);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
    painter.setPen(palette().color(QPalette::WindowText));
    painter.translate(0, -2);
    DrawAxis(painter, side, room - 2, tr("first byte"));
    painter.translate(-2, side + 2);
    painter.rotate(-90);
    // Read from below: the far end of the axis is at its top.
    const QRect line(0, -(room - 2), side, room - 2);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, QString::number(Side - 1));
    painter.drawText(line, Qt::AlignCenter, tr("second byte"));
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("0"));
}

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
