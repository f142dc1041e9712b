' Shown to every script whose first line says "table": T prints kind and value of an expression, or its error. ~ stands for ".
Function Shown(v)
  If IsArray(v) Then
    Dim item : Shown = "(" : For Each item In v : Shown = Shown & Shown2(item) & "|" : Next
    Shown = Shown & ")"
  Else
    Shown = Shown2(v)
  End If
End Function
Function Shown2(v)
  Select Case VarType(v)
    Case 0, 1, 9 : Shown2 = TypeName(v)
    Case 8 : Shown2 = "[" & v & "]"
    Case Else : If IsArray(v) Then Shown2 = TypeName(v) Else Shown2 = TypeName(v) & " " & v
  End Select
End Function
Sub T(text)
  On Error Resume Next
  Dim value : value = Eval(Replace(text, "~", """"))
  If Err.Number <> 0 Then value = "error " & Err.Number Else value = Shown(value)
  WScript.Echo value
End Sub
