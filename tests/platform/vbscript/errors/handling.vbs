Sub Fails : Dim z : z = 1 / 0 : WScript.Echo "never" : End Sub
Sub Handles : On Error Resume Next : Fails : WScript.Echo "handled", Err.Number : End Sub
Handles : WScript.Echo Err.Number
' expect: handled 11
' expect: 11
Sub Nested : Fails : WScript.Echo "never" : End Sub
On Error Resume Next
Nested
WScript.Echo Err.Number, Err.Description, Err.Source ' expect: 11 Division by zero Microsoft VBScript runtime error
Err.Clear : WScript.Echo Err.Number, Err, "[" & Err.Description & "]" ' expect: 0 0 []
Err.Raise 1000, "me", "my words" : WScript.Echo Err.Number, Err.Source, Err.Description ' expect: 1000 me my words
Err.Clear : Err.Raise vbObjectError + 5 : WScript.Echo Err.Number, Err.Description ' expect: -2147221499 Unknown runtime error
Err.Clear : Err.Raise 0 : WScript.Echo Err.Number   ' expect: 5
On Error Resume Next : WScript.Echo Err.Number      ' expect: 0
If 1 / 0 Then
  WScript.Echo "first of the block" ' expect: first of the block
Else
  WScript.Echo "never"
End If
Dim x : x = 5 : x = CInt("abc") : WScript.Echo x, Err.Number ' expect: 5 13
If True Then
  x = 1 / 0
Else
  WScript.Echo "never"
End If
WScript.Echo "behind" ' expect: behind
Err.Clear : Dim i
For i = 1 To CInt("x") : WScript.Echo "once" : Next
WScript.Echo Err.Number
' expect: once
' expect: 92
Err.Clear
For Each i In 5 : WScript.Echo "once" : Next
WScript.Echo Err.Number
' expect: once
' expect: 92
Function Exits : On Error Resume Next : Exits = 1 / 0 : Exit Function : End Function
Err.Clear : x = Exits : WScript.Echo Err.Number     ' expect: 0
Class T : Private Sub Class_Terminate : Err.Raise 5 : End Sub : End Class
Dim o : Set o = New T : Set o = Nothing : WScript.Echo "alive" ' expect: alive
On Error GoTo 0
Sub Deep
  x = Nothing.foo
End Sub
' expect: error 424 line 47 column 2 Object required: 'undefd'
Sub Last
  undefd.method
End Sub
Last
