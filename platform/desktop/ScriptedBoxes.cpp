#include "platform/desktop/ScriptedBoxes.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace desktop {

namespace {

ScriptedBoxes *s_active = nullptr;

} // namespace

ScriptedBoxes::ScriptedBoxes(Fail fail)
    : m_fail(std::move(fail))
    , m_outer(std::exchange(s_active, this))
{
}

ScriptedBoxes::~ScriptedBoxes()
{
    s_active = m_outer;
    for (const Expected &left : std::as_const(m_expected))
        m_fail(u"never asked: "_s + words(left.kind, left.text));
}

ScriptedBoxes *ScriptedBoxes::active() { return s_active; }

ScriptedBoxes &ScriptedBoxes::expectBox(const QString &text, Answer answer)
{
    m_expected += { Kind::Box, text, answer, QString() };
    return *this;
}

ScriptedBoxes &ScriptedBoxes::expectOpenFile(const QString &title, const QString &file)
{
    m_expected += { Kind::OpenFile, title, AnswerOk, file };
    return *this;
}

ScriptedBoxes &ScriptedBoxes::expectSaveFile(const QString &title, const QString &file)
{
    m_expected += { Kind::SaveFile, title, AnswerOk, file };
    return *this;
}

ScriptedBoxes &ScriptedBoxes::expectShellOpen(const QString &target)
{
    m_expected += { Kind::ShellOpen, target, AnswerOk, QString() };
    return *this;
}

ScriptedBoxes &ScriptedBoxes::setHasProgram(bool has)
{
    m_hasProgram = has;
    return *this;
}

Answer ScriptedBoxes::answerBox(const Box &box)
{
    m_boxes += box;
    Expected next;
    return takeNext(Kind::Box, box.text, next) ? next.answer : closedAnswer(box.buttons);
}

QString ScriptedBoxes::answerOpenFile(const FileQuestion &question)
{
    m_pickers += question;
    Expected next;
    return takeNext(Kind::OpenFile, question.title, next) ? next.file : QString();
}

QString ScriptedBoxes::answerSaveFile(const FileQuestion &question)
{
    m_pickers += question;
    Expected next;
    return takeNext(Kind::SaveFile, question.title, next) ? next.file : QString();
}

void ScriptedBoxes::noteShellOpen(const QString &target)
{
    Expected next;
    takeNext(Kind::ShellOpen, target, next);
}

QString ScriptedBoxes::words(Kind kind, const QString &text)
{
    static constexpr QLatin1StringView kNames[]
        = { "box"_L1, "open file"_L1, "save file"_L1, "shell open"_L1 };
    return kNames[int(kind)] + ": "_L1 + text;
}

bool ScriptedBoxes::takeNext(Kind kind, const QString &text, Expected &next)
{
    const QString asked = words(kind, text);
    if (m_expected.isEmpty()) {
        m_fail(u"unexpected: "_s + asked);
        return false;
    }
    // A wrong question uses the expected one up, so that one slip is reported once.
    next = m_expected.takeFirst();
    if (next.kind == kind && next.text == text)
        return true;
    m_fail(u"expected "_s + words(next.kind, next.text) + u" but asked "_s + asked);
    return false;
}

} // namespace desktop
