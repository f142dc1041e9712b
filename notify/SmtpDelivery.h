#pragma once

#include "core/Task.h"
#include "platform/smtp/cKavroSMTP.h"

#include <QObject>
#include <QString>

/** Drains the mail queue through the SMTP client control, one mail at a time, one server after the other. */
class SmtpDelivery : public QObject
{
public:
    SmtpDelivery();

    /** Offers every queued mail to each server in turn; what a server has taken is gone from the queue. */
    Task<void> ProcessMailQue();

private:
    /** The mail that the control is sending. */
    struct InFlight {
        QString id;
        QString device;     // name and port
        int generation = 0; // of the database whose queue holds it
    };
    struct QueuedMail {
        QString id;
        QString device;
        QString recipient;
        QString subject;
        QString body;
    };

    Task<void> processQueue();
    Task<void> offerTo(QString server, int timeOut, int generation);
    Task<void> SendMail(QString body, QString subject, QString recipient, QString server, int timeOut);
    void startMail(const QString &body, const QString &subject, const QString &recipient, const QString &server,
                   int timeOut);
    static QList<QueuedMail> queuedMails();
    static void withoutServer();
    void cKavroSMTP1_SendComplete();
    void cKavroSMTP1_Error(const QString &description);

    cKavroSMTP cKavroSMTP1;
    InFlight m_inFlight;
};
