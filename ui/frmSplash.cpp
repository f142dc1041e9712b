#include "ui/frmSplash.h"

#include "core/vbMain.h"
#include "ui/ImageList.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize(480, 300);
constexpr int kMargin = 24;
constexpr int kLineHeight = 22;
// The art is dark in every palette, so its texts do not follow the palette either.
constexpr QRgb kStatusColour = 0xfff0f6fc;
constexpr QRgb kVersionColour = 0xffa9c7e2;

void setTextColour(QLabel &label, QRgb colour)
{
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgba(colour));
    label.setPalette(palette);
}

} // namespace

frmSplash::frmSplash(QWidget *parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
    , m_status(new QLabel(this))
    , m_version(new QLabel(u"Version "_s + AppVersion(), this))
{
    setObjectName(u"frmSplash"_s);
    setWindowTitle(AppTitle());
    setFixedSize(kSize);
    m_status->setObjectName(u"lblStatus"_s);
    m_status->setAccessibleName(tr("Start-up progress"));
    m_version->setObjectName(u"lblVersion"_s);
    m_version->setAccessibleName(tr("Version"));
    const int width = kSize.width() - 2 * kMargin;
    m_status->setGeometry(kMargin, kSize.height() - kMargin - 2 * kLineHeight, width, kLineHeight);
    m_version->setGeometry(kMargin, kSize.height() - kMargin - kLineHeight, width, kLineHeight);
    m_status->setTextFormat(Qt::PlainText);
    setTextColour(*m_status, kStatusColour);
    setTextColour(*m_version, kVersionColour);
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void frmSplash::setStatus(const QString &text)
{
    m_status->setText(text);
    m_status->repaint();
}

QString frmSplash::status() const { return m_status->text(); }

QString frmSplash::version() const { return m_version->text(); }

void frmSplash::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    ImageList::splash().paint(&painter, rect());
}
