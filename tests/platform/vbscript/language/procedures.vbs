Sub ByDefault(a) : a = a + 1 : End Sub
Sub ByCopy(ByVal a) : a = a + 1 : End Sub
Function Twice(x) : Twice = x * 2 : End Function
Function Fact(n) : If n <= 1 Then Fact = 1 Else Fact = n * Fact(n - 1) : End Function
Dim v, a(2) : v = 1
ByDefault v : WScript.Echo v                        ' expect: 2
ByDefault (v) : WScript.Echo v                      ' expect: 2
ByDefault(v) : WScript.Echo v                       ' expect: 2
Call ByDefault(v) : WScript.Echo v                  ' expect: 3
Call ByDefault((v)) : WScript.Echo v                ' expect: 3
ByCopy v : WScript.Echo v                           ' expect: 3
a(1) = 5 : ByDefault a(1) : WScript.Echo a(1)       ' expect: 6
WScript.Echo Twice(3) + Twice (4), Fact(10)         ' expect: 14 3628800
Function NoArgs : NoArgs = "called" : End Function
v = NoArgs : WScript.Echo v & NoArgs() & NoArgs     ' expect: calledcalledcalled
' left to right, and a variable named before a call keeps the value that it had
Dim log : log = ""
Function L(x) : log = log & x : L = x : End Function
v = L(1) + L(2) * L(3) : WScript.Echo v, log        ' expect: 7 123
Dim gl : gl = 1
Function Bump : gl = gl + 10 : Bump = gl : End Function
WScript.Echo gl + Bump, gl                          ' expect: 12 11
Sub Swap(x, y) : Dim t : t = x : x = y : y = t : End Sub
Dim p, q : p = 1 : q = 2 : Swap p, q : WScript.Echo p, q ' expect: 2 1
Sub ShowMissing(x, y, z) : WScript.Echo VarType(y), x, z : End Sub
ShowMissing 1, , 3                                  ' expect: 10 1 3
Dim r : Set r = GetRef("Twice") : WScript.Echo r(21) ' expect: 42
Function MakeArray : MakeArray = Array(1, Array(2, 3)) : End Function
WScript.Echo MakeArray()(1)(0)                      ' expect: 2
Sub LateUse : hidden = 5 : WScript.Echo hidden : End Sub
LateUse : WScript.Echo IsEmpty(hidden)              ' expect: 5
' expect: True
Function Early : Early = 1 : Exit Function : Early = 2 : End Function
WScript.Echo Early                                  ' expect: 1
Sub Locals : Dim n : n = n + 1 : WScript.Echo n : End Sub
Locals : Locals
' expect: 1
' expect: 1
Sub Outer(x) : Inner x : End Sub
Sub Inner(x) : x = x & "!" : End Sub
v = "deep" : Outer v : WScript.Echo v               ' expect: deep!
Dim word : word = "a" : word = word & Chr(98) & Twice(2) & "c" : WScript.Echo word ' expect: ab4c
Function Change : word = "changed" : Change = "x" : End Function
word = "old" : word = word & Change : WScript.Echo word ' expect: oldx
' a parenthesis behind a blank starts the first argument
Class Greeter : Public Function Hi(x) : Hi = "hi" & x : End Function : End Class
Sub S(x) : WScript.Echo "S " & x : End Sub
S (New Greeter).Hi(3)                                     ' expect: S hi3
S (1 + 2) * 3                                       ' expect: S 9
S -1                                                ' expect: S -1
S MakeArray()(1)(1)                                 ' expect: S 3
S Not True                                          ' expect: S False
For i = 1 To 2 : If i = 1 Then S i : Next
' expect: S 1
S 1 _
  + 2                                               ' expect: S 3
