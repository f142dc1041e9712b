#pragma once

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
struct SmtpServer;

/** Asks for one mail server. What can be confirmed always reads. */
class ServerForm : public QDialog
{
    Q_OBJECT
public:
    /** Begins with an element of the list; empty: a new server. */
    ServerForm(const QString &element, QWidget *parent);

    /** The element as it was given unless something was changed. */
    QString element() const;

private:
    void makeBoxes();
    void layOut();
    void showServer(const SmtpServer &server);
    void takeApart();
    void encryptionChanged();
    void judge();
    QString typed() const;

    QString m_given;
    QString m_begun; // what the boxes said before anybody touched them
    bool m_usualPort = true;
    QLineEdit *m_host = nullptr;
    QSpinBox *m_port = nullptr;
    QComboBox *m_encryption = nullptr;
    QLineEdit *m_user = nullptr;
    QLineEdit *m_password = nullptr;
    QLabel *m_result = nullptr;
    QPushButton *m_ok = nullptr;
};
