' Tells a web service about every finished check cycle with a small JSON message.
Option Explicit

Const kUrl = "http://localhost:8080/hooks/kavro"
Const kToken = "change me"

Sub Main
  Dim http, network
  Set network = CreateObject("WScript.Network")
  Set http = CreateObject("MSXML2.ServerXMLHTTP.6.0")
  http.setTimeouts 5000, 5000, 10000, 10000
  http.open "POST", kUrl, False
  http.setRequestHeader "Content-Type", "application/json"
  http.setRequestHeader "Authorization", "Bearer " & kToken
  http.send "{""host"":" & Json(network.ComputerName) & ",""event"":""CheckFinish"",""time"":" & Json(Stamp(Now)) & "}"
  If http.status < 200 Or http.status > 299 Then
    Err.Raise vbObjectError + http.status, "call-webhook", "The service answered " & http.status & "."
  End If
End Sub

' The same form whatever the locale: 2024-01-31T09:05:00
Function Stamp(when)
  Stamp = Year(when) & "-" & Two(Month(when)) & "-" & Two(Day(when)) & "T" & _
    Two(Hour(when)) & ":" & Two(Minute(when)) & ":" & Two(Second(when))
End Function

Function Two(number)
  Two = Right("0" & number, 2)
End Function

Function Json(text)
  Json = """" & Replace(Replace(text, "\", "\\"), """", "\""") & """"
End Function
