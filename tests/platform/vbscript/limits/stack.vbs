On Error Resume Next
Function F(n) : F = F(n + 1) : End Function
Class K
  Public Default Property Get V : V = Me + 1 : End Property
  Private Sub Class_Initialize : End Sub
End Class
Class Maker : Private x : Private Sub Class_Initialize : Set x = New Maker : End Sub : End Class
Function Depth(n) : If n = 0 Then Depth = 0 Else Depth = 1 + Depth(n - 1) : End Function
Dim v : v = F(1) : WScript.Echo Err.Number, Err.Description ' expect: 28 Out of stack space
Err.Clear : Dim k1 : Set k1 = New K : v = k1 + 1 : WScript.Echo Err.Number ' expect: 28
Err.Clear : Set v = New Maker : WScript.Echo Err.Number ' expect: 28
Err.Clear : Execute "Sub E : Execute ""E"" : End Sub" : E : WScript.Echo Err.Number ' expect: 28
Err.Clear : WScript.Echo Depth(5000)                 ' expect: 5000
Dim s, i : For i = 1 To 2000 : s = s & "1+" : Next
WScript.Echo Eval(s & "1")                           ' expect: 2001
Err.Clear : s = "" : For i = 1 To 2000 : s = s & "-" : Next
v = Eval(s & "1") : WScript.Echo Err.Number          ' expect: 1001
Dim nest : nest = 1 : For i = 1 To 100000 : nest = Array(nest) : Next
nest = Empty : WScript.Echo "freed"                  ' expect: freed
