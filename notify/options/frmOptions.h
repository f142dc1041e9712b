#pragma once

#include "notify/options/CharacterField.h"

#include <QDialog>
#include <QHash>
#include <QTimer>

#include <functional>

class OptionPage;
class QHBoxLayout;
class QPushButton;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

/** Edits the settings: a tree of pages and the page chosen in it. Everything is saved by OK and nothing by Cancel.
    Page and size are those of the last time, as long as the program runs. */
class frmOptions : public QDialog
{
    Q_OBJECT
public:
    /** What the dialog cannot do by itself; all of it may be absent. */
    struct Helpers {
        CharacterPreview preview;
        std::function<void(const QString &page)> help; // without it there is no help button
    };
    explicit frmOptions(QWidget *parent, Helpers helpers = {});
    ~frmOptions() override;

    /** Shows a page by its key. */
    void showPage(const QString &key);
    QString currentPage() const;
    /** Whether all pages are made; those that are not shown follow the first one by and by. */
    bool isComplete() const;

private:
    void Options_Load();
    void Options_Save();
    void makeTree();
    OptionPage *pageOf(const QString &key);
    void makeNextPage();
    void putButtonsLast(const OptionPage &page);
    void makeButtons(QHBoxLayout &row);
    QPushButton *button(const QString &text, const char *name, QHBoxLayout &row);
    void restoreDefaults();
    void turnTo(const QString &key);
    void stepPage(int by);
    void updateProblems();
    QString smtpPageProblem();

    Helpers m_helpers;
    QTreeWidget *m_tree = nullptr;
    QStackedWidget *m_stack = nullptr;
    QPushButton *m_restore = nullptr;
    QList<QPushButton *> m_buttons;
    QTimer m_making;
    QHash<QString, OptionPage *> m_pages;
    QHash<QString, QTreeWidgetItem *> m_items;
};
