#include "notify/options/frmOptions.h"

#include "core/Announcer.h"
#include "core/Trap.h"
#include "notify/options/OptionPage.h"
#include "notify/options/OptionText.h"
#include "notify/options/ValueChecks.h"
#include "notify/vbMSAgent.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>
#include <QStyle>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr int kKey = Qt::UserRole;
constexpr QSize kSizeInCharacters { 120, 40 }; // average characters and lines
constexpr double kTreeLine = 1.5; // of a text line

/** What the next dialog of this run begins with. */
struct LastTime {
    QString page = u"Root"_s;
    QSize size;
};
LastTime s_lastTime;

QString latin(const char *text) { return QString::fromLatin1(text); }

} // namespace

frmOptions::frmOptions(QWidget *parent, Helpers helpers)
    : QDialog(parent)
    , m_helpers(std::move(helpers))
{
    setObjectName(u"frmOptions"_s);
    setWindowTitle(tr("Options"));
    Trap("Options_Load", [this] { Options_Load(); });
}

frmOptions::~frmOptions() { s_lastTime = { currentPage(), size() }; }

void frmOptions::Options_Load()
{
    makeTree();
    makePages();
    auto *body = new QHBoxLayout;
    body->addWidget(m_tree);
    body->addSpacing(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    body->addWidget(m_stack, 1);
    auto *buttons = new QHBoxLayout;
    auto *column = new QVBoxLayout(this);
    column->addLayout(body, 1);
    column->addLayout(buttons);
    makeButtons(*buttons);
    loadFields();
    const QSize usual(kSizeInCharacters.width() * fontMetrics().averageCharWidth(),
        kSizeInCharacters.height() * fontMetrics().lineSpacing());
    const QSize most = screen()->availableSize() * 0.9;
    resize(s_lastTime.size.isValid() ? s_lastTime.size : usual.boundedTo(most));
    showPage(s_lastTime.page);
    m_tree->setFocus();
}

void frmOptions::makeTree()
{
    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(u"tvPages"_s);
    m_tree->setAccessibleName(tr("Pages"));
    m_tree->setHeaderHidden(true);
    m_tree->setColumnCount(2); // the page, the sign of a problem
    m_tree->setAllColumnsShowFocus(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setRootIsDecorated(false);
    for (const options::Page &page : options::pages()) {
        auto *item = page.parent ? new QTreeWidgetItem(m_items.value(latin(page.parent))) : new QTreeWidgetItem(m_tree);
        item->setText(0, options::tr(page.label));
        item->setSizeHint(1, QSize(0, qRound(kTreeLine * fontMetrics().lineSpacing())));
        item->setData(0, kKey, latin(page.key));
        m_items.insert(latin(page.key), item);
    }
    m_tree->expandAll();
    const int sign = style()->pixelMetric(QStyle::PM_SmallIconSize);
    m_tree->setIconSize({ sign, sign });
    m_tree->header()->setMinimumSectionSize(sign);
    m_tree->header()->setStretchLastSection(false);
    m_tree->resizeColumnToContents(0);
    m_tree->setColumnWidth(1, 2 * sign);
    m_tree->setFixedWidth(m_tree->columnWidth(0) + m_tree->columnWidth(1) + 2 * m_tree->frameWidth());
}

void frmOptions::makePages()
{
    m_stack = new QStackedWidget(this);
    for (const options::Page &page : options::pages()) {
        auto *made = new OptionPage(page, m_stack);
        m_stack->addWidget(made);
        m_pages << made;
        connect(made, &OptionPage::changed, this, &frmOptions::updateProblems);
        connect(made, &OptionPage::asked, this, &frmOptions::showPage);
    }
    if (auto *characters = qobject_cast<CharacterField *>(field("Character")))
        characters->setPreview(m_helpers.preview);
    connect(m_tree, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem *item) {
        if (item)
            turnTo(item->data(0, kKey).toString());
    });
}

void frmOptions::makeButtons(QHBoxLayout &row)
{
    m_restore = button(tr("&Restore Defaults"), "cmdRestore", row);
    m_restore->setToolTip(tr("Show the defaults of this page; OK stores them"));
    connect(m_restore, &QPushButton::clicked, this, &frmOptions::restoreDefaults);
    if (m_helpers.help) {
        QPushButton *help = button(tr("&Help"), "cmdHelp", row);
        connect(help, &QPushButton::clicked, this, [this] { m_helpers.help(currentPage()); });
        connect(new QShortcut(Qt::Key_F1, this), &QShortcut::activated, help, &QPushButton::click);
    }
    row.addStretch();
    QPushButton *ok = button(tr("OK"), "cmdArray(0)", row);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { Trap("Options_Save", [this] { Options_Save(); }); });
    connect(button(tr("Cancel"), "cmdArray(1)", row), &QPushButton::clicked, this, &QDialog::reject);
    const std::pair<QKeySequence, int> steps[] = { { Qt::CTRL | Qt::Key_PageDown, 1 }, { Qt::CTRL | Qt::Key_PageUp, -1 } };
    for (const auto &[key, by] : steps)
        connect(new QShortcut(key, this), &QShortcut::activated, this, [this, by = by] { stepPage(by); });
}

