#pragma once

#include "core/Settings.h"
#include "notify/options/OptionTable.h"

#include <QObject>

class NoteLabel;
class QWidget;

/** One setting and its control. A value that nobody touched is saved as it was stored; a stored one that does not
    convert gives way to the default, and the note beside the control says so. */
class OptionField : public QObject
{
    Q_OBJECT
public:
    /** Makes the control that the row asks for, as a child of the page. */
    static OptionField *make(const options::Row &row, QWidget *page);

    const options::Row &row() const { return m_row; }
    /** What the page lays out. */
    virtual QWidget *widget() const = 0;
    /** What the label's mnemonic moves to. */
    virtual QWidget *control() const { return widget(); }
    /** Whether the control carries the row's label itself. */
    virtual bool ownsLabel() const { return false; }
    /** Where a problem is told. */
    NoteLabel *note() const { return m_note; }

    /** Shows the stored value, or the default. */
    void load();
    void showDefault();
    /** The text to be stored. */
    QString text() const { return m_edited ? value() : untouched(); }
    SettingValue saved() const;
    bool hasProblem() const { return !m_problem.isEmpty(); }

signals:
    void changed();

protected:
    OptionField(const options::Row &row, QWidget *page);

    /** Shows a text; false when it does not convert. */
    virtual bool show(const QString &text) = 0;
    /** The text of what is shown. */
    virtual QString value() const = 0;
    /** What is stored when nobody touched the control. */
    virtual QString untouched() const { return m_shown; }
    /** Says what is odd about the text just shown; empty: nothing. */
    virtual QString remark() const { return {}; }

    /** Names the control after its key and connects what every control has. */
    void prepare(QWidget *control);
    /** Call when the operator has changed the control. */
    void touched();
    /** Whether a change of the control is the operator's and not that of loading. */
    bool isTouchable() const { return !m_loading; }
    /** What was shown last, before anybody touched it. */
    const QString &shown() const { return m_shown; }

private:
    void showText(const QString &text);
    void updateNote();
    QString fallback() const;

    const options::Row &m_row;
    NoteLabel *m_note;
    QString m_shown;
    QString m_remark; // about the stored value, until it is touched
    QString m_problem;
    bool m_loading = false;
    bool m_edited = false;
};
