#include "platform/vbscript/objects/Makers.h"
#include "platform/vbscript/objects/Support.h"

#include <QHostInfo>
#include <QStorageInfo>
#include <pwd.h>
#include <span>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vbs::objects {

namespace {

/** Pairs of a local and a remote name, one after the other, as network drives are listed. */
class PairList : public NativeObject<PairList>
{
public:
    explicit PairList(const QStringList &texts) : m_texts(texts) {}
    QString typeName() const override { return u"IWshCollection"_s; }
    static std::span<const Member<PairList>> members()
    {
        using P = PairList;
        static constexpr Member<P> table[] = {
            { "Item", 1, 1, &P::item, nullptr, true },
            { "Count", 0, 0, &P::count },
            { "length", 0, 0, &P::count },
        };
        return table;
    }

private:
    Value item(Args &args)
    {
        const qint32 index = args.integer(0);
        if (index < 0 || index >= m_texts.size())
            throw ScriptError(err::kSubscript);
        return Value::string(m_texts[index]);
    }
    Value count(Args &) { return Value::longInteger(qint32(m_texts.size())); }

    QStringList m_texts;
};

/** WScript.Network: who and where. Drives and printers are the system's affair. */
class Network : public NativeObject<Network>
{
public:
    QString typeName() const override { return u"IWshNetwork2"_s; }
    static std::span<const Member<Network>> members();

private:
    static QString hostName() { return QHostInfo::localHostName().section(u'.', 0, 0).toUpper(); }
    Value computerName(Args &) { return Value::string(hostName()); }
    Value userName(Args &);
    Value userDomain(Args &);
    Value enumNetworkDrives(Args &);
    Value refuse(Args &) { throw ScriptError(err::kActionNotSupported); }
};

Value Network::userName(Args &)
{
    const passwd *entry = ::getpwuid(::geteuid());
    return Value::string(entry ? QString::fromLocal8Bit(entry->pw_name) : environmentValue(u"USERNAME"_s));
}

Value Network::userDomain(Args &)
{
    const QString domain = QHostInfo::localDomainName();
    return Value::string(domain.isEmpty() || domain == "(none)"_L1 ? hostName() : domain.toUpper());
}

Value Network::enumNetworkDrives(Args &)
{
    QStringList pairs;
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        const QString device = QString::fromLocal8Bit(volume.device());
        if (device.startsWith("//"_L1) || device.contains(":/"_L1))
            pairs << volume.rootPath() << device;
    }
    return Value::object(new PairList(pairs));
}

std::span<const Member<Network>> Network::members()
{
    using N = Network;
    static constexpr Member<N> table[] = {
        { "ComputerName", 0, 0, &N::computerName },
        { "UserName", 0, 0, &N::userName },
        { "UserDomain", 0, 0, &N::userDomain },
        { "EnumNetworkDrives", 0, 0, &N::enumNetworkDrives },
        { "MapNetworkDrive", 2, 5, &N::refuse },
        { "RemoveNetworkDrive", 1, 3, &N::refuse },
        { "EnumPrinterConnections", 0, 0, &N::refuse },
        { "AddPrinterConnection", 2, 5, &N::refuse },
        { "AddWindowsPrinterConnection", 1, 3, &N::refuse },
        { "RemovePrinterConnection", 1, 3, &N::refuse },
        { "SetDefaultPrinter", 1, 1, &N::refuse },
    };
    return table;
}

}

Object *makeNetwork(ScriptHost &) { return new Network; }

}
