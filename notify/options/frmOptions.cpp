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

#include <algorithm>

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
    m_stack = new QStackedWidget(this);
    auto *body = new QHBoxLayout;
    body->addWidget(m_tree);
    body->addSpacing(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    body->addWidget(m_stack, 1);
    auto *buttons = new QHBoxLayout;
    auto *column = new QVBoxLayout(this);
    column->addLayout(body, 1);
    column->addLayout(buttons);
    makeButtons(*buttons);
    const QSize usual(kSizeInCharacters.width() * fontMetrics().averageCharWidth(),
        kSizeInCharacters.height() * fontMetrics().lineSpacing());
    const QSize most = screen()->availableSize() * 0.9;
    resize(s_lastTime.size.isValid() ? s_lastTime.size : usual.boundedTo(most));
    showPage(s_lastTime.page);
    m_tree->setFocus();
    // The other pages are made one by one, so that the window is not held up by what nobody sees yet.
    m_making.setInterval(0);
    connect(&m_making, &QTimer::timeout, this, [this] { Trap("Options_Load", [this] { makeNextPage(); }); });
    m_making.start();
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
    connect(m_tree, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem *item) {
        if (item)
            turnTo(item->data(0, kKey).toString());
    });
    m_tree->setFixedWidth(m_tree->columnWidth(0) + m_tree->columnWidth(1) + 2 * m_tree->frameWidth());
}

OptionPage *frmOptions::pageOf(const QString &key)
{
    OptionPage *&page = m_pages[key];
    if (page)
        return page;
    const auto pages = options::pages();
    const auto found
        = std::find_if(pages.begin(), pages.end(), [&](const auto &each) { return key == latin(each.key); });
    Q_ASSERT(found != pages.end());
    page = new OptionPage(*found, m_stack);
    m_stack->addWidget(page);
    if (auto *characters = qobject_cast<CharacterField *>(page->field("Character")))
        characters->setPreview(m_helpers.preview);
    for (OptionField *each : page->fields())
        each->load();
    connect(page, &OptionPage::changed, this, &frmOptions::updateProblems);
    connect(page, &OptionPage::asked, this, &frmOptions::showPage);
    putButtonsLast(*page);
    return page;
}

void frmOptions::makeNextPage()
{
    for (const options::Page &page : options::pages()) {
        if (m_pages.contains(latin(page.key)))
            continue;
        pageOf(latin(page.key));
        return;
    }
    m_making.stop();
    updateProblems();
}

/** A page that is made later would come behind the buttons in the order of the Tab key. */
void frmOptions::putButtonsLast(const OptionPage &page)
{
    QWidget *last = m_tree;
    for (QWidget *each = m_tree->nextInFocusChain(); each != m_tree; each = each->nextInFocusChain()) {
        if (page.isAncestorOf(each) && each->focusPolicy() & Qt::TabFocus)
            last = each;
    }
    for (QPushButton *each : std::as_const(m_buttons)) {
        setTabOrder(last, each);
        last = each;
    }
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
    const std::pair<QKeySequence, int> steps[]
        = { { Qt::CTRL | Qt::Key_PageDown, 1 }, { Qt::CTRL | Qt::Key_PageUp, -1 } };
    for (const auto &[key, by] : steps)
        connect(new QShortcut(key, this), &QShortcut::activated, this, [this, by = by] { stepPage(by); });
}

QPushButton *frmOptions::button(const QString &text, const char *name, QHBoxLayout &row)
{
    auto *made = new QPushButton(text, this);
    made->setObjectName(latin(name));
    made->setAutoDefault(false);
    row.addWidget(made);
    m_buttons << made;
    return made;
}

void frmOptions::showPage(const QString &key) { m_tree->setCurrentItem(m_items.value(key, m_tree->topLevelItem(0))); }

QString frmOptions::currentPage() const { return static_cast<OptionPage *>(m_stack->currentWidget())->key(); }

bool frmOptions::isComplete() const { return m_pages.size() == qsizetype(options::pages().size()); }

void frmOptions::turnTo(const QString &key)
{
    OptionPage *page = pageOf(key);
    m_stack->setCurrentWidget(page);
    m_restore->setEnabled(!page->fields().isEmpty());
}

void frmOptions::stepPage(int by)
{
    const auto pages = options::pages();
    const int count = int(pages.size());
    const QString present = currentPage();
    for (int i = 0; i < count; ++i) {
        if (present == latin(pages[size_t(i)].key))
            return showPage(latin(pages[size_t((i + by + count) % count)].key));
    }
}

void frmOptions::restoreDefaults() { pageOf(currentPage())->showDefaults(); }

QString frmOptions::smtpPageProblem()
{
    const OptionPage *mail = pageOf(u"FailureNotification"_s);
    const OptionPage *smtp = pageOf(u"SMTP"_s);
    const bool mailOn
        = mail->field("SendOnFailure")->text() == "1"_L1 && mail->field("SendUsingSMTP")->text() == "1"_L1;
    return options::smtpProblem({ smtp->field("MailServer")->text(), smtp->field("MailFrom")->text(), mailOn });
}

void frmOptions::updateProblems()
{
    if (!isComplete())
        return; // it is looked at when the last page stands
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
    while (!isComplete())
        makeNextPage();
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
