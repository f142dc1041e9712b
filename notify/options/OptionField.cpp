#include "notify/options/OptionField.h"

#include "notify/options/NoteLabel.h"
#include "notify/options/OptionText.h"

#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

QString latin(const char *text) { return QString::fromLatin1(text); }

QString plainLabel(const char *label)
{
    QString text = options::tr(label);
    return text.remove(u'&').remove(u':');
}

} // namespace

OptionField::OptionField(const options::Row &row, QWidget *page)
    : QObject(page)
    , m_row(row)
    , m_note(new NoteLabel(page))
{
    m_note->setObjectName(latin(row.key) + "Note"_L1);
}

void OptionField::prepare(QWidget *control)
{
    control->setObjectName(latin(m_row.key));
    control->setAccessibleName(plainLabel(m_row.label));
    control->setToolTip(options::tr(m_row.tip));
}

void OptionField::load()
{
    showText(GetSetting(latin(m_row.section), latin(m_row.key), fallback()));
}

void OptionField::showDefault()
{
    showText(fallback());
    m_edited = true; // the default is to be stored, whatever stands there now
    emit changed();
}

SettingValue OptionField::saved() const { return { latin(m_row.section), latin(m_row.key), text() }; }

QString OptionField::fallback() const
{
    return Settings::dialogDefaultOf(*Settings::find(latin(m_row.section), latin(m_row.key)));
}

void OptionField::showText(const QString &text)
{
    m_loading = true;
    m_shown = text;
    if (show(text)) {
        m_remark = remark();
    } else {
        m_remark = tr("“%1” is stored here, which cannot be used. The default is shown; OK stores what is shown.")
                       .arg(text);
        m_shown = fallback();
        show(m_shown);
    }
    m_loading = false;
    m_edited = false;
    updateNote();
}

void OptionField::touched()
{
    if (m_loading)
        return;
    m_edited = true;
    m_remark.clear();
    updateNote();
    emit changed();
}

void OptionField::updateNote()
{
    m_problem = m_remark.isEmpty() && m_row.more.check ? m_row.more.check(text()) : m_remark;
    m_note->setText(m_problem);
    control()->setAccessibleDescription(m_problem);
}
