Sub R(text)
  On Error Resume Next
  Execute text
  If Err.Number Then WScript.Echo "error", Err.Number
End Sub
R "WScript.Echo 1" & vbCr & "WScript.Echo 2" & vbCrLf & "WScript.Echo 3" & vbLf & "WScript.Echo 4"
' expect: 1
' expect: 2
' expect: 3
' expect: 4
R "WScript.Echo 1 + _" & vbCr & "2" ' expect: 3
R "WScript.Echo 1 + _" & vbCrLf & "2" ' expect: 3
R "WScript.Echo 1 + _  " & vbTab & vbLf & vbTab & "2" ' expect: 3
R "WScript.Echo _" & vbLf & "_" & vbLf & "5" ' expect: 5
R "WScript.Echo(_" & vbLf & "7)" ' expect: 7
R "x_" & vbLf & "x_ = 5 : WScript.Echo x_" ' expect: error 13
R "x_ = 5 : WScript.Echo x_" ' expect: 5
R "WScript.Echo ""a' b"" ' comment : WScript.Echo 2" ' expect: a' b
R "WScript.Echo 1 : Rem c : WScript.Echo 2" ' expect: 1
R "WScript.Echo 1 'c _" & vbLf & "WScript.Echo 2" ' expect: 1
' expect: 2
R "Rem _" & vbLf & "WScript.Echo 9" ' expect: 9
R "If 1 Then _" & vbLf & "WScript.Echo 8" ' expect: 8
R "wscript.ECHO(""case"")" ' expect: case
R vbTab & "WScript.Echo" & vbTab & "6" ' expect: 6
R "Dim [a-b!], [ ], [1x] : [a-b!] = 1 : [ ] = 2 : [1x] = 3 : WScript.Echo [a-b!] + [ ] + [1X]" ' expect: 6
R "WScript.[Echo] 4" ' expect: 4
R "Dim o : Set o = CreateObject(""Scripting.Dictionary"") : o.[Add] 1, 2 : WScript.Echo o.Count" ' expect: 1
R "WScript.Echo &hFf&, &HFFFFFFFF, &o7777777777" ' expect: 255 -1 1073741823
R "a = 5 : WScript.Echo a & b, a&""x"", a &""y"", a& ""z""" ' expect: 5 5x 5y 5z
R "a = 5 : b = 6 : WScript.Echo a&b" ' expect: 56
R "h = 3 : WScript.Echo 2&h" ' expect: 23
R "WScript.Echo 1:WScript.Echo 2" ' expect: 1
' expect: 2
R "For i=1To 3:s=s&i:Next:WScript.Echo s" ' expect: 123
R "If 1Then WScript.Echo ""tight""" ' expect: tight
R "x=5:If x=5Then WScript.Echo ""tight2""Else WScript.Echo 0" ' expect: tight2
R "WScript.Echo(1)" ' expect: 1
R "WScript.Echo 5 mod 3, 7\2, 2^3, not false, 1<>2, 1 < > 2" ' expect: error 1023
R "WScript.Echo 3 > = 2" ' expect: error 1023
R "Class C1 : Public [End] : End Class : Dim c : Set c = New C1 : c.End = 3 : WScript.Echo c.End, c.[end]" ' expect: 3 3
R "x = ""a"" & vbNullChar & ""b"" : WScript.Echo Len(x)" ' expect: 3
R "" : R ":" : R "'" : R vbLf & vbLf : R "   "
R "Dim a : a = Array(1, _" & vbLf & " 2, _" & vbLf & " 3) : WScript.Echo UBound(a)" ' expect: 2
R "WScript.Echo 1e3, 1E+3, 1.e2, .1e1, 1E-2" ' expect: 1000 1000 100 1 0.01
R "WScript.Echo 1.5.5" ' expect: error 1025
R "WScript.Echo " & String(255, "v") & " + 1" ' expect: 1
R "WScript.Echo " & String(256, "v") & " + 1" ' expect: error 1030
R "WScript.Echo ""tab" & vbTab & "in""" ' expect: tab	in
R "é = 1 : É = É + 1 : WScript.Echo é" ' expect: 2
R "Dim Rem1 : Rem1 = 2 : WScript.Echo Rem1" ' expect: 2
R "WScript . Echo 3" ' expect: error 1025
R "Set d = CreateObject(""Scripting.Dictionary"") : d.Add ""k"", 5 : WScript.Echo d (""k""), d( ""k"" )" ' expect: 5 5
R "Call (WScript.Echo(1))" ' expect: error 1010
R "a = 1 b = 2" ' expect: error 1025
R "Do:Exit Do:Loop:WScript.Echo ""d""" ' expect: d
R "If 0 Then:WScript.Echo 1:Else:WScript.Echo 2:End If" ' expect: 2
R "If 0 Then WScript.Echo 1:WScript.Echo 2:Else WScript.Echo 3:WScript.Echo 4" ' expect: 3
' expect: 4
R "If 1 Then WScript.Echo 1:WScript.Echo 2 Else WScript.Echo 3" ' expect: 1
' expect: 2
R "If 1 Then" & vbLf & "WScript.Echo 1" & vbLf & "Else If 0 Then" & vbLf & "End If" & vbLf & "End If" ' expect: 1
R "Select Case 2" & vbLf & "' c" & vbLf & "Case 1" & vbLf & "Case 2" & vbLf & "WScript.Echo 2" & vbLf & "Case Else" & vbLf & "End Select" ' expect: 2
R "While 0" & vbLf & "Wend : Do While 0 : Loop : For i = 1 To 0 : Next : With CreateObject(""Scripting.Dictionary"") : End With : WScript.Echo ""empty""" ' expect: empty
