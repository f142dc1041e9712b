#include "ui/PushToTalk.h"

#include "core/Announcer.h"
#include "core/Trap.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace {

bool isTheKey(const QEvent &event)
{
    const auto &key = static_cast<const QKeyEvent &>(event);
    return key.key() == PushToTalk::kKey && key.modifiers() == Qt::NoModifier && !key.isAutoRepeat();
}

} // namespace

PushToTalk::PushToTalk(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool PushToTalk::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress && isTheKey(*event))
        listen(true);
    else if (type == QEvent::KeyRelease && isTheKey(*event))
        listen(false);
    else if (type == QEvent::ApplicationStateChange || type == QEvent::WindowDeactivate)
        listen(false); // the release will go to another program
    return QObject::eventFilter(watched, event);
}

void PushToTalk::listen(bool on)
{
    if (on == m_held)
        return;
    m_held = on;
    if (vbMain().announcer)
        Trap("Agent1_Listen", [on] { vbMain().announcer->listen(on); });
}
