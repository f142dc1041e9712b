' Turns the program's text log into a table for a spreadsheet: time, type, message.
' Switch "Log failures" on in the options, and set kLog to the log file that stands there.
Option Explicit
Const kLog = "/tmp/kavro-log.txt"
Const kTable = "/tmp/kavro-states.csv"

Function Quoted(text)
  Quoted = """" & Replace(text, """", """""") & """"
End Function

Sub Main
  Dim files, source, target, pattern, found
  Set files = CreateObject("Scripting.FileSystemObject")
  If Not files.FileExists(kLog) Then Exit Sub
  Set pattern = New RegExp
  pattern.Pattern = "^(.*) (\w+)\.\.\.(.*)$"
  Set source = files.OpenTextFile(kLog, 1)
  Set target = files.CreateTextFile(kTable, True)
  target.WriteLine "Time,Type,Message"
  Do Until source.AtEndOfStream
    Set found = pattern.Execute(source.ReadLine)
    If found.Count = 1 Then
      With found(0)
        target.WriteLine Quoted(.SubMatches(0)) & "," & Quoted(.SubMatches(1)) & "," & Quoted(.SubMatches(2))
      End With
    End If
  Loop
  source.Close
  target.Close
End Sub
