On Error Resume Next
Dim f, s, t : Set f = CreateObject("Scripting.FileSystemObject")
Sub Show : WScript.Echo Err.Number : Err.Clear : End Sub
CreateObject("WScript.Network").MapNetworkDrive "Z:", "\\host\share" : Show ' expect: 445
f.OpenTextFile("/dev/full", 2).Write "x" : Show ' expect: 61
Set t = f.CreateTextFile("/tmp/" & String(300, "a")) : Show ' expect: 52
Set t = f.OpenTextFile("/proc", 2) : Show ' expect: 70
f.DeleteFolder "/nowhere/at/all" : Show ' expect: 76
f.CreateFolder "/" : Show ' expect: 58
Set t = f.GetDrive("Q:") : Show ' expect: 68
Set t = f.OpenTextFile("") : Show ' expect: 5
Set t = f.OpenTextFile("/dev/null") : s = t.ReadLine : Show ' expect: 62
t.Write "x" : Show ' expect: 54
t.Close : s = t.ReadAll : Show ' expect: 91
Set s = CreateObject("WScript.Shell") : s.Run "no-such-program-here" : Show ' expect: -2147024894
s.Popup "x" : Show ' expect: 70
s.RegRead "HKCU\nothing" : Show ' expect: -2147024894
Set s = CreateObject("ADODB.Stream") : s.WriteText "x" : Show ' expect: -2146824584
Set t = CreateObject("Scripting.Dictionary") : t.Add Array(1), 1 : Show ' expect: 5
t.Remove "q" : Show ' expect: 32811
t.Key("q") = 1 : Show ' expect: 32811
t.Add 1, 1 : t.CompareMode = 1 : Show ' expect: 5
Set t = CreateObject() : Show ' expect: 450
Set t = CreateObject("") : Show ' expect: 429
Set t = GetObject("", "Excel.Application") : Show ' expect: 429
Set t = GetObject("c:\x.xls") : Show ' expect: 432
