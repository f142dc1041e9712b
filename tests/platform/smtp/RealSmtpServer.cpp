#include "tests/platform/smtp/RealSmtpServer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

RealSmtpServer::RealSmtpServer(const QStringList &options, const QString &certificateFile)
{
    QStringList arguments{ QStringLiteral(KAVRO_SMTP_SERVER) };
    arguments += options;
    if (!certificateFile.isEmpty())
        arguments += QStringList{ u"--certificate"_s, certificateFile };
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(KAVRO_PYTHON), arguments);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(20000)) { }
    if (!m_process.canReadLine())
        qFatal("the mail server did not start (package python3-aiosmtpd)");
    m_port = m_process.readLine().trimmed().toInt();
}

RealSmtpServer::~RealSmtpServer()
{
    m_process.kill();
    m_process.waitForFinished();
}

QString RealSmtpServer::name() const { return "127.0.0.1:"_L1 + QString::number(m_port); }

void RealSmtpServer::read()
{
    while (m_process.canReadLine())
        m_mails.append(QJsonDocument::fromJson(m_process.readLine()).object());
}

const QList<QJsonObject> &RealSmtpServer::mails()
{
    QCoreApplication::processEvents();
    read();
    return m_mails;
}

const QList<QJsonObject> &RealSmtpServer::mails(int count)
{
    const QDeadlineTimer limit(5000);
    while (mails().size() < count && !limit.hasExpired())
        m_process.waitForReadyRead(20);
    return mails();
}

QString RealSmtpServer::makeCertificate(const QString &folder, const QString &name)
{
    const QString file = folder + u'/' + name + ".pem"_L1;
    const QString key = file + ".key"_L1;
    QProcess openssl;
    openssl.start(
        u"openssl"_s, { u"req"_s, u"-x509"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
                        u"ec_paramgen_curve:prime256v1"_s, u"-nodes"_s, u"-days"_s, u"2"_s, u"-subj"_s, "/CN="_L1 + name,
                        u"-addext"_s, u"subjectAltName=IP:127.0.0.1,DNS:localhost"_s, u"-keyout"_s, key, u"-out"_s, file });
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        qFatal("openssl made no certificate");
    QFile certificate(file), secret(key);
    if (!certificate.open(QIODevice::Append) || !secret.open(QIODevice::ReadOnly))
        qFatal("no certificate file");
    certificate.write(secret.readAll());
    return file;
}
