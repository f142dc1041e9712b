#include "tests/platform/smtp/ScriptedSmtpServer.h"

#include <memory>

using namespace Qt::StringLiterals;

ScriptedSmtpServer::ScriptedSmtpServer()
{
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = nextPendingConnection())
            serve(socket);
    });
}

QString ScriptedSmtpServer::name() const { return "127.0.0.1:"_L1 + QString::number(serverPort()); }

void ScriptedSmtpServer::serve(QTcpSocket *socket)
{
    ++connections;
    auto input = std::make_shared<QByteArray>();
    auto inData = std::make_shared<bool>(false);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket, input, inData] {
        *input += socket->readAll();
        takeCommands(socket, *input, *inData);
    });
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    answer(socket, "GREETING", "220 test ready\r\n");
}

/** False when the server falls silent or hangs up. */
bool ScriptedSmtpServer::answer(QTcpSocket *socket, const QByteArray &stage, const QByteArray &usual)
{
    const QByteArray text = answers.value(stage, usual);
    if (text == kSilence)
        return false;
    if (text == kCut) {
        socket->abort();
        return false;
    }
    socket->write(text);
    return text.startsWith('2') || text.startsWith('3');
}

void ScriptedSmtpServer::takeCommands(QTcpSocket *socket, QByteArray &input, bool &inData)
{
    static const QMap<QByteArray, QByteArray> usual{
        { "EHLO", "250-test\r\n250 8BITMIME\r\n" }, { "DATA", "354 go on\r\n" }, { "QUIT", "221 bye\r\n" } };
    for (;;) {
        if (inData) {
            if (!takeMessage(socket, input, inData))
                return;
            continue;
        }
        const qsizetype end = input.indexOf("\r\n");
        if (end < 0)
            return;
        const QByteArray line = input.left(end);
        input.remove(0, end + 2);
        commands.append(line);
        const QByteArray verb = line.left(4).toUpper();
        inData = answer(socket, verb, usual.value(verb, "250 ok\r\n")) && verb == "DATA";
        if (verb == silentAfter)
            disconnect(socket, &QTcpSocket::readyRead, nullptr, nullptr);
    }
}

bool ScriptedSmtpServer::takeMessage(QTcpSocket *socket, QByteArray &input, bool &inData)
{
    if (answers.contains("BODY") && !input.isEmpty()) {
        answer(socket, "BODY", {});
        return false;
    }
    const qsizetype end = input.indexOf("\r\n.\r\n");
    if (end < 0)
        return false;
    const QByteArray message = input.left(end + 2);
    input.remove(0, end + 5);
    inData = false;
    if (answer(socket, "END", "250 queued\r\n"))
        mails.append(message);
    return true;
}
