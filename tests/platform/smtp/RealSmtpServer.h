#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QStringList>

/** A real mail server (aiosmtpd) on loopback, in a process of its own. */
class RealSmtpServer
{
public:
    /** options: --starttls, --smtps, --auth user:password, --port n (see smtp_server.py); the certificate is
        certificate(folder, name). Ends the test program when the server does not start. */
    explicit RealSmtpServer(const QStringList &options = {}, const QString &certificateFile = {});
    ~RealSmtpServer();

    int port() const { return m_port; }
    QString name() const;
    /** What has arrived so far, one object a mail: from, to, tls, login, data, and of the parsed message: subject, text,
        headers, defects. */
    const QList<QJsonObject> &mails();
    /** The same, waiting until so many are there. */
    const QList<QJsonObject> &mails(int count);

    /** A self-signed certificate for 127.0.0.1 and localhost with its key in one file; returns its path. */
    static QString makeCertificate(const QString &folder, const QString &name);

private:
    void read();
    QProcess m_process;
    int m_port = 0;
    QList<QJsonObject> m_mails;
};
