#pragma once

#include "notify/options/OptionField.h"

#include <functional>

class QLabel;
class QListWidget;
class QVBoxLayout;

/** Makes a moving or still picture of a character; the widget belongs to the parent. */
using CharacterPreview = std::function<QWidget *(const QString &name, QWidget *parent)>;

/** The installed characters with a picture of the chosen one. Choosing one lets it introduce itself. */
class CharacterField : public OptionField
{
    Q_OBJECT
public:
    CharacterField(const options::Row &row, QWidget *page);
    QWidget *widget() const override { return m_widget; }
    QWidget *control() const override;

    void setPreview(CharacterPreview preview);

protected:
    bool show(const QString &text) override;
    QString value() const override;
    QString untouched() const override { return shown(); }
    QString remark() const override;

private:
    void fillList();
    QWidget *makePanel();
    void chosen();
    void describe();

    QWidget *m_widget;
    QListWidget *m_list;
    QVBoxLayout *m_stage = nullptr; // where the picture goes
    QLabel *m_name = nullptr;
    QLabel *m_description = nullptr;
    QWidget *m_picture = nullptr;
    CharacterPreview m_preview;
};
