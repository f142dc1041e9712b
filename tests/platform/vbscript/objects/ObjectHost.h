#pragma once

#include "platform/vbscript/Memory.h"
#include "platform/vbscript/Object.h"
#include "platform/vbscript/ObjectFactory.h"

#include <QElapsedTimer>
#include <QLocale>
#include <initializer_list>

/** The engine's side of native objects, with a time limit that a test sets. */
class ObjectHost : public vbs::ScriptHost
{
public:
    ObjectHost() { vbs::registerAdministratorObjects(); }

    void setTimeLimit(int milliseconds)
    {
        m_limit = milliseconds;
        m_clock.start();
    }
    qint64 millisecondsLeft() const override
    {
        return m_limit < 0 ? -1 : qMax<qint64>(0, m_limit - m_clock.elapsed());
    }
    void checkDeadline() override
    {
        if (millisecondsLeft() == 0)
            throw vbs::ScriptTimeout();
    }
    void spend(qint64) override { checkDeadline(); }
    bool userInterfaceAllowed() const override { return false; }
    const QLocale &locale() const override { return m_locale; }
    vbs::Value plain(const vbs::Value &value) override
    {
        return value.is(vbs::Type::Object) ? callObject(value.object(), {}) : value;
    }
    vbs::Value callObject(vbs::Object *object, const QList<vbs::Value> &arguments) override
    {
        QList<vbs::Value> copies = arguments;
        vbs::Args args(*this, copies.data(), int(copies.size()));
        return object->invoke(vbs::Object::kDefaultMember, vbs::Access::Call, args);
    }
    vbs::Value createObject(const QString &progId) override { return vbs::createObject(*this, progId); }

    /** Calls or reads a member as a script does. */
    vbs::Value use(
        const vbs::Value &object, const char *member, std::initializer_list<vbs::Value> arguments = {})
    {
        QList<vbs::Value> copies(arguments);
        vbs::Args args(*this, copies.data(), int(copies.size()));
        const int id = object.object()->findMember(QString::fromLatin1(member));
        return object.object()->invoke(id, vbs::Access::Call, args);
    }
    void put(const vbs::Value &object, const char *member, const vbs::Value &value)
    {
        vbs::Args args(*this, nullptr, 0, &value);
        object.object()->invoke(
            object.object()->findMember(QString::fromLatin1(member)), vbs::Access::Let, args);
    }
    QString text(
        const vbs::Value &object, const char *member, std::initializer_list<vbs::Value> arguments = {})
    {
        return vbs::toText(*this, use(object, member, arguments));
    }

private:
    QLocale m_locale = QLocale::c();
    int m_limit = -1;
    QElapsedTimer m_clock;
};

inline vbs::Value text(const QString &value) { return vbs::Value::string(value); }
inline vbs::Value number(qint64 value) { return vbs::Value::number(value); }

/** Number of the script error that an action raises; 0 for none. */
template <class Action>
int errorOf(Action action)
{
    try {
        action();
    } catch (const vbs::ScriptError &error) {
        return error.number();
    }
    return 0;
}

/**
 * Milliseconds that an action runs beyond its time limit; -1 when it ends in any other way than by the limit. A busy
 * machine may hold one attempt up, so the best of three counts.
 */
template <class Action>
qint64 lateness(int limit, Action action)
{
    constexpr int kLate = 100;
    qint64 best = -1;
    for (int attempt = 0; attempt < 3 && (best < 0 || best >= kLate); ++attempt) {
        ObjectHost host;
        QElapsedTimer clock;
        clock.start();
        host.setTimeLimit(limit);
        try {
            action(host);
            return -1;
        } catch (const vbs::ScriptTimeout &) {
            const qint64 late = clock.elapsed() - limit;
            best = best < 0 ? late : qMin(best, late);
        }
    }
    return best;
}
