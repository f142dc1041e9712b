#include "notify/options/ServerForm.h"

#include "notify/options/ValueChecks.h"
#include "platform/desktop/Labels.h"
#include "platform/smtp/SmtpServer.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHostAddress>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

enum Encryption { WhenOffered, Always, FromTheFirstByte };

constexpr int kUsualPort = 25;
constexpr int kUsualTlsPort = 465;
constexpr int kWidth = 30; // of a box, in average characters

int usualPort(int encryption) { return encryption == FromTheFirstByte ? kUsualTlsPort : kUsualPort; }

/** "::" separates the servers of the list, so an address is written in full. */
QString withoutShortening(const QString &host)
{
    QString plain = host.trimmed();
    if (plain.startsWith(u'[') && plain.endsWith(u']'))
        plain = plain.mid(1, plain.size() - 2);
    const QHostAddress address(plain);
    if (!plain.contains(u"::"_s) || address.protocol() != QAbstractSocket::IPv6Protocol)
        return plain;
    const Q_IPV6ADDR bytes = address.toIPv6Address();
    QStringList groups;
    for (int i = 0; i < 16; i += 2)
        groups << QString::number(bytes[i] << 8 | bytes[i + 1], 16);
    return groups.join(u':');
}

} // namespace

ServerForm::ServerForm(const QString &element, QWidget *parent)
    : QDialog(parent)
    , m_given(element)
{
    setObjectName(u"frmServer"_s);
    setWindowTitle(element.isEmpty() ? tr("Add Server") : tr("Server Properties"));
    makeBoxes();
    layOut();
    if (const auto server = parseSmtpServer(element))
        showServer(*server);
    else
        m_host->setText(element);
    m_begun = typed();
    encryptionChanged();
}

void ServerForm::makeBoxes()
{
    m_host = new QLineEdit(this);
    m_host->setObjectName(u"host"_s);
    m_host->setPlaceholderText(u"mail.example.com"_s);
    m_host->setMinimumWidth(kWidth * fontMetrics().averageCharWidth());
    m_encryption = new QComboBox(this);
    m_encryption->setObjectName(u"encryption"_s);
    m_encryption->addItems(
        { tr("When the server offers it"), tr("Always (STARTTLS)"), tr("Always, from the first byte (SMTPS)") });
    m_port = new QSpinBox(this);
    m_port->setObjectName(u"port"_s);
    m_port->setRange(1, 65535);
    m_port->setValue(kUsualPort);
    m_user = new QLineEdit(this);
    m_user->setObjectName(u"user"_s);
    m_password = new QLineEdit(this);
    m_password->setObjectName(u"password"_s);
    m_password->setEchoMode(QLineEdit::Password);
    m_result = desktop::mutedLabel({}, this);
    m_result->setObjectName(u"result"_s);
    m_result->setMinimumHeight(3 * fontMetrics().lineSpacing());
    m_result->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    connect(m_host, &QLineEdit::editingFinished, this, &ServerForm::takeApart);
    connect(m_encryption, &QComboBox::currentIndexChanged, this, &ServerForm::encryptionChanged);
    connect(m_port, &QSpinBox::valueChanged, this, &ServerForm::judge);
    for (QLineEdit *box : { m_host, m_user, m_password })
        connect(box, &QLineEdit::textChanged, this, &ServerForm::judge);
}

void ServerForm::layOut()
{
    auto *rows = new QFormLayout;
    rows->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    const std::pair<QString, QWidget *> lines[] = { { tr("&Server:"), m_host }, { tr("&Encryption:"), m_encryption },
        { tr("&Port:"), m_port }, { tr("&User name:"), m_user }, { tr("Pass&word:"), m_password } };
    for (const auto &[text, box] : lines) {
        rows->addRow(text, box);
        box->setAccessibleName(QString(text).remove(u'&').remove(u':'));
    }
    m_ok = new QPushButton(tr("OK"), this);
    m_ok->setObjectName(u"cmdArray(0)"_s);
    m_ok->setDefault(true);
    auto *cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName(u"cmdArray(1)"_s);
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(cancel);
    auto *column = new QVBoxLayout(this);
    column->addLayout(rows);
    column->addWidget(m_result);
    column->addStretch();
    column->addLayout(buttons);
}

void ServerForm::showServer(const SmtpServer &server)
{
    m_host->setText(server.host);
    m_encryption->setCurrentIndex(server.implicitTls ? FromTheFirstByte : server.mustEncrypt ? Always : WhenOffered);
    m_port->setValue(server.port);
    m_user->setText(server.user);
    m_password->setText(server.password);
}

/** A whole element may be pasted into the box for the name. */
void ServerForm::takeApart()
{
    const QString text = m_host->text().trimmed();
    const auto server = parseSmtpServer(text);
    if (!server)
        return;
    if (text.contains("://"_L1) || text.contains(u'?')) {
        showServer(*server);
    } else if (text.contains(u':')) {
        m_host->setText(server->host);
        if (server->port != kUsualPort)
            m_port->setValue(server->port);
    }
}

void ServerForm::encryptionChanged()
{
    // A port that nobody chose follows the kind of connection.
    if (m_usualPort)
        m_port->setValue(usualPort(m_encryption->currentIndex()));
    judge();
}

QString ServerForm::typed() const
{
    SmtpServer server;
    server.host = withoutShortening(m_host->text());
    server.port = m_port->value();
    server.implicitTls = m_encryption->currentIndex() == FromTheFirstByte;
    server.mustEncrypt = m_encryption->currentIndex() != WhenOffered;
    server.user = m_user->text();
    server.password = m_password->text();
    return smtpElement(server);
}

void ServerForm::judge()
{
    m_usualPort = m_port->value() == usualPort(m_encryption->currentIndex());
    m_password->setEnabled(!m_user->text().isEmpty());
    const QString text = typed();
    const bool reads = parseSmtpServer(text).has_value();
    m_ok->setEnabled(reads);
    if (m_host->text().trimmed().isEmpty())
        m_result->setText(tr("The name or the address of the server, for example mail.example.com."));
    else if (!reads)
        m_result->setText(tr("This is no name and no address of a server."));
    else if (!m_user->text().isEmpty() && m_encryption->currentIndex() == WhenOffered)
        m_result->setText(tr("Because a password is sent, the connection must be encrypted.") + u'\n'
            + withHiddenPassword(text));
    else
        m_result->setText(tr("Stands in the list as") + u'\n' + withHiddenPassword(text));
}

QString ServerForm::element() const
{
    const QString now = typed();
    return now == m_begun && !m_given.isEmpty() ? m_given : now;
}
