#pragma once

#include <QObject>
#include <QString>

class QIcon;
class QMenu;
class QSystemTrayIcon;

/** The tray icon control: picture, tip and menu in the desktop's notification area. On a desktop without one
    every call is kept for later: a tray host that starts afterwards shows the icon with its latest state. */
class cKavroTray : public QObject
{
    Q_OBJECT

public:
    explicit cKavroTray(QObject *parent = nullptr);

    void SetPicture(const QIcon &picture);
    void SetTip(const QString &tip);
    QString Tip() const;
    /** The menu of a right click; the caller keeps owning it. */
    void SetMenu(QMenu *menu);
    void Show();
    void Hide();
    /** Whether a tray host takes icons at this moment. Only then may the window hide behind its icon. */
    bool isAvailable() const;

signals:
    void Clicked();
    /** A double click is announced by Clicked first. */
    void DoubleClicked();

private:
    QSystemTrayIcon *m_icon;
};
