#include "notify/options/CharacterField.h"

#include "core/Announcer.h"
#include "core/vbMain.h"
#include "notify/options/OptionText.h"
#include "notify/vbMSAgent.h"
#include "platform/desktop/Labels.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kFile = Qt::UserRole; // the file's name without its ending

struct Description {
    const char16_t *name;
    const char *text;
};
constexpr Description kDescriptions[] = {
    { u"merlin", "An elderly wizard in a blue robe. Patient, a little absent-minded, and never lost for a scroll." },
    { u"peedy", "A bright parrot with quick wings. Cheerful, and the first to notice that something is wrong." },
    { u"robby", "A robot of the friendly kind. Exact, tireless, and fond of numbers." },
    { u"genie", "A genie out of his lamp. Grand gestures, good manners, and gone in a puff of smoke." },
};

QString describedAs(const QString &name)
{
    for (const Description &each : kDescriptions) {
        if (name.compare(QString::fromUtf16(each.name), Qt::CaseInsensitive) == 0)
            return options::tr(each.text);
    }
    return {};
}

} // namespace

CharacterField::CharacterField(const options::Row &row, QWidget *page)
    : OptionField(row, page)
    , m_widget(new QWidget(page))
    , m_list(new QListWidget(m_widget))
{
    prepare(m_list);
    m_list->setMaximumWidth(24 * m_list->fontMetrics().averageCharWidth());
    auto *line = new QHBoxLayout(m_widget);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_list);
    line->addWidget(makePanel(), 1);
    fillList();
    connect(m_list, &QListWidget::currentItemChanged, this, &CharacterField::chosen);
}

void CharacterField::fillList()
{
    for (const QString &file : CharacterNames()) {
        auto *item = new QListWidgetItem(CharacterTitle(file), m_list);
        item->setData(kFile, file);
    }
}

QWidget *CharacterField::makePanel()
{
    auto *panel = new QFrame(m_widget);
    panel->setFrameShape(QFrame::StyledPanel);
    panel->setBackgroundRole(QPalette::Base);
    panel->setAutoFillBackground(true);
    m_name = desktop::headingLabel({}, panel);
    m_description = desktop::mutedLabel({}, panel);
    m_description->setObjectName(u"CharacterDescription"_s);
    m_stage = new QVBoxLayout(panel);
    m_stage->addWidget(m_name);
    m_stage->addWidget(m_description);
    m_stage->addStretch();
    return panel;
}

QWidget *CharacterField::control() const { return m_list; }

void CharacterField::setPreview(CharacterPreview preview)
{
    m_preview = std::move(preview);
    describe();
}

bool CharacterField::show(const QString &text)
{
    m_list->setCurrentItem(nullptr);
    for (int i = 0; i < m_list->count(); ++i) {
        if (m_list->item(i)->data(kFile).toString().compare(text, Qt::CaseInsensitive) == 0)
            m_list->setCurrentRow(i);
    }
    describe();
    return true;
}

QString CharacterField::remark() const
{
    if (m_list->count() == 0)
        return tr("There are no characters in %1.").arg(CharacterFolder());
    return m_list->currentItem() ? QString() : tr("The character %1 is not installed.").arg(shown());
}

QString CharacterField::value() const
{
    const QListWidgetItem *item = m_list->currentItem();
    return item ? item->data(kFile).toString() : shown();
}

void CharacterField::chosen()
{
    describe();
    if (!isTouchable() || !m_list->currentItem())
        return;
    touched();
    if (vbMain().announcer)
        vbMain().announcer->greet(m_list->currentItem()->data(kFile).toString());
}

void CharacterField::describe()
{
    const QListWidgetItem *item = m_list->currentItem();
    const QString file = item ? item->data(kFile).toString() : QString();
    m_name->setText(item ? item->text() : tr("No character chosen"));
    m_description->setText(item ? describedAs(file) : tr("Choose one from the list."));
    delete m_picture;
    m_picture = item && m_preview ? m_preview(file, m_widget) : nullptr;
    if (m_picture)
        m_stage->insertWidget(0, m_picture, 1, Qt::AlignCenter);
}
