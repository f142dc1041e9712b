// Sends one mail with the SMTP control and prints its event; exit code 0 when it was sent.
// Usage: smtp_send SERVER RECIPIENT [TIMEOUT_MS]

#include "platform/smtp/cKavroSMTP.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    cKavroSMTP control;
    QObject::connect(&control, &cKavroSMTP::SendComplete, &app, [] {
        puts("sent");
        QCoreApplication::exit(0);
    });
    QObject::connect(&control, &cKavroSMTP::Error, &app, [](const QString &description) {
        puts(qPrintable(description));
        QCoreApplication::exit(1);
    });
    control.SetTimeOut(arguments.value(3, u"10000"_s).toInt());
    control.SetServer(arguments.value(1));
    control.SetRecipient(arguments.value(2));
    control.SetSender(u"monitor@example.com"_s);
    control.SetSubject(u"Gerät web:80"_s);
    control.SetBody(u".first line\r\nGerät web port 80 failed.\r\n"_s);
    control.Send();
    return QCoreApplication::exec();
}
