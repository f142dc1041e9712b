#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <functional>

/** Tells on a terminal what the window would show, one line each, while there is no display. All is told at
   once; only progress texts that follow fast are thinned out to a few per second, but the last one of a burst
   never gets lost. */
class TerminalEcho : public QObject
{
    Q_OBJECT
public:
    /** write gets every finished line without its line end; by default it goes to standard output. */
    explicit TerminalEcho(std::function<void(const QString &)> write = {}, QObject *parent = nullptr);
    ~TerminalEcho() override;

    void status(const QString &text);
    void announcement(const QString &text);
    void event(const QString &line);
    void message(const QString &caption, const QString &text);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void flush();
    void tell(QLatin1StringView label, const QString &text);

    std::function<void(const QString &)> m_write;
    QElapsedTimer m_lastStatus;
    QBasicTimer m_wait;
    QString m_told; // the status text that was told last
    QString m_pending; // a newer one that waits
};
