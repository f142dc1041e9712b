#include "notify/options/OptionPage.h"

#include "notify/options/Fields.h"
#include "notify/options/NoteLabel.h"
#include "notify/options/OptionText.h"
#include "notify/options/ScriptPanel.h"
#include "platform/desktop/Labels.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr double kHeadingScale = 1.3;

bool same(const char *a, const char *b) { return QByteArrayView(a) == QByteArrayView(b); }

bool fills(options::Editor editor)
{
    return editor == options::Editor::Servers || editor == options::Editor::Character;
}

/** Looks like a link and works like a button, so that Enter and the space bar follow it. */
QPushButton *linkButton(const QString &text, QWidget *parent)
{
    auto *link = new QPushButton(text, parent);
    link->setFlat(true);
    link->setCursor(Qt::PointingHandCursor);
    QFont font = link->font();
    font.setUnderline(true);
    link->setFont(font);
    // As wide as its text: a button's usual width would put short ones into its middle.
    link->setFixedWidth(QFontMetrics(font).horizontalAdvance(text) + 2 * link->fontMetrics().averageCharWidth());
    QPalette palette = link->palette();
    palette.setColor(QPalette::ButtonText, palette.color(QPalette::Link));
    link->setPalette(palette);
    return link;
}

} // namespace

OptionPage::OptionPage(const options::Page &page, QWidget *parent)
    : QScrollArea(parent)
    , m_page(page)
    , m_content(new QWidget)
    , m_column(new QVBoxLayout(m_content))
{
    setObjectName(u"page"_s + key());
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(options::tr(page.label));
    makeHeading();
    makeFields();
    connectNeeds();
    makeSpecials();
    if (!std::any_of(m_fields.begin(), m_fields.end(), [](OptionField *each) { return fills(each->row().editor); }))
        m_column->addStretch(1);
    setWidget(m_content);
    // What does not wrap stays visible; pages scroll up and down only.
    setMinimumWidth(m_content->minimumSizeHint().width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    // A frame of its own colour would cut the dialog in two.
    viewport()->setAutoFillBackground(false);
    m_content->setAutoFillBackground(false);
}

void OptionPage::makeHeading()
{
    QLabel *heading = desktop::headingLabel(options::tr(m_page.label), m_content);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * kHeadingScale);
    heading->setFont(font);
    m_problem = new NoteLabel(m_content);
    m_problem->setObjectName(u"pageProblem"_s);
    m_column->addWidget(heading);
    m_column->addWidget(desktop::mutedLabel(options::tr(m_page.purpose), m_content));
    m_column->addSpacing(m_column->spacing());
    m_column->addWidget(m_problem);
}

void OptionPage::makeFields()
{
    for (const options::Row &row : options::rows()) {
        if (!same(row.page, m_page.key))
            continue;
        QFormLayout *rows = rowsOf(row.more.group);
        OptionField *field = OptionField::make(row, rows->parentWidget());
        addField(*rows, *field);
        m_fields << field;
        connect(field, &OptionField::changed, this, &OptionPage::changed);
    }
}

QFormLayout *OptionPage::rowsOf(const char *group)
{
    QFormLayout *&rows = m_groups[QByteArray(group)];
    if (rows)
        return rows;
    rows = new QFormLayout;
    rows->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    rows->setLabelAlignment(Qt::AlignLeft);
    if (!group) {
        m_column->addLayout(rows);
        return rows;
    }
    auto *frame = new QGroupBox(options::tr(group), m_content);
    frame->setLayout(rows);
    m_column->addSpacing(m_column->spacing());
    m_column->addWidget(frame);
    return rows;
}

void OptionPage::addField(QFormLayout &rows, OptionField &field)
{
    const options::Row &row = field.row();
    if (field.ownsLabel()) {
        rows.addRow(field.widget());
    } else {
        auto *label = new QLabel(options::tr(row.label), rows.parentWidget());
        label->setBuddy(field.control());
        rows.addRow(label, field.widget());
    }
    // Below a check box the line begins where the page does, else below the control.
    const auto below = [&](QWidget *line) {
        if (field.ownsLabel())
            rows.addRow(line);
        else
            rows.addRow(nullptr, line);
    };
    if (row.more.hint)
        below(desktop::mutedLabel(options::tr(row.more.hint), rows.parentWidget()));
    below(field.note());
    if (fills(row.editor)) {
        field.widget()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        m_column->setStretchFactor(&rows, 1);
    }
}

void OptionPage::connectNeeds()
{
    for (OptionField *each : std::as_const(m_fields)) {
        if (!each->row().more.needs)
            continue;
        auto *flag = qobject_cast<CheckField *>(field(each->row().more.needs));
        Q_ASSERT(flag);
        const auto follow = [each](bool on) { each->widget()->setEnabled(on); };
        connect(&flag->box(), &QCheckBox::toggled, each, follow);
        follow(flag->box().isChecked());
    }
}

void OptionPage::makeSpecials()
{
    if (!m_page.parent)
        m_column->addLayout(overview());
    if (same(m_page.key, "EventScripting"))
        m_column->addWidget(new ScriptPanel(m_content));
}

QLayout *OptionPage::overview()
{
    auto *grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    grid->setVerticalSpacing(0);
    for (const options::Page &page : options::pages()) {
        if (!page.parent)
            continue;
        const QString label = options::tr(page.label);
        QPushButton *link = linkButton(label, m_content);
        link->setObjectName(u"link"_s + QString::fromLatin1(page.key));
        connect(link, &QPushButton::clicked, this, [this, &page] { emit asked(QString::fromLatin1(page.key)); });
        QLabel *purpose = desktop::mutedLabel(options::tr(page.purpose), m_content);
        purpose->setWordWrap(false);
        purpose->setAlignment(Qt::AlignVCenter | Qt::AlignLeft);
        const int line = grid->rowCount();
        grid->addWidget(link, line, 0, Qt::AlignLeft);
        grid->addWidget(purpose, line, 1);
    }
    return grid;
}

OptionField *OptionPage::field(const char *key) const
{
    for (OptionField *each : m_fields) {
        if (same(each->row().key, key))
            return each;
    }
    return nullptr;
}

void OptionPage::showDefaults()
{
    for (OptionField *each : std::as_const(m_fields))
        each->showDefault();
}

void OptionPage::setProblem(const QString &text) { m_problem->setText(text); }

bool OptionPage::hasProblem() const
{
    return !m_problem->text().isEmpty()
        || std::any_of(m_fields.begin(), m_fields.end(), [](const OptionField *each) { return each->hasProblem(); });
}
