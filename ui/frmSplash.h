#pragma once

#include <QWidget>

class QLabel;

/** The splash screen: art, a status label and the version. */
class frmSplash : public QWidget
{
    Q_OBJECT
public:
    explicit frmSplash(QWidget *parent = nullptr);

    void setStatus(const QString &text);
    QString status() const;
    QString version() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *m_status;
    QLabel *m_version;
};
