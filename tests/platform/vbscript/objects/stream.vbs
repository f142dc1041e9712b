' ADODB.Stream: text and bytes, character sets, files.
Dim s, t, fso, name, bytes
Set fso = CreateObject("Scripting.FileSystemObject")
name = fso.BuildPath(fso.GetSpecialFolder(2), fso.GetTempName)
Set s = CreateObject("ADODB.Stream")
WScript.Echo s.State & s.Type & s.Charset & s.LineSeparator ' expect: 02Unicode-1
s.Charset = "utf-8"
s.Open
s.WriteText "a" & ChrW(228), 1
s.WriteText ChrW(&HD83D) & ChrW(&HDE00)
WScript.Echo s.Size & " " & s.Position & " " & s.EOS ' expect: 12 12 True
s.Position = 0
WScript.Echo Len(s.ReadText(-2)) & " " & Len(s.ReadText) & " [" & s.ReadText & "]" ' expect: 2 2 []
s.SaveToFile name, 2
WScript.Echo s.Position & " " & fso.GetFile(name).Size ' expect: 0 12

' The usual way to get rid of the mark
s.Type = 1
s.Position = 3
bytes = s.Read(2)
WScript.Echo TypeName(bytes) & " " & LenB(bytes) & " " & AscB(bytes) & " " & AscB(MidB(bytes, 2, 1)) ' expect: Byte() 2 97 195
Set t = CreateObject("ADODB.Stream")
t.Type = 1
t.Open
s.Position = 3
s.CopyTo t
WScript.Echo t.Size & " " & t.Position ' expect: 9 9
t.Position = 4
t.SetEOS
WScript.Echo t.Size & " " & IsNull(t.Read) ' expect: 4 True
t.Close

t.Type = 2
t.Charset = "windows-1252"
t.Open
t.LoadFromFile name
t.SkipLine
WScript.Echo Len(t.ReadText(3)) & " " & t.Position ' expect: 3 11
t.Close
t.Charset = "Unicode"
t.Open
t.WriteText "xy"
t.Position = 0
WScript.Echo t.Size & " " & t.ReadText(1) & t.Position ' expect: 6 x4
t.Close

' A text stream changes the character set of what is copied into it.
s.Position = 0
s.Type = 2
s.Charset = "utf-8"
t.Charset = "iso-8859-1"
t.Open
s.CopyTo t, 2
WScript.Echo t.Size ' expect: 2

On Error Resume Next
s.Position = 5
s.Type = 1
WScript.Echo Err.Number ' expect: -2146825069
Err.Clear
s.Read
WScript.Echo Err.Number ' expect: -2146825069
Err.Clear
s.SaveToFile name
WScript.Echo Err.Number & " " & Err.Description ' expect: -2146825284 Write to file failed.
Err.Clear
s.LoadFromFile name & ".none"
WScript.Echo Err.Number & " " & Err.Description ' expect: -2146825286 File could not be opened.
Err.Clear
s.Charset = "no-such-set"
WScript.Echo Err.Number ' expect: -2146825287
Err.Clear
s.Open
WScript.Echo Err.Number ' expect: -2146824583
Err.Clear
s.Close
s.WriteText "x"
WScript.Echo Err.Number & " " & Err.Description ' expect: -2146824584 Operation is not allowed when the object is closed.
Err.Clear
On Error GoTo 0
fso.DeleteFile name