QPushButton *frmOptions::button(const QString &text, const char *name, QHBoxLayout &row)
{
    auto *made = new QPushButton(text, this);
    made->setObjectName(latin(name));
    made->setAutoDefault(false);
    row.addWidget(made);
    return made;
}

void frmOptions::loadFields()
{
    for (OptionPage *page : std::as_const(m_pages)) {
        for (OptionField *each : page->fields())
            each->load();
    }
    updateProblems();
}

void frmOptions::showPage(const QString &key) { m_tree->setCurrentItem(m_items.value(key, m_tree->topLevelItem(0))); }

QString frmOptions::currentPage() const { return m_pages.at(m_stack->currentIndex())->key(); }

void frmOptions::turnTo(const QString &key)
{
    for (OptionPage *page : std::as_const(m_pages)) {
        if (page->key() != key)
            continue;
        m_stack->setCurrentWidget(page);
        m_restore->setEnabled(!page->fields().isEmpty());
    }
}

void frmOptions::stepPage(int by)
{
    const int count = int(m_pages.size());
    showPage(m_pages.at((m_stack->currentIndex() + by + count) % count)->key());
}

void frmOptions::restoreDefaults()
{
    m_pages.at(m_stack->currentIndex())->showDefaults();
}

OptionField *frmOptions::field(const char *key) const
{
    for (const OptionPage *page : m_pages) {
        if (OptionField *found = page->field(key))
            return found;
    }
    return nullptr;
}

QString frmOptions::smtpPageProblem() const
{
    const bool mailOn = field("SendOnFailure")->text() == "1"_L1 && field("SendUsingSMTP")->text() == "1"_L1;
    return options::smtpProblem({ field("MailServer")->text(), field("MailFrom")->text(), mailOn });
}

void frmOptions::updateProblems()
{
    for (OptionPage *page : std::as_const(m_pages)) {
        if (page->key() == "SMTP"_L1)
            page->setProblem(smtpPageProblem());
        QTreeWidgetItem *item = m_items.value(page->key());
        const bool wrong = page->hasProblem();
        item->setIcon(1, wrong ? style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this) : QIcon());
        item->setData(0, Qt::AccessibleDescriptionRole, wrong ? tr("Something on this page needs a look.") : QString());
        item->setToolTip(1, item->data(0, Qt::AccessibleDescriptionRole).toString());
    }
}

void frmOptions::Options_Save()
{
    if (const QString problem = smtpPageProblem(); !problem.isEmpty() && vbMain().announcer) {
        ResultTable lines = MSAgentSpeak(u"Options-SMTP"_s);
        ReplaceInText(lines, u"<VAL>"_s, problem);
        vbMain().announcer->speakLines(lines);
    }
    QList<SettingValue> values;
    for (const OptionPage *page : std::as_const(m_pages)) {
        for (const OptionField *each : page->fields())
            values << each->saved();
    }
    SaveSettings(values);
    accept();
}
