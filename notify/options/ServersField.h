#pragma once

#include "notify/options/OptionField.h"

class QLayout;
class QListWidget;
class QPushButton;

/** The list of mail servers, the first to be tried on top. Passwords are not shown. */
class ServersField : public OptionField
{
    Q_OBJECT
public:
    ServersField(const options::Row &row, QWidget *page);
    QWidget *widget() const override { return m_widget; }
    QWidget *control() const override;

    void add();
    void edit();
    void remove();
    /** Moves the current server up (-1) or down (1). */
    void move(int by);

protected:
    bool show(const QString &text) override;
    QString value() const override;

private:
    QLayout *makeButtons();
    void makeList();
    void setElement(int index, const QString &element);
    void updateButtons();

    QWidget *m_widget;
    QListWidget *m_list;
    QPushButton *m_edit = nullptr;
    QPushButton *m_remove = nullptr;
    QPushButton *m_up = nullptr;
    QPushButton *m_down = nullptr;
};
