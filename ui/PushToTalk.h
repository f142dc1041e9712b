#pragma once

#include <QObject>

/** Push to talk by a key: the announcer listens while F9 is held in any of the program's windows. */
class PushToTalk : public QObject
{
public:
    static constexpr Qt::Key kKey = Qt::Key_F9;

    /** Watches the whole application's keys as long as it lives. */
    explicit PushToTalk(QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void listen(bool on);
    bool m_held = false;
};
