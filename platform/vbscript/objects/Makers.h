#pragma once

namespace vbs {

class Object;
class ScriptHost;

namespace objects {

Object *makeDictionary(ScriptHost &host);
Object *makeFileSystem(ScriptHost &host);
Object *makeShell(ScriptHost &host);
Object *makeNetwork(ScriptHost &host);
/** MSXML2.XMLHTTP: waits without limit of its own, asynchronous unless told otherwise. */
Object *makeHttpClient(ScriptHost &host);
/** MSXML2.ServerXMLHTTP: with time-outs, synchronous unless told otherwise. */
Object *makeHttpServerClient(ScriptHost &host);
/** WinHttp.WinHttpRequest: as ServerXMLHTTP, without readyState. */
Object *makeWinHttp(ScriptHost &host);
Object *makeStream(ScriptHost &host);

}

}
