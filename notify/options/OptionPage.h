#pragma once

#include "notify/options/OptionTable.h"

#include <QHash>
#include <QScrollArea>

class NoteLabel;
class OptionField;
class QFormLayout;
class QVBoxLayout;

/** One page of the options dialog: a heading, its settings, and what is special about it. */
class OptionPage : public QScrollArea
{
    Q_OBJECT
public:
    OptionPage(const options::Page &page, QWidget *parent);

    QString key() const { return QString::fromLatin1(m_page.key); }
    const QList<OptionField *> &fields() const { return m_fields; }
    OptionField *field(const char *key) const;
    void showDefaults();
    /** A problem of the page as a whole; empty: none. */
    void setProblem(const QString &text);
    bool hasProblem() const;

signals:
    void changed();
    /** A link of the overview was followed. */
    void asked(const QString &page);

private:
    void makeHeading();
    void makeFields();
    void addField(QFormLayout &rows, OptionField &field);
    QFormLayout *rowsOf(const char *group);
    void connectNeeds();
    void makeSpecials();
    QLayout *overview();

    const options::Page &m_page;
    QWidget *m_content;
    QVBoxLayout *m_column;
    NoteLabel *m_problem = nullptr;
    QHash<QByteArray, QFormLayout *> m_groups;
    QList<OptionField *> m_fields;
};
