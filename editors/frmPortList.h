#pragma once

#include "editors/EditorForm.h"

#include <array>

class EditedTree;
class QRadioButton;
class QTreeWidgetItem;

/** The catalogue of known TCP ports. What is typed wrong is told by the agent, not by boxes. */
class frmPortList : public EditorForm
{
    Q_OBJECT
public:
    explicit frmPortList(EditedTree &tree);

private:
    enum Mode { View, Add, Modify, Delete, ModeCount };

    QWidget *modeBox();
    QWidget *entryBox();
    void makeListMenu();
    void choose(Mode mode);
    void setMode(Mode mode);
    Mode mode() const;
    void mnuAddPort();
    void mnuModifyPort();
    void mnuDeletePort();
    void clearBoxes();
    void showItem();
    void apply();

    void PopulateListView();
    void RemovePort(QTreeWidgetItem &item);
    /** Changes the description of a listed port. */
    void UpdatePort(QTreeWidgetItem &item, const QString &description);
    /** Adds a port, or changes its description when it is listed. */
    void UpdatePort(const QString &port, const QString &description);
    QTreeWidgetItem *selected() const;
    QTreeWidgetItem *find(const QString &port) const;

    QTreeWidget *m_list;
    QLineEdit *m_number = nullptr;
    QLineEdit *m_description = nullptr;
    std::array<QRadioButton *, ModeCount> m_modes {};
    QAbstractButton *m_apply = nullptr;
};
