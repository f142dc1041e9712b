#pragma once

#include "platform/desktop/FilePickers.h"
#include "platform/desktop/MessageBoxes.h"

#include <QList>
#include <QString>
#include <functional>

namespace desktop {

/** For tests: answers the desktop's questions from a list, in order, as long as it lives. A question that
    differs from the next expected one, one too many, or one never asked is reported through the callback; no
    window is ever shown. Several may be nested; the innermost answers. */
class ScriptedBoxes
{
public:
    using Fail = std::function<void(const QString &)>;

    struct Box {
        QString text;
        QString caption;
        Icon icon = Information;
        Buttons buttons = Ok;
        bool operator==(const Box &) const = default;
    };

    explicit ScriptedBoxes(Fail fail);
    ~ScriptedBoxes();
    ScriptedBoxes(const ScriptedBoxes &) = delete;
    ScriptedBoxes &operator=(const ScriptedBoxes &) = delete;

    ScriptedBoxes &expectBox(const QString &text, Answer answer = AnswerOk);
    /** The file that the picker of that title returns; "" cancels it. */
    ScriptedBoxes &expectOpenFile(const QString &title, const QString &file);
    ScriptedBoxes &expectSaveFile(const QString &title, const QString &file);
    ScriptedBoxes &expectShellOpen(const QString &target);
    /** Whether the desktop has a program for a file's type; it has unless told otherwise. */
    ScriptedBoxes &setHasProgram(bool has);

    /** Whether everything expected so far has been asked. */
    bool isFinished() const { return m_expected.isEmpty(); }
    /** The boxes and pickers that were asked, in order, for what the texts alone do not tell. */
    const QList<Box> &boxes() const { return m_boxes; }
    const QList<FileQuestion> &pickers() const { return m_pickers; }

    // What the desktop's functions call.
    static ScriptedBoxes *active();
    Answer answerBox(const Box &box);
    QString answerOpenFile(const FileQuestion &question);
    QString answerSaveFile(const FileQuestion &question);
    void noteShellOpen(const QString &target);
    bool hasProgram() const { return m_hasProgram; }

private:
    enum class Kind { Box, OpenFile, SaveFile, ShellOpen };
    struct Expected {
        Kind kind;
        QString text;
        Answer answer = AnswerOk;
        QString file;
    };

    static QString words(Kind kind, const QString &text);
    bool takeNext(Kind kind, const QString &text, Expected &next);

    Fail m_fail;
    ScriptedBoxes *m_outer;
    QList<Expected> m_expected;
    QList<Box> m_boxes;
    QList<FileQuestion> m_pickers;
    bool m_hasProgram = true;
};

} // namespace desktop
