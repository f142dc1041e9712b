#pragma once

#include "notify/options/OptionField.h"

class NumberBox;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

/** A flag. */
class CheckField : public OptionField
{
    Q_OBJECT
public:
    CheckField(const options::Row &row, QWidget *page);
    QWidget *widget() const override;
    bool ownsLabel() const override { return true; }
    QCheckBox &box() const { return *m_box; }

protected:
    bool show(const QString &text) override;
    QString value() const override;
    QString untouched() const override { return value(); } // "True" becomes "1"

private:
    QCheckBox *m_box;
};

/** A number within limits. */
class NumberField : public OptionField
{
    Q_OBJECT
public:
    NumberField(const options::Row &row, QWidget *page);
    QWidget *widget() const override;

protected:
    bool show(const QString &text) override;
    QString value() const override;
    QString untouched() const override;
    QString remark() const override;

private:
    NumberBox *m_box;
    double m_stored = 0;
};

/** A line of text. */
class LineField : public OptionField
{
    Q_OBJECT
public:
    LineField(const options::Row &row, QWidget *page);
    QWidget *widget() const override;

protected:
    bool show(const QString &text) override;
    QString value() const override;

private:
    QLineEdit *m_box;
};

/** A file's path, typed or picked. */
class FileField : public OptionField
{
    Q_OBJECT
public:
    FileField(const options::Row &row, QWidget *page);
    QWidget *widget() const override { return m_widget; }
    QWidget *control() const override;

protected:
    bool show(const QString &text) override;
    QString value() const override;

private:
    void pick();

    QWidget *m_widget;
    QLineEdit *m_path;
};

/** A mail template of one or several lines, with its tokens at hand and an example below. */
class TemplateField : public OptionField
{
    Q_OBJECT
public:
    TemplateField(const options::Row &row, QWidget *page);
    QWidget *widget() const override { return m_widget; }
    QWidget *control() const override;

protected:
    bool show(const QString &text) override;
    QString value() const override;

private:
    QWidget *makeBox();
    void insert(const QString &token);
    void showExample();

    QWidget *m_widget;
    QLineEdit *m_line = nullptr; // one of the two
    QPlainTextEdit *m_lines = nullptr;
    QLabel *m_example;
};
