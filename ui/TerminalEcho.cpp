#include "ui/TerminalEcho.h"

#include <QRegularExpression>
#include <QTimerEvent>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int kStatusIntervalMs = 300;

void writeToTerminal(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace

TerminalEcho::TerminalEcho(std::function<void(const QString &)> write, QObject *parent)
    : QObject(parent)
    , m_write(write ? std::move(write) : writeToTerminal)
{
}

TerminalEcho::~TerminalEcho() { flush(); }

void TerminalEcho::status(const QString &text)
{
    m_pending = text;
    if (m_wait.isActive())
        return;
    const qint64 since = m_lastStatus.isValid() ? m_lastStatus.elapsed() : kStatusIntervalMs;
    if (since >= kStatusIntervalMs)
        flush();
    else
        m_wait.start(int(kStatusIntervalMs - since), this);
}

void TerminalEcho::announcement(const QString &text)
{
    if (!text.isEmpty())
        tell("Announcement: "_L1, text);
}

void TerminalEcho::event(const QString &line)
{
    // In the order in which things happened.
    flush();
    tell("Event: "_L1, line);
}

void TerminalEcho::message(const QString &caption, const QString &text)
{
    flush();
    tell("Message: "_L1, caption + ": "_L1 + text);
}

void TerminalEcho::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_wait.timerId())
        flush();
}

void TerminalEcho::flush()
{
    m_wait.stop();
    if (m_pending.isEmpty() || m_pending == m_told)
        return;
    m_told = m_pending;
    m_lastStatus.start();
    tell("Status: "_L1, m_told);
}

void TerminalEcho::tell(QLatin1StringView label, const QString &text)
{
    static const QRegularExpression breaks(u"[\\r\\n\\t]+"_s);
    m_write(label + QString(text).replace(breaks, u" "_s));
}
