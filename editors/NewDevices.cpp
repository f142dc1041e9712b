#include "editors/NewDevices.h"

#include "core/Settings.h"
#include "core/Trap.h"
#include "editors/PortNumber.h"
#include "ui/NodeKeys.h"

#include <cmath>

using namespace Qt::StringLiterals;
using addressrange::Kind;

namespace {

constexpr double kOctetEnd = 256;

QString exists(const QString &name)
{
    return name + u" already exists as a monitored device.\r\nYou must specify a different device name."_s;
}

QString notValid(const QString &name)
{
    return name
        + u" is not a valid device name or IP address.\r\n"
          "Please make your corrections before pressing the next button."_s;
}

} // namespace

QString DeviceRef::key() const { return keys::device(id, name); }

bool IsIPAddressText(const QString &text)
{
    const QStringList parts = text.split(u'.');
    if (parts.size() != 4)
        return false;
    for (const QString &part : parts) {
        if (!portnumber::isNumeric(part))
            return false;
        const double value = std::nearbyint(dao::Value(part).number());
        if (value < 0 || value >= kOctetEnd)
            return false;
    }
    return true;
}

bool IsDeviceNameText(const QString &text)
{
    if (!text.contains(u'.') && text.size() < 2)
        return false;
    if (text == u"NULL")
        return false;
    if (!portnumber::isNumeric(text))
        return true;
    return text.contains(u'.');
}

bool DeviceExists(const QString &name)
{
    return Trap("DeviceExists", [&] {
        auto rows = db().OpenRecordset(u"Select * FROM tblDevices WHERE Device_Name = '"_s + name + u"'"_s);
        CheckDatabaseErrors();
        return !rows.Eof();
    });
}

QString NewDevices::setName(const QString &entered)
{
    m_name = entered.trimmed();
    if (m_name.isEmpty())
        m_name = u"NULL"_s;
    const addressrange::Range range = addressrange::parse(m_name);
    m_isRange = range.kind == Kind::Range;
    m_skipped = 0;
    if (m_isRange)
        return setRange(range.addresses);
    m_names = { m_name };
    if (DeviceExists(m_name))
        return exists(m_name);
    // What was meant as a range is no host name, whatever the test of names says.
    const bool single = range.kind == Kind::None;
    if (single && (IsIPAddressText(m_name) || IsDeviceNameText(m_name)))
        return {};
    return notValid(m_name);
}

QString NewDevices::setRange(const QStringList &addresses)
{
    m_names.clear();
    for (const QString &address : addresses) {
        if (!DeviceExists(address))
            m_names.append(address);
    }
    m_skipped = int(addresses.size() - m_names.size());
    return m_names.isEmpty() ? exists(m_name) : QString();
}

void NewDevices::setTexts(const QString &alias, const QString &description)
{
    // One alias for many devices would make them look the same.
    m_alias = m_isRange ? QString() : alias.trimmed();
    m_description = description.trimmed();
}

QString NewDevices::nodeText(const QString &deviceName) const
{
    return m_alias.isEmpty() ? deviceName : m_alias;
}

DeviceRef NewDevices::Device_Add(const QString &name, const QString &description, const QString &alias) const
{
    return Trap("Device_Add", [&] {
        const bool useAlias = GetSettingBool(u"Options"_s, u"UseDeviceAlias"_s);
        const bool pronounce = GetSettingBool(u"Options"_s, u"MSAgentPronounce"_s);
        const bool inReport = GetSettingBool(u"Options"_s, u"IncludeInHTML"_s);
        auto rows = db().OpenRecordset(u"Select * FROM tblDevices WHERE Device_Name = '"_s + name + u"'"_s);
        CheckDatabaseErrors();
        if (!rows.Eof())
            return DeviceRef();
        rows.AddNew();
        rows.Set(u"Device_Name"_s, name);
        if (!alias.isEmpty())
            rows.Set(u"Device_Alias"_s, alias);
        if (!description.isEmpty())
            rows.Set(u"Device_Desc"_s, description);
        // The column means that the agent refers to the device by its name.
        rows.Set(u"MSAgent_Referr_Device"_s, !useAlias);
        rows.Set(u"HTML_Output"_s, inReport);
        rows.Set(u"MSAgent_Pronounce_Device"_s, pronounce);
        rows.Set(u"Group_ID"_s, m_groupId);
        rows.Update();
        rows.Requery();
        const DeviceRef made { rows.Field(u"Device_ID"_s).integer(), name };
        rows.Close();
        return made;
    });
}
