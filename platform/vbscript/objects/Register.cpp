#include "platform/vbscript/ObjectFactory.h"
#include "platform/vbscript/objects/Makers.h"

#include <QString>

namespace vbs {

void registerAdministratorObjects()
{
    static constexpr struct
    {
        const char *progId;
        ObjectMaker maker;
    } kObjects[] = {
        { "Scripting.Dictionary", objects::makeDictionary },
        { "Scripting.FileSystemObject", objects::makeFileSystem },
        { "WScript.Shell", objects::makeShell },
        { "WScript.Shell.1", objects::makeShell },
        { "WScript.Network", objects::makeNetwork },
        { "WScript.Network.1", objects::makeNetwork },
        { "Microsoft.XMLHTTP", objects::makeHttpClient },
        { "MSXML2.XMLHTTP", objects::makeHttpClient },
        { "MSXML2.XMLHTTP.3.0", objects::makeHttpClient },
        { "MSXML2.XMLHTTP.6.0", objects::makeHttpClient },
        { "MSXML2.ServerXMLHTTP", objects::makeHttpServerClient },
        { "MSXML2.ServerXMLHTTP.3.0", objects::makeHttpServerClient },
        { "MSXML2.ServerXMLHTTP.6.0", objects::makeHttpServerClient },
        { "WinHttp.WinHttpRequest.5.1", objects::makeWinHttp },
        { "ADODB.Stream", objects::makeStream },
    };
    for (const auto &row : kObjects)
        registerObject(QString::fromLatin1(row.progId), row.maker);
}

}
