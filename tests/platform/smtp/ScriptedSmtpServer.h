#pragma once

#include <QByteArrayList>
#include <QMap>
#include <QTcpServer>
#include <QTcpSocket>

/** A mail server on loopback that answers what a test tells it to: for faults that no real server shows at will. */
class ScriptedSmtpServer : public QTcpServer
{
public:
    static inline const QByteArray kSilence = "(silence)";
    static inline const QByteArray kCut = "(cut)";

    ScriptedSmtpServer();

    QString name() const;

    /** What to say at a stage instead of the usual: GREETING, EHLO, HELO, MAIL, RCPT, DATA, BODY (first bytes of the
        message), END (the whole message is there), QUIT. kSilence, kCut, or an answer with its line break. */
    QMap<QByteArray, QByteArray> answers;
    /** Nothing more is read or said after the answer of this stage. */
    QByteArray silentAfter;
    /** Messages that were answered with 2xx, as received (dots still doubled). */
    QByteArrayList mails;
    /** Every command line, over all connections. */
    QByteArrayList commands;
    int connections = 0;

private:
    void serve(QTcpSocket *socket);
    bool answer(QTcpSocket *socket, const QByteArray &stage, const QByteArray &usual);
    void takeCommands(QTcpSocket *socket, QByteArray &input, bool &inData);
    bool takeMessage(QTcpSocket *socket, QByteArray &input, bool &inData);
};
