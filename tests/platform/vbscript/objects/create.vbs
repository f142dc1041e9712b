' What can be created and what cannot.
Dim names, n
names = Array("scripting.dictionary", "Scripting.FileSystemObject", "WScript.Shell", "WScript.Network", _
  "MSXML2.XMLHTTP", "MSXML2.XMLHTTP.6.0", "Microsoft.XMLHTTP", "MSXML2.ServerXMLHTTP.3.0", _
  "Msxml2.ServerXMLHTTP.6.0", "WinHttp.WinHttpRequest.5.1", "ADODB.Stream")
For Each n In names
  If Not IsObject(CreateObject(n)) Then WScript.Echo n
Next
On Error Resume Next
CreateObject "ADODB.Connection"
WScript.Echo Err.Number & " " & Err.Description ' expect: 429 ActiveX component can't create object
Err.Clear
Dim http
Set http = CreateObject("MSXML2.XMLHTTP")
http.status
WScript.Echo Err.Number & " " & http.readyState ' expect: -2147483638 0
Err.Clear
http.send
WScript.Echo Err.Number ' expect: -2147467259
Err.Clear
http.open "GET", "file:///etc/passwd", False
WScript.Echo Err.Number & " " & Err.Description ' expect: -2147012890 The URL does not use a recognized protocol
Err.Clear
http.open "GET", "http://", False
WScript.Echo Err.Number ' expect: -2147012891
Err.Clear
http.setTimeouts 1, 1, 1, 1
WScript.Echo Err.Number ' expect: 438
Err.Clear
http.open "GET", "http://127.0.0.1:9/", False
http.setRequestHeader "X-Bad", "a" & vbCrLf & "Injected: b"
WScript.Echo Err.Number ' expect: 5
Err.Clear
http.send
WScript.Echo Err.Number & " " & Err.Description ' expect: -2147012867 A connection with the server could not be established
