#pragma once

#include <QString>
#include <QStringList>

/** What is wrong with a value, in words for the operator; empty when nothing is. */
namespace options {

QString logFileProblem(const QString &path);
QString pageFileProblem(const QString &path);
QString templateFileProblem(const QString &path);
QString senderProblem(const QString &address);
QString recipientsProblem(const QString &addresses);
QString templateProblem(const QString &text);
/** Of one element of the server list. */
QString serverProblem(const QString &element);

/** The list's elements, without blanks around them and without empty ones. */
QStringList serverElements(const QString &list);

/** What decides whether mail can be sent at all. */
struct SmtpSettings {
    QString servers; // joined by "::"
    QString sender;
    bool mailOn = false;
};
/** The check of the SMTP page, in sentences that can be spoken. */
QString smtpProblem(const SmtpSettings &settings);

} // namespace options
