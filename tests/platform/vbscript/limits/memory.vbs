On Error Resume Next
Dim s, a, i
s = "x"
For i = 1 To 40
  s = s & s
  If Err.Number <> 0 Then Exit For
Next
WScript.Echo Err.Number, Len(s) > 1000000            ' expect: 7 True
s = "" : Err.Clear
ReDim a(100000000) : WScript.Echo Err.Number         ' expect: 7
Err.Clear : s = Space(2000000000) : WScript.Echo Err.Number ' expect: 7
Err.Clear
For i = 1 To 3000
  ReDim Preserve a(i) : a(i) = Space(100000)
  If Err.Number <> 0 Then Exit For
Next
WScript.Echo Err.Number, i > 1000                    ' expect: 7 True
a = Empty : Err.Clear
Class Link : Public before : Public fill(200) : End Class
Dim l, m : Set l = Nothing
For i = 1 To 1000000
  Set m = New Link
  If Err.Number <> 0 Then Exit For
  Set m.before = l : Set l = m
Next
WScript.Echo Err.Number                              ' expect: 7
Set l = Nothing : Set m = Nothing : Err.Clear
s = Space(1000) : WScript.Echo Err.Number, Len(s)    ' expect: 0 1000
