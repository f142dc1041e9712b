' Calls a webhook with a short JSON message after every check cycle.
Option Explicit
Const kAddress = "http://127.0.0.1:8080/hooks/kavro"

Sub Main
  Dim request
  Set request = CreateObject("MSXML2.ServerXMLHTTP")
  request.setTimeouts 2000, 2000, 5000, 5000
  request.open "POST", kAddress, False
  request.setRequestHeader "Content-Type", "application/json"
  request.send "{""event"":""CheckFinish"",""time"":""" & Now & """}"
  If request.status >= 400 Then Err.Raise vbObjectError + 2, "call_webhook", "the server answered " & request.status
End Sub
