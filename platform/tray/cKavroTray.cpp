#include "platform/tray/cKavroTray.h"

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

cKavroTray::cKavroTray(QObject *parent)
    : QObject(parent)
    , m_icon(new QSystemTrayIcon(this))
{
    connect(m_icon, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            emit Clicked();
        else if (reason == QSystemTrayIcon::DoubleClick)
            emit DoubleClicked();
    });
}

void cKavroTray::SetPicture(const QIcon &picture) { m_icon->setIcon(picture); }

void cKavroTray::SetTip(const QString &tip) { m_icon->setToolTip(tip); }

QString cKavroTray::Tip() const { return m_icon->toolTip(); }

void cKavroTray::SetMenu(QMenu *menu) { m_icon->setContextMenu(menu); }

void cKavroTray::Show() { m_icon->show(); }

void cKavroTray::Hide() { m_icon->hide(); }

bool cKavroTray::isAvailable() const
{
    // The icon's own visibility says what was asked for, also where no host shows it.
    return QSystemTrayIcon::isSystemTrayAvailable();
}
