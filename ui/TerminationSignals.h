#pragma once

#include <QObject>

/** Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the event loop. One object at a time. */
class TerminationSignals : public QObject
{
    Q_OBJECT
public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

signals:
    void received();

private:
    void drain();
    int m_pipe[2] = { -1, -1 };
};
