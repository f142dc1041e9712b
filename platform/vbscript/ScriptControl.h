#pragma once

#include <QObject>
#include <QString>
#include <memory>

namespace vbs {

class Engine;

/** What the last failed call has left behind. */
struct ScriptFault
{
    int number = 0;
    QString description;
    QString source;
    int line = 0;
    int column = 0;
};

}

/**
 * The script control: a VBScript engine with the operations of a host. Calls block until the script has ended, and
 * return false after an error (Error was emitted) or an expired limit (Timeout was emitted).
 */
class ScriptControl : public QObject
{
    Q_OBJECT
public:
    explicit ScriptControl(QObject *parent = nullptr);
    ~ScriptControl() override;

    /** False: the script may show nothing; MsgBox and InputBox fail with 70. */
    void SetAllowUI(bool allow);
    /** Limit of one call in milliseconds; -1: none. */
    void SetTimeout(int milliseconds);
    /**
     * Compiles `code` into the global module and runs its global statements. Names that it defines again replace
     * the former ones; global variables keep their values.
     */
    bool AddCode(const QString &code);
    /** Calls a procedure without arguments. A missing one is error 5. */
    bool Run(const QString &procedure);
    void Reset();

    /** Of the last failed call; its default value for texts is the number. */
    const vbs::ScriptFault &Fault() const { return m_fault; }

    vbs::Engine &engine() { return *m_engine; }

signals:
    void Error();
    void Timeout();

private:
    template <class Action>
    bool guarded(Action action);

    std::unique_ptr<vbs::Engine> m_engine;
    vbs::ScriptFault m_fault;
};
