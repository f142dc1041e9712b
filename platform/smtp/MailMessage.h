#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

/** One plain-text mail. */
struct MailMessage {
    QString sender; // a bare address, or empty: nobody to answer to
    QStringList recipients; // bare addresses
    QString subject;
    QString body;
    QDateTime date;
    QString messageId; // without angle brackets
    QString hostName; // of this machine, for the From line of a mail without sender
    QString program; // name and version

    /** Header and body (RFC 5322, MIME UTF-8) with CRLF line ends, the last one included; not dot-stuffed.
        No text can add a header line. */
    QByteArray bytes() const;
};

/** The bare addresses of a list separated by ";" or ","; "Name <address>" is understood. An element that is no
    address makes the whole list empty: a mail goes to everybody named, or is not sent. */
QStringList mailAddresses(const QString &list);

/** As the message goes over the wire: dots at line starts doubled, the end mark behind it (RFC 5321, 4.5.2). */
QByteArray dotStuffed(const QByteArray &message);
